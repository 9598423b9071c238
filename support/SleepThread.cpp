#include "support/SleepThread.h"

SleepThread::SleepThread(unsigned long milliseconds) : m_milliseconds(milliseconds)
{
    start();
}

SleepThread::~SleepThread()
{
    wait();
}

void SleepThread::run()
{
    msleep(m_milliseconds);
}
