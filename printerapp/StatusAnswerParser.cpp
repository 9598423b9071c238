#include "printerapp/StatusAnswerParser.h"

bool StatusAnswerParser::feed(QByteArrayView bytes)
{
    for (const char byte : bytes) {
        if (isComplete())
            break;
        const auto value = static_cast<quint8>(byte);
        if (PrinterStatus::isStatusByte(value))
            m_answers.at(m_received++) = value;
    }
    return isComplete();
}

PrinterStatus StatusAnswerParser::status() const
{
    return PrinterStatus::fromAnswers(m_answers[0], m_answers[1], m_answers[2], m_answers[3]);
}
