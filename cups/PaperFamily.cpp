#include "cups/PaperFamily.h"

const std::vector<PaperFamily> &paperFamilies()
{
    static const std::vector<PaperFamily> families{
        {QStringLiteral("bristel-escpos-58mm.ppd"), QStringLiteral("58 mm"), 58, 203, 384, 32},
        {QStringLiteral("bristel-escpos-80mm.ppd"), QStringLiteral("80 mm"), 80, 203, 576, 48},
        {QStringLiteral("bristel-escpos-80mm-180dpi.ppd"), QStringLiteral("80 mm 180 dpi"), 80, 180, 512, 42},
    };
    return families;
}
