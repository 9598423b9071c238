#ifndef BRISTEL_PRINTERAPP_SERVEROPTIONS_H
#define BRISTEL_PRINTERAPP_SERVEROPTIONS_H

#include "PendingLimit.h"

#include <QByteArray>
#include <QString>

#include <pappl/pappl.h>

#include <optional>

// The options "server -o NAME=VALUE" takes beside the folders, read and checked at once: a port,
// log level or limit mistyped in a unit file must stop the server with a message, not start it
// on no port or with no limit.
struct ServerOptions
{
    int port = 0; // 0: no IPP port, the local socket only
    QByteArray listenHostname = "localhost";
    // The system log when no file is named: standard error would mix with the output of
    // commands such as "drivers", which build a system too.
    QByteArray logFile = "syslog";
    pappl_loglevel_t logLevel = PAPPL_LOGLEVEL_INFO;
    int maxPendingJobs = DefaultMaxPendingJobs; // a printer's jobs not yet ended

    // The options, or nothing with *error set ("server-port: ...").
    static std::optional<ServerOptions> read(int count, cups_option_t *options, QString *error);
    // The value of an option of "server", or nullptr when it is not given or empty.
    static const char *valueOf(int count, cups_option_t *options, const char *name);
};

#endif
