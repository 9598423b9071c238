#ifndef BRISTEL_DEVICES_ESCPOS_CODESYMBOL_H
#define BRISTEL_DEVICES_ESCPOS_CODESYMBOL_H

#include "devices/escpos/PbmImage.h"

#include <QByteArray>
#include <QString>

struct BarcodeElement;
struct QrCodeElement;

/*
 * The symbol of a QR code or a barcode as libzint encodes it.  Encoding is how the data is
 * checked, whether the printer draws the code itself or prints the picture drawn here: a letter
 * in an EAN-13, a check digit that does not match or more data than a QR symbol holds is an
 * error with libzint's own words, never a symbol that scans as something else.  libzint would
 * quietly mend some data (pad a short EAN, put a zero before an odd ITF, upper-case Code 39);
 * those are refused here first, since the printer would not mend them the same way.
 */
class CodeSymbol
{
public:
    static CodeSymbol qrCode(const QrCodeElement &request);
    static CodeSymbol barcode(const BarcodeElement &request);

    bool isValid() const { return m_error.isEmpty(); }
    // Why the data cannot be encoded, beginning with the element's name; empty when it can.
    QString error() const { return m_error; }
    // The symbol's width in modules, without quiet zones.
    int modules() const { return m_modules; }
    // The data as the symbol holds it: for EAN and UPC with its check digit.
    QByteArray encodedData() const { return m_encodedData; }

    // The symbol drawn with modules of moduleDots dots: a QR code square, a barcode's bars
    // as tall as the job asks, with the digits below if it asks for them.  Black is 1.
    PbmImage draw(int moduleDots) const;

private:
    CodeSymbol() = default;
    void encode();

    // What libzint is asked, kept so that draw() can encode again at the size it draws.
    int m_symbology = 0;
    int m_option1 = 0;
    QByteArray m_data;
    int m_barHeight = 0; // dots; 0 for a QR code
    bool m_textBelow = false;

    QString m_error;
    int m_modules = 0;
    QByteArray m_encodedData;
};

#endif
