#include "app/StampwiseAppDelegate.h"

#include "app/OptionsWindowController.h"

#include <QAbstractButton>
#include <QAction>
#include <QComboBox>
#include <QCoreApplication>
#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QScreen>

#include "app/ColourChooser.h"
#include "app/FontChooser.h"
#include "app/Messages.h"
#include "app/RunProgress.h"
#include "app/WindowPlacement.h"
#include "platform/AlertPanel.h"
#include "platform/ControlTag.h"
#include "platform/MainThread.h"
#include "platform/NotificationCenter.h"
#include "platform/NotificationNames.h"
#include "ui_MainWindow.h"

using namespace ControlRegistry;

StampwiseAppDelegate::StampwiseAppDelegate(AlertPanel& alerts, OpenPanel& openPanel,
                                           QObject* parent)
    : QObject(parent), alerts_(alerts), openPanel_(openPanel) {}

StampwiseAppDelegate::~StampwiseAppDelegate() {
    NotificationCenter::defaultCenter().removeObserver(this);
    if (assetCollectionView_) {
        assetCollectionView_->setAssetCollection(nullptr);
    }
}

QWidget* StampwiseAppDelegate::window() const {
    return window_.data();
}

void StampwiseAppDelegate::connectToWindow(MainWindow* window) {
    window_ = window;
    Ui::MainWindow& ui = window->ui();
    aMatrix_ = ui.dateSourceMatrix;
    mainMenu_ = ui.mainMenu;
    assetCollectionView_ = ui.assetCollectionView;
    aNSScrollView_ = ui.aNSScrollView;
    aToolbar_ = ui.aToolbar;
    aQNSDragView_ = ui.aQNSDragView;
    splitView_ = ui.splitView;
    slideshowView_ = ui.slideshowView;
    aQNSDragView_->setAtextfield(ui.atextfield);
    slideshowView_->installEventFilter(this);
    aNSScrollView_->installEventFilter(this);
    // The divider is the browser side's width: keep it within its bounds.
    ui.browserSide->setMinimumWidth(static_cast<int>(constrainMinCoordinate(0)));
    ui.browserSide->setMaximumWidth(static_cast<int>(constrainMaxCoordinate(1e9)));
    connect(splitView_, &QSplitter::splitterMoved, this, [this] { splitViewDidResizeSubviews(); });
    connect(ui.customTextField, &QLineEdit::textChanged, this, [this] { controlTextDidChange(); });

    window->setShouldClose([this, window] { return windowShouldClose(window); });
    connectImports(window);
    connectBrowserOptions(window);
    if (auto* options = window->findChild<QAbstractButton*>(QStringLiteral("optionsButton"))) {
        connect(options, &QAbstractButton::clicked, this, &StampwiseAppDelegate::openOptionsWindow);
    }

    QList<QObject*> tagged = window->findChildren<QObject*>();
    for (QObject* object : tagged) {
        if (!ControlTag::hasTag(object)) {
            continue;
        }
        if (auto* action = qobject_cast<QAction*>(object)) {
            connect(action, &QAction::triggered, this, [this, action] { promptEvent(action); });
        } else if (auto* matrix = qobject_cast<RadioMatrix*>(object)) {
            connect(matrix, &RadioMatrix::cellClicked, this,
                    [this, matrix] { promptEvent(matrix); });
        } else if (auto* combo = qobject_cast<QComboBox*>(object)) {
            connect(combo, &QComboBox::activated, this, [this, combo] { promptEvent(combo); });
        } else if (auto* button = qobject_cast<QAbstractButton*>(object)) {
            connect(button, &QAbstractButton::clicked, this,
                    [this, button] { promptEvent(button); });
        }
    }
}

// ---- start-up and quitting

void StampwiseAppDelegate::applicationDidFinishLaunching() {
    state_.model.hasImage = false;
    if (assetCollectionView_) {
        assetCollectionView_->setIsLoadDirector(state_.catalog.isLoadDirectory);
    }
    state_.model.selectChannel = 0;
    state_.model.selectImageFile = QString();
    state_.style.gDateType = 0;
    state_.style.gTimeType = 1;
    state_.placement.isFirstTime = 0;
    state_.model.aDate = QDateTime::currentDateTime();
    state_.catalog.isLoadDirectory = false;
    state_.placement.isFirstTime = 0;
    defaultLoadAppSetting();
    loadBrowserOptions();
    loadStampOptions();
    if (auto* label = qobject_cast<QLabel*>(getGUIObject(Tag::kLabelTextField, nullptr))) {
        QPalette pal = label->palette();
        pal.setColor(QPalette::WindowText, state_.style.aColor);
        label->setPalette(pal);
    }
    registerObservers();
    setToolbarStatus(false);
    setWindowToCenter(window_);
}

void StampwiseAppDelegate::registerObservers() {
    NotificationCenter& center = NotificationCenter::defaultCenter();
    center.removeObserver(this);
    center.addObserver(this, NotificationNames::kSelectImageMouseDown,
                       [this](const Notification& n) { processSelectImageMouseDown(n); });
    center.addObserver(this, NotificationNames::kSelectImageHighlight,
                       [this](const Notification& n) { processSelectImageHighlight(n); });
    center.addObserver(this, NotificationNames::kMoveDateTime,
                       [this](const Notification& n) { processMoveDateTime(n); });
    center.addObserver(this, NotificationNames::kGotFileAmount,
                       [this](const Notification& n) { processGotFileAmount(n); });
    center.addObserver(this, NotificationNames::kClickTitleCheckBox,
                       [this](const Notification& n) { processClickTitleCheckBox(n); });
}

bool StampwiseAppDelegate::windowShouldClose(QWidget* /*window*/) {
    if (!alerts_.confirm(QLatin1String(Messages::kQuitTitle),
                         QLatin1String(Messages::kQuitMessage))) {
        return false;
    }
    closeApp();
    return true;
}

void StampwiseAppDelegate::closeApp() {
    emit applicationWillTerminate();
    if (assetCollection_) {
        assetCollection_->stopScan();
    }
    // exit() leaves the event loop without sending the windows another close request.
    QCoreApplication::exit(0);
}

void StampwiseAppDelegate::setWindowToCenter(QWidget* window) {
    if (window == nullptr) {
        return;
    }
    const QScreen* screen = QGuiApplication::primaryScreen();
    if (screen == nullptr) {
        return;
    }
    const QSize screenSize = screen->geometry().size();
    const QRect frame = window->frameGeometry();
    const QPointF origin = WindowPlacement::centredOrigin(screenSize, frame.size());
    // The origin is the frame's lower-left corner with y up; Qt places the top-left.
    const double top = screenSize.height() - origin.y() - frame.height();
    window->move(static_cast<int>(origin.x()), static_cast<int>(top));
    if (window->isVisible()) {
        window->repaint();
    }
}

// ---- notifications

void StampwiseAppDelegate::processSelectImageHighlight(const Notification& /*notification*/) {
    if (!aQNSDragView_) {
        return;
    }
    if (slideshowView_ && aQNSDragView_->parentWidget() != slideshowView_) {
        const bool visible = aQNSDragView_->isVisible();
        aQNSDragView_->setParent(slideshowView_);
        aQNSDragView_->setVisible(visible);
    }
    aQNSDragView_->raise();
}

void StampwiseAppDelegate::processMoveDateTime(const Notification& /*notification*/) {
    for (qint64 tag = Tag::kFirstPreset; tag <= Tag::kFirstPreset + Tag::kPresetCount - 1; ++tag) {
        if (auto* button = qobject_cast<QAbstractButton*>(getGUIObject(tag, nullptr))) {
            button->setChecked(false);
        }
    }
    redrawAll(QStringLiteral("1"));
}

void StampwiseAppDelegate::processGotFileAmount(const Notification& /*notification*/) {
    MainThread::perform([this] { performLongRunningWork(); }, true);
}

void StampwiseAppDelegate::processClickTitleCheckBox(const Notification& /*notification*/) {
    MainThread::perform([this] { performClickTitleCheckBox(); }, true);
}

void StampwiseAppDelegate::performLongRunningWork() {
    redrawAmountInfo();
    state_.catalog.isLoadDirectory = false;
    resizeAssetCollectionView();
    redrawAll(QStringLiteral("1"));
}

void StampwiseAppDelegate::performClickTitleCheckBox() {
    redrawAmountInfo();
}
