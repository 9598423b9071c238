#ifndef BRISTEL_PRINTERAPP_RASTERCALLBACKS_H
#define BRISTEL_PRINTERAPP_RASTERCALLBACKS_H

#include <pappl/pappl.h>

// libpappl's raster callbacks: the pages of a PWG or Apple raster job, or of a picture libpappl
// decoded, gathered a page at a time and sent as one raster image with a cut after it.
extern "C" bool rasterStartJob(pappl_job_t *job, pappl_pr_options_t *options, pappl_device_t *device);
extern "C" bool rasterStartPage(pappl_job_t *job, pappl_pr_options_t *options, pappl_device_t *device,
                                unsigned page);
extern "C" bool rasterWriteLine(pappl_job_t *job, pappl_pr_options_t *options, pappl_device_t *device,
                                unsigned y, const unsigned char *line);
extern "C" bool rasterEndPage(pappl_job_t *job, pappl_pr_options_t *options, pappl_device_t *device,
                              unsigned page);
extern "C" bool rasterEndJob(pappl_job_t *job, pappl_pr_options_t *options, pappl_device_t *device);

#endif
