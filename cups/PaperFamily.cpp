#include "cups/PaperFamily.h"

#include "devices/escpos/EscPosPaperFamily.h"

namespace {

PaperFamily describe(const QString &name, const QString &fileName, const QString &title)
{
    const EscPosPaperFamily &paper = *EscPosPaperFamily::byName(name);
    return {fileName,
            title,
            paper.widthMm,
            paper.dotsPerInch,
            paper.dots,
            paper.columnsFontA(),
            paper.columnsFontB()};
}

} // namespace

const std::vector<PaperFamily> &paperFamilies()
{
    static const std::vector<PaperFamily> families{
        describe(QStringLiteral("58"), QStringLiteral("bristel-escpos-58mm.ppd"), QStringLiteral("58 mm")),
        describe(QStringLiteral("80"), QStringLiteral("bristel-escpos-80mm.ppd"), QStringLiteral("80 mm")),
        describe(QStringLiteral("80-512"), QStringLiteral("bristel-escpos-80mm-180dpi.ppd"),
                 QStringLiteral("80 mm 180 dpi")),
    };
    return families;
}
