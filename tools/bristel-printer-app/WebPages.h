#ifndef BRISTEL_PRINTERAPP_WEBPAGES_H
#define BRISTEL_PRINTERAPP_WEBPAGES_H

#include <pappl/pappl.h>

struct Application;

// The application's own pages beside libpappl's: each printer's status in words, for people
// and, as plain text, for the "status" command.
void addWebPages(pappl_system_t *system, Application &application);

#endif
