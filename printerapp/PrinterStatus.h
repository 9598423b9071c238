#ifndef BRISTEL_PRINTERAPP_PRINTERSTATUS_H
#define BRISTEL_PRINTERAPP_PRINTERSTATUS_H

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

#include <array>
#include <optional>

// What a receipt printer says about itself through the four real-time status queries
// DLE EOT n (10 04 n): n = 1 printer status, 2 offline cause, 3 error cause, 4 roll paper
// sensor. Each answer is one byte whose bit 1 and bit 4 are always 1 and bit 0 and bit 7
// always 0, which is how a stray byte of another answer is told from a status byte.
//
// Three kinds of printer: one that answers (its bits decide), one that cannot be reached at
// all (connection refused or dropped: "Offline", nothing may print) and one that is reached
// but never answers the queries ("Status unknown": many cheap printers ignore DLE EOT, and a
// job must still print on them).
class PrinterStatus
{
public:
    enum class Query : quint8
    {
        Printer = 1,
        OfflineCause = 2,
        ErrorCause = 3,
        PaperSensor = 4
    };
    // What may be wrong, most severe first: conditions() lists them in this order.
    enum class Condition
    {
        Offline,
        UnrecoverableError,
        CutterJam,
        RecoveringFromError,
        CoverOpen,
        OutOfPaper,
        PaperNearEnd,
    };
    static constexpr int QueryCount = 4;

    // The bytes that ask one question, and all four in the order Query lists them.
    static QByteArray queryBytes(Query query);
    static QByteArray allQueryBytes();
    // True for a byte whose fixed bits are those of a status answer.
    static bool isStatusByte(quint8 byte);

    // A printer whose answers are given in Query order; a missing answer is std::nullopt.
    // No answer at all means a printer that is reached but silent.
    static PrinterStatus fromAnswers(std::optional<quint8> printer, std::optional<quint8> offlineCause,
                                     std::optional<quint8> errorCause, std::optional<quint8> paperSensor);
    // A printer that refuses the connection or is not there.
    static PrinterStatus unreachable();

    // Every condition that applies, most severe first; empty for a ready or silent printer.
    QList<Condition> conditions() const;
    static QString operatorMessage(Condition condition);
    static QString reason(Condition condition);

    // The IPP printer-state-reasons keywords, most severe first; empty when none applies.
    QStringList reasons() const;
    // Whether a job may be sent now: paper near its end still prints, a silent printer too.
    bool canPrint() const;
    // The words for the operator, most severe first ("Ready" or "Status unknown" when nothing
    // is wrong), and the first of them alone.
    QStringList operatorMessages() const;
    QString operatorMessage() const { return operatorMessages().constFirst(); }

    bool isUnreachable() const { return m_unreachable; }
    bool isSilent() const;

private:
    PrinterStatus() = default;
    bool bit(Query query, int bit) const;

    std::array<std::optional<quint8>, QueryCount> m_answers;
    bool m_unreachable = false;
};

#endif
