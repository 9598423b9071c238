#ifndef BRISTEL_PRINTERAPP_RASTERINPUT_H
#define BRISTEL_PRINTERAPP_RASTERINPUT_H

#include <QByteArray>

#include <optional>

// Reads a raster document from the front, in the big-endian byte order both PWG and Apple
// raster use; a read past the end gives std::nullopt rather than garbage.
class RasterInput
{
public:
    explicit RasterInput(const QByteArray &bytes) : m_bytes(bytes) {}

    bool atEnd() const { return m_position >= m_bytes.size(); }
    qsizetype remaining() const { return m_bytes.size() - m_position; }
    std::optional<quint8> byte();
    std::optional<quint32> bigEndian32();
    // A view of the next count bytes (valid while the document lives).
    std::optional<QByteArray> bytes(qsizetype count);

private:
    const QByteArray &m_bytes;
    qsizetype m_position = 0;
};

#endif
