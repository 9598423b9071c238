#ifndef BRISTEL_PRINTERAPP_SERVERCONNECTION_H
#define BRISTEL_PRINTERAPP_SERVERCONNECTION_H

#include "PrinterPlace.h"

#include <QByteArray>
#include <QString>

#include <memory>

typedef struct _http_s http_t;
typedef struct _ipp_s ipp_t;

// A sub-command's connection to the running server, for what libpappl's own sub-commands do
// not give: the printers' status in words, deleting a printer (libpappl 1.3.1 reports
// printer-id 0 for a printer added while it runs, so its own "delete" finds none), and setting
// where a printer stands.
class ServerConnection
{
public:
    // The server "-u ipp://HOST:PORT/..." names among the arguments, or the one on the
    // program's local socket.
    static ServerConnection fromArguments(int argc, char *argv[]);

    ServerConnection(ServerConnection &&) noexcept;
    ~ServerConnection();

    // The body of one of the server's pages, or a null array with *error set.
    QByteArray fetch(const char *path, QString *error);
    // Deletes the printer with this id; false with *error set.
    bool deletePrinter(int printerId, QString *error);
    // Sets where the printer with this id stands (see PrinterPlace); false with *error set.
    bool setPrinterPlace(int printerId, const PrinterPlace::Values &values, QString *error);

private:
    ServerConnection(QByteArray host, int port);
    bool connect(QString *error);
    // Sends a request to the system's resource; false with *error set when it failed.
    bool ask(ipp_t *request, QString *error);

    struct HttpCloser
    {
        void operator()(http_t *http) const;
    };

    QByteArray m_host; // a local socket's path when m_port is 0
    int m_port = 0;
    std::unique_ptr<http_t, HttpCloser> m_http;
};

#endif
