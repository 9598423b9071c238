#ifndef BRISTEL_CONFIG_OUTPUTFILE_H
#define BRISTEL_CONFIG_OUTPUTFILE_H

#include <QFileDevice>
#include <QString>

#include <memory>

class QFile;
class QSaveFile;

/*
 * The file a program writes its result to, opened the way the kind of file found at the path
 * needs:
 *
 *  - a regular file, or none yet: a temporary file beside it that takes the file's place only
 *    once everything is written (QSaveFile), so a full disk or a killed process leaves the old
 *    file whole.  The new file keeps the mode of the file it replaces and, where the process
 *    may give it away, its owner and group;
 *  - a symbolic link: followed to its target first, which is then written as above, so that
 *    the link stays a link;
 *  - a FIFO or a device: written directly.  A FIFO has no place for a temporary file beside it
 *    (the reader waits on the FIFO itself), and renaming a file over a device node would turn
 *    the node into a plain file;
 *  - "-", where the caller allows it: standard output, written directly.
 *
 * Failures are kept, not printed: the first error of open() or commit() stays in error() and
 * errorString() for the caller to report.  An output neither committed nor cancelled is
 * cancelled when the object goes: a half-written temporary file never takes the old file's
 * place.
 */
class OutputFile
{
public:
    enum class Dash
    {
        IsAFileName,
        IsStandardOutput
    };

    explicit OutputFile(const QString &path, Dash dash = Dash::IsAFileName);
    ~OutputFile();
    OutputFile(const OutputFile &) = delete;
    OutputFile &operator=(const OutputFile &) = delete;

    // Opens for writing; extraFlags are added to WriteOnly (Unbuffered, Text).  False: nothing
    // was opened, error() says why.
    [[nodiscard]] bool open(QIODevice::OpenMode extraFlags = {});

    // Where to write once open; null before.
    QFileDevice *device() const;

    // Hands the last bytes over and, for a regular file, puts the new file in the old one's
    // place.  False when any write failed on the way (then a regular file keeps its old bytes).
    [[nodiscard]] bool commit();

    // Gives up: a regular file keeps its old bytes; what went into a FIFO or device is gone.
    void cancel();

    // True when the output is written directly (a FIFO, a device, standard output).
    bool isDirect() const { return m_direct != nullptr; }

    QFileDevice::FileError error() const { return m_error; }
    QString errorString() const { return m_errorString; }

    // Makes a write into a pipe whose reader has gone fail with EPIPE, to be reported as any
    // other failed write, instead of ending the process silently with SIGPIPE.  Process-wide.
    static void reportClosedPipesAsWriteErrors();

private:
    void keepFirstError(QFileDevice::FileError error, const QString &text);
    bool openDirectly(const QString &path, QIODevice::OpenMode mode);
    bool openReplacing(const QString &path, QIODevice::OpenMode mode);
    bool commitReplacing();
    bool commitDirectly();

    QString m_path;
    Dash m_dash;
    std::unique_ptr<QSaveFile> m_replacing;
    std::unique_ptr<QFile> m_direct;
    QFileDevice::FileError m_error = QFileDevice::NoError;
    QString m_errorString;
};

#endif
