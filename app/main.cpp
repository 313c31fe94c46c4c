#include <QApplication>

#include "app/MainWindow.h"
#include "app/StampwiseAppDelegate.h"
#include "platform/QtAlertPanel.h"
#include "platform/QtOpenPanel.h"

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    QApplication::setOrganizationName(QStringLiteral("Stampwise"));
    QApplication::setApplicationName(QStringLiteral("Stampwise"));

    MainWindow window;
    QtAlertPanel alerts(&window);
    QtOpenPanel openPanel(&window);
    StampwiseAppDelegate delegate(alerts, openPanel);
    delegate.connectToWindow(&window);
    delegate.applicationDidFinishLaunching();
    window.show();
    return QApplication::exec();
}
