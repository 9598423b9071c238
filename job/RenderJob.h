#ifndef BRISTEL_JOB_RENDERJOB_H
#define BRISTEL_JOB_RENDERJOB_H

#include "devices/escpos/EscPosSettings.h"

#include <QString>

class BRConfiguration;
class QIODevice;

/*
 * Renders one print job in one of the output formats, reporting what went wrong the way a
 * command-line tool does.  What was rendered before a fault is still written.
 */
enum class RenderFormat
{
    Text,   // the command file bristel-compile writes, byte for byte
    EscPos, // the bytes a receipt printer prints
    Listing // the ESC/POS stream as readable lines
};

struct RenderResult
{
    enum class Status
    {
        Ok,
        MalformedDocument, // not well-formed XML
        UnknownMethod,     // the method element names no print method
        InvalidCode,       // a QR code or barcode that cannot be printed as the job asks
        WriteFailed        // the output could not be written (a full disk, a closed pipe)
    };

    Status status = Status::Ok;
    QString message;   // empty when Ok
    qint64 line = 0;   // where in the input the fault was found (1-based; 0: not in the input);
                       // for an invalid code, where its element begins
    qint64 column = 0; //
    QString warnings;  // non-fatal problems (an unreadable logo), one per line
};

// Reads the document from input and writes the chosen format to output, which must be open
// for writing (a file, standard output, a buffer); a file is flushed before the call returns.
// configuration supplies the document profiles; installing the translation is the caller's
// business.
RenderResult renderJob(QIODevice *input, QIODevice *output, RenderFormat format,
                       const BRConfiguration &configuration, const EscPosSettings &settings);

#endif
