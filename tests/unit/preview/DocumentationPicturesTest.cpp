// The pictures in docs/ show what this build draws, dot for dot where the drawing is the
// virtual printer's own: a picture must not show behaviour the programs no longer have.
// `cmake --build build --target docs` takes them again.

#include "TestSupport.h"

#include <QImage>
#include <QPoint>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <optional>

namespace {

const QString docs = QStringLiteral(BRISTEL_DOCS);
const QString examples = QStringLiteral(BRISTEL_EXAMPLES);

// The sample configuration with its translation taken from translations (a folder), and the
// example receipt drawn under it by bristel-preview.
QImage drawnReceipt(const QTemporaryDir &home, const QByteArray &translations, const QStringList &options)
{
    QByteArray sample = readFile(examples + QStringLiteral("/bristel.conf"));
    sample.replace("/usr/share/bristel/translations/", translations + '/');
    const QString config = home.filePath(QStringLiteral("bristel.conf"));
    writeFile(config, sample);
    const QString picture = home.filePath(QStringLiteral("receipt.png"));
    const ProgramRun run = runProgram(
        QStringLiteral(BRISTEL_BIN_DIR "/bristel-preview"),
        options + QStringList{QStringLiteral("-c"), config,
                              examples + QStringLiteral("/documents/printFullOrderReceipt.xml"), picture},
        userEnvironment(home.path()));
    if (run.status != 0) {
        ADD_FAILURE() << qPrintable(run.standardError);
        return {};
    }
    return QImage(picture).convertToFormat(QImage::Format_RGB32);
}

bool sameDots(const QImage &picture, QPoint at, const QImage &part, int x, int y)
{
    return reinterpret_cast<const QRgb *>(picture.constScanLine(at.y() + y))[at.x() + x] ==
           reinterpret_cast<const QRgb *>(part.constScanLine(y))[x];
}

// Every place in picture where part appears whole.
QList<QPoint> placesOf(const QImage &part, const QImage &picture)
{
    QList<QPoint> places;
    for (int top = 0; top + part.height() <= picture.height(); ++top) {
        for (int left = 0; left + part.width() <= picture.width(); ++left) {
            bool same = true;
            for (int y = 0; same && y < part.height(); ++y)
                for (int x = 0; same && x < part.width(); ++x)
                    same = sameDots(picture, {left, top}, part, x, y);
            if (same)
                places.append({left, top});
        }
    }
    return places;
}

// How far, from its top left corner at `at`, the paper shows in picture as drawn: the
// columns that agree over the first rows, then the rows that agree over those columns.
QSize agreeingArea(const QImage &picture, QPoint at, const QImage &paper, int firstRows)
{
    const int widest = std::min(paper.width(), picture.width() - at.x());
    const int tallest = std::min(paper.height(), picture.height() - at.y());
    int width = 0;
    for (bool same = true; same && width < widest; width += same ? 1 : 0)
        for (int y = 0; same && y < firstRows; ++y)
            same = sameDots(picture, at, paper, width, y);
    int height = 0;
    for (bool same = true; same && height < tallest; height += same ? 1 : 0)
        for (int x = 0; same && x < width; ++x)
            same = sameDots(picture, at, paper, x, height);
    return {width, height};
}

TEST(DocumentationPictures, TheReceiptPreviewIsWhatBristelPreviewDraws)
{
    // The receipt of the README: the example on 80 mm paper, in the sample's Italian.
    QTemporaryDir home;
    const QImage drawn =
        drawnReceipt(home, QByteArrayLiteral(QM_DIR), {QStringLiteral("--paper"), QStringLiteral("80")});
    const QImage documented =
        QImage(docs + QStringLiteral("/receipt-preview.png")).convertToFormat(QImage::Format_RGB32);
    ASSERT_FALSE(documented.isNull());
    ASSERT_EQ(documented.size(), drawn.size());
    EXPECT_TRUE(documented == drawn)
        << "docs/receipt-preview.png is out of date: cmake --build build --target docs";
}

TEST(DocumentationPictures, ThePaperInTheEditorsPictureIsWhatThePreviewDraws)
{
    // The editor's pane draws the example receipt under the sample configuration with the
    // virtual printer's painter, one dot a pixel, and installs no translation.  The rest of
    // the window is the toolkit's and the screen fonts', which differ between machines.
    QTemporaryDir home;
    const QImage paper = drawnReceipt(home, home.filePath(QStringLiteral("none")).toUtf8(), {});
    ASSERT_FALSE(paper.isNull());
    const QImage window =
        QImage(docs + QStringLiteral("/bristel-config.png")).convertToFormat(QImage::Format_RGB32);
    ASSERT_FALSE(window.isNull());

    // The top of the paper, margin and first lines, is found once in the window.
    constexpr int cornerWidth = 160;
    constexpr int cornerHeight = 120;
    const QList<QPoint> places = placesOf(paper.copy(0, 0, cornerWidth, cornerHeight), window);
    ASSERT_EQ(places.size(), 1) << "the paper's top left corner is not in docs/bristel-config.png: "
                                   "cmake --build build --target docs";

    // The window of 1000x740 shows the paper over more than 500x600 dots of the pane, and
    // every one of them is as the preview draws it.
    const QSize shown = agreeingArea(window, places.first(), paper, cornerHeight);
    EXPECT_GE(shown.width(), 500);
    EXPECT_GE(shown.height(), 600) << "docs/bristel-config.png differs from the preview from row "
                                   << shown.height() << " of the paper on: cmake --build build --target docs";
}

} // namespace
