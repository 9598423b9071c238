#include "printerapp/PrinterQueues.h"

PrinterQueues::PrinterQueues(int limitPerPrinter) : m_limit(limitPerPrinter) {}

PrinterQueue &PrinterQueues::queue(const QString &printer)
{
    return m_queues.try_emplace(printer, printer, m_limit).first->second;
}

const PrinterQueue *PrinterQueues::find(const QString &printer) const
{
    const auto found = m_queues.find(printer);
    return found == m_queues.end() ? nullptr : &found->second;
}

void PrinterQueues::remove(const QString &printer)
{
    m_queues.erase(printer);
}
