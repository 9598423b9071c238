#ifndef BRISTEL_SUPPORT_SLEEPTHREAD_H
#define BRISTEL_SUPPORT_SLEEPTHREAD_H

#include "bristel_support_export.h"

#include <QThread>

/*
 * A thread that only sleeps.  It starts at construction, and the destructor waits for it
 * without time limit, so creating and destroying one in a row blocks the caller for the
 * delay.
 */
class BRISTEL_SUPPORT_EXPORT SleepThread : public QThread
{
public:
    explicit SleepThread(unsigned long milliseconds);
    ~SleepThread() override;

    unsigned long delay() const { return m_milliseconds; }

protected:
    void run() override;

private:
    unsigned long m_milliseconds;
};

#endif
