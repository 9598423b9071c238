// The codes the virtual printer draws read back with a real scanner program: a job goes through
// bristel-render (the printer's own commands), then bristel-preview, and zbarimg (zbar-tools)
// decodes the picture; ESC/POS files written byte by byte, as other programs send them, go
// through bristel-preview alone.

#include "TestSupport.h"

#include <QImage>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

template <size_t N> QByteArray bytes(const char (&literal)[N])
{
    return QByteArray(literal, N - 1);
}

ProgramRun runProgram(const QString &program, const QStringList &arguments, const QTemporaryDir &home)
{
    return ::runProgram(program, arguments, userEnvironment(home.path()));
}

QString zbarimg()
{
    return QStandardPaths::findExecutable(QStringLiteral("zbarimg"));
}

/*
 * What zbarimg reads in the preview, as "type:data".  The preview has one pixel a dot; a
 * scanner looks at paper much closer than that, so the picture is enlarged dot for dot first
 * (a module of one dot is too small for zbar's own sampling).  The data comes from zbarimg's
 * binary mode, which takes a QR code's bytes as they are instead of guessing a character set.
 */
QString scanned(const QString &preview, const QTemporaryDir &dir)
{
    const QImage picture(preview);
    EXPECT_FALSE(picture.isNull()) << qPrintable(preview);
    const QString enlarged = dir.filePath(QStringLiteral("enlarged.png"));
    EXPECT_TRUE(
        picture.scaled(picture.size() * 3, Qt::IgnoreAspectRatio, Qt::FastTransformation).save(enlarged));
    const auto read = [&](const QStringList &options) {
        QProcess zbar;
        zbar.start(zbarimg(), QStringList{QStringLiteral("--quiet"), QStringLiteral("-Supca.enable"),
                                          QStringLiteral("-Scodabar.enable")} +
                                  options + QStringList{enlarged});
        EXPECT_TRUE(zbar.waitForFinished(120000));
        return QString::fromUtf8(zbar.readAllStandardOutput()).trimmed();
    };
    const QString type = read({}).section(QLatin1Char(':'), 0, 0);
    return type + QLatin1Char(':') + read({QStringLiteral("-Sbinary")});
}

class CodeScan : public ::testing::Test
{
protected:
    void SetUp() override
    {
        // A scanner is what these tests are about: without one they fail, they do not pass.
        ASSERT_FALSE(zbarimg().isEmpty()) << "zbarimg (Debian zbar-tools) is needed by this test";
        ASSERT_TRUE(m_home.isValid());
        m_config = m_home.filePath(QStringLiteral("bristel.conf"));
        writeFile(m_config, "bristel : { receiptdoc : { paperWidth = 48; }; };");
    }

    // The job with one code element, printed by the printer's own commands and previewed.
    QString scanJob(const QByteArray &element)
    {
        const QString job = m_home.filePath(QStringLiteral("job.xml"));
        const QString escpos = m_home.filePath(QStringLiteral("job.escpos"));
        writeFile(job, "<document><method name=\"printFullOrderReceipt\"/>" + element + "</document>");
        const ProgramRun render =
            runProgram(QStringLiteral(BRISTEL_BIN_DIR "/bristel-render"),
                       {QStringLiteral("-c"), m_config, QStringLiteral("--codes"), QStringLiteral("native"),
                        QStringLiteral("-f"), QStringLiteral("escpos"), job, escpos},
                       m_home);
        EXPECT_EQ(render.status, 0) << qPrintable(render.standardError);
        const QByteArray printed = readFile(escpos);
        EXPECT_TRUE(printed.contains("\x1d(k") || printed.contains("\x1dk"))
            << "not the printer's own commands";
        return scanBytes(printed);
    }

    // ESC/POS bytes on 80 mm paper, previewed strictly: every command must be drawn.
    QString scanBytes(const QByteArray &stream)
    {
        const QString input = m_home.filePath(QStringLiteral("code.escpos"));
        const QString picture = m_home.filePath(QStringLiteral("code.png"));
        writeFile(input, stream);
        const ProgramRun preview = runProgram(
            QStringLiteral(BRISTEL_BIN_DIR "/bristel-preview"),
            {QStringLiteral("--strict"), QStringLiteral("--paper"), QStringLiteral("80"), input, picture},
            m_home);
        EXPECT_EQ(preview.status, 0) << qPrintable(preview.standardError);
        return scanned(picture, m_home);
    }

    QTemporaryDir m_home;
    QString m_config;
};

TEST_F(CodeScan, AJobsQrCodeReadsBackAtEverySizeAndLevel)
{
    // 29 bytes: version 4 at level H, 33 modules, 528 dots at size 16 on 576-dot paper.
    const QByteArray url = "https://example.com/pay/42?t=7";
    for (int size = 1; size <= 16; ++size) {
        for (const char *level : {"L", "M", "Q", "H"}) {
            const QByteArray element = "<qrcode data=\"" + url + "\" size=\"" + QByteArray::number(size) +
                                       "\" ecc=\"" + level + "\"/>";
            EXPECT_EQ(scanJob(element), QStringLiteral("QR-Code:") + QString::fromLatin1(url))
                << element.constData();
        }
    }
}

TEST_F(CodeScan, AJobsUtf8QrCodeReadsBackAsItsBytes)
{
    EXPECT_EQ(scanJob("<qrcode data=\"caf\xc3\xa9 7\" size=\"4\" ecc=\"H\"/>"),
              QStringLiteral("QR-Code:caf\u00e9 7"));
}

TEST_F(CodeScan, AJobsBarcodesReadBack)
{
    const struct
    {
        const char *element;
        const char *read;
    } codes[] = {
        {"<barcode type=\"ean13\" data=\"400638133393\" hri=\"none\"/>", "EAN-13:4006381333931"},
        {"<barcode type=\"ean13\" data=\"4006381333931\"/>", "EAN-13:4006381333931"},
        {"<barcode type=\"ean8\" data=\"96385074\" hri=\"below\"/>", "EAN-8:96385074"},
        {"<barcode type=\"upca\" data=\"03600029145\"/>", "UPC-A:036000291452"},
        {"<barcode type=\"code39\" data=\"T7-42 $\"/>", "CODE-39:T7-42 $"},
        {"<barcode type=\"code128\" data=\"Order {42}\" hri=\"none\"/>", "CODE-128:Order {42}"},
        {"<barcode type=\"code128\" data=\"T7-000123\" height=\"60\"/>", "CODE-128:T7-000123"},
        {"<barcode type=\"itf\" data=\"00012345\"/>", "I2/5:00012345"},
    };
    for (const auto &code : codes)
        EXPECT_EQ(scanJob(code.element), QString::fromLatin1(code.read)) << code.element;
}

// GS ( k pL pH cn fn and its parameters, for a QR code (cn 49).
QByteArray qrFunction(char fn, const QByteArray &parameters)
{
    const qsizetype length = parameters.size() + 2;
    return bytes("\x1d(k") + char(length & 0xff) + char(length >> 8) + '1' + fn + parameters;
}

// A QR code as another program sends it: model, module size, level, data, print.
QByteArray foreignQrCode(int moduleSize, char level, const QByteArray &data)
{
    return qrFunction(65, bytes("2\x00")) + qrFunction(67, QByteArray(1, char(moduleSize))) +
           qrFunction(69, QByteArray(1, level)) + qrFunction(80, "0" + data) + qrFunction(81, "0");
}

const QByteArray begin = bytes("\x1b@\x1b\x61\x01"); // ESC @, ESC a 1: centred

TEST_F(CodeScan, AForeignQrCodeReadsBackAtOtherModuleSizesAndLevels)
{
    const QByteArray data = "PAY:IT60X0542811101000000123456;EUR12.50";
    for (int size : {2, 5, 7, 9, 11, 13}) {
        for (char level : {'0', '1', '2', '3'}) {
            const QByteArray stream =
                begin + bytes("Pagare\n") + foreignQrCode(size, level, data) + bytes("\n");
            EXPECT_EQ(scanBytes(stream), QStringLiteral("QR-Code:") + QString::fromLatin1(data))
                << size << " " << level;
        }
    }
    // The data stored stays until it is replaced: a second print draws it again, and the
    // scanner reads two symbols (in binary mode their data one after the other).
    const QByteArray twice = begin + foreignQrCode(4, '1', "again") + bytes("\n\x1d(k\x03\x00\x31\x51\x30");
    EXPECT_EQ(scanBytes(twice), QStringLiteral("QR-Code:againagain"));
}

struct ForeignBarcode
{
    int m;            // GS k's system in the form ended by NUL, 0..6; the counted form is m + 65
    const char *data; // as sent
    const char *read; // what the scanner reports
};

const ForeignBarcode foreignBarcodes[] = {
    {0, "03600029145", "UPC-A:036000291452"},
    {0, "036000291452", "UPC-A:036000291452"},
    {2, "590123412345", "EAN-13:5901234123457"},
    {2, "5901234123457", "EAN-13:5901234123457"},
    {3, "9638507", "EAN-8:96385074"},
    {4, "*TAVOLO-7*", "CODE-39:TAVOLO-7"},
    {4, "A1 $/+%.", "CODE-39:A1 $/+%."},
    {5, "1234567890", "I2/5:1234567890"},
    {6, "A123456B", "Codabar:A123456B"},
};

TEST_F(CodeScan, ForeignBarcodesReadBackInBothFormsOfGsK)
{
    for (const ForeignBarcode &code : foreignBarcodes) {
        const QByteArray data = code.data;
        const QByteArray nulEnded = begin + bytes("\x1dh\x50") + bytes("\x1dk") + char(code.m) + data + '\0';
        EXPECT_EQ(scanBytes(nulEnded), QString::fromLatin1(code.read)) << code.m << " " << code.data;
        const QByteArray counted =
            begin + bytes("\x1dh\x50") + bytes("\x1dk") + char(code.m + 65) + char(data.size()) + data;
        EXPECT_EQ(scanBytes(counted), QString::fromLatin1(code.read)) << code.m + 65 << " " << code.data;
    }
}

TEST_F(CodeScan, ForeignCode93AndCode128ReadBackWithTheirCodeSets)
{
    const struct
    {
        int m;
        QByteArray data;
        const char *read;
    } codes[] = {
        {72, "TAVOLO 7", "CODE-93:TAVOLO 7"},
        {73, "{BT7-000123", "CODE-128:T7-000123"},
        {73, "{B{{42}", "CODE-128:{42}"},
        {73, bytes("{C\x01\x17\x2d\x4d"), "CODE-128:01234577"},
        {73, bytes("{AORD{B-x{C\x0c\x22"), "CODE-128:ORD-x1234"},
    };
    for (const auto &code : codes) {
        const QByteArray stream = begin + bytes("\x1dw\x02\x1dh\x50") + bytes("\x1dk") + char(code.m) +
                                  char(code.data.size()) + code.data;
        EXPECT_EQ(scanBytes(stream), QString::fromLatin1(code.read)) << code.data.toHex(' ').constData();
    }
}

TEST_F(CodeScan, ForeignBarcodesReadBackWithTheirCharactersAboveOrBelow)
{
    // GS H 1, 2, 3 and 49 (the digit form), with font B, at each justification.
    for (int position : {1, 2, 3, int('1')}) {
        for (int justification : {0, 1, 2}) {
            const QByteArray stream = bytes("\x1b@\x1b\x61") + char(justification) + bytes("\x1dH") +
                                      char(position) +
                                      bytes("\x1d"
                                            "f\x01\x1dh\x40\x1dw\x04\x1dkC\x0c"
                                            "400638133393Totale\n");
            EXPECT_EQ(scanBytes(stream), QStringLiteral("EAN-13:4006381333931"))
                << position << " " << justification;
        }
    }
}

} // namespace
