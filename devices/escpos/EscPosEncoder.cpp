#include "devices/escpos/EscPosEncoder.h"

#include "devices/escpos/EscPosCodePage.h"
#include "devices/escpos/PbmImage.h"

#include <QIODevice>

#include <algorithm>

namespace {

constexpr unsigned char ESC = 0x1b;
constexpr unsigned char GS = 0x1d;
constexpr qsizetype FlushSize = 64 * 1024;

unsigned char clampByte(int value)
{
    return static_cast<unsigned char>(std::clamp(value, 0, 255));
}

} // namespace

EscPosEncoder::EscPosEncoder(QIODevice *device, const EscPosCodePage *codePage)
    : m_device(device), m_codePage(codePage)
{
    m_buffer.reserve(FlushSize + 4096);
}

EscPosEncoder::~EscPosEncoder()
{
    flush();
}

void EscPosEncoder::command(std::initializer_list<unsigned char> bytes)
{
    for (const unsigned char byte : bytes)
        m_buffer.append(static_cast<char>(byte));
}

void EscPosEncoder::initialize(int codePageNumber)
{
    command({ESC, '@', ESC, 't', clampByte(codePageNumber)});
}

void EscPosEncoder::emphasis(bool on)
{
    command({ESC, 'E', static_cast<unsigned char>(on ? 1 : 0)});
}

void EscPosEncoder::characterSize(int width, int height)
{
    // GS ! holds width-1 in the high and height-1 in the low four bits.
    const int w = std::clamp(width, 1, 8) - 1;
    const int h = std::clamp(height, 1, 8) - 1;
    command({GS, '!', static_cast<unsigned char>((w << 4) | h)});
}

void EscPosEncoder::justification(Justification justification)
{
    command({ESC, 'a', static_cast<unsigned char>(justification)});
}

void EscPosEncoder::text(QStringView text)
{
    m_codePage->encode(text, &m_buffer);
    flushWhenFull();
}

void EscPosEncoder::spaces(unsigned int count)
{
    m_buffer.append(qsizetype(count), ' ');
}

void EscPosEncoder::lineFeed()
{
    m_buffer.append('\n');
    flushWhenFull();
}

void EscPosEncoder::feedLines(int lines)
{
    command({ESC, 'd', clampByte(lines)});
}

void EscPosEncoder::cut(Cut cut, int feed)
{
    // Function B: feed to the cutter plus `feed` motion units, then cut, in one command.
    command({GS, 'V', static_cast<unsigned char>(cut == Cut::Full ? 65 : 66), clampByte(feed)});
}

void EscPosEncoder::drawerPulse(int pin, int onMs, int offMs)
{
    command({ESC, 'p', static_cast<unsigned char>(pin == 5 ? 1 : 0), clampByte((onMs + 1) / 2),
             clampByte((offMs + 1) / 2)});
}

void EscPosEncoder::rasterImage(const PbmImage &image)
{
    if (image.isNull())
        return;
    const int widthBytes = image.bytesPerRow();
    const int height = image.height();
    command({GS, 'v', '0', 0, static_cast<unsigned char>(widthBytes & 0xff),
             static_cast<unsigned char>(widthBytes >> 8), static_cast<unsigned char>(height & 0xff),
             static_cast<unsigned char>(height >> 8)});
    m_buffer.append(image.rows());
    flushWhenFull();
}

void EscPosEncoder::qrCode(const QByteArray &data, int moduleSize, QrErrorCorrection errorCorrection)
{
    constexpr unsigned char cn = 49;              // '1': the QR code's functions
    command({GS, '(', 'k', 4, 0, cn, 65, 50, 0}); // 165: model 2
    command({GS, '(', 'k', 3, 0, cn, 67, static_cast<unsigned char>(std::clamp(moduleSize, 1, 16))});
    command({GS, '(', 'k', 3, 0, cn, 69, static_cast<unsigned char>(errorCorrection)});
    // 180: the data into the symbol storage area; pL pH count the three bytes cn fn m as well.
    const qsizetype stored = std::min<qsizetype>(data.size(), 7089);
    const qsizetype length = stored + 3;
    command({GS, '(', 'k', static_cast<unsigned char>(length & 0xff), static_cast<unsigned char>(length >> 8),
             cn, 80, 48});
    m_buffer.append(data.constData(), stored);
    command({GS, '(', 'k', 3, 0, cn, 81, 48}); // 181: print the stored symbol
    flushWhenFull();
}

void EscPosEncoder::barcode(BarcodeSystem system, const QByteArray &data, int height, int moduleWidth,
                            bool textBelow)
{
    command({GS, 'h', static_cast<unsigned char>(std::clamp(height, 1, 255))});
    command({GS, 'w', static_cast<unsigned char>(std::clamp(moduleWidth, 2, 6))});
    command({GS, 'H', static_cast<unsigned char>(textBelow ? 2 : 0)});
    const qsizetype length = std::min<qsizetype>(data.size(), 255);
    command({GS, 'k', static_cast<unsigned char>(system), static_cast<unsigned char>(length)});
    m_buffer.append(data.constData(), length);
    flushWhenFull();
}

void EscPosEncoder::flushWhenFull()
{
    if (m_buffer.size() >= FlushSize)
        flush();
}

bool EscPosEncoder::flush()
{
    if (!m_buffer.isEmpty() && !m_failed) {
        if (m_device->write(m_buffer) != m_buffer.size())
            m_failed = true;
    }
    m_buffer.clear();
    return !m_failed;
}
