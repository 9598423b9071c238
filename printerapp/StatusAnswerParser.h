#ifndef BRISTEL_PRINTERAPP_STATUSANSWERPARSER_H
#define BRISTEL_PRINTERAPP_STATUSANSWERPARSER_H

#include "printerapp/PrinterStatus.h"

#include <QByteArrayView>

#include <array>
#include <optional>

// Collects the answers to the four DLE EOT queries, sent in PrinterStatus::Query order, from
// whatever the printer sends back. The connection may carry other bytes too (an answer to an
// earlier, abandoned query cycle, line noise, automatic status blocks): a byte whose fixed
// bits are not those of a status answer is skipped, and each status byte answers the next
// query still open.
class StatusAnswerParser
{
public:
    // Feeds received bytes; true once all four answers are in (later bytes are ignored).
    bool feed(QByteArrayView bytes);
    bool isComplete() const { return m_received == PrinterStatus::QueryCount; }
    int answersReceived() const { return m_received; }
    // The status from the answers so far; queries left unanswered count as silent.
    PrinterStatus status() const;

private:
    std::array<std::optional<quint8>, PrinterStatus::QueryCount> m_answers;
    int m_received = 0;
};

#endif
