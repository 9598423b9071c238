#ifndef BRISTEL_PRINTERAPP_JOBCONVERTER_H
#define BRISTEL_PRINTERAPP_JOBCONVERTER_H

#include <QByteArray>
#include <QByteArrayView>
#include <QMutex>
#include <QString>

#include <memory>

class JobConfiguration;
class QueueOptions;
struct EscPosSettings;

// Turns a job's document into the bytes its receipt printer prints: ESC/POS passes through as
// it came, a bristel document is rendered exactly as bristel-render -f escpos renders it with
// the same configuration, and a picture is decoded here, within limits (libpappl's own PNG
// filter never returns on some damaged files), and sent as raster commands. Jobs of several printers convert
// at once on the server's threads; the renderer's configuration is shared, so one document renders at a time.
//
// The printer's own settings lie over the user's configuration as a CUPS queue's options lie
// over it in the CUPS filter: a document renders, a picture is cut and a text is printed
// with them.
class JobConverter
{
public:
    static constexpr const char *EscPosFormat = "application/vnd.escpos";
    static constexpr const char *BristelFormat = "application/vnd.bristel+xml";
    static constexpr const char *PngFormat = "image/png";
    static constexpr const char *JpegFormat = "image/jpeg";
    static constexpr const char *TextFormat = "text/plain";

    JobConverter();
    ~JobConverter();
    Q_DISABLE_COPY_MOVE(JobConverter)

    // The cut the settings ask for after a picture or a text (none at all for Cut::None).
    static QByteArray cutCommand(const EscPosSettings &settings);
    // The format of a document sent without one, by its first bytes: a bristel job by the rule
    // every program follows, a PNG or JPEG picture by its signature, anything else ESC/POS.
    static const char *formatOf(QByteArrayView start);

    // Reads the user's configuration (its absence means defaults); false with *error set.
    [[nodiscard]] bool loadConfiguration(QString *error);
    // The printer's bytes, or a null array with *error set. Pictures (PNG, JPEG) are drawn
    // widthDots wide. A printer setting that cannot be used is left as configured and
    // described in *warnings.
    QByteArray convert(const QByteArray &format, const QByteArray &document, int widthDots,
                       const QueueOptions &printerSettings, QString *error, QStringList *warnings = nullptr);

    // The user's configuration with the printer's settings over it.
    EscPosSettings settingsWith(const QueueOptions &printerSettings, QStringList *warnings = nullptr) const;

private:
    QByteArray renderBristel(const QByteArray &document, const EscPosSettings &settings, QString *error);
    static QByteArray printPicture(const QByteArray &document, const QByteArray &type, int widthDots,
                                   const EscPosSettings &settings, QString *error);

    std::unique_ptr<JobConfiguration> m_configuration;
    QMutex m_renderLock;
};

#endif
