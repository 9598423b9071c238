#include "printerapp/PrinterStatus.h"

namespace {

constexpr char DLE = 0x10;
constexpr char EOT = 0x04;

// Bit numbers of the answers, as the Epson TM command reference gives them.
constexpr int PrinterOfflineBit = 3;
constexpr int CoverOpenBit = 2;
constexpr int PaperEndStopBit = 5;
constexpr int CutterErrorBit = 3;
constexpr int UnrecoverableErrorBit = 5;
constexpr int AutoRecoverableErrorBit = 6;
// The paper sensor reports each condition on two bits (one per sensor of some models); either
// of them is enough.
constexpr int NearEndBits[] = {2, 3};
constexpr int PaperEndBits[] = {5, 6};

} // namespace

QByteArray PrinterStatus::queryBytes(Query query)
{
    const char bytes[] = {DLE, EOT, static_cast<char>(query)};
    return QByteArray(bytes, sizeof bytes);
}

QByteArray PrinterStatus::allQueryBytes()
{
    return queryBytes(Query::Printer) + queryBytes(Query::OfflineCause) + queryBytes(Query::ErrorCause) +
           queryBytes(Query::PaperSensor);
}

bool PrinterStatus::isStatusByte(quint8 byte)
{
    constexpr quint8 fixedBits = 0x93; // bits 0, 1, 4 and 7
    constexpr quint8 fixedValue = 0x12;
    return (byte & fixedBits) == fixedValue;
}

PrinterStatus PrinterStatus::fromAnswers(std::optional<quint8> printer, std::optional<quint8> offlineCause,
                                         std::optional<quint8> errorCause, std::optional<quint8> paperSensor)
{
    PrinterStatus status;
    status.m_answers = {printer, offlineCause, errorCause, paperSensor};
    return status;
}

PrinterStatus PrinterStatus::unreachable()
{
    PrinterStatus status;
    status.m_unreachable = true;
    return status;
}

bool PrinterStatus::bit(Query query, int bit) const
{
    const std::optional<quint8> &answer = m_answers.at(static_cast<int>(query) - 1);
    return answer && (*answer & (1u << bit)) != 0;
}

bool PrinterStatus::isSilent() const
{
    if (m_unreachable)
        return false;
    for (const std::optional<quint8> &answer : m_answers) {
        if (answer)
            return false;
    }
    return true;
}

QList<PrinterStatus::Condition> PrinterStatus::conditions() const
{
    if (m_unreachable)
        return {Condition::Offline};
    QList<Condition> conditions;
    const bool paperEnd = bit(Query::PaperSensor, PaperEndBits[0]) ||
                          bit(Query::PaperSensor, PaperEndBits[1]) ||
                          bit(Query::OfflineCause, PaperEndStopBit);
    const bool nearEnd = bit(Query::PaperSensor, NearEndBits[0]) || bit(Query::PaperSensor, NearEndBits[1]);
    if (bit(Query::ErrorCause, UnrecoverableErrorBit))
        conditions << Condition::UnrecoverableError;
    if (bit(Query::ErrorCause, CutterErrorBit))
        conditions << Condition::CutterJam;
    if (bit(Query::ErrorCause, AutoRecoverableErrorBit))
        conditions << Condition::RecoveringFromError;
    if (bit(Query::OfflineCause, CoverOpenBit))
        conditions << Condition::CoverOpen;
    if (paperEnd)
        conditions << Condition::OutOfPaper;
    // Offline with no cause of its own is still offline, not ready.
    if (conditions.isEmpty() && bit(Query::Printer, PrinterOfflineBit))
        conditions << Condition::Offline;
    if (nearEnd && !paperEnd)
        conditions << Condition::PaperNearEnd;
    return conditions;
}

QString PrinterStatus::operatorMessage(Condition condition)
{
    switch (condition) {
    case Condition::Offline:
        return QStringLiteral("Offline");
    case Condition::UnrecoverableError:
        return QStringLiteral("Unrecoverable error");
    case Condition::CutterJam:
        return QStringLiteral("Cutter jam");
    case Condition::RecoveringFromError:
        return QStringLiteral("Recovering from an error");
    case Condition::CoverOpen:
        return QStringLiteral("Cover open");
    case Condition::OutOfPaper:
        return QStringLiteral("Out of paper");
    case Condition::PaperNearEnd:
        return QStringLiteral("Paper near end");
    }
    return {};
}

QString PrinterStatus::reason(Condition condition)
{
    switch (condition) {
    case Condition::Offline:
        return QStringLiteral("offline-report");
    case Condition::CoverOpen:
        return QStringLiteral("cover-open");
    case Condition::OutOfPaper:
        return QStringLiteral("media-empty");
    case Condition::PaperNearEnd:
        return QStringLiteral("media-low");
    case Condition::UnrecoverableError:
    case Condition::CutterJam:
    case Condition::RecoveringFromError:
        break;
    }
    return QStringLiteral("other");
}

QStringList PrinterStatus::operatorMessages() const
{
    const QList<Condition> found = conditions();
    if (found.isEmpty())
        return {isSilent() ? QStringLiteral("Status unknown") : QStringLiteral("Ready")};
    QStringList messages;
    for (const Condition condition : found)
        messages << operatorMessage(condition);
    return messages;
}

QStringList PrinterStatus::reasons() const
{
    QStringList reasons;
    for (const Condition condition : conditions()) {
        const QString keyword = reason(condition);
        if (!reasons.contains(keyword))
            reasons << keyword;
    }
    return reasons;
}

bool PrinterStatus::canPrint() const
{
    for (const Condition condition : conditions()) {
        if (condition != Condition::PaperNearEnd)
            return false;
    }
    return true;
}
