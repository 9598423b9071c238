#include "printerapp/RasterInput.h"

#include <QtEndian>

std::optional<quint8> RasterInput::byte()
{
    if (remaining() < 1)
        return std::nullopt;
    return static_cast<quint8>(m_bytes[m_position++]);
}

std::optional<quint32> RasterInput::bigEndian32()
{
    if (remaining() < 4)
        return std::nullopt;
    const quint32 value = qFromBigEndian<quint32>(m_bytes.constData() + m_position);
    m_position += 4;
    return value;
}

std::optional<QByteArray> RasterInput::bytes(qsizetype count)
{
    if (count < 0 || remaining() < count)
        return std::nullopt;
    const QByteArray view = QByteArray::fromRawData(m_bytes.constData() + m_position, count);
    m_position += count;
    return view;
}
