#pragma once

#include <QColor>
#include <QDateTime>
#include <QFont>
#include <QObject>
#include <QPointer>
#include <QString>
#include <map>
#include <memory>
#include <optional>

#include <QMenuBar>
#include <QScrollArea>
#include <QSplitter>
#include <QToolBar>
#include "app/MainWindow.h"
#include "browser/AssetCollectionView.h"
#include "catalog/AssetCollection.h"
#include "platform/Notification.h"
#include "platform/RadioMatrix.h"
#include "preview/QNSDragView.h"
#include "preview/SlideshowView.h"

class AlertPanel;
class OpenPanel;
class QWidget;

// The one application controller: all stamping state, start-up, settings,
// command dispatch by control tag and the enabled states of the commands.
class StampwiseAppDelegate : public QObject {
    Q_OBJECT
  public:
    StampwiseAppDelegate(AlertPanel& alerts, OpenPanel& openPanel, QObject* parent = nullptr);
    ~StampwiseAppDelegate() override;

    // Takes the window's controls as outlets and sends every tagged control to promptEvent.
    void connectToWindow(MainWindow* window);

    void applicationDidFinishLaunching();
    bool windowShouldClose(QWidget* window);
    void closeApp();
    void setWindowToCenter(QWidget* window);

    void processSelectImageHighlight(const Notification& notification);
    void processMoveDateTime(const Notification& notification);
    void processGotFileAmount(const Notification& notification);
    void processClickTitleCheckBox(const Notification& notification);
    void performLongRunningWork();
    void performClickTitleCheckBox();

    void defaultLoadAppSetting();
    void defaultSaveAppSetting();

    void promptEvent(QObject* sender);
    QObject* getGUIObject(qint64 tag, QObject* container) const;

    void setToolbarStatus(bool photosLoaded);
    void redrawAmountInfo();

    // Catalog commands reached from the dispatch.
    void openBrowserWindowFile();
    void openBrowserWindowDirectory();
    bool openFile(QStringList paths);
    bool openDirectory(const QString& path);
    void newInitAssetWindowFiles(const QStringList& paths);
    void newInitAssetWindow(const QString& folder);
    void refresh();
    void openSaveWindow();
    void removeSelectedImage();
    void removeAllImage();
    void selectAllImage();
    void deSelectAllImage();

    // Accessors.
    bool hasImage() const { return hasImage_; }
    void setHasImage(bool value) { hasImage_ = value; }
    qint64 selectChannel() const { return selectChannel_; }
    void setSelectChannel(qint64 value) { selectChannel_ = value; }
    qint64 totalAmount() const { return totalAmount_; }
    qint64 totalSelectedAmount() const { return totalSelectedAmount_; }
    qint64 isFirstTime() const { return isFirstTime_; }
    void setIsFirstTime(qint64 value) { isFirstTime_ = value; }
    QString selectImageFile() const { return selectImageFile_; }
    QString sortKey() const { return sortKey_; }
    bool sortsAscending() const { return sortsAscending_; }
    std::optional<QDateTime> aDate() const { return aDate_; }
    QColor aColor() const { return aColor_; }
    void setAColor(const QColor& color) { aColor_ = color; }
    QFont aFont() const { return aFont_; }
    void setAFont(const QFont& font) { aFont_ = font; }
    bool isLoadDirectory() const { return isLoadDirectory_; }
    void setIsLoadDirectory(bool value) { isLoadDirectory_ = value; }
    bool isSafety() const { return isSafety_; }
    void setIsSafety(bool value) { isSafety_ = value; }
    float standardFontWidth() const { return standardFontWidth_; }
    void setStandardFontWidth(float value) { standardFontWidth_ = value; }
    float standardFontHeight() const { return standardFontHeight_; }
    void setStandardFontHeight(float value) { standardFontHeight_ = value; }
    qint64 gTimeType() const { return gTimeType_; }
    void setGTimeType(qint64 value) { gTimeType_ = value; }
    qint64 gDateType() const { return gDateType_; }
    void setGDateType(qint64 value) { gDateType_ = value; }
    std::optional<QString> dateTimeString() const { return dateTimeString_; }
    void setDateTimeString(const std::optional<QString>& value) { dateTimeString_ = value; }
    AssetCollection* assetCollection() const { return assetCollection_.get(); }
    void setAssetCollection(std::unique_ptr<AssetCollection> collection);

    QToolBar* aToolbar() const { return aToolbar_; }
    RadioMatrix* aMatrix() const { return aMatrix_; }
    QWidget* window() const;
    // Secondary windows opened so far (About, Safety, Type), for inspection.
    QWidget* secondaryWindow(const QString& name) const;

  signals:
    // Sent just before the application leaves its event loop for good.
    void applicationWillTerminate();

  private:
    void registerObservers();
    void dispatchMenuItem(qint64 tag);
    void dispatchToolbarItem(qint64 tag);
    void dispatchButton(qint64 tag, QObject* sender);
    void dispatchPopUp(qint64 tag, QObject* sender);
    void dispatchComboBox(qint64 tag, QObject* sender);
    void chooseDateSource();
    void pressPresetButton(qint64 tag);
    void confirmClearAll();
    void removeTickedAndUpdateState();
    AssetCollection& catalogFor(const QUrl& rootURL);
    void openSecondaryWindow(const QString& name);
    void setEnabled(QObject* control, bool enabled);
    void setControlText(qint64 tag, const QString& text);

    AlertPanel& alerts_;
    OpenPanel& openPanel_;

    bool hasImage_ = false;
    float miniX_ = 0, miniY_ = 0, maxX_ = 0, maxY_ = 0;
    qint64 selectChannel_ = 0;
    float bakIMG_miniX_ = 0, bakIMG_miniY_ = 0, bakIMG_maxX_ = 0, bakIMG_maxY_ = 0;
    float bakTIME_miniX_ = 0, bakTIME_miniY_ = 0, bakTIME_maxX_ = 0, bakTIME_maxY_ = 0;
    QString sortKey_;
    bool sortsAscending_ = false;
    qint64 totalAmount_ = 0;
    qint64 totalSelectedAmount_ = 0;
    float imageOriginalWidth_ = 0, imageOriginalHeight_ = 0;
    float imageWidth_ = 0, imageHeight_ = 0;
    qint64 isFirstTime_ = 0;
    QString selectImageFile_;
    std::optional<QDateTime> aDate_;
    QColor aColor_;
    QFont aFont_;
    bool hasFont_ = false;
    bool isLoadDirectory_ = false;
    bool isSafety_ = false;
    float standardFontWidth_ = 0, standardFontHeight_ = 0;
    qint64 gTimeType_ = 0;
    qint64 gDateType_ = 0;
    std::optional<QString> dateTimeString_;

    QPointer<MainWindow> window_;
    QPointer<RadioMatrix> aMatrix_;
    QPointer<QMenuBar> mainMenu_;
    QPointer<AssetCollectionView> assetCollectionView_;
    QPointer<QScrollArea> aNSScrollView_;
    QPointer<QToolBar> aToolbar_;
    QPointer<QNSDragView> aQNSDragView_;
    QPointer<QSplitter> splitView_;
    QPointer<SlideshowView> slideshowView_;
    std::unique_ptr<AssetCollection> assetCollection_;
    std::map<QString, std::unique_ptr<QWidget>> secondaryWindows_;
};
