#pragma once

#include <QSettings>
#include <QTemporaryDir>
#include <memory>

#include "app/MainWindow.h"
#include "app/StampwiseAppDelegate.h"
#include "catalog/AssetCollection.h"
#include "common/FakePanels.h"

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

    // Records on made-up paths ("/tmp/p0.jpg", ...), the first `ticked` of them
    // ticked (all when negative). Nothing is read from disk.
    static std::unique_ptr<AssetCollection> catalogOf(int count, int ticked = -1) {
        auto catalog = std::make_unique<AssetCollection>(QUrl());
        for (int i = 0; i < count; ++i) {
            auto asset =
                std::make_shared<Asset>(QUrl::fromLocalFile(QStringLiteral("/tmp/p%1.jpg").arg(i)));
            asset->setIncludedInSlideshow(ticked < 0 || i < ticked);
            catalog->addAsset(asset);
        }
        return catalog;
    }
    // Such a catalog, counted as after a scan.
    void load(int count, int ticked = -1) {
        delegate->setAssetCollection(catalogOf(count, ticked));
        delegate->redrawAmountInfo();
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
