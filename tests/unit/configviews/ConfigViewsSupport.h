#ifndef BRISTEL_TESTS_CONFIGVIEWSSUPPORT_H
#define BRISTEL_TESTS_CONFIGVIEWSSUPPORT_H

#include "config/Config.h"

#include <QByteArray>
#include <QDomNode>
#include <QString>

#include <memory>

class QTreeWidgetItem;

// The sample configuration of the tests (an installation's bristel.conf).
QString samplePath();

// A configuration read from the given bytes, written to a file named name in dir.
std::unique_ptr<libconfig::Config> configFrom(const QString &dir, const QString &name,
                                              const QByteArray &bytes,
                                              const QString &type = QStringLiteral("cfg"));

/*
 * The content of a configuration tree, independent of layout and of the root's name (the
 * file path): the root's attributes, then every element below it with its attributes
 * sorted, one line each, indented by depth.
 */
QString treeContent(const libconfig::Config &config);

// The item of the view found by following item texts from the top-level item.
QTreeWidgetItem *itemAt(QTreeWidgetItem *top, const QStringList &texts);

#endif
