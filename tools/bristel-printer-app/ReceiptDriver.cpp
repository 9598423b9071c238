#include "ReceiptDriver.h"

#include "cups/PaperFamily.h"

#include <cstring>

const QList<ReceiptDriver> &ReceiptDriver::all()
{
    static const QList<ReceiptDriver> drivers = {
        {"bristel_58mm", "bristel ESC/POS receipt printer, 58 mm", 384, 203, "om_receipt-58_48.05x200mm"},
        {"bristel_80mm", "bristel ESC/POS receipt printer, 80 mm", 576, 203, "om_receipt-80_72.08x200mm"},
        {"bristel_80mm_512", "bristel ESC/POS receipt printer, 80 mm, 512 dots at 180 dpi", 512, 180,
         "om_receipt-80-180dpi_72.25x200mm"},
    };
    return drivers;
}

int ReceiptDriver::printableWidthHundredthsMm() const
{
    // Rounded up, so that the width in dots computed back from it is whole.
    return (widthDots * 2540 + dpi - 1) / dpi;
}

const PaperFamily &ReceiptDriver::paperFamily() const
{
    for (const PaperFamily &family : paperFamilies()) {
        if (family.dotsPerInch == dpi && family.printableDots == widthDots)
            return family;
    }
    // Every driver has a family of its own; the widest is the nearest for any other.
    return paperFamilies().back();
}

const ReceiptDriver *ReceiptDriver::find(const char *name)
{
    for (const ReceiptDriver &driver : all()) {
        if (name && std::strcmp(driver.name, name) == 0)
            return &driver;
    }
    return nullptr;
}
