#pragma once

#include <QSettings>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <memory>

#include "app/MainWindow.h"
#include "app/StampwiseAppDelegate.h"
#include "common/CatalogBuilder.h"
#include "common/FakeAlertPanel.h"
#include "common/FakeOpenPanel.h"

// The real main window and controller, with recording alerts and open panels
// and a settings store of their own.
struct AppFixture {
    QTemporaryDir settingsDir;
    FakeAlertPanel alerts;
    FakeOpenPanel openPanel;
    std::unique_ptr<MainWindow> window;
    std::unique_ptr<StampwiseAppDelegate> delegate;

    AppFixture() {
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, settingsDir.path());
        QSettings().clear();
    }

    // Builds the window and controller; launch runs the start-up sequence.
    StampwiseAppDelegate& start(bool launch = true) {
        delegate.reset();
        window = std::make_unique<MainWindow>();
        delegate = std::make_unique<StampwiseAppDelegate>(alerts, openPanel);
        delegate->connectToWindow(window.get());
        if (launch) {
            delegate->applicationDidFinishLaunching();
        }
        return *delegate;
    }

    // A catalog of photos named p0.jpg... in folder (made-up ones by default),
    // counted as after a scan.
    void load(int count, int ticked = -1, const QString& folder = QStringLiteral("/tmp")) {
        delegate->setAssetCollection(catalogOf(count, ticked, folder));
        delegate->redrawAmountInfo();
    }

    // Shows the window at a fixed size and makes path the model photo; true once
    // its preview is on screen and still.
    bool showModel(const QString& path) {
        window->resize(1100, 760);
        window->show();
        QSignalSpy shown(delegate.get(), &StampwiseAppDelegate::previewShown);
        delegate->displayImageFileName(path);
        // Polled: a quit confirmed in an earlier test stops nested event loops.
        SlideshowView* preview = window->findChild<SlideshowView*>();
        for (int i = 0; i < 500 && (shown.isEmpty() || preview->isTransitionRunning()); ++i) {
            QTest::qWait(20);
        }
        return !shown.isEmpty() && !preview->isTransitionRunning();
    }

    template <typename T>
    T* control(qint64 tag) {
        return qobject_cast<T*>(delegate->getGUIObject(tag, nullptr));
    }
    // Any tagged object of the window by its name in MainWindow.ui.
    QObject* named(const char* objectName) {
        return window->findChild<QObject*>(QLatin1String(objectName));
    }
};
