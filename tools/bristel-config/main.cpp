#include "ConfigEditorWindow.h"

#include "config/BRConfiguration.h"
#include "job/PrivateRuntimeDirectory.h"
#include "job/ProgramMessage.h"

#include <QApplication>
#include <QDir>
#include <QTimer>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>

#include <cstdio>
#include <cstdlib>

namespace {

// The exit statuses besides 0; the manual page lists them.
enum ExitStatus
{
    UsageError = 2,
    NoDisplay = 3
};

const char noDisplayHelp[] =
    "  The editor is a window: run it on a desktop (DISPLAY or WAYLAND_DISPLAY set).\n"
    "  Without one, run it under a virtual X server,\n"
    "    xvfb-run bristel-config [file]\n"
    "  or take a picture of it with the offscreen platform:\n"
    "    QT_QPA_PLATFORM=offscreen bristel-config --screenshot picture.png [file]\n";

// The toolkit finds no display without one of these, and then ends the process with abort().
bool displayNamed()
{
    return !qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM") || !qEnvironmentVariableIsEmpty("DISPLAY") ||
           !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
}

QtMessageHandler toolkitHandler = nullptr;
const PrivateRuntimeDirectory *runtimeDirectory = nullptr; // removed by hand on the way out below

// A display that is named but cannot be reached is a fatal message of the toolkit, which
// aborts (and leaves a core dump) with advice about reinstalling; the operator is told what
// is wrong instead, and the process ends with a status.
void reportUnreachableDisplay(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    if (type != QtFatalMsg) {
        toolkitHandler(type, context, message);
        return;
    }
    const QByteArray display =
        qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") ? qgetenv("DISPLAY") : qgetenv("WAYLAND_DISPLAY");
    printProgramMessage("bristel-config",
                        QStringLiteral("cannot open the display %1").arg(QString::fromLocal8Bit(display)));
    std::fputs(noDisplayHelp, stderr);
    std::fflush(stderr);
    // Ending here skips every destructor: the toolkit is half started and must not run again.
    if (runtimeDirectory && !runtimeDirectory->path().isEmpty())
        QDir(runtimeDirectory->path()).removeRecursively();
    std::_Exit(NoDisplay);
}

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
        return UsageError;
    }
    if (!displayNamed()) {
        std::fputs("bristel-config: no display (neither DISPLAY nor WAYLAND_DISPLAY is set)\n", stderr);
        std::fputs(noDisplayHelp, stderr);
        return NoDisplay;
    }

    const PrivateRuntimeDirectory privateRuntimeDirectory;
    runtimeDirectory = &privateRuntimeDirectory;
    toolkitHandler = qInstallMessageHandler(reportUnreachableDisplay);
    QApplication app(argc, argv);
    qInstallMessageHandler(toolkitHandler);
    QApplication::setApplicationName(QStringLiteral("bristel-config"));
    const QString path = arguments.isEmpty() ? BRConfiguration::userFilePath() : arguments.first();

    ConfigEditorWindow window(path);
    if (const QString missing = window.configuration().readError(); !missing.isEmpty())
        std::printf("%s\n", missing.toLocal8Bit().constData()); // as the configuration reader always has
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
                printProgramMessage("bristel-config", QStringLiteral("cannot write %1").arg(screenshot));
            QApplication::exit(saved ? 0 : 1);
        });
    }
    return app.exec();
}
