#include "WebPages.h"

#include "Application.h"
#include "JobPictures.h"
#include "StatusPolling.h"
#include "printerapp/PrinterPage.h"

#include <QByteArray>
#include <QDateTime>

#include <cups/ipp.h>

#include <cctype>
#include <cstring>
#include <optional>
#include <set>

namespace {

constexpr const char *StatusPagePath = "/bristel/status";
constexpr const char *StatusTextPath = "/bristel/status.txt";
constexpr const char *PrinterListPath = "/bristel/printers.txt";
constexpr const char *PrinterPageTitle = "Paper and jobs";
// The jobs a printer's page shows, newest first.
constexpr int JobsShown = 10;
// How soon a new printer's page is linked from libpappl's pages of the printer.
constexpr int PrinterLinkSeconds = 1;

extern "C" bool serveStatusPage(pappl_client_t *client, void *data);
extern "C" bool serveStatusText(pappl_client_t *client, void *data);
extern "C" bool servePrinterList(pappl_client_t *client, void *data);
extern "C" bool servePrinterPage(pappl_client_t *client, void *data);
extern "C" bool servePicture(pappl_client_t *client, void *data);
extern "C" bool linkPrinterPages(pappl_system_t *system, void *data);

// The path libpappl 1.3.1 serves a printer's IPP at, made from its name as libpappl makes it:
// an underscore before a leading digit, and one for each control character, space and
// character a URL reserves.
QByteArray printerResource(const QString &name)
{
    QByteArray path = name.toUtf8();
    for (char &c : path) {
        if (uchar(c) <= ' ' || uchar(c) == 0x7f || std::strchr("/\\'\"?#", c))
            c = '_';
    }
    if (!path.isEmpty() && std::isdigit(uchar(path.front())))
        path.prepend('_');
    return "/ipp/print/" + path;
}

pappl_printer_t *printerNamed(pappl_system_t *system, const QString &name)
{
    if (name.isEmpty())
        return nullptr;
    pappl_printer_t *printer = papplSystemFindPrinter(system, printerResource(name).constData(), 0, nullptr);
    // libpappl compares paths without regard to case, and two names may share one.
    return printer && printerName(printer) == name ? printer : nullptr;
}

// The list of the printers' own pages below the status table.
extern "C" void addPrinterPageItem(pappl_printer_t *printer, void *data)
{
    *static_cast<QString *>(data) += QStringLiteral("<li><a href=\"%1\">%2</a></li>\n")
                                         .arg(PrinterPage::address(printerName(printer)).toHtmlEscaped(),
                                              printerName(printer).toHtmlEscaped());
}

QByteArray printerPagesList(pappl_system_t *system)
{
    QString items;
    papplSystemIteratePrinters(system, addPrinterPageItem, &items);
    if (items.isEmpty())
        return "";
    return (QStringLiteral("<h2 class=\"title\">%1</h2>\n<ul id=\"printer-pages\">\n")
                .arg(QString::fromLatin1(PrinterPageTitle)) +
            items + QStringLiteral("</ul>\n"))
        .toUtf8();
}

struct JobListing
{
    const PrintedJobs &printed;
    int printerId;
    PrinterPage &page;
};

extern "C" void addJobToPage(pappl_job_t *job, void *data)
{
    const auto *listing = static_cast<JobListing *>(data);
    PrinterPage::Job row;
    row.id = papplJobGetID(job);
    row.name = QString::fromUtf8(papplJobGetName(job));
    row.state = QString::fromUtf8(ippEnumString("job-state", int(papplJobGetState(job))));
    row.message = QString::fromUtf8(papplJobGetMessage(job));
    row.sent = QDateTime::fromSecsSinceEpoch(papplJobGetTimeCreated(job));
    row.kept = listing->printed.kept(listing->printerId, row.id);
    listing->page.addJob(row);
}

QByteArray printerPageBody(const Application &application, pappl_printer_t *printer)
{
    const QString name = printerName(printer);
    PrinterPage page(name);
    if (const std::optional<PrinterStatus> status = application.board.status(name))
        page.setStatus(status->operatorMessages());
    JobListing listing{application.printed, papplPrinterGetID(printer), page};
    papplPrinterIterateAllJobs(printer, addJobToPage, &listing, 1, JobsShown);
    return page.html().toUtf8();
}

bool respondWithPrinterPage(pappl_client_t *client, const Application &application, pappl_printer_t *printer)
{
    const QByteArray body = printerPageBody(application, printer);
    // libpappl's printer header sends the response's own header first, and opens the content
    // that its footer closes. The page is refreshed as often as idle printers are asked, as the
    // status page is.
    papplClientHTMLPrinterHeader(client, printer, PrinterPageTitle, IdlePollSeconds, nullptr, nullptr);
    papplClientHTMLPuts(client, body.constData());
    papplClientHTMLPrinterFooter(client);
    return true;
}

bool respondWithBytes(pappl_client_t *client, const char *type, const QByteArray &bytes)
{
    if (!papplClientRespond(client, HTTP_STATUS_OK, nullptr, type, 0, size_t(bytes.size())))
        return false;
    return httpWrite2(papplClientGetHTTP(client), bytes.constData(), size_t(bytes.size())) ==
           ssize_t(bytes.size());
}

bool respondWithPicture(pappl_client_t *client, Application &application, pappl_printer_t *printer,
                        std::optional<int> jobId)
{
    const QByteArray picture = jobId ? jobPicture(application, printer, *jobId) : QByteArray();
    if (picture.isNull())
        return papplClientRespond(client, HTTP_STATUS_NOT_FOUND, nullptr, nullptr, 0, 0);
    return respondWithBytes(client, "image/png", picture);
}

// Links each printer's page from libpappl's pages of the printer, and lets go of the pictures
// of a printer deleted since. libpappl holds its locks while it tells of a new printer, so
// this is done by a timer on the main loop; printers are told apart by their ids, which are
// never used again.
class PrinterLinks
{
public:
    explicit PrinterLinks(PrintedJobs &printed) : m_printed(printed) {}
    Q_DISABLE_COPY_MOVE(PrinterLinks)

    void update(pappl_system_t *system);

private:
    PrintedJobs &m_printed;
    std::set<int> m_linked;
};

extern "C" void collectPrinterId(pappl_printer_t *printer, void *data)
{
    static_cast<std::set<int> *>(data)->insert(papplPrinterGetID(printer));
}

void PrinterLinks::update(pappl_system_t *system)
{
    // The ids first: a printer is changed outside the iteration, which locks the system.
    std::set<int> ids;
    papplSystemIteratePrinters(system, collectPrinterId, &ids);
    for (auto linked = m_linked.begin(); linked != m_linked.end();) {
        if (ids.count(*linked) != 0) {
            ++linked;
            continue;
        }
        m_printed.forget(*linked);
        linked = m_linked.erase(linked);
    }
    for (const int id : ids) {
        if (m_linked.count(id) != 0)
            continue;
        pappl_printer_t *printer = papplSystemFindPrinter(system, nullptr, id, nullptr);
        if (!printer)
            continue;
        const QByteArray address = PrinterPage::address(printerName(printer)).toUtf8();
        papplPrinterAddLink(printer, PrinterPageTitle, address.constData(),
                            pappl_loptions_t(PAPPL_LOPTIONS_NAVIGATION | PAPPL_LOPTIONS_STATUS));
        m_linked.insert(id);
    }
}

} // namespace

extern "C" bool serveStatusPage(pappl_client_t *client, void *data)
{
    const QByteArray table = static_cast<Application *>(data)->board.htmlReport().toUtf8();
    const QByteArray printerPages = printerPagesList(papplClientGetSystem(client));
    if (!papplClientRespond(client, HTTP_STATUS_OK, nullptr, "text/html", 0, 0))
        return false;
    papplClientHTMLHeader(client, "Printer status", IdlePollSeconds);
    papplClientHTMLPuts(client, "<div class=\"content\"><div class=\"row\"><div class=\"col-12\">\n"
                                "<h1 class=\"title\">Printer status</h1>\n");
    papplClientHTMLPuts(client, table.constData());
    papplClientHTMLPuts(client, printerPages.constData());
    papplClientHTMLPuts(client, "</div></div></div>\n");
    papplClientHTMLFooter(client);
    return true;
}

extern "C" bool serveStatusText(pappl_client_t *client, void *data)
{
    return respondWithBytes(client, "text/plain",
                            static_cast<Application *>(data)->board.textReport().toUtf8());
}

extern "C" void addPrinterListLine(pappl_printer_t *printer, void *data)
{
    *static_cast<QByteArray *>(data) +=
        QByteArray::number(papplPrinterGetID(printer)) + '\t' + papplPrinterGetName(printer) + '\n';
}

// "ID<tab>name" a line for each printer: libpappl 1.3.1 reports printer-id 0 over IPP for a
// printer added while it runs, and the "delete" sub-command needs the real one.
extern "C" bool servePrinterList(pappl_client_t *client, void *)
{
    QByteArray list("");
    papplSystemIteratePrinters(papplClientGetSystem(client), addPrinterListLine, &list);
    return respondWithBytes(client, "text/plain", list);
}

extern "C" bool servePrinterPage(pappl_client_t *client, void *data)
{
    const PrinterPage::Request request =
        PrinterPage::requestOf(QString::fromUtf8(papplClientGetOptions(client)));
    pappl_printer_t *printer = printerNamed(papplClientGetSystem(client), request.printer);
    if (!printer)
        return papplClientRespond(client, HTTP_STATUS_NOT_FOUND, nullptr, nullptr, 0, 0);
    return respondWithPrinterPage(client, *static_cast<Application *>(data), printer);
}

extern "C" bool servePicture(pappl_client_t *client, void *data)
{
    const PrinterPage::Request request =
        PrinterPage::requestOf(QString::fromUtf8(papplClientGetOptions(client)));
    pappl_printer_t *printer = printerNamed(papplClientGetSystem(client), request.printer);
    if (!printer)
        return papplClientRespond(client, HTTP_STATUS_NOT_FOUND, nullptr, nullptr, 0, 0);
    return respondWithPicture(client, *static_cast<Application *>(data), printer, request.job);
}

extern "C" bool linkPrinterPages(pappl_system_t *system, void *data)
{
    static_cast<PrinterLinks *>(data)->update(system);
    return true;
}

void addWebPages(pappl_system_t *system, Application &application)
{
    papplSystemAddResourceCallback(system, StatusPagePath, "text/html", serveStatusPage, &application);
    papplSystemAddResourceCallback(system, StatusTextPath, "text/plain", serveStatusText, &application);
    papplSystemAddResourceCallback(system, PrinterListPath, "text/plain", servePrinterList, &application);
    papplSystemAddLink(system, "Printer status", StatusPagePath,
                       pappl_loptions_t(PAPPL_LOPTIONS_NAVIGATION | PAPPL_LOPTIONS_STATUS));
    // libpappl serves a resource at its exact path only, and takes no new one while it runs:
    // one address serves the pages of all printers, another the pictures of their jobs.
    papplSystemAddResourceCallback(system, PrinterPage::pagePath().toUtf8().constData(), "text/html",
                                   servePrinterPage, &application);
    papplSystemAddResourceCallback(system, PrinterPage::picturePath().toUtf8().constData(), "image/png",
                                   servePicture, &application);
    static PrinterLinks links(application.printed);
    papplSystemAddTimerCallback(system, 0, PrinterLinkSeconds, linkPrinterPages, &links);
}
