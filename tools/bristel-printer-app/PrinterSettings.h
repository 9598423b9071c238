#ifndef BRISTEL_PRINTERAPP_PRINTERSETTINGS_H
#define BRISTEL_PRINTERAPP_PRINTERSETTINGS_H

#include "cups/QueueOptions.h"

#include <pappl/pappl.h>

struct ReceiptDriver;

// Offers the printer settings of the CUPS queues (code page, columns, cut, drawer) as vendor
// attributes of a driver: each with its -supported values and, once set with the "modify"
// command or Set-Printer-Attributes, a -default that libpappl keeps in its saved state.
void offerPrinterSettings(pappl_pr_driver_data_t *data, ipp_t **attributes, const ReceiptDriver &driver);

// The settings a job prints with, as the CUPS filter takes a queue's options: the job's own
// value of each attribute, else its printer's default; none where neither has one.
QueueOptions printerSettingsOf(pappl_job_t *job);

#endif
