#ifndef BRISTEL_PRINTERAPP_JOBPICTURES_H
#define BRISTEL_PRINTERAPP_JOBPICTURES_H

#include <QByteArray>

#include <pappl/pappl.h>

struct Application;

// Keeps what a job sends its printer, once the bytes are final, for the picture on the
// printer's page; returns the bytes, so that it wraps what is sent.
QByteArray keepPrintedBytes(pappl_job_t *job, const QByteArray &bytes);

// The picture of the paper a job of this printer printed: the PNG bristel-preview draws for
// the same bytes on the printer's paper. A null array when the job's bytes are not kept.
QByteArray jobPicture(Application &application, pappl_printer_t *printer, int jobId);

#endif
