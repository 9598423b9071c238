#ifndef BRISTEL_PRINTERAPP_DURABLEFILE_H
#define BRISTEL_PRINTERAPP_DURABLEFILE_H

#include <QByteArray>
#include <QString>

// Writes a file so that after a crash or a power cut the name holds either nothing, the old
// contents or the whole new contents, never a part: the bytes go to a temporary file in the
// same folder, which is flushed to the disk, renamed over the name, and then the folder
// itself is flushed so that the rename survives too. Temporary files begin with
// temporaryPrefix(); whoever owns the folder removes those left by a crash.
class DurableFile
{
public:
    static QString temporaryPrefix() { return QStringLiteral(".partial-"); }

    // False with *error set when any step fails; the temporary file is then removed.
    [[nodiscard]] static bool write(const QString &folder, const QString &name, const QByteArray &bytes,
                                    QString *error);
    // Puts a file another writer made in the folder in the place of name the same way: flushed,
    // renamed over it, the folder flushed. False with *error set; the temporary file then stays.
    [[nodiscard]] static bool replace(const QString &folder, const QString &temporaryName,
                                      const QString &name, QString *error);
    // Removes a file and flushes its folder, so that the removal is on the disk on return.
    [[nodiscard]] static bool remove(const QString &folder, const QString &name, QString *error);
    [[nodiscard]] static bool syncFolder(const QString &folder, QString *error);
};

#endif
