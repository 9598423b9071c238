#ifndef BRISTEL_PREVIEW_LOGOMAKER_H
#define BRISTEL_PREVIEW_LOGOMAKER_H

#include <QByteArray>
#include <QImage>
#include <QString>

/*
 * Turns a colour or grey picture into the black-and-white logo a receipt printer prints: scaled
 * to the printable width, laid on white where it is transparent, and dithered with
 * Floyd-Steinberg error diffusion (serpentine, so that flat greys show no diagonal streaks).
 * The result is a raw PBM ("P4"), the format the ESC/POS back-end reads.
 */
namespace logomaker {

// The image as dots, width `width`: QImage::Format_Mono, index 1 black.
QImage dither(const QImage &image, int width);

// The image as a raw PBM file.
QByteArray toPbm(const QImage &dots);

// Writes the dots as a raw PBM file; false with the reason in *error.
bool writePbm(const QImage &dots, const QString &fileName, QString *error);

} // namespace logomaker

#endif
