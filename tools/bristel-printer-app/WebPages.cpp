#include "WebPages.h"

#include "Application.h"
#include "StatusPolling.h"

#include <QByteArray>

namespace {

constexpr const char *StatusPagePath = "/bristel/status";
constexpr const char *StatusTextPath = "/bristel/status.txt";

extern "C" bool serveStatusPage(pappl_client_t *client, void *data);
extern "C" bool serveStatusText(pappl_client_t *client, void *data);

} // namespace

extern "C" bool serveStatusPage(pappl_client_t *client, void *data)
{
    const QByteArray table = static_cast<Application *>(data)->board.htmlReport().toUtf8();
    if (!papplClientRespond(client, HTTP_STATUS_OK, nullptr, "text/html", 0, 0))
        return false;
    papplClientHTMLHeader(client, "Printer status", IdlePollSeconds);
    papplClientHTMLPuts(client, "<div class=\"content\"><div class=\"row\"><div class=\"col-12\">\n"
                                "<h1 class=\"title\">Printer status</h1>\n");
    papplClientHTMLPuts(client, table.constData());
    papplClientHTMLPuts(client, "</div></div></div>\n");
    papplClientHTMLFooter(client);
    return true;
}

extern "C" bool serveStatusText(pappl_client_t *client, void *data)
{
    const QByteArray text = static_cast<Application *>(data)->board.textReport().toUtf8();
    if (!papplClientRespond(client, HTTP_STATUS_OK, nullptr, "text/plain", 0, size_t(text.size())))
        return false;
    return httpWrite2(papplClientGetHTTP(client), text.constData(), size_t(text.size())) ==
           ssize_t(text.size());
}

void addWebPages(pappl_system_t *system, Application &application)
{
    papplSystemAddResourceCallback(system, StatusPagePath, "text/html", serveStatusPage, &application);
    papplSystemAddResourceCallback(system, StatusTextPath, "text/plain", serveStatusText, &application);
    papplSystemAddLink(system, "Printer status", StatusPagePath,
                       pappl_loptions_t(PAPPL_LOPTIONS_NAVIGATION | PAPPL_LOPTIONS_STATUS));
}
