#pragma once

#include <QAbstractButton>
#include <QAction>
#include <QComboBox>
#include <QRadioButton>
#include <QSettings>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <memory>

#include "app/MainWindow.h"
#include "app/StampwiseAppDelegate.h"
#include "catalog/AssetCollection.h"
#include "common/FakePanels.h"
#include "platform/RadioMatrix.h"

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

    // Builds the window and controller and runs the start-up sequence.
    StampwiseAppDelegate& start() {
        delegate.reset();
        window = std::make_unique<MainWindow>();
        delegate = std::make_unique<StampwiseAppDelegate>(alerts, openPanel);
        delegate->connectToWindow(window.get());
        delegate->applicationDidFinishLaunching();
        return *delegate;
    }

    // Records named p0.jpg... in folder (made-up ones by default), the first
    // `ticked` of them ticked (all when negative). Nothing is read from disk.
    static std::unique_ptr<AssetCollection> catalogOf(int count, int ticked = -1,
                                                      const QString& folder = "/tmp") {
        auto catalog = std::make_unique<AssetCollection>(QUrl());
        for (int i = 0; i < count; ++i) {
            auto asset = std::make_shared<Asset>(
                QUrl::fromLocalFile(QStringLiteral("%1/p%2.jpg").arg(folder).arg(i)));
            asset->setIncludedInSlideshow(ticked < 0 || i < ticked);
            catalog->addAsset(asset);
        }
        return catalog;
    }
    // Such a catalog, counted as after a scan.
    void load(int count, int ticked = -1, const QString& folder = "/tmp") {
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

    // Uses the control as a person would.
    static void use(QObject* control) {
        if (auto* action = qobject_cast<QAction*>(control)) {
            action->trigger();
        } else if (auto* matrix = qobject_cast<RadioMatrix*>(control)) {
            matrix->cell(2)->click();
        } else if (auto* combo = qobject_cast<QComboBox*>(control)) {
            combo->setCurrentIndex(0);
            emit combo->activated(0);
        } else {
            qobject_cast<QAbstractButton*>(control)->click();
        }
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
