#include "TestSupport.h"

#include "devices/escpos/EscPosCommandTable.h"
#include "virtualprinter/VirtualPrinter.h"

#include <QMap>
#include <QStringList>

#include <gtest/gtest.h>

namespace {

QString treatmentName(VirtualPrinter::Treatment treatment)
{
    switch (treatment) {
    case VirtualPrinter::Treatment::Drawn:
        return QStringLiteral("drawn");
    case VirtualPrinter::Treatment::Silent:
        return QStringLiteral("silent");
    case VirtualPrinter::Treatment::Marked:
        break;
    }
    return QStringLiteral("marked");
}

// The rows of the document's table: `name` and its treatment, the notes left aside.
QMap<QString, QStringList> documentedRows()
{
    QMap<QString, QStringList> rows;
    const QString text = QString::fromUtf8(readFile(QStringLiteral(BRISTEL_DOCS "/escpos-fidelity.md")));
    for (const QString &line : text.split(QLatin1Char('\n'))) {
        if (!line.startsWith(QLatin1String("| `")))
            continue;
        const QStringList cells = line.split(QLatin1Char('|'));
        if (cells.size() < 4)
            continue;
        const QString name = cells[1].trimmed().remove(QLatin1Char('`'));
        rows[name] << cells[2].trimmed();
    }
    return rows;
}

// docs/escpos-fidelity.md names every command of the table once, with what the preview does.
// On a difference the expected rows are printed, to be copied with notes added.
TEST(FidelityTable, TheDocumentFollowsTheCommandTable)
{
    const QMap<QString, QStringList> documented = documentedRows();
    QString expected;
    int wrong = 0;
    for (const EscPosCommandEntry &entry : escposcommands::all()) {
        const QString name = QLatin1String(entry.name);
        const QString treatment = treatmentName(VirtualPrinter::treatmentOf(entry));
        expected += QStringLiteral("| `%1` | %2 |  |\n").arg(name, treatment);
        if (documented.value(name) != QStringList{treatment}) {
            ++wrong;
            ADD_FAILURE() << qPrintable(name) << ": documented as "
                          << qPrintable(documented.value(name).join(QLatin1String(", "))) << ", is "
                          << qPrintable(treatment);
        }
    }
    EXPECT_EQ(size_t(documented.size()), escposcommands::all().size())
        << "the document names commands the table has not";
    if (wrong > 0 || size_t(documented.size()) != escposcommands::all().size())
        std::printf("%s", qPrintable(expected));
}

// A status query prints nothing and is no fault of the stream; page mode is marked.
TEST(FidelityTable, SilentCommandsLeaveNoMarkAndAreNotCounted)
{
    const QByteArray stream("\x1b@\x10\x04\x01\x1dr\x01\x1d"
                            "a\x00\x1b"
                            "c5\x00x\n\x1bL",
                            19);
    VirtualPrinter printer(stream, Paper::width58mm);
    printer.printAll();
    const Paper paper = printer.takeSheet();
    ASSERT_EQ(printer.unsupported().size(), 1u);
    EXPECT_EQ(printer.unsupported()[0].name, QStringLiteral("ESC L"));
    ASSERT_EQ(paper.marks().size(), 1u);
    EXPECT_EQ(paper.rowTexts(), QStringList{QStringLiteral("x")});
}

} // namespace
