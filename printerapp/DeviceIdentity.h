#ifndef BRISTEL_PRINTERAPP_DEVICEIDENTITY_H
#define BRISTEL_PRINTERAPP_DEVICEIDENTITY_H

#include <QString>

// What a printer says of itself in its IEEE 1284 device ID ("MFG:EPSON;CMD:ESCPOS;MDL:TM-T20;"),
// as a USB printer answers it: enough to tell a receipt printer that speaks ESC/POS, and the
// width of its paper, when a printer is plugged in and added without an operator.
class DeviceIdentity
{
public:
    explicit DeviceIdentity(const QString &deviceId);

    QString manufacturer() const { return m_manufacturer; }
    QString model() const { return m_model; }
    QString commandSets() const { return m_commandSets; }

    // Its command sets name ESC/POS, or it is one of Epson's TM receipt printers, which all do.
    bool speaksEscPos() const;
    // 58 when the model names 58 mm paper ("POS-58", "ZJ-5890", "58mm"), otherwise 80, the
    // width of most kitchen and till printers.
    int paperWidthMm() const;

private:
    QString m_manufacturer;
    QString m_model;
    QString m_commandSets;
};

#endif
