#ifndef BRISTEL_PREVIEW_PREVIEWWRITER_H
#define BRISTEL_PREVIEW_PREVIEWWRITER_H

#include "virtualprinter/Paper.h"

#include <QImage>
#include <QString>

#include <optional>

/*
 * Writes a sheet of paper as a picture.  PNG is drawn dot for dot from the bitmap font (the
 * same bytes on every machine); SVG keeps the text as text; PDF makes one page of each piece
 * of paper that a cut separates.  Files are written through OutputFile: a failure leaves no
 * half-written picture in a file's place, and a FIFO or a device is written into directly.
 */
enum class PreviewFormat
{
    Png,
    Svg,
    Pdf
};

// The format an output file's suffix names (.png, .svg, .pdf, any case); none for others.
std::optional<PreviewFormat> previewFormatFor(const QString &fileName);

// The sheet drawn dot for dot; a null image when the bitmap font cannot be read (*error says).
QImage paperImage(const Paper &sheet, QString *error);

// The sheet as the PNG file writePreview writes, byte for byte; a null array when it cannot be
// drawn (*error says).
QByteArray paperPng(const Paper &sheet, QString *error);

// False, with the reason in *error, when the picture cannot be drawn or written.
bool writePreview(const Paper &sheet, PreviewFormat format, const QString &fileName, QString *error);

#endif
