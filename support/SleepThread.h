#ifndef BRISTEL_SUPPORT_SLEEPTHREAD_H
#define BRISTEL_SUPPORT_SLEEPTHREAD_H

#include "bristel_support_widgets_export.h"

#include <QThread>

#include <memory>

class SleepThreadPrivate;

/*
 * A thread that only sleeps.  It starts at construction, and the destructor waits for it
 * without time limit, so creating and destroying one in a row blocks the caller for the
 * delay.  The delay lives behind a private pointer, so that the class keeps its layout in
 * the shared library.
 */
class BRISTEL_SUPPORT_WIDGETS_EXPORT SleepThread : public QThread
{
public:
    explicit SleepThread(unsigned long milliseconds);
    ~SleepThread() override;

    unsigned long delay() const;

protected:
    void run() override;

private:
    std::unique_ptr<SleepThreadPrivate> d;
};

#endif
