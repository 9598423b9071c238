#ifndef BRISTEL_LAYOUT_QRCODEELEMENT_H
#define BRISTEL_LAYOUT_QRCODEELEMENT_H

#include <QByteArray>
#include <QString>

class QXmlAttributes;

/*
 * A QR code as a job asks for it: <qrcode data="..." size="1..16" ecc="L|M|Q|H"/>.  The data
 * is the text's UTF-8 bytes, which is what a phone's reader expects.  Attributes that cannot be
 * used do not stop the document here: the command file has no place for a code and ignores it,
 * so only a back-end that prints the code reports them (problem).
 */
struct QrCodeElement
{
    enum class ErrorCorrection
    {
        Low,      // L: 7 % of the symbol may be lost
        Medium,   // M: 15 %
        Quartile, // Q: 25 %
        High      // H: 30 %
    };

    static constexpr int smallestSize = 1; // dots a module, as the printer's command takes it
    static constexpr int largestSize = 16;

    QByteArray data;
    int size = 6; // dots a module: 6 keeps a short link about 2.5 cm wide at 203 dpi
    ErrorCorrection errorCorrection = ErrorCorrection::Medium;
    QString problem; // why the element cannot be printed as it stands; empty when it can

    static QrCodeElement fromAttributes(const QXmlAttributes &attributes);
    // "L", "M", "Q" or "H".
    static QString errorCorrectionName(ErrorCorrection level);
};

#endif
