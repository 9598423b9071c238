#include "devices/escpos/EscPosPaperFamily.h"
#include "devices/escpos/EscPosSettings.h"

#include <gtest/gtest.h>

namespace {

TEST(EscPosPaperFamily, KnowsEachFamilysDotsResolutionAndColumns)
{
    const EscPosPaperFamily *narrow = EscPosPaperFamily::byName(u"58");
    const EscPosPaperFamily *wide = EscPosPaperFamily::byName(u"80");
    const EscPosPaperFamily *older = EscPosPaperFamily::byName(u"80-512");
    ASSERT_TRUE(narrow && wide && older);
    EXPECT_EQ(narrow->dots, 384);
    EXPECT_EQ(narrow->dotsPerInch, 203);
    EXPECT_EQ(narrow->columnsFontA(), 32);
    EXPECT_EQ(narrow->columnsFontB(), 42);
    EXPECT_EQ(wide->dots, 576);
    EXPECT_EQ(wide->columnsFontA(), 48);
    EXPECT_EQ(wide->columnsFontB(), 64);
    EXPECT_EQ(older->dots, 512);
    EXPECT_EQ(older->dotsPerInch, 180);
    EXPECT_EQ(older->widthMm, 80);
    EXPECT_EQ(older->columnsFontA(), 42);
    EXPECT_EQ(older->columnsFontB(), 56);
    EXPECT_EQ(EscPosPaperFamily::byName(u"112"), nullptr);
    EXPECT_EQ(EscPosPaperFamily::byDots(512), older);
    EXPECT_EQ(EscPosPaperFamily::byDots(500), nullptr);
}

TEST(EscPosPaperFamily, TheColumnsOfTheSettingsChooseTheFamily)
{
    EscPosSettings settings;
    EXPECT_EQ(settings.paperFamily().dots, 384); // 32 columns by default
    ASSERT_TRUE(settings.setColumns(QStringLiteral("42")));
    EXPECT_EQ(settings.paperFamily().dots, 512);
    ASSERT_TRUE(settings.setColumns(QStringLiteral("48")));
    EXPECT_EQ(settings.paperFamily().dots, 576);
    ASSERT_TRUE(settings.setColumns(QStringLiteral("30")));
    EXPECT_EQ(settings.paperFamily().dots, 384);
    ASSERT_TRUE(settings.setColumns(QStringLiteral("60"))); // wider than any: the widest
    EXPECT_EQ(settings.paperFamily().dots, 576);
}

} // namespace
