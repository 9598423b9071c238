#ifndef BRISTEL_LAYOUT_BARCODEELEMENT_H
#define BRISTEL_LAYOUT_BARCODEELEMENT_H

#include <QString>

class QXmlAttributes;

/*
 * A barcode as a job asks for it:
 * <barcode type="ean13|ean8|upca|code39|code128|itf" data="..." height="..." hri="none|below"/>.
 * As for a QR code, attributes that cannot be used are only described here (problem): the
 * command file ignores the element, and a back-end that prints it reports them.
 */
struct BarcodeElement
{
    enum class Type
    {
        Ean13,
        Ean8,
        UpcA,
        Code39,
        Code128,
        Itf
    };

    static constexpr int lowestHeight = 1; // dots, as the printer's command takes the height
    static constexpr int highestHeight = 255;

    Type type = Type::Code128;
    QString data;
    int height = 80;       // dots: 1 cm at 203 dpi, which every hand scanner reads
    bool textBelow = true; // the human-readable digits under the bars
    QString problem;       // why the element cannot be printed as it stands; empty when it can

    static BarcodeElement fromAttributes(const QXmlAttributes &attributes);
    // "EAN-13", "EAN-8", "UPC-A", "Code 39", "Code 128" or "ITF".
    static QString typeName(Type type);
};

#endif
