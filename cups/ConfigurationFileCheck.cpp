#include "cups/ConfigurationFileCheck.h"

#include <QFile>
#include <QFileInfo>

ConfigurationFileCheck::ConfigurationFileCheck(const QString &fileName)
{
    const QFileInfo info(fileName);
    // A dangling symbolic link is a file that is meant to be there: not the same as none.
    if (!info.exists() && !info.isSymLink())
        return;
    if (info.isDir()) {
        m_state = State::Unreadable;
        m_reason = QStringLiteral("is a folder, not a file");
        return;
    }
    // Opened for real: the permission bits say nothing of ACLs, and root reads what they deny.
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly)) {
        m_state = State::Unreadable;
        m_reason = file.errorString();
        return;
    }
    m_state = State::Readable;
}
