// The character tables, checked byte for byte against the toolkit's own converters (ICU),
// which share no code with the C library's iconv tables the back-end reads.

#include "devices/escpos/EscPosCodePage.h"

#include <QTextCodec>

#include <gtest/gtest.h>

namespace {

struct PageCase
{
    const char *name;
    int epsonNumber;
    const char *toolkitCodec;
};

const PageCase pages[] = {
    {"PC437", 0, "IBM437"},    {"PC850", 2, "IBM850"},  {"PC852", 18, "IBM852"},
    {"PC858", 19, "IBM00858"}, {"PC860", 3, "IBM860"},  {"PC863", 4, "IBM863"},
    {"PC865", 5, "IBM865"},    {"PC866", 17, "IBM866"}, {"WPC1252", 16, "windows-1252"},
};

class CodePage : public ::testing::TestWithParam<PageCase>
{
};

TEST_P(CodePage, KnownByNameAndEpsonNumber)
{
    const PageCase &page = GetParam();
    const EscPosCodePage *byName = EscPosCodePage::byName(QString::fromLatin1(page.name));
    ASSERT_NE(byName, nullptr);
    EXPECT_EQ(byName->epsonNumber(), page.epsonNumber);
    EXPECT_EQ(EscPosCodePage::byEpsonNumber(page.epsonNumber), byName);
    EXPECT_EQ(EscPosCodePage::byName(QString::fromLatin1(page.name).toLower()), byName);
}

TEST_P(CodePage, EveryUpperByteAgreesWithAnIndependentConverter)
{
    const PageCase &page = GetParam();
    const EscPosCodePage *ours = EscPosCodePage::byName(QString::fromLatin1(page.name));
    ASSERT_NE(ours, nullptr);
    QTextCodec *codec = QTextCodec::codecForName(page.toolkitCodec);
    ASSERT_NE(codec, nullptr) << page.toolkitCodec;
    int printable = 0;
    for (int byte = 0x80; byte <= 0xff; ++byte) {
        const char raw = char(byte);
        const QString theirs = codec->toUnicode(&raw, 1);
        const QString decoded = ours->decode(QByteArrayView(&raw, 1));
        const bool theyPrintIt = theirs.size() == 1 && theirs.at(0) != QChar::ReplacementCharacter &&
                                 !(theirs.at(0).unicode() >= 0x80 && theirs.at(0).unicode() < 0xa0);
        if (!theyPrintIt)
            continue; // where the converters disagree on whether a byte is assigned, iconv decides
        ++printable;
        // The micro sign and the Greek mu are one glyph in these tables; the converters differ
        // on which of the two the byte stands for.
        if (decoded != QStringLiteral("\u00b5") || theirs != QStringLiteral("\u03bc")) {
            EXPECT_EQ(decoded, theirs) << page.name << " byte " << byte;
        }
        // The character goes back to the same byte.
        EXPECT_EQ(ours->encode(theirs), QByteArray(1, raw)) << page.name << " byte " << byte;
    }
    EXPECT_GE(printable, 120) << page.name;
}

INSTANTIATE_TEST_SUITE_P(AllPages, CodePage, ::testing::ValuesIn(pages),
                         [](const ::testing::TestParamInfo<PageCase> &info) {
                             return std::string(info.param.name);
                         });

TEST(CodePageEncoding, EuroSignIsByteD5InPC858AndMissingFromPC437)
{
    EXPECT_EQ(EscPosCodePage::byName(u"PC858")->encode(u"10 \u20ac"), QByteArray("10 \xd5"));
    EXPECT_EQ(EscPosCodePage::byName(u"PC437")->encode(u"10 \u20ac"), QByteArray("10 ?"));
    EXPECT_EQ(EscPosCodePage::byName(u"WPC1252")->encode(u"\u20ac"), QByteArray("\x80"));
}

TEST(CodePageEncoding, EveryControlCharacterPrintsAsAQuestionMarkExceptTheLineFeed)
{
    const EscPosCodePage *page = EscPosCodePage::byName(u"PC858");
    for (char16_t c = 0; c < 0xa0; ++c) {
        if (c >= 0x20 && c < 0x7f)
            continue;
        const QString text = QString(QChar(c));
        EXPECT_EQ(page->encode(text), c == u'\n' ? QByteArray("\n") : QByteArray("?")) << int(c);
    }
}

TEST(CodePageEncoding, CharactersOutsideTheTableAndSurrogatePairsPrintOneQuestionMarkEach)
{
    const EscPosCodePage *page = EscPosCodePage::byName(u"PC866");
    EXPECT_EQ(page->encode(u"\u041f\u0440\u0438\u0432\u0435\u0442"), QByteArray("\x8f\xe0\xa8\xa2\xa5\xe2"));
    EXPECT_EQ(page->encode(QString::fromUtf8("a\xf0\x9f\x8d\x95z")), QByteArray("a?z"));
    EXPECT_EQ(page->encode(u"\u00e9"), QByteArray("?"));
    // A lone surrogate is not a character.
    EXPECT_EQ(page->encode(QString(QChar(0xd800))), QByteArray("?"));
}

TEST(CodePageEncoding, TheGreekMuPrintsAsTheMicroSign)
{
    EXPECT_EQ(EscPosCodePage::byName(u"PC437")->encode(u"5 \u03bcg \u00b5g"), QByteArray("5 \xe6g \xe6g"));
}

TEST(CodePageEncoding, UnknownNamesAndNumbersAreRefused)
{
    EXPECT_EQ(EscPosCodePage::byName(u"PC999"), nullptr);
    EXPECT_EQ(EscPosCodePage::byName(u""), nullptr);
    EXPECT_EQ(EscPosCodePage::byEpsonNumber(1), nullptr);
    EXPECT_EQ(EscPosCodePage::names().size(), 9);
}

} // namespace
