#ifndef BRISTEL_JOB_JOBDETECTION_H
#define BRISTEL_JOB_JOBDETECTION_H

#include <QByteArrayView>

/*
 * Tells a bristel job from any other file by its first bytes, for the programs that take
 * either (bristel-preview, the configuration editor's preview) and for the CUPS type of a
 * job, which states the same rule.  A job is an XML document, so it starts with '<' after an
 * optional UTF-8 byte-order mark and white space, and it names its print method near the top:
 * a <method start tag lies within its first 4096 bytes.  The root element's name is free, as
 * the compiler accepts any root.  A receipt printer's byte stream that happens to start with
 * '<' (a line of text, "<<< ORDER >>>") names no method and is not taken for a job.
 * CUPS's type (cups/bristel.types) states the same rule; it can only look at the first byte,
 * not past a run of white space, which no job the ordering application writes begins with.
 */

// How many bytes of a file the rule looks at.
constexpr qsizetype bristelJobSniffLength = 4096;

// `start` is the beginning of the file, as much of it as there is up to bristelJobSniffLength
// bytes (more is ignored).
bool isBristelJob(QByteArrayView start);

#endif
