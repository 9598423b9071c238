#include "ConfigEditorWindow.h"

#include "config/BRConfiguration.h"

#include <QApplication>
#include <QTimer>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>

#include <cstdio>

namespace {

void usage()
{
    std::fputs("usage: bristel-config [--screenshot image.png] [configuration-file]\n"
               "  Edits ~/.bristel/conf/bristel.conf, or the file given (XML when it ends in .xml).\n"
               "  --screenshot saves a picture of the window and quits.\n",
               stderr);
}

} // namespace

int main(int argc, char *argv[])
{
    // The arguments are checked before the application object needs a display.
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments << QString::fromLocal8Bit(argv[i]);
    QString screenshot;
    if (arguments.size() >= 2 && arguments.first() == QLatin1String("--screenshot")) {
        screenshot = arguments.at(1);
        arguments = arguments.mid(2);
    }
    if (arguments.size() > 1 || (arguments.size() == 1 && arguments.first().startsWith(QLatin1Char('-')))) {
        usage();
        return 2;
    }

    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("bristel-config"));
    const QString path = arguments.isEmpty() ? BRConfiguration::userFilePath() : arguments.first();

    ConfigEditorWindow window(path);
    window.resize(1000, 740);
    window.show();

    if (!screenshot.isEmpty()) {
        // The picture shows a value being edited: the first value of the file.
        QTreeWidget *tree = window.treeView();
        for (QTreeWidgetItemIterator it(tree); *it; ++it) {
            if ((*it)->flags() & Qt::ItemIsEditable) {
                tree->setCurrentItem(*it);
                tree->editItem(*it);
                break;
            }
        }
        QTimer::singleShot(500, &window, [&] {
            const bool saved = window.grab().save(screenshot, "PNG");
            if (!saved)
                std::fprintf(stderr, "bristel-config: cannot write %s\n", qPrintable(screenshot));
            QApplication::exit(saved ? 0 : 1);
        });
    }
    return app.exec();
}
