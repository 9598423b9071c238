#ifndef BRISTEL_PRINTERAPP_JOBPRINTING_H
#define BRISTEL_PRINTERAPP_JOBPRINTING_H

#include <pappl/pappl.h>

// libpappl's callback for a job in the printer's own language: its bytes go as they came.
extern "C" bool printFile(pappl_job_t *job, pappl_pr_options_t *options, pappl_device_t *device);
// libpappl's filter for a bristel job, a picture or text: converted to ESC/POS, then printed.
extern "C" bool filterToEscPos(pappl_job_t *job, pappl_device_t *device, void *data);

#endif
