#ifndef BRISTEL_DEVICES_ESCPOS_ESCPOSLISTING_H
#define BRISTEL_DEVICES_ESCPOS_ESCPOSLISTING_H

#include <QByteArrayView>
#include <QString>

/*
 * An ESC/POS stream as lines a person can read, for whoever debugs a printer: one line per
 * printed line, the commands in brackets before the text they affect ("[bold on] Totale"),
 * text decoded by the code table in force, as the printer would read it.
 */
QString escPosListing(QByteArrayView stream);

// Only what the stream prints as text: the characters of every line, each line ended by "\n",
// with no command and no image.
QString escPosPrintedText(QByteArrayView stream);

#endif
