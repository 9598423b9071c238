#ifndef BRISTEL_JOB_PROGRAMMESSAGE_H
#define BRISTEL_JOB_PROGRAMMESSAGE_H

#include <QString>

// The one way the installation's programs tell their user about a problem: "program: message"
// and a line end on standard error, in UTF-8.  Library code returns its problems or logs them;
// only a program's own code calls this.
void printProgramMessage(const char *program, const QString &message);

#endif
