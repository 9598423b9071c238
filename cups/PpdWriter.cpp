#include "cups/PpdWriter.h"

#include "cups/PaperFamily.h"
#include "job/PrinterSettingTable.h"

#include <QString>
#include <QTextStream>

namespace {

constexpr double pointsPerMm = 72.0 / 25.4;

QString points(double value)
{
    return QString::number(value, 'f', 1);
}

void writeHeader(QTextStream &out, const PaperFamily &paper)
{
    const QString model = QStringLiteral("Generic ESC/POS %1 receipt printer").arg(paper.title);
    out << "*PPD-Adobe: \"4.3\"\n"
        << "*% A generic ESC/POS thermal receipt printer on " << paper.title << " paper ("
        << paper.printableDots << " dots at " << paper.dotsPerInch << " dpi, " << paper.columns
        << " characters a line, " << paper.columnsFontB << " in Font B), printing\n"
        << "*% bristel jobs through the bristeltoescpos filter.  Generated at build time from the\n"
        << "*% filter's own table of settings; every Bristel option is also accepted by lpadmin -o,\n"
        << "*% lpoptions -o and lp -o.\n"
        << "*FormatVersion: \"4.3\"\n"
        << "*FileVersion: \"1.1\"\n"
        << "*LanguageVersion: English\n"
        << "*LanguageEncoding: ISOLatin1\n"
        << "*PCFileName: \"BR" << paper.widthMm << "X" << paper.dotsPerInch << ".PPD\"\n"
        << "*Manufacturer: \"Generic\"\n"
        << "*Product: \"(ESC/POS " << paper.title << ")\"\n"
        << "*ModelName: \"" << model << "\"\n"
        << "*ShortNickName: \"Generic ESC/POS " << paper.title << "\"\n"
        << "*NickName: \"" << model << " (bristel)\"\n"
        << "*PSVersion: \"(3010.000) 0\"\n"
        << "*LanguageLevel: \"3\"\n"
        << "*ColorDevice: False\n"
        << "*DefaultColorSpace: Gray\n"
        << "*FileSystem: False\n"
        << "*Throughput: \"1\"\n"
        << "*LandscapeOrientation: Plus90\n"
        << "*TTRasterizer: Type42\n"
        << "*DefaultResolution: " << paper.dotsPerInch << "dpi\n"
        << "*cupsVersion: 2.4\n"
        << "*cupsManualCopies: False\n"
        // A receipt printer never answers the supply levels' SNMP query, and the backend
        // would wait for it on every job.
        << "*cupsSNMPSupplies: False\n"
        << "*cupsFilter2: \"application/vnd.bristel+xml application/vnd.cups-raw 0 bristeltoescpos\"\n\n";
}

void writePaper(QTextStream &out, const PaperFamily &paper)
{
    const QString name = QStringLiteral("Roll%1").arg(paper.widthMm);
    const QString label = QStringLiteral("%1 mm roll").arg(paper.widthMm);
    const double width = paper.widthMm * pointsPerMm;
    const double printable = paper.printableDots * 72.0 / paper.dotsPerInch;
    const double margin = (width - printable) / 2;
    out << "*% A receipt is as long as its job; the page below only gives the paper's width.\n";
    for (const char *keyword : {"PageSize", "PageRegion"}) {
        out << "*OpenUI *" << keyword << "/Paper: PickOne\n"
            << "*OrderDependency: 10 AnySetup *" << keyword << "\n"
            << "*Default" << keyword << ": " << name << "\n"
            << "*" << keyword << " " << name << "/" << label << ": \"\"\n"
            << "*CloseUI: *" << keyword << "\n\n";
    }
    out << "*DefaultImageableArea: " << name << "\n"
        << "*ImageableArea " << name << "/" << label << ": \"" << points(margin) << " 0 "
        << points(margin + printable) << " 842\"\n"
        << "*DefaultPaperDimension: " << name << "\n"
        << "*PaperDimension " << name << "/" << label << ": \"" << points(width) << " 842\"\n\n";
}

void writeSetting(QTextStream &out, const PrinterSetting &setting, const PaperFamily &paper)
{
    const QList<PrinterSettingChoice> choices = setting.choices(paper.columns);
    out << "*% " << setting.configurationKey << " in bristel.conf, --" << setting.commandLineOption
        << " of bristel-render\n"
        << "*OpenUI *" << setting.cupsOption << "/" << setting.title << ": PickOne\n"
        << "*OrderDependency: 20 AnySetup *" << setting.cupsOption << "\n"
        << "*Default" << setting.cupsOption << ": " << choices.first().value << "\n";
    for (const PrinterSettingChoice &choice : choices)
        out << "*" << setting.cupsOption << " " << choice.value << "/" << choice.label << ": \"\"\n";
    out << "*CloseUI: *" << setting.cupsOption << "\n\n";
}

} // namespace

QByteArray PpdWriter::ppd(const PaperFamily &paper)
{
    QByteArray text;
    QTextStream out(&text);
    writeHeader(out, paper);
    writePaper(out, paper);
    for (const PrinterSetting &setting : printerSettings()) {
        if (setting.cupsOption)
            writeSetting(out, setting, paper);
    }
    out << "*DefaultFont: Courier\n"
        << "*Font Courier: Standard \"(001.004)\" Standard ROM\n";
    out.flush();
    return text;
}
