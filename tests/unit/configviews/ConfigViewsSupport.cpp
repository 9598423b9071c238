#include "ConfigViewsSupport.h"

#include "ApplicationEnvironment.h"
#include "TestSupport.h"

#include <QApplication>
#include <QDir>
#include <QDomDocument>
#include <QDomElement>
#include <QTreeWidgetItem>

#include <gtest/gtest.h>

namespace {

[[maybe_unused]] ::testing::Environment *const environment =
    ::testing::AddGlobalTestEnvironment(new testsupport::ApplicationEnvironment<QApplication>);

void describe(const QDomElement &element, int depth, QString &out)
{
    out += QString(depth * 2, QLatin1Char(' ')) + QLatin1Char('<') + element.tagName() + QLatin1Char('>');
    for (const QString &name : libconfig::Config::sortedAttributeNames(element))
        out += QLatin1Char(' ') + name + QLatin1String("=[") + element.attribute(name) + QLatin1Char(']');
    out += QLatin1Char('\n');
    for (QDomElement child = element.firstChildElement(); !child.isNull(); child = child.nextSiblingElement())
        describe(child, depth + 1, out);
}

} // namespace

QString samplePath()
{
    return QStringLiteral(CONFIGVIEWS_DATA "/bristel.conf");
}

std::unique_ptr<libconfig::Config> configFrom(const QString &dir, const QString &name,
                                              const QByteArray &bytes, const QString &type)
{
    const QString path = QDir(dir).filePath(name);
    writeFile(path, bytes);
    return std::make_unique<libconfig::Config>(path, type);
}

QString treeContent(const libconfig::Config &config)
{
    QString out;
    if (!config.document())
        return out;
    const QDomElement root = config.document()->documentElement();
    out += QLatin1String("(root)");
    for (const QString &name : libconfig::Config::sortedAttributeNames(root))
        out += QLatin1Char(' ') + name + QLatin1String("=[") + root.attribute(name) + QLatin1Char(']');
    out += QLatin1Char('\n');
    for (QDomElement child = root.firstChildElement(); !child.isNull(); child = child.nextSiblingElement())
        describe(child, 1, out);
    return out;
}

QTreeWidgetItem *itemAt(QTreeWidgetItem *top, const QStringList &texts)
{
    QTreeWidgetItem *item = top;
    for (const QString &text : texts) {
        QTreeWidgetItem *found = nullptr;
        for (int i = 0; item && i < item->childCount() && !found; ++i) {
            if (item->child(i)->text(0) == text)
                found = item->child(i);
        }
        item = found;
    }
    return item;
}
