#ifndef BRISTEL_PRINTERAPP_WEBPAGES_H
#define BRISTEL_PRINTERAPP_WEBPAGES_H

#include <pappl/pappl.h>

struct Application;

// The application's own pages beside libpappl's: each printer's status in words, for people
// and, as plain text, for the "status" command; and each printer's page, its status and the
// paper of its last jobs, linked from libpappl's pages of the printer.
void addWebPages(pappl_system_t *system, Application &application);

#endif
