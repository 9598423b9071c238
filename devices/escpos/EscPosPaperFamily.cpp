#include "devices/escpos/EscPosPaperFamily.h"

#include <algorithm>

const std::vector<EscPosPaperFamily> &EscPosPaperFamily::all()
{
    // 203 dpi is 8 dots a millimetre; 180 dpi about 7.09.
    static const std::vector<EscPosPaperFamily> families{
        {QStringLiteral("58"), 58, 203, 8000, 384},
        {QStringLiteral("80-512"), 80, 180, 7087, 512},
        {QStringLiteral("80"), 80, 203, 8000, 576},
    };
    return families;
}

const EscPosPaperFamily *EscPosPaperFamily::byName(QStringView name)
{
    const auto &families = all();
    const auto found = std::find_if(families.begin(), families.end(),
                                    [&](const EscPosPaperFamily &family) { return family.name == name; });
    return found == families.end() ? nullptr : &*found;
}

const EscPosPaperFamily *EscPosPaperFamily::byDots(int dots)
{
    const auto &families = all();
    const auto found = std::find_if(families.begin(), families.end(),
                                    [&](const EscPosPaperFamily &family) { return family.dots == dots; });
    return found == families.end() ? nullptr : &*found;
}

const EscPosPaperFamily &EscPosPaperFamily::forColumns(int columns)
{
    const auto &families = all();
    const auto found = std::find_if(families.begin(), families.end(), [&](const EscPosPaperFamily &family) {
        return family.columnsFontA() >= columns;
    });
    return found == families.end() ? families.back() : *found;
}
