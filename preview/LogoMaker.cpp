#include "preview/LogoMaker.h"

#include "config/OutputFile.h"

#include <QPainter>

#include <algorithm>
#include <vector>

namespace logomaker {

QImage dither(const QImage &image, int width)
{
    if (image.isNull() || width <= 0)
        return {};
    const int height = std::max(1, int(qint64(image.height()) * width / std::max(1, image.width())));
    // Transparent parts print as paper: the picture is laid on white before it is measured.
    QImage flat(width, height, QImage::Format_RGB32);
    flat.fill(Qt::white);
    {
        QPainter painter(&flat);
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        painter.drawImage(QRect(0, 0, width, height), image);
    }
    const QImage grey = flat.convertToFormat(QImage::Format_Grayscale8);

    // Errors of the current and the next row, with a guard column on each side.
    std::vector<float> current(size_t(width) + 2, 0.0f);
    std::vector<float> next(size_t(width) + 2, 0.0f);
    QImage dots(width, height, QImage::Format_Mono);
    dots.setColorTable({qRgb(255, 255, 255), qRgb(0, 0, 0)});
    dots.fill(0);
    for (int y = 0; y < height; ++y) {
        const uchar *source = grey.constScanLine(y);
        const bool leftToRight = y % 2 == 0;
        const int step = leftToRight ? 1 : -1;
        for (int i = 0; i < width; ++i) {
            const int x = leftToRight ? i : width - 1 - i;
            const float value = source[x] + current[size_t(x) + 1];
            const bool black = value < 128.0f;
            const float error = value - (black ? 0.0f : 255.0f);
            if (black)
                dots.setPixel(x, y, 1);
            current[size_t(x + step) + 1] += error * 7.0f / 16.0f;
            next[size_t(x - step) + 1] += error * 3.0f / 16.0f;
            next[size_t(x) + 1] += error * 5.0f / 16.0f;
            next[size_t(x + step) + 1] += error * 1.0f / 16.0f;
        }
        std::swap(current, next);
        std::fill(next.begin(), next.end(), 0.0f);
    }
    return dots;
}

QByteArray toPbm(const QImage &dots)
{
    QByteArray pbm = QByteArray("P4\n") + QByteArray::number(dots.width()) + ' ' +
                     QByteArray::number(dots.height()) + '\n';
    const int rowBytes = (dots.width() + 7) / 8;
    const bool blackIsOne = dots.color(1) == qRgb(0, 0, 0);
    for (int y = 0; y < dots.height(); ++y) {
        const uchar *line = dots.constScanLine(y);
        for (int i = 0; i < rowBytes; ++i) {
            uchar byte = blackIsOne ? line[i] : uchar(~line[i]);
            // The padding past the last dot stays white.
            const int used = std::min(8, dots.width() - i * 8);
            byte &= uchar(0xff << (8 - used));
            pbm.append(char(byte));
        }
    }
    return pbm;
}

bool writePbm(const QImage &dots, const QString &fileName, QString *error)
{
    OutputFile file(fileName);
    if (file.open()) {
        // A failed write stays on the device, where commit() finds it.
        (void)file.device()->write(toPbm(dots));
        if (file.commit())
            return true;
    }
    *error = file.errorString();
    return false;
}

} // namespace logomaker
