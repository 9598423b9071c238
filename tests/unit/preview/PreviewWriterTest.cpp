#include "PreviewTestSupport.h"
#include "TestSupport.h"

#include "preview/PaperPainter.h"
#include "preview/PreviewWriter.h"

#include <QImage>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

QByteArray features()
{
    return readFile(QStringLiteral(PREVIEW_DATA "/features.escpos"));
}

// The golden picture of data/features.escpos (emphasis, double height and width, centring,
// a raster logo, the euro sign, underline, an unknown command, a drawer pulse and two cuts).
// The PNG is drawn from the bitmap font's dots and written by the toolkit's PNG writer, so the
// same stream gives the same bytes on every machine with the project's packages.
// To look at it: tests/unit/preview/data/features.png.
TEST(PreviewWriter, ThePngIsTheGoldenPictureByteForByte)
{
    QTemporaryDir dir;
    const QString output = dir.filePath(QStringLiteral("features.png"));
    QString error;
    ASSERT_TRUE(writePreview(printed(features()), PreviewFormat::Png, output, &error)) << qPrintable(error);
    EXPECT_EQ(readFile(output), readFile(QStringLiteral(PREVIEW_DATA "/features.png")))
        << "the picture changed: compare " << qPrintable(output) << " with data/features.png";
}

TEST(PreviewWriter, ThePngIsTheSameEveryTime)
{
    QTemporaryDir dir;
    QString error;
    const Paper paper = printed(features());
    ASSERT_TRUE(writePreview(paper, PreviewFormat::Png, dir.filePath(QStringLiteral("a.png")), &error));
    ASSERT_TRUE(writePreview(paper, PreviewFormat::Png, dir.filePath(QStringLiteral("b.png")), &error));
    EXPECT_EQ(readFile(dir.filePath(QStringLiteral("a.png"))),
              readFile(dir.filePath(QStringLiteral("b.png"))));
}

TEST(PreviewWriter, ThePngIsTheSheetDotForDot)
{
    QString error;
    const Paper paper = printed(QByteArray("\x1b@\x1dv0\x00\x01\x00\x01\x00\x81\n", 12));
    const QImage image = paperImage(paper, &error);
    ASSERT_FALSE(image.isNull()) << qPrintable(error);
    EXPECT_EQ(image.width(), PaperPainter::leftMargin + 384 + PaperPainter::rightMargin);
    const int left = PaperPainter::leftMargin;
    EXPECT_EQ(image.pixel(left + 0, 0), qRgb(0, 0, 0));
    EXPECT_EQ(image.pixel(left + 1, 0), qRgb(255, 255, 255));
    EXPECT_EQ(image.pixel(left + 7, 0), qRgb(0, 0, 0));
    EXPECT_EQ(image.pixel(left + 8, 0), qRgb(255, 255, 255));
}

TEST(PreviewWriter, DoubleHeightTextIsTwiceAsTall)
{
    QString error;
    const auto inkRows = [&](const QByteArray &stream) {
        const QImage image = paperImage(printed(stream), &error);
        int first = -1;
        int last = -1;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = PaperPainter::leftMargin; x < PaperPainter::leftMargin + 384; ++x) {
                if (image.pixel(x, y) == qRgb(0, 0, 0)) {
                    first = first < 0 ? y : first;
                    last = y;
                    break;
                }
            }
        }
        return last - first + 1;
    };
    const int normal = inkRows("\x1b@H\n");
    EXPECT_GT(normal, 10);
    EXPECT_EQ(inkRows(QByteArray("\x1b@\x1d!\x01H\n", 6)), 2 * normal);
}

TEST(PreviewWriter, SvgKeepsTheTextAsText)
{
    QTemporaryDir dir;
    const QString output = dir.filePath(QStringLiteral("features.svg"));
    QString error;
    ASSERT_TRUE(writePreview(printed(features()), PreviewFormat::Svg, output, &error)) << qPrintable(error);
    const QByteArray svg = readFile(output);
    EXPECT_TRUE(svg.contains(">TRATTORIA DA ANNA</text>"));
    EXPECT_TRUE(svg.contains("Totale \xe2\x82\xac 39,00")); // the euro sign, as UTF-8
    EXPECT_TRUE(svg.contains("font-family=\"DejaVu Sans Mono\""));
    EXPECT_TRUE(svg.contains("viewBox=\"0 0 552 "));
}

TEST(PreviewWriter, PdfHasOnePagePerPieceOfPaper)
{
    QTemporaryDir dir;
    const QString output = dir.filePath(QStringLiteral("features.pdf"));
    QString error;
    ASSERT_TRUE(writePreview(printed(features()), PreviewFormat::Pdf, output, &error)) << qPrintable(error);
    const QByteArray pdf = readFile(output);
    EXPECT_TRUE(pdf.startsWith("%PDF-"));
    // Two cuts, nothing printed after the second: two pieces.
    EXPECT_EQ(pdf.count("/Type /Page\n") + pdf.count("/Type /Page\r") + pdf.count("/Type /Page "), 2)
        << pdf.count("/Type /Page");
    QProcess pdftotext;
    pdftotext.start(QStringLiteral("pdftotext"), {output, QStringLiteral("-")});
    ASSERT_TRUE(pdftotext.waitForFinished(30000)) << "pdftotext (poppler-utils) is needed";
    const QString text = QString::fromUtf8(pdftotext.readAllStandardOutput());
    EXPECT_TRUE(text.contains(QLatin1String("TRATTORIA DA ANNA")));
    EXPECT_TRUE(text.contains(QLatin1String("second piece")));
    EXPECT_EQ(text.count(QLatin1Char('\f')), 2);
}

TEST(PreviewWriter, TheFormatFollowsTheSuffix)
{
    EXPECT_EQ(previewFormatFor(QStringLiteral("a.png")), PreviewFormat::Png);
    EXPECT_EQ(previewFormatFor(QStringLiteral("a.SVG")), PreviewFormat::Svg);
    EXPECT_EQ(previewFormatFor(QStringLiteral("/x/y.pdf")), PreviewFormat::Pdf);
    EXPECT_FALSE(previewFormatFor(QStringLiteral("a.jpg")).has_value());
    EXPECT_FALSE(previewFormatFor(QStringLiteral("png")).has_value());
}

TEST(PreviewWriter, AnUnwritableFileIsAnError)
{
    QString error;
    EXPECT_FALSE(writePreview(printed(features()), PreviewFormat::Png,
                              QStringLiteral("/nonexistent/dir/a.png"), &error));
    EXPECT_FALSE(error.isEmpty());
}

} // namespace
