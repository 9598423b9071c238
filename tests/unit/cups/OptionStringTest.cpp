#include "cups/OptionString.h"

#include <gtest/gtest.h>

namespace {

using Options = QList<QPair<QString, QString>>;

QPair<QString, QString> option(const char *name, const char *value)
{
    return {QString::fromUtf8(name), QString::fromUtf8(value)};
}

} // namespace

TEST(OptionStringTest, NamesAndValuesInOrder)
{
    EXPECT_EQ(parseOptionString("BristelCut=Full  copies=1\tBristelCut=None"),
              (Options{option("BristelCut", "Full"), option("copies", "1"), option("BristelCut", "None")}));
}

TEST(OptionStringTest, NothingToRead)
{
    EXPECT_TRUE(parseOptionString(nullptr).isEmpty());
    EXPECT_TRUE(parseOptionString("").isEmpty());
    EXPECT_TRUE(parseOptionString("   \n ").isEmpty());
}

TEST(OptionStringTest, TheSchedulersOwnString)
{
    // As cupsd writes it for a job: empty values, escaped blanks, a URI full of colons.
    EXPECT_EQ(
        parseOptionString("job-uuid=urn:uuid:3d1e date-time-at-creation= job-name=Table\\ 7\\'s\\ order "
                          "BristelCodePage=PC850"),
        (Options{option("job-uuid", "urn:uuid:3d1e"), option("date-time-at-creation", ""),
                 option("job-name", "Table 7's order"), option("BristelCodePage", "PC850")}));
}

TEST(OptionStringTest, QuotesAreRemovedAndKeepBlanks)
{
    EXPECT_EQ(parseOptionString("title='Tavolo 7' note=\"a \\\"b\\\" c\" mixed=x'y z'w"),
              (Options{option("title", "Tavolo 7"), option("note", "a \"b\" c"), option("mixed", "xy zw")}));
}

TEST(OptionStringTest, CollectionsStayAsWritten)
{
    EXPECT_EQ(
        parseOptionString("media-col={media-size={x-dimension=8000 y-dimension=29700}} BristelCut=Full"),
        (Options{option("media-col", "{media-size={x-dimension=8000 y-dimension=29700}}"),
                 option("BristelCut", "Full")}));
}

TEST(OptionStringTest, BareNamesAreSwitches)
{
    EXPECT_EQ(parseOptionString("landscape nocollate no"),
              (Options{option("landscape", "true"), option("collate", "false"), option("no", "true")}));
}

TEST(OptionStringTest, UnfinishedInputEndsTheValue)
{
    EXPECT_EQ(parseOptionString("a='open b=1"), (Options{option("a", "open b=1")}));
    EXPECT_EQ(parseOptionString("a={x={y} b=1"), (Options{option("a", "{x={y} b=1")}));
    EXPECT_EQ(parseOptionString("a=end\\"), (Options{option("a", "end\\")}));
    EXPECT_EQ(parseOptionString("=value b=2"), (Options{option("b", "2")}));
}
