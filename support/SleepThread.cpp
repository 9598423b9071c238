#include "support/SleepThread.h"

class SleepThreadPrivate
{
public:
    explicit SleepThreadPrivate(unsigned long milliseconds) : m_milliseconds(milliseconds) {}

    const unsigned long m_milliseconds;
};

SleepThread::SleepThread(unsigned long milliseconds) : d(std::make_unique<SleepThreadPrivate>(milliseconds))
{
    start();
}

SleepThread::~SleepThread()
{
    // The thread reads the delay: it must have ended before the private part goes.
    wait();
}

unsigned long SleepThread::delay() const
{
    return d->m_milliseconds;
}

void SleepThread::run()
{
    msleep(d->m_milliseconds);
}
