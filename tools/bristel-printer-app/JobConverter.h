#ifndef BRISTEL_PRINTERAPP_JOBCONVERTER_H
#define BRISTEL_PRINTERAPP_JOBCONVERTER_H

#include <QByteArray>
#include <QMutex>
#include <QString>

#include <memory>

class JobConfiguration;

// Turns a job's document into the bytes its receipt printer prints: ESC/POS passes through as
// it came, a bristel document is rendered exactly as bristel-render -f escpos renders it with
// the same configuration, and a picture is decoded here, within limits (libpappl's own PNG
// filter never returns on some damaged files), and sent as raster commands. Jobs of several printers convert
// at once on the server's threads; the renderer's configuration is shared, so one document renders at a time.
class JobConverter
{
public:
    static constexpr const char *EscPosFormat = "application/vnd.escpos";
    static constexpr const char *BristelFormat = "application/vnd.bristel+xml";
    static constexpr const char *PngFormat = "image/png";
    static constexpr const char *JpegFormat = "image/jpeg";

    JobConverter();
    ~JobConverter();
    Q_DISABLE_COPY_MOVE(JobConverter)

    // Feeds the paper past the cutter and cuts it (GS V 66 0), as after a receipt.
    static QByteArray feedAndCut() { return QByteArrayLiteral("\x1d\x56\x42\x00"); }

    // Reads the user's configuration (its absence means defaults); false with *error set.
    [[nodiscard]] bool loadConfiguration(QString *error);
    // The printer's bytes, or a null array with *error set. Pictures (PNG, JPEG) are drawn
    // widthDots wide.
    QByteArray convert(const QByteArray &format, const QByteArray &document, int widthDots, QString *error);

private:
    QByteArray renderBristel(const QByteArray &document, QString *error);
    static QByteArray printPicture(const QByteArray &document, const QByteArray &type, int widthDots,
                                   QString *error);

    std::unique_ptr<JobConfiguration> m_configuration;
    QMutex m_renderLock;
};

#endif
