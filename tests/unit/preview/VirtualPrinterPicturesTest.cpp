#include "PreviewTestSupport.h"
#include "TestSupport.h"

#include "preview/PreviewWriter.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

template <size_t N> QByteArray bytes(const char (&literal)[N])
{
    return QByteArray(literal, N - 1);
}

// ESC @, ESC t 19 (PC858: the euro at D5, box drawing at B3 to DA).
const QByteArray init = bytes("\x1b@\x1bt\x13");

// Draws the stream and compares the PNG with data/drawing/<name>.png byte for byte.  On a
// difference the new picture is kept for a look; data/drawing/README.md says what each shows.
void expectPicture(const QByteArray &stream, const QString &name)
{
    QTemporaryDir dir;
    const QString output = dir.filePath(name + QStringLiteral(".png"));
    QString error;
    ASSERT_TRUE(writePreview(printed(stream), PreviewFormat::Png, output, &error)) << qPrintable(error);
    const QString golden = QStringLiteral(PREVIEW_DATA "/drawing/") + name + QStringLiteral(".png");
    const bool same = readFile(output) == readFile(golden);
    dir.setAutoRemove(same);
    EXPECT_TRUE(same) << "the picture changed: compare " << qPrintable(output) << " with "
                      << qPrintable(golden);
}

TEST(VirtualPrinterPictures, FontB)
{
    expectPicture(init + bytes("Font A: Caff\x82 4,50 \xd5\n"
                               "\x1bM\x01"
                               "Font B: Caff\x82 4,50 \xd5 -- 42 columns\n"
                               "\xc9\xcd\xcd\xcd\xcd\xcb\xcd\xcd\xcd\xcd\xbb\n"
                               "\xba"
                               "ab  \xba"
                               "cd  \xba\n"
                               "\xc8\xcd\xcd\xcd\xcd\xca\xcd\xcd\xcd\xcd\xbc\n"
                               "\x1b"
                               "E\x01"
                               "bold Font B\x1b"
                               "E\x00\n"
                               "\x1d!\x11"
                               "Big B\x1d!\x00\n"
                               "\x1b!\x00"
                               "ESC ! 0: Font A\n"
                               "\x1b!\x01"
                               "ESC ! 1: Font B\n"),
                  QStringLiteral("font-b"));
}

TEST(VirtualPrinterPictures, Inverse)
{
    expectPicture(init + bytes("plain \x1d"
                               "B\x01 TOTAL \x1d"
                               "B\x00 plain\n"
                               "\x1d"
                               "B\x01\x1d!\x11"
                               "12,50\x1d!\x00\x1d"
                               "B\x00\n"
                               "\x1b-\x01underlined\x1b-\x00\n"),
                  QStringLiteral("inverse"));
}

TEST(VirtualPrinterPictures, UpsideDown)
{
    expectPicture(init + bytes("upright first\n"
                               "\x1b{\x01"
                               "turned row\n"
                               "small \x1d!\x01"
                               "TALL\x1d!\x00\n"
                               "\x1b"
                               "a\x01"
                               "centred\n"
                               "\x1b{\x00"
                               "upright again\n"),
                  QStringLiteral("upside-down"));
}

TEST(VirtualPrinterPictures, Clockwise)
{
    expectPicture(init + bytes("upright \x1bV\x01"
                               "ABC123\x1bV\x00"
                               " upright\n"
                               "\x1bV\x01\x1d!\x10"
                               "Wide\x1d!\x00\x1bV\x00\n"),
                  QStringLiteral("clockwise"));
}

TEST(VirtualPrinterPictures, TabsAndPositions)
{
    expectPicture(init + bytes("a\tb\tc\td\n"
                               "\x1b"
                               "D\x04\x14\x1a\x00"
                               "2\tPizza\t12,00\n"
                               "1\tAcqua\t\x1b$\xfc\x00"
                               "2,00\n"
                               "\x1b$\x00\x01"
                               "at 256\n"
                               "ab\x1b\\\x78\x00"
                               "x\x1b\\\xc4\xff"
                               "y\n"
                               "\x1b \x04"
                               "wide spacing\x1b \x00\n"),
                  QStringLiteral("tabs-positions"));
}

} // namespace
