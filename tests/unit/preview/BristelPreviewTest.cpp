#include "TestSupport.h"

#include <QDir>
#include <QFileInfo>
#include <QImage>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

const QString examples = QStringLiteral(BRISTEL_EXAMPLES);

// Runs bristel-preview with a home folder of its own, as a user would.
ProgramRun preview(const QStringList &arguments, const QTemporaryDir &home)
{
    return runProgram(QStringLiteral(BRISTEL_BIN_DIR "/bristel-preview"), arguments,
                      userEnvironment(home.path()));
}

// A receipt of `items` sold items, as the ordering application writes it.
QByteArray longReceipt(int items)
{
    QByteArray xml = "<document>\n<method name=\"printFullOrderReceipt\"/>\n<receipt serialnumber=\"1\"/>\n";
    for (int i = 0; i < items; ++i)
        xml += "<receipe number=\"1\" name=\"Item " + QByteArray::number(i) +
               "\" price=\"1.00\" totalPrice=\"1.00\"/>\n";
    xml += "<total price=\"1.00\"/>\n</document>\n";
    return xml;
}

TEST(BristelPreview, AnXmlJobLooksLikeItsEscPosBytes)
{
    // The committed ESC/POS example was rendered from the XML with the sample configuration:
    // the two previews are the same picture.
    QTemporaryDir home;
    // The sample configuration, its translation taken from the build.
    const QString config = home.filePath(QStringLiteral("bristel.conf"));
    QByteArray sample = readFile(examples + QStringLiteral("/bristel.conf"));
    sample.replace("/usr/share/bristel/translations/", QByteArrayLiteral(QM_DIR "/"));
    writeFile(config, sample);
    const QString fromXml = home.filePath(QStringLiteral("xml.png"));
    const QString fromBytes = home.filePath(QStringLiteral("bytes.png"));
    ProgramRun run = preview(
        {QStringLiteral("-c"), config, examples + QStringLiteral("/documents/printFullOrder.xml"), fromXml},
        home);
    ASSERT_EQ(run.status, 0) << qPrintable(run.standardError);
    // The sample printer has 48 columns: 80 mm paper.
    run = preview({QStringLiteral("--paper"), QStringLiteral("80"),
                   examples + QStringLiteral("/documents/printFullOrder.escpos"), fromBytes},
                  home);
    ASSERT_EQ(run.status, 0) << qPrintable(run.standardError);
    EXPECT_EQ(readFile(fromXml), readFile(fromBytes));
    const QImage image(fromXml);
    EXPECT_EQ(image.width(), 24 + 576 + 144);
}

TEST(BristelPreview, WritesSvgAndPdfBySuffix)
{
    QTemporaryDir home;
    const QString job = examples + QStringLiteral("/documents/printFullOrderReceipt.escpos");
    for (const QString &name : {QStringLiteral("r.svg"), QStringLiteral("r.pdf")}) {
        const ProgramRun run = preview({job, home.filePath(name)}, home);
        ASSERT_EQ(run.status, 0) << qPrintable(run.standardError);
        EXPECT_GT(QFileInfo(home.filePath(name)).size(), 1000) << qPrintable(name);
    }
    EXPECT_TRUE(readFile(home.filePath(QStringLiteral("r.svg"))).contains("<text"));
    EXPECT_TRUE(readFile(home.filePath(QStringLiteral("r.pdf"))).startsWith("%PDF-"));
}

TEST(BristelPreview, ALongJobIsRefusedOrSplit)
{
    QTemporaryDir home;
    const QString job = home.filePath(QStringLiteral("long.xml"));
    writeFile(job, longReceipt(700)); // about 21,000 dots of paper
    const QString output = home.filePath(QStringLiteral("long.png"));
    ProgramRun run = preview({job, output}, home);
    EXPECT_EQ(run.status, 7);
    EXPECT_TRUE(run.standardError.contains(QLatin1String("--split"))) << qPrintable(run.standardError);
    EXPECT_FALSE(QFileInfo::exists(output));

    run = preview({QStringLiteral("--split"), job, output}, home);
    ASSERT_EQ(run.status, 0) << qPrintable(run.standardError);
    const QStringList pieces =
        QDir(home.path()).entryList({QStringLiteral("long-*.png")}, QDir::Files, QDir::Name);
    ASSERT_GE(pieces.size(), 2);
    for (int i = 0; i < pieces.size(); ++i)
        EXPECT_EQ(pieces.at(i), QStringLiteral("long-%1.png").arg(i + 1, 3, 10, QLatin1Char('0')));
    for (const QString &piece : pieces)
        EXPECT_LE(QImage(home.filePath(piece)).height(), 16000 + 8192);
}

TEST(BristelPreview, MakesALogo)
{
    QTemporaryDir home;
    QImage picture(100, 50, QImage::Format_RGB32);
    picture.fill(qRgb(128, 64, 200));
    const QString input = home.filePath(QStringLiteral("logo.png"));
    ASSERT_TRUE(picture.save(input));
    const QString output = home.filePath(QStringLiteral("logo.pbm"));
    ProgramRun run = preview(
        {QStringLiteral("--make-logo"), input, output, QStringLiteral("--width"), QStringLiteral("200")},
        home);
    ASSERT_EQ(run.status, 0) << qPrintable(run.standardError);
    EXPECT_TRUE(readFile(output).startsWith("P4\n200 100\n"));

    run = preview({QStringLiteral("--make-logo"), home.filePath(QStringLiteral("none.png")), output}, home);
    EXPECT_EQ(run.status, 3);
    run = preview(
        {QStringLiteral("--make-logo"), input, output, QStringLiteral("--width"), QStringLiteral("x")}, home);
    EXPECT_EQ(run.status, 2);
}

TEST(BristelPreview, ReportsProblemsWithStatuses)
{
    QTemporaryDir home;
    const QString job = examples + QStringLiteral("/documents/printFullOrderReceipt.escpos");
    EXPECT_EQ(preview({job}, home).status, 1);
    EXPECT_EQ(preview({job, home.filePath(QStringLiteral("r.jpg"))}, home).status, 1);
    EXPECT_EQ(preview({QStringLiteral("--paper"), QStringLiteral("70"), job,
                       home.filePath(QStringLiteral("r.png"))},
                      home)
                  .status,
              2);
    EXPECT_EQ(
        preview({home.filePath(QStringLiteral("none.xml")), home.filePath(QStringLiteral("r.png"))}, home)
            .status,
        3);
    EXPECT_EQ(preview({job, QStringLiteral("/nonexistent/dir/r.png")}, home).status, 6);

    // A malformed job: what was rendered before the fault is still drawn.
    const QString broken = home.filePath(QStringLiteral("broken.xml"));
    writeFile(broken,
              "<document>\n<method name=\"printFullOrderReceipt\"/>\n<receipt serialnumber=\"1\"/>\n<total");
    const ProgramRun run = preview({broken, home.filePath(QStringLiteral("broken.png"))}, home);
    EXPECT_EQ(run.status, 4);
    EXPECT_TRUE(run.standardError.contains(QLatin1String("broken.xml:4:"))) << qPrintable(run.standardError);
    EXPECT_TRUE(QFileInfo::exists(home.filePath(QStringLiteral("broken.png"))));
}

TEST(BristelPreview, TheFortyEightColumnPaperIsEightyMillimetresWide)
{
    QTemporaryDir home;
    const QString output = home.filePath(QStringLiteral("r.png"));
    const ProgramRun run = preview({QStringLiteral("--columns"), QStringLiteral("48"),
                                    examples + QStringLiteral("/documents/printFullOrder.escpos"), output},
                                   home);
    ASSERT_EQ(run.status, 0) << qPrintable(run.standardError);
    EXPECT_EQ(QImage(output).width(), 24 + 576 + 144);
}

TEST(BristelPreview, CodesDrawnAsPicturesReadBackAndUnprintableOnesAreReported)
{
    QTemporaryDir home;
    const QString job = home.filePath(QStringLiteral("codes.xml"));
    writeFile(job, "<document>\n<method name=\"printSold\"/>\n<qrcode data=\"https://example.com/pay/42\" "
                   "size=\"4\"/>\n<barcode type=\"ean13\" data=\"400638133393\"/>\n</document>\n");
    const QString output = home.filePath(QStringLiteral("codes.png"));
    ProgramRun run = preview({QStringLiteral("--codes"), QStringLiteral("raster"), job, output}, home);
    ASSERT_EQ(run.status, 0) << qPrintable(run.standardError);
    const QString zbarimg = QStandardPaths::findExecutable(QStringLiteral("zbarimg"));
    if (!zbarimg.isEmpty()) {
        QProcess zbar;
        zbar.start(zbarimg, {QStringLiteral("--quiet"), output});
        ASSERT_TRUE(zbar.waitForFinished(60000));
        EXPECT_EQ(zbar.readAllStandardOutput(), QByteArray("QR-Code:https://example.com/pay/42\n"
                                                           "EAN-13:4006381333931\n"));
    }

    EXPECT_EQ(preview({QStringLiteral("--codes"), QStringLiteral("qr"), job, output}, home).status, 2);

    const QString bad = home.filePath(QStringLiteral("bad.xml"));
    writeFile(bad,
              "<document>\n<method name=\"printSold\"/>\n  <qrcode data=\"7\" size=\"17\"/>\n</document>\n");
    run = preview({bad, home.filePath(QStringLiteral("bad.png"))}, home);
    EXPECT_EQ(run.status, 4);
    EXPECT_TRUE(run.standardError.contains(QLatin1String("bad.xml:3:3: qrcode: size \"17\"")))
        << qPrintable(run.standardError);
}

TEST(BristelPreview, ReportsEveryCommandItDoesNotDrawAndFailsWhenStrict)
{
    QTemporaryDir home;
    const QString input = home.filePath(QStringLiteral("qr.escpos"));
    // Two MaxiCode symbols (stored and printed: four GS ( k), a BEL, and text.
    const QByteArray qr("\x1d(k\x06\x00\x32\x50\x30"
                        "abc\x1d(k\x03\x00\x32\x51\x30",
                        19);
    writeFile(input, QByteArray("\x1b@Tavolo 4\n") + qr + "\x07" + qr + "Totale\n");
    const QString output = home.filePath(QStringLiteral("qr.png"));
    ProgramRun run = preview({input, output}, home);
    ASSERT_EQ(run.status, 0) << qPrintable(run.standardError);
    EXPECT_EQ(run.standardError,
              QStringLiteral("bristel-preview: %1: not drawn: GS ( k, 4 times, first at byte 11\n"
                             "bristel-preview: %1: not drawn: unknown byte 07, once, first at byte 30\n")
                  .arg(input));
    EXPECT_TRUE(QFileInfo::exists(output));

    run = preview({QStringLiteral("--strict"), input, output}, home);
    EXPECT_EQ(run.status, 9);
    EXPECT_TRUE(run.standardError.contains(QLatin1String("GS ( k"))) << qPrintable(run.standardError);
    // A stream the printer draws whole passes.
    run = preview({QStringLiteral("--strict"),
                   examples + QStringLiteral("/documents/printFullOrderReceipt.escpos"), output},
                  home);
    EXPECT_EQ(run.status, 0) << qPrintable(run.standardError);
    EXPECT_TRUE(run.standardError.isEmpty()) << qPrintable(run.standardError);
}

TEST(BristelPreview, PrinterBytesThatStartWithALessThanSignAreNoJob)
{
    QTemporaryDir home;
    const QString input = home.filePath(QStringLiteral("ticket.escpos"));
    writeFile(input, "<<< TAVOLO 12 >>>\n\x1b"
                     "E\x01"
                     "2 x Pizza\n");
    const QString output = home.filePath(QStringLiteral("ticket.png"));
    EXPECT_EQ(preview({input, output}, home).status, 0);
    EXPECT_EQ(preview({QStringLiteral("--input"), QStringLiteral("escpos"), input, output}, home).status, 0);
    // Read as a job, it is not well-formed XML.
    EXPECT_EQ(preview({QStringLiteral("--input"), QStringLiteral("xml"), input, output}, home).status, 4);
    EXPECT_EQ(preview({QStringLiteral("--input"), QStringLiteral("pcl"), input, output}, home).status, 2);

    // A job read as printer bytes draws its XML as text.
    const QString job = examples + QStringLiteral("/documents/printFullOrderReceipt.xml");
    const ProgramRun run = preview({QStringLiteral("--input"), QStringLiteral("escpos"), job, output}, home);
    EXPECT_EQ(run.status, 0) << qPrintable(run.standardError);
}

TEST(BristelPreview, PrinterBytesComeOnEightyMillimetrePaperUnlessTold)
{
    QTemporaryDir home;
    // The printer of the configuration has 32 columns: its jobs come on 58 mm paper.
    const QString config = home.filePath(QStringLiteral("bristel.conf"));
    writeFile(config, "bristel : { escpos : { columns = 32; }; };");
    const QString bytes = examples + QStringLiteral("/documents/printFullOrderReceipt.escpos");
    const QString job = examples + QStringLiteral("/documents/printFullOrderReceipt.xml");
    const QString output = home.filePath(QStringLiteral("r.png"));
    const auto widthOf = [&](const QStringList &arguments) {
        const ProgramRun run =
            preview(QStringList{QStringLiteral("-c"), config} + arguments + QStringList{output}, home);
        EXPECT_EQ(run.status, 0) << qPrintable(run.standardError);
        return QImage(output).width() - 24 - 144;
    };
    EXPECT_EQ(widthOf({bytes}), 576);
    EXPECT_EQ(widthOf({job}), 384);
    EXPECT_EQ(widthOf({QStringLiteral("--paper"), QStringLiteral("58"), bytes}), 384);
    EXPECT_EQ(widthOf({QStringLiteral("--paper"), QStringLiteral("80-512"), bytes}), 512);
    EXPECT_EQ(widthOf({QStringLiteral("--paper"), QStringLiteral("80-512"), job}), 512);
    // Those printers print 180 dots an inch, the others 203.
    EXPECT_EQ(QImage(output).dotsPerMeterX(), 7087);
    widthOf({bytes});
    EXPECT_EQ(QImage(output).dotsPerMeterX(), 8000);
}

} // namespace
