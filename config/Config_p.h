#ifndef BRISTEL_CONFIG_CONFIG_P_H
#define BRISTEL_CONFIG_CONFIG_P_H

#include <QFileDevice>
#include <QString>

#include <cstdio>
#include <memory>
#include <string>

class QDomDocument;
class QDomNode;

namespace libconfig {

/*
 * The state of a Config, kept out of the installed header so that later versions may add to
 * it without changing the size or layout of the exported class.  Shared by the reader, the
 * writers and the tree view, which live in separate files (and the last in a separate library).
 */
class ConfigPrivate
{
public:
    ConfigPrivate();
    ~ConfigPrivate();
    ConfigPrivate(const ConfigPrivate &) = delete;
    ConfigPrivate &operator=(const ConfigPrivate &) = delete;

    int readByte();
    void readValue(std::string &buffer);

    // A new empty document in place of the old one, which is freed without recursion.
    void replaceDocument();
    void releaseDocument();

    void setWriteStatus(QFileDevice::FileError status, const QString &text);

    struct FileCloser
    {
        void operator()(std::FILE *file) const { std::fclose(file); }
    };

    QString m_fileName;
    QString m_fileType;
    std::unique_ptr<std::FILE, FileCloser> m_input;
    std::unique_ptr<QDomDocument> m_document;
    QFileDevice::FileError m_writeStatus = QFileDevice::NoError;
    QString m_writeErrorString;
    QString m_readError;
};

} // namespace libconfig

#endif
