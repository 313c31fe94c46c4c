#include <unistd.h>
#include <QApplication>
#include <QCoreApplication>
#include <QGuiApplication>
#include <QIcon>
#include <QLoggingCategory>
#include <QTextStream>
#include <QTimer>
#include <QUrl>
#include <cstdio>
#include <cstring>

#include "app/InfoCommand.h"
#include "app/MainWindow.h"
#include "app/StampCommand.h"
#include "app/StampwiseAppDelegate.h"
#include "platform/QtAlertPanel.h"
#include "platform/QtOpenPanel.h"

namespace {

void printUsage() {
    std::fputs(
        "Usage: stampwise [PATH...]\n"
        "  or:  stampwise stamp [options] PATH... --output DIR\n"
        "  or:  stampwise info [--date-type N] [--time-type N] [--json] PATH...\n"
        "\n"
        "Prints the date a photo was taken onto copies of your photos. Without a\n"
        "command it opens the window with the photos and folders named (a folder\n"
        "stands for the photo files directly inside it); the originals are never\n"
        "changed.\n"
        "\n"
        "Commands:\n"
        "  stamp          stamp photos into an output folder without a window\n"
        "                 (see stampwise stamp --help)\n"
        "  info           show the size and dates read from each photo\n"
        "                 (see stampwise info --help)\n"
        "\n"
        "Options:\n"
        "  -h, --help     show this help and exit\n"
        "  --version      show the version and exit\n"
        "\n"
        "The window also takes Qt's own options, such as -platform NAME.\n"
        "Settings are kept in ~/.config/Stampwise/Stampwise.conf.\n",
        stdout);
}

}  // namespace

int main(int argc, char** argv) {
    // Help and version need no application object, so they work without a display.
    if (argc == 2 && (std::strcmp(argv[1], "--help") == 0 || std::strcmp(argv[1], "-h") == 0)) {
        printUsage();
        return 0;
    }
    if (argc == 2 && std::strcmp(argv[1], "--version") == 0) {
        std::fputs("stampwise " STAMPWISE_VERSION "\n", stdout);
        return 0;
    }
    // `stampwise info ...` reports on photos from the command line, no window.
    if (argc > 1 && std::strcmp(argv[1], "info") == 0) {
        QCoreApplication app(argc, argv);
        QCoreApplication::setOrganizationName(QStringLiteral("Stampwise"));
        QCoreApplication::setApplicationName(QStringLiteral("Stampwise"));
        QTextStream out(stdout);
        QTextStream err(stderr);
        return InfoCommand(out, err).run(QCoreApplication::arguments().mid(2));
    }
    // `stampwise stamp ...` stamps photos from the command line; fonts need a GUI
    // application, but no window is opened, so no display is needed either.
    if (argc > 1 && std::strcmp(argv[1], "stamp") == 0) {
        if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM") &&
            qEnvironmentVariableIsEmpty("DISPLAY") &&
            qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY")) {
            qputenv("QT_QPA_PLATFORM", "offscreen");
        }
        QGuiApplication app(argc, argv);
        QGuiApplication::setOrganizationName(QStringLiteral("Stampwise"));
        QGuiApplication::setApplicationName(QStringLiteral("Stampwise"));
        // The run names every photo it could not read; the readers' own
        // complaints would only repeat that.
        QLoggingCategory::setFilterRules(QStringLiteral("qt.gui.imageio*.warning=false"));
        QTextStream out(stdout);
        QTextStream err(stderr);
        return StampCommand(out, err, ::isatty(STDERR_FILENO) == 1)
            .run(QGuiApplication::arguments().mid(2));
    }
    QApplication app(argc, argv);
    QApplication::setOrganizationName(QStringLiteral("Stampwise"));
    QApplication::setApplicationName(QStringLiteral("Stampwise"));
    // Ties the windows to the installed desktop entry and its icon.
    QGuiApplication::setDesktopFileName(QStringLiteral("io.github.stampwise.Stampwise"));
    QApplication::setWindowIcon(QIcon::fromTheme(QStringLiteral("io.github.stampwise.Stampwise")));

    MainWindow window;
    QtAlertPanel alerts(&window);
    QtOpenPanel openPanel(&window);
    StampwiseAppDelegate delegate(alerts, openPanel);
    delegate.connectToWindow(&window);
    delegate.applicationDidFinishLaunching();
    window.show();
    // Photos and folders named on the command line (make run passes the
    // samples) are imported once the window is up; a desktop launcher may
    // give them as file URLs.
    QStringList paths;
    for (const QString& argument : QApplication::arguments().mid(1)) {
        paths.append(argument.startsWith(QLatin1String("file:")) ? QUrl(argument).toLocalFile()
                                                                 : argument);
    }
    if (!paths.isEmpty()) {
        QTimer::singleShot(0, &delegate, [&delegate, paths] { delegate.importPaths(paths); });
    }
    return QApplication::exec();
}
