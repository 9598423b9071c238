#ifndef BRISTEL_PRINTERAPP_PRINTERQUEUES_H
#define BRISTEL_PRINTERAPP_PRINTERQUEUES_H

#include "printerapp/PrinterQueue.h"

#include <QString>

#include <map>

// The queues of all printers of the application, one per printer name, each with the same
// limit: a printer that is off fills only its own queue.
class PrinterQueues
{
public:
    explicit PrinterQueues(int limitPerPrinter = PrinterQueue::DefaultLimit);

    // The queue of a printer, made empty on first use.
    PrinterQueue &queue(const QString &printer);
    const PrinterQueue *find(const QString &printer) const;
    void remove(const QString &printer);

private:
    int m_limit;
    std::map<QString, PrinterQueue> m_queues;
};

#endif
