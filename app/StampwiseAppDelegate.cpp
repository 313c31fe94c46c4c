#include "app/StampwiseAppDelegate.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QCoreApplication>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QScreen>
#include <QScrollArea>
#include <QSettings>
#include <QSplitter>
#include <QToolBar>

#include "app/AboutWindowController.h"
#include "app/MainWindow.h"
#include "app/SafetyWindowController.h"
#include "app/SettingValues.h"
#include "app/SettingsKeys.h"
#include "app/WindowPlacement.h"
#include "browser/AssetCollectionView.h"
#include "platform/AlertPanel.h"
#include "platform/ButtonTitles.h"
#include "platform/ControlTag.h"
#include "platform/MainThread.h"
#include "platform/NotificationCenter.h"
#include "platform/NotificationNames.h"
#include "platform/OpenPanel.h"
#include "platform/OpenPanelRequest.h"
#include "platform/RadioMatrix.h"
#include "preview/QNSDragView.h"
#include "preview/SlideshowView.h"
#include "ui_MainWindow.h"

namespace {
constexpr qint64 kDateSourceMatrix = 32400;
constexpr qint64 kCustomTextField = 35000;
constexpr qint64 kTypeButton = 31007;
constexpr qint64 kLabelTextField = 36007;
constexpr qint64 kTotalAmountField = 36005;
constexpr qint64 kSelectedAmountField = 36006;
constexpr qint64 kOutputFolderField = 35001;
constexpr qint64 kFirstPresetButton = 31080;
constexpr qint64 kLastPresetButton = 31084;

constexpr const char* kQuitTitle = "Quit Stampwise";
constexpr const char* kQuitMessage = "Are you sure to quit Stampwise?";
constexpr const char* kReminderTitle = "Reminder";
constexpr const char* kClearAllMessage = "Are you sure to clear all images?";

constexpr const char* kCantLoadFile = "Can't load file";
constexpr const char* kCantBrowsePath = "Can't browse path";
constexpr const char* kNotADirectory = "Path exists but isn't a directory (%1)";
constexpr const char* kPathDoesNotExist = "Path doesn't exist (%1)";
constexpr const char* kDefaultSortKey = "filename";

constexpr const char* kAboutWindow = "About";
constexpr const char* kSafetyWindow = "Safety";

// Photo-dependent toolbar items and controls, in the order they are switched.
constexpr qint64 kPhotoToolbarItems[] = {30023, 30024, 30025, 30026, 30027};
constexpr qint64 kPhotoControls[] = {31031, 31007, 31039, 31036, 31034, 31037, 31080, 31081, 31082,
                                     31083, 31084, 31202, 31010, 31002, 31035, 31201, 35001};
constexpr qint64 kAlwaysEnabledToolbarItems[] = {30008, 30108};

bool inRange(qint64 tag, qint64 low, qint64 high) {
    return tag >= low && tag <= high;
}

bool isViewSearchTag(qint64 tag) {
    return inRange(tag, 31000, 31999) || inRange(tag, 32200, 32299) || inRange(tag, 34000, 34999) ||
           inRange(tag, 35000, 36999) || inRange(tag, 39000, 39999) || inRange(tag, 40000, 40199);
}

// The widget itself or its first descendant, depth first, carrying the tag.
QWidget* viewWithTag(QWidget* root, qint64 tag) {
    if (ControlTag::hasTag(root) && ControlTag::tagOf(root) == tag) {
        return root;
    }
    for (QObject* child : root->children()) {
        if (auto* widget = qobject_cast<QWidget*>(child)) {
            if (QWidget* found = viewWithTag(widget, tag)) {
                return found;
            }
        }
    }
    return nullptr;
}

bool isInWidgetOfType(const QAction* action, const QMetaObject& type) {
    const QList<QObject*> owners = action->associatedObjects();
    return std::any_of(owners.begin(), owners.end(),
                       [&type](const QObject* o) { return type.cast(o) != nullptr; });
}

QString readString(const QSettings& settings, const char* key) {
    const QVariant value = settings.value(QLatin1String(key));
    if (value.typeId() == QMetaType::QByteArray) {
        return QString::fromUtf8(value.toByteArray());
    }
    return value.canConvert<QString>() ? value.toString() : QString();
}

QString menuTitle(const QAction* action) {
    return action->text().remove(QLatin1Char('&'));
}
}  // namespace

StampwiseAppDelegate::StampwiseAppDelegate(AlertPanel& alerts, OpenPanel& openPanel,
                                           QObject* parent)
    : QObject(parent), alerts_(alerts), openPanel_(openPanel) {}

StampwiseAppDelegate::~StampwiseAppDelegate() {
    NotificationCenter::defaultCenter().removeObserver(this);
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

    window->setShouldClose([this, window] { return windowShouldClose(window); });

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
    hasImage_ = false;
    if (assetCollectionView_) {
        assetCollectionView_->setIsLoadDirector(isLoadDirectory_);
    }
    selectChannel_ = 0;
    selectImageFile_ = QString();
    gDateType_ = 0;
    gTimeType_ = 1;
    isFirstTime_ = 0;
    aDate_ = QDateTime::currentDateTime();
    isLoadDirectory_ = false;
    isFirstTime_ = 0;
    defaultLoadAppSetting();
    if (auto* label = qobject_cast<QLabel*>(getGUIObject(kLabelTextField, nullptr))) {
        QPalette pal = label->palette();
        pal.setColor(QPalette::WindowText, aColor_);
        label->setPalette(pal);
    }
    registerObservers();
    setToolbarStatus(false);
    setWindowToCenter(window_);
}

void StampwiseAppDelegate::registerObservers() {
    NotificationCenter& center = NotificationCenter::defaultCenter();
    center.removeObserver(this);
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
    if (!alerts_.confirm(QLatin1String(kQuitTitle), QLatin1String(kQuitMessage))) {
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
    for (qint64 tag = kFirstPresetButton; tag <= kLastPresetButton; ++tag) {
        if (auto* button = qobject_cast<QAbstractButton*>(getGUIObject(tag, nullptr))) {
            button->setChecked(false);
        }
    }
}

void StampwiseAppDelegate::processGotFileAmount(const Notification& /*notification*/) {
    MainThread::perform([this] { performLongRunningWork(); }, true);
}

void StampwiseAppDelegate::processClickTitleCheckBox(const Notification& /*notification*/) {
    MainThread::perform([this] { performClickTitleCheckBox(); }, true);
}

void StampwiseAppDelegate::performLongRunningWork() {
    redrawAmountInfo();
    isLoadDirectory_ = false;
}

void StampwiseAppDelegate::performClickTitleCheckBox() {
    redrawAmountInfo();
}

// ---- settings

void StampwiseAppDelegate::defaultLoadAppSetting() {
    QSettings settings;
    const bool hasDefaults =
        SettingValues::boolValue(readString(settings, SettingsKeys::kHasDefaults));
    gTimeType_ = SettingValues::integerValue(readString(settings, SettingsKeys::kTimeType));
    gDateType_ = SettingValues::integerValue(readString(settings, SettingsKeys::kDateType));
    if (hasDefaults) {
        const QVariant color = settings.value(QLatin1String(SettingsKeys::kColor));
        if (color.typeId() == QMetaType::QByteArray) {
            aColor_ = SettingValues::decodeColor(color.toByteArray()).value_or(QColor(Qt::red));
        } else if (!aColor_.isValid()) {
            aColor_ = QColor(Qt::red);
        }
        const QVariant font = settings.value(QLatin1String(SettingsKeys::kFont));
        if (font.typeId() == QMetaType::QByteArray) {
            aFont_ = SettingValues::decodeFont(font.toByteArray())
                         .value_or(SettingValues::defaultStampFont());
        } else if (!hasFont_) {
            aFont_ = SettingValues::defaultStampFont();
        }
        hasFont_ = true;
        return;
    }
    isLoadDirectory_ =
        SettingValues::boolValue(readString(settings, SettingsKeys::kIsLoadDirectory));
    standardFontWidth_ =
        SettingValues::floatValue(readString(settings, SettingsKeys::kStandardFontWidth));
    standardFontHeight_ =
        SettingValues::floatValue(readString(settings, SettingsKeys::kStandardFontHeight));
    isSafety_ = SettingValues::boolValue(readString(settings, SettingsKeys::kIsSafety));
    if (settings.contains(QLatin1String(SettingsKeys::kDateTimeString))) {
        dateTimeString_ = readString(settings, SettingsKeys::kDateTimeString);
    } else {
        dateTimeString_.reset();
    }
    aColor_ = QColor(Qt::red);
    aFont_ = SettingValues::defaultStampFont();
    hasFont_ = true;
    defaultSaveAppSetting();
}

void StampwiseAppDelegate::defaultSaveAppSetting() {
    QSettings settings;
    settings.setValue(QLatin1String(SettingsKeys::kHasDefaults),
                      QLatin1String(SettingsKeys::kTrue));
    settings.setValue(QLatin1String(SettingsKeys::kTimeType), QString::number(gTimeType_));
    settings.setValue(QLatin1String(SettingsKeys::kDateType), QString::number(gDateType_));
    settings.setValue(QLatin1String(SettingsKeys::kColor), SettingValues::encodeColor(aColor_));
    settings.setValue(QLatin1String(SettingsKeys::kFont), SettingValues::encodeFont(aFont_));
    settings.sync();
}

// ---- dispatch

QObject* StampwiseAppDelegate::getGUIObject(qint64 tag, QObject* container) const {
    if (inRange(tag, 30000, 30999)) {
        auto* toolbar = qobject_cast<QToolBar*>(container);
        if (toolbar == nullptr) {
            return nullptr;
        }
        const QList<QAction*> items = toolbar->actions();
        for (QAction* item : items) {
            if (ControlTag::hasTag(item) && ControlTag::tagOf(item) == tag) {
                return item;
            }
        }
        return nullptr;
    }
    if (!isViewSearchTag(tag)) {
        return nullptr;
    }
    QWidget* root = qobject_cast<QWidget*>(container);
    if (container == nullptr && window_) {
        root = window_->centralWidget();
    }
    return root != nullptr ? viewWithTag(root, tag) : nullptr;
}

void StampwiseAppDelegate::promptEvent(QObject* sender) {
    if (sender == nullptr) {
        return;
    }
    const qint64 tag = ControlTag::tagOf(sender);
    if (qobject_cast<RadioMatrix*>(sender) != nullptr) {
        if (tag == kDateSourceMatrix) {
            chooseDateSource();
        }
        return;
    }
    auto* action = qobject_cast<QAction*>(sender);
    if (action != nullptr && inRange(tag, 32500, 32510) &&
        isInWidgetOfType(action, QMenu::staticMetaObject)) {
        dispatchMenuItem(tag);
        return;
    }
    if (auto* combo = qobject_cast<QComboBox*>(sender)) {
        // An editable combo box stands for a combo box, a fixed one for a pop-up button.
        if (combo->isEditable()) {
            dispatchComboBox(tag, combo);
        } else {
            dispatchPopUp(tag, combo);
        }
        return;
    }
    if (qobject_cast<QAbstractButton*>(sender) != nullptr) {
        dispatchButton(tag, sender);
        return;
    }
    if (action != nullptr && isInWidgetOfType(action, QToolBar::staticMetaObject)) {
        dispatchToolbarItem(tag);
    }
}

void StampwiseAppDelegate::chooseDateSource() {
    const int row = aMatrix_ ? aMatrix_->selectedRow() : 0;
    QObject* field = getGUIObject(kCustomTextField, nullptr);
    QObject* typeButton = getGUIObject(kTypeButton, nullptr);
    setEnabled(field, row == 2);
    setEnabled(typeButton, row != 2);
    selectChannel_ = row;
}

void StampwiseAppDelegate::dispatchMenuItem(qint64 tag) {
    switch (tag) {
        case 32504:
            openBrowserWindowDirectory();
            break;
        case 32505:
            openBrowserWindowFile();
            break;
        case 32509:
            removeTickedAndUpdateState();
            break;
        case 32500:
            openSecondaryWindow(QLatin1String(kAboutWindow));
            break;
        case 32502:
            if (alerts_.confirm(QLatin1String(kQuitTitle), QLatin1String(kQuitMessage))) {
                closeApp();
            }
            break;
        case 32506:
            confirmClearAll();
            break;
        case 32507:
            selectAllImage();
            break;
        case 32508:
            deSelectAllImage();
            break;
        default:
            break;
    }
}

void StampwiseAppDelegate::dispatchToolbarItem(qint64 tag) {
    switch (tag) {
        case 30008:
            openBrowserWindowFile();
            break;
        case 30108:
            openBrowserWindowDirectory();
            break;
        case 30023:
            removeTickedAndUpdateState();
            break;
        case 30024:
            confirmClearAll();
            break;
        case 30025:
            selectAllImage();
            break;
        case 30026:
            deSelectAllImage();
            break;
        default:
            break;
    }
}

void StampwiseAppDelegate::dispatchButton(qint64 tag, QObject* sender) {
    if (inRange(tag, kFirstPresetButton, kLastPresetButton)) {
        pressPresetButton(tag);
        return;
    }
    switch (tag) {
        case 31002:
            openSecondaryWindow(QLatin1String(kSafetyWindow));
            break;
        case 31010:
            openSaveWindow();
            break;
        case 31034:
            if (aQNSDragView_) {
                auto* box = qobject_cast<QAbstractButton*>(sender);
                aQNSDragView_->setIsPreview(box != nullptr && box->isChecked());
                aQNSDragView_->repaint();
            }
            break;
        default:
            break;
    }
}

void StampwiseAppDelegate::dispatchPopUp(qint64 tag, QObject* sender) {
    auto* popUp = qobject_cast<QComboBox*>(sender);
    if (tag == 31200 && assetCollectionView_ && popUp->currentIndex() >= 0) {
        assetCollectionView_->setSubviewsLayoutType(popUp->currentIndex());
    }
}

void StampwiseAppDelegate::dispatchComboBox(qint64 tag, QObject* sender) {
    auto* combo = qobject_cast<QComboBox*>(sender);
    if (tag == 40100 && assetCollectionView_ && combo->currentIndex() >= 0) {
        assetCollectionView_->setSubviewsLayoutType(combo->currentIndex());
    }
}

void StampwiseAppDelegate::pressPresetButton(qint64 tag) {
    for (qint64 t = kFirstPresetButton; t <= kLastPresetButton; ++t) {
        if (auto* button = qobject_cast<QAbstractButton*>(getGUIObject(t, nullptr))) {
            button->setChecked(t == tag);
        }
    }
}

void StampwiseAppDelegate::confirmClearAll() {
    if (alerts_.confirm(QLatin1String(kReminderTitle), QLatin1String(kClearAllMessage))) {
        removeAllImage();
    }
}

void StampwiseAppDelegate::openSecondaryWindow(const QString& name) {
    std::unique_ptr<QWidget>& slot = secondaryWindows_[name];
    if (!slot) {
        if (name == QLatin1String(kAboutWindow)) {
            slot = std::make_unique<AboutWindowController>();
        } else if (name == QLatin1String(kSafetyWindow)) {
            slot = std::make_unique<SafetyWindowController>();
        } else {
            secondaryWindows_.erase(name);
            return;
        }
    }
    setWindowToCenter(slot.get());
    slot->show();
    slot->raise();
    slot->activateWindow();
}

QWidget* StampwiseAppDelegate::secondaryWindow(const QString& name) const {
    const auto it = secondaryWindows_.find(name);
    return it != secondaryWindows_.end() ? it->second.get() : nullptr;
}

// ---- enabled states and counters

void StampwiseAppDelegate::setEnabled(QObject* control, bool enabled) {
    if (auto* action = qobject_cast<QAction*>(control)) {
        action->setEnabled(enabled);
    } else if (auto* widget = qobject_cast<QWidget*>(control)) {
        widget->setEnabled(enabled);
    }
}

void StampwiseAppDelegate::setToolbarStatus(bool photosLoaded) {
    for (qint64 tag : kAlwaysEnabledToolbarItems) {
        setEnabled(getGUIObject(tag, aToolbar_), true);
    }
    for (qint64 tag : kPhotoToolbarItems) {
        setEnabled(getGUIObject(tag, aToolbar_), photosLoaded);
    }
    for (qint64 tag : kPhotoControls) {
        setEnabled(getGUIObject(tag, nullptr), photosLoaded);
    }
    setEnabled(aMatrix_, photosLoaded);
    if (!mainMenu_) {
        return;
    }
    const QList<QAction*> topLevel = mainMenu_->actions();
    for (QAction* item : topLevel) {
        QMenu* menu = item->menu();
        if (menu == nullptr) {
            continue;
        }
        const QList<QAction*> entries = menu->actions();
        const QString title = menuTitle(item);
        QList<int> positions;
        if (title == QLatin1String("Edit")) {
            positions = {0, 1, 3, 4};
        } else if (title == QLatin1String("Action")) {
            positions = {0};
        }
        for (int position : positions) {
            if (position < entries.size()) {
                entries.at(position)->setEnabled(photosLoaded);
            }
        }
    }
}

void StampwiseAppDelegate::setControlText(qint64 tag, const QString& text) {
    QObject* control = getGUIObject(tag, nullptr);
    if (auto* label = qobject_cast<QLabel*>(control)) {
        label->setText(text);
    } else if (auto* field = qobject_cast<QLineEdit*>(control)) {
        field->setText(text);
    }
}

void StampwiseAppDelegate::redrawAmountInfo() {
    qint64 total = 0;
    qint64 ticked = 0;
    if (assetCollection_) {
        const QList<AssetPtr>& assets = assetCollection_->assets();
        total = assets.size();
        for (qsizetype i = assets.size() - 1; i >= 0; --i) {
            if (assets.at(i)->includedInSlideshow()) {
                ++ticked;
            }
        }
    }
    totalAmount_ = total;
    totalSelectedAmount_ = ticked;
    setControlText(kSelectedAmountField, QString::number(ticked));
    setControlText(kTotalAmountField, QString::number(total));
    setToolbarStatus(total != 0);
}

// ---- catalog commands

void StampwiseAppDelegate::setAssetCollection(std::unique_ptr<AssetCollection> collection) {
    assetCollection_ = std::move(collection);
}

void StampwiseAppDelegate::openBrowserWindowFile() {
    const std::optional<QStringList> chosen = openPanel_.run({true, false, true});
    if (chosen) {
        openFile(*chosen);
    }
}

void StampwiseAppDelegate::openBrowserWindowDirectory() {
    const std::optional<QStringList> chosen = openPanel_.run({false, true, false});
    if (!chosen || chosen->isEmpty()) {
        return;
    }
    isLoadDirectory_ = true;
    openDirectory(chosen->first());
}

bool StampwiseAppDelegate::openFile(QStringList paths) {
    for (qsizetype i = paths.size() - 1; i >= 0; --i) {
        const QFileInfo info(paths.at(i));
        if (!info.exists() || info.isDir()) {
            paths.removeAt(i);
        }
    }
    if (paths.isEmpty()) {
        alerts_.inform(QString(), QLatin1String(kCantLoadFile), QLatin1String(ButtonTitles::kOK));
        return false;
    }
    newInitAssetWindowFiles(paths);
    return true;
}

bool StampwiseAppDelegate::openDirectory(const QString& path) {
    const QFileInfo info(path);
    if (info.exists() && info.isDir()) {
        newInitAssetWindow(path);
        return true;
    }
    const QString why =
        QString::fromLatin1(info.exists() ? kNotADirectory : kPathDoesNotExist).arg(path);
    alerts_.inform(QString(), QLatin1String(kCantBrowsePath), QLatin1String(ButtonTitles::kOK),
                   why);
    return false;
}

AssetCollection& StampwiseAppDelegate::catalogFor(const QUrl& rootURL) {
    sortKey_ = QLatin1String(kDefaultSortKey);
    sortsAscending_ = true;
    if (!assetCollection_) {
        assetCollection_ = std::make_unique<AssetCollection>(rootURL);
    }
    return *assetCollection_;
}

void StampwiseAppDelegate::newInitAssetWindowFiles(const QStringList& paths) {
    AssetCollection& catalog = catalogFor(QUrl::fromLocalFile(QString()));
    catalog.setFilesArray(paths);
    catalog.setIsFile(true);
    catalog.startRefresh();
}

void StampwiseAppDelegate::newInitAssetWindow(const QString& folder) {
    AssetCollection& catalog = catalogFor(QUrl::fromLocalFile(folder));
    catalog.setRootURL(QUrl::fromLocalFile(folder));
    catalog.setIsFile(false);
    catalog.startRefresh();
}

void StampwiseAppDelegate::openSaveWindow() {
    const std::optional<QStringList> chosen = openPanel_.run({false, true, false});
    if (chosen && !chosen->isEmpty()) {
        setControlText(kOutputFolderField, chosen->first());
    }
}

void StampwiseAppDelegate::refresh() {
    if (assetCollection_) {
        assetCollection_->startRefresh();
    }
}

void StampwiseAppDelegate::removeSelectedImage() {
    bool shownPhotoRemoved = false;
    if (assetCollection_) {
        QList<AssetPtr>& assets = assetCollection_->assets();
        for (qsizetype i = assets.size() - 1; i >= 0; --i) {
            if (!assets.at(i)->includedInSlideshow()) {
                continue;
            }
            shownPhotoRemoved =
                shownPhotoRemoved || assets.at(i)->fullFilename() == selectImageFile_;
            assets.removeAt(i);
        }
    }
    redrawAmountInfo();
    if (shownPhotoRemoved) {
        if (slideshowView_) {
            slideshowView_->clearImage();
        }
        if (aQNSDragView_) {
            aQNSDragView_->hide();
        }
        hasImage_ = false;
    }
}

void StampwiseAppDelegate::removeTickedAndUpdateState() {
    removeSelectedImage();
    if (!assetCollection_ || assetCollection_->assets().isEmpty()) {
        setToolbarStatus(false);
    }
}

void StampwiseAppDelegate::removeAllImage() {
    if (assetCollection_) {
        QList<AssetPtr>& assets = assetCollection_->assets();
        for (qsizetype i = assets.size() - 1; i >= 0; --i) {
            assets.removeAt(i);
        }
    }
    if (assetCollectionView_ && aNSScrollView_) {
        assetCollectionView_->setGeometry(QRect(QPoint(0, 0), aNSScrollView_->size()));
    }
    redrawAmountInfo();
    if (slideshowView_) {
        slideshowView_->clearImage();
    }
    if (aQNSDragView_) {
        aQNSDragView_->hide();
    }
    hasImage_ = false;
}

void StampwiseAppDelegate::selectAllImage() {
    if (assetCollection_) {
        for (const AssetPtr& asset : assetCollection_->assets()) {
            asset->setIncludedInSlideshow(true);
        }
    }
    redrawAmountInfo();
}

void StampwiseAppDelegate::deSelectAllImage() {
    if (assetCollection_) {
        for (const AssetPtr& asset : assetCollection_->assets()) {
            asset->setIncludedInSlideshow(false);
        }
    }
    redrawAmountInfo();
}
