#ifndef BRISTEL_JOB_JOBEXITSTATUS_H
#define BRISTEL_JOB_JOBEXITSTATUS_H

// The exit statuses shared by the programs that render a job (bristel-render, bristel-preview),
// as their manual pages list them; a program numbers its own statuses after OutputUnwritable.
enum JobExitStatus
{
    Success = 0,
    UsageError = 1,
    BadOptionValue = 2,
    InputUnreadable = 3,
    MalformedDocument = 4,
    UnknownMethod = 5,
    OutputUnwritable = 6
};

#endif
