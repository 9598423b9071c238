#include "TestSupport.h"

#include <QDir>
#include <QFileInfo>
#include <QImage>
#include <QProcess>
#include <QProcessEnvironment>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

const QString examples = QStringLiteral(BRISTEL_EXAMPLES);

struct Outcome
{
    int status = -1;
    QString standardError;
};

// Runs bristel-preview with a home folder of its own, as a user would.
Outcome preview(const QStringList &arguments, const QTemporaryDir &home)
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("HOME"), home.path());
    environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8"));
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral(BRISTEL_BIN_DIR "/bristel-preview"), arguments);
    Outcome run;
    if (!process.waitForFinished(120000))
        return run;
    run.status = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    run.standardError = QString::fromUtf8(process.readAllStandardError());
    return run;
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
    Outcome run = preview(
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
        const Outcome run = preview({job, home.filePath(name)}, home);
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
    Outcome run = preview({job, output}, home);
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
    Outcome run = preview(
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
    const Outcome run = preview({broken, home.filePath(QStringLiteral("broken.png"))}, home);
    EXPECT_EQ(run.status, 4);
    EXPECT_TRUE(run.standardError.contains(QLatin1String("broken.xml:4:"))) << qPrintable(run.standardError);
    EXPECT_TRUE(QFileInfo::exists(home.filePath(QStringLiteral("broken.png"))));
}

TEST(BristelPreview, TheFortyEightColumnPaperIsEightyMillimetresWide)
{
    QTemporaryDir home;
    const QString output = home.filePath(QStringLiteral("r.png"));
    const Outcome run = preview({QStringLiteral("--columns"), QStringLiteral("48"),
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
    Outcome run = preview({QStringLiteral("--codes"), QStringLiteral("raster"), job, output}, home);
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

} // namespace
