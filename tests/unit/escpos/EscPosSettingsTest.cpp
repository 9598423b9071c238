// The receipt printer's settings: defaults, values as people write them, refusals.

#include "EscPosRendering.h"

#include "devices/escpos/EscPosCodePage.h"
#include "devices/escpos/EscPosSettings.h"
#include "job/PrinterSettingTable.h"

#include <gtest/gtest.h>

namespace {

TEST(EscPosSettings, DefaultsSuitA58mmEpsonPrinterWithTheEuroSign)
{
    const EscPosSettings settings;
    EXPECT_EQ(settings.codePage, QStringLiteral("PC858"));
    EXPECT_EQ(settings.codePageNumber, 19);
    EXPECT_EQ(settings.columns, 32);
    EXPECT_EQ(settings.cut, EscPosSettings::Cut::Partial);
    EXPECT_EQ(settings.drawerPin, 2);
    EXPECT_EQ(settings.drawerOnMs, 50);
    EXPECT_EQ(settings.drawerOffMs, 500);
}

TEST(EscPosSettings, ACodePageNameSetsEpsonsNumberAndANumberOfItsOwnOverridesIt)
{
    EscPosSettings settings;
    ASSERT_TRUE(settings.setCodePage(QStringLiteral(" pc866 ")));
    EXPECT_EQ(settings.codePage, QStringLiteral("PC866"));
    EXPECT_EQ(settings.codePageNumber, 17);
    ASSERT_TRUE(settings.setCodePageNumber(QStringLiteral("59")));
    EXPECT_EQ(settings.codePageNumber, 59);
    EXPECT_FALSE(settings.setCodePage(QStringLiteral("UTF-8")));
    EXPECT_FALSE(settings.setCodePageNumber(QStringLiteral("256")));
    EXPECT_EQ(settings.codePage, QStringLiteral("PC866"));
}

TEST(EscPosSettings, ValuesOutOfRangeChangeNothing)
{
    EscPosSettings settings;
    EXPECT_FALSE(settings.setColumns(QStringLiteral("0")));
    EXPECT_FALSE(settings.setColumns(QStringLiteral("forty")));
    EXPECT_FALSE(settings.setCut(QStringLiteral("half")));
    EXPECT_FALSE(settings.setCutFeed(QStringLiteral("-1")));
    EXPECT_FALSE(settings.setDrawerPin(QStringLiteral("3")));
    EXPECT_FALSE(settings.setDrawerOnMs(QStringLiteral("511")));
    EXPECT_FALSE(settings.setDrawerOffMs(QStringLiteral("")));
    const EscPosSettings defaults;
    EXPECT_EQ(settings.columns, defaults.columns);
    EXPECT_EQ(settings.cut, defaults.cut);
    EXPECT_EQ(settings.cutFeed, defaults.cutFeed);
    EXPECT_EQ(settings.drawerPin, defaults.drawerPin);
    EXPECT_TRUE(settings.setCut(QStringLiteral("FULL")));
    EXPECT_EQ(settings.cut, EscPosSettings::Cut::Full);
    EXPECT_EQ(EscPosSettings::cutName(settings.cut), QStringLiteral("full"));
}

TEST(EscPosSettings, TheConfigurationBlockIsReadAndUnusableValuesAreReported)
{
    const ConfigurationFile file(
        "bristel : { escpos : { codePage = \"PC850\"; codePageNumber = 7; columns = 48; "
        "cut = \"none\"; cutFeed = 3; drawerPin = 5; drawerOnTime = 100; "
        "drawerOffTime = \"lots\"; logo = \"/srv/logo.pbm\"; }; };");
    QString problems;
    const EscPosSettings settings = printerSettingsFromConfiguration(file.configuration(), &problems);
    EXPECT_EQ(settings.codePage, QStringLiteral("PC850"));
    EXPECT_EQ(settings.codePageNumber, 7);
    EXPECT_EQ(settings.columns, 48);
    EXPECT_EQ(settings.cut, EscPosSettings::Cut::None);
    EXPECT_EQ(settings.cutFeed, 3);
    EXPECT_EQ(settings.drawerPin, 5);
    EXPECT_EQ(settings.drawerOnMs, 100);
    EXPECT_EQ(settings.drawerOffMs, 500);
    EXPECT_EQ(settings.logo, QStringLiteral("/srv/logo.pbm"));
    EXPECT_EQ(problems,
              QStringLiteral("bristel.escpos.drawerOffTime: unusable value \"lots\" (0 to 510 ms)\n"));
}

TEST(EscPosSettings, AnUnusableValueIsToldWithTheValuesThatServe)
{
    EXPECT_EQ(
        EscPosSettings::unusableValue(QStringLiteral("--codepage"), QStringLiteral("PC999"),
                                      &EscPosSettings::setCodePage),
        QStringLiteral("--codepage: unusable value \"PC999\" (PC437, PC850, PC852, PC858, PC860, PC863, "
                       "PC865, PC866 or WPC1252)"));
    EXPECT_EQ(EscPosSettings::acceptedValues(&EscPosSettings::setCut),
              QStringLiteral("full, partial or none"));
    EXPECT_EQ(EscPosSettings::acceptedValues(&EscPosSettings::setDrawerPin), QStringLiteral("2 or 5"));
    EXPECT_EQ(EscPosSettings::acceptedValues(&EscPosSettings::setColumns), QStringLiteral("1 to 1000"));
    EXPECT_EQ(EscPosSettings::acceptedValues(&EscPosSettings::setCutFeed), QStringLiteral("0 to 255"));
}

TEST(EscPosSettings, AnUnknownCodePageInTheConfigurationIsToldWithEveryName)
{
    const ConfigurationFile file("bristel : { escpos : { codePage = \"PC999\"; }; };");
    QString problems;
    printerSettingsFromConfiguration(file.configuration(), &problems);
    EXPECT_TRUE(problems.startsWith(QStringLiteral("bristel.escpos.codePage: unusable value \"PC999\" (")));
    for (const QString &name : EscPosCodePage::names())
        EXPECT_TRUE(problems.contains(name)) << qPrintable(name);
}

TEST(EscPosSettings, CodesAreNativeUnlessTheBlockOrAnOptionSaysRaster)
{
    EscPosSettings settings;
    EXPECT_EQ(settings.codes, EscPosSettings::Codes::Native);
    EXPECT_FALSE(settings.setCodes(QStringLiteral("bitmap")));
    EXPECT_EQ(settings.codes, EscPosSettings::Codes::Native);
    EXPECT_TRUE(settings.setCodes(QStringLiteral(" Raster ")));
    EXPECT_EQ(settings.codes, EscPosSettings::Codes::Raster);
    EXPECT_TRUE(settings.setCodes(QStringLiteral("native")));
    EXPECT_EQ(settings.codes, EscPosSettings::Codes::Native);

    const ConfigurationFile raster("bristel : { escpos : { codes = \"raster\"; }; };");
    EXPECT_EQ(printerSettingsFromConfiguration(raster.configuration()).codes, EscPosSettings::Codes::Raster);
    const ConfigurationFile unusable("bristel : { escpos : { codes = \"qr\"; }; };");
    QString problems;
    EXPECT_EQ(printerSettingsFromConfiguration(unusable.configuration(), &problems).codes,
              EscPosSettings::Codes::Native);
    EXPECT_EQ(problems, QStringLiteral("bristel.escpos.codes: unusable value \"qr\" (native or raster)\n"));
}

} // namespace
