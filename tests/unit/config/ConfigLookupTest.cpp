#include "config/Config.h"

#include "TestSupport.h"

#include <gtest/gtest.h>

namespace {

QString lookupIn(const QByteArray &text, const QString &key)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("bristel.conf"));
    writeFile(path, text);
    libconfig::Config config(path, QStringLiteral("cfg"));
    return config.lookup(key);
}

TEST(ConfigLookup, FindsAnEntryOfABlock)
{
    EXPECT_EQ(lookupIn("a : { b = 1; };", QStringLiteral("a.b")), QStringLiteral("1"));
    EXPECT_EQ(lookupIn("a : { b = 1; };", QStringLiteral("a.c")), QString());
    EXPECT_EQ(lookupIn("a : { b = 1; };", QStringLiteral("x.b")), QString());
}

} // namespace
