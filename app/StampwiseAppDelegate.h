#pragma once

#include <QMenuBar>
#include <QObject>
#include <QPointer>
#include <QScrollArea>
#include <QSplitter>
#include <QString>
#include <QToolBar>
#include <map>
#include <memory>
#include <optional>

#include "app/ControlRegistry.h"
#include "app/ControllerState.h"
#include "app/MainWindow.h"
#include "app/MyProtocolDelegate.h"
#include "browser/AssetCollectionView.h"
#include "catalog/AssetCollection.h"
#include "platform/Notification.h"
#include "platform/RadioMatrix.h"
#include "preview/QNSDragView.h"
#include "preview/SlideshowView.h"
#include "stamp/PreviewLayout.h"
#include "stamp/StampGeometry.h"

class AlertPanel;
class ColourChooser;
class FontChooser;
class ImageSource;
class RunProgress;
class OptionsWindowController;
class QComboBox;
class QTimer;
class OpenPanel;
class QWidget;

// The one application controller: all stamping state, start-up, settings,
// command dispatch by control tag and the enabled states of the commands.
// Its implementation is split by topic: StampwiseAppDelegate.cpp (start-up,
// quitting, notifications), ...Settings.cpp, ...Dispatch.cpp, ...Toolbar.cpp
// (enabled states and counters), ...Catalog.cpp (catalog commands),
// ...ModelPhoto.cpp (model photo, date text, measuring), ...PreviewLayout.cpp,
// ...Style.cpp (font and colour), ...BrowserOptions.cpp and ...StampRun.cpp.
class StampwiseAppDelegate : public QObject, public MyProtocolDelegate {
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

    void processSelectImageMouseDown(const Notification& notification);
    void processSelectImageHighlight(const Notification& notification);
    void processMoveDateTime(const Notification& notification);
    void processGotFileAmount(const Notification& notification);
    void processClickTitleCheckBox(const Notification& notification);
    void performLongRunningWork();
    void performClickTitleCheckBox();

    void defaultLoadAppSetting() override;
    void defaultSaveAppSetting() override;

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
    void setSortKey(const QString& key);
    void setSortsAscending(bool ascending);
    void updateSortDescriptors();

    // The model photo and its date text.
    void displayImageFileName(const QString& path);
    void reWriteDataTimeFromChannel(qint64 channel);
    void reWriteDataTime() override;
    void controlTextDidChange();

    // The label text measured in the stamp font, and the placement snapshot.
    void getStandardFontSize(QObject* textControl);
    QSizeF getOutputStandardFontSize(QObject* textControl) const;
    void backupPositionAndSize(float x, float y, float w, float h);
    StampGeometry::TPosition calculateOutputPosition(float width, float height);

    // Layout of the preview, the label and the browser.
    void redrawAll(const QString& argument);
    void locateSlideshowView(int position);
    void resizeAssetCollectionView();
    double constrainMinCoordinate(double proposed) const;
    double constrainMaxCoordinate(double proposed) const;
    void splitViewDidResizeSubviews();
    qint32 subviewsLayoutType() const { return 0; }
    void setSubviewsLayoutType(qint32 /*type*/) {}

    // Font and colour choosers; every change applies at once.
    void openFontPanel();
    void changeFont(const QFont& chosen);
    void changeDefaultFont(const QFont& selected);
    int validModesForFontPanel() const;
    void openColorPanel();
    void colorUpdate(const QColor& colour);

    // The stamp options (StampwiseAppDelegateOptions.cpp): the Options window
    // changes them at once, they are saved, and the model photo follows.
    const StampOptions& stampOptions() const { return state_.options; }
    void setStampOptions(const StampOptions& options);
    void openOptionsWindow();

    // The stamp run; it works on a thread of its own while the window answers.
    void runIt();
    bool isRunning() const { return run_ != nullptr; }
    void cancelRun();
    RunProgress* currentRun() const { return run_.get(); }

    // Accessors.
    const ControllerState& state() const { return state_; }
    bool hasImage() const { return state_.model.hasImage; }
    void setHasImage(bool value) { state_.model.hasImage = value; }
    qint64 selectChannel() const { return state_.model.selectChannel; }
    void setSelectChannel(qint64 value) { state_.model.selectChannel = value; }
    QString selectImageFile() const { return state_.model.selectImageFile; }
    std::optional<QDateTime> aDate() const { return state_.model.aDate; }
    std::optional<QString> dateTimeString() const { return state_.model.dateTimeString; }
    void setDateTimeString(const std::optional<QString>& value) {
        state_.model.dateTimeString = value;
    }
    float imageWidth() const { return state_.model.imageWidth; }
    float imageHeight() const { return state_.model.imageHeight; }
    float imageOriginalWidth() const { return state_.model.imageOriginalWidth; }
    float imageOriginalHeight() const { return state_.model.imageOriginalHeight; }
    const StampGeometry::StampArea& stampArea() const { return state_.placement.stampArea; }
    const StampGeometry::Snapshot& snapshot() const { return state_.placement.snapshot; }
    const LabelFrame& labelFrame() const { return state_.placement.frame; }
    qint64 isFirstTime() const { return state_.placement.isFirstTime; }
    void setIsFirstTime(qint64 value) { state_.placement.isFirstTime = value; }
    qint64 totalAmount() const { return state_.catalog.totalAmount; }
    qint64 totalSelectedAmount() const { return state_.catalog.totalSelectedAmount; }
    QString sortKey() const { return state_.catalog.sortKey; }
    bool sortsAscending() const { return state_.catalog.sortsAscending; }
    bool isLoadDirectory() const { return state_.catalog.isLoadDirectory; }
    void setIsLoadDirectory(bool value) { state_.catalog.isLoadDirectory = value; }
    bool isSafety() const { return state_.catalog.isSafety; }
    void setIsSafety(bool value) { state_.catalog.isSafety = value; }
    QColor aColor() const { return state_.style.aColor; }
    void setAColor(const QColor& color) { state_.style.aColor = color; }
    QFont aFont() const { return state_.style.aFont; }
    void setAFont(const QFont& font) { state_.style.aFont = font; }
    float standardFontWidth() const { return state_.style.standardFontWidth; }
    void setStandardFontWidth(float value) { state_.style.standardFontWidth = value; }
    float standardFontHeight() const { return state_.style.standardFontHeight; }
    void setStandardFontHeight(float value) { state_.style.standardFontHeight = value; }
    qint64 gTimeType() const { return state_.style.gTimeType; }
    void setGTimeType(qint64 value) { state_.style.gTimeType = value; }
    qint64 gDateType() const { return state_.style.gDateType; }
    void setGDateType(qint64 value) { state_.style.gDateType = value; }
    AssetCollection* assetCollection() const { return assetCollection_.get(); }
    void setAssetCollection(std::unique_ptr<AssetCollection> collection);

    QToolBar* aToolbar() const { return aToolbar_; }
    RadioMatrix* aMatrix() const { return aMatrix_; }
    QWidget* window() const;
    // Secondary windows opened so far (About, Safety, Type, Help), for inspection.
    QWidget* secondaryWindow(const QString& name) const;

  signals:
    // Sent just before the application leaves its event loop for good.
    void applicationWillTerminate();
    // The model photo's reduced copy reached the preview.
    void previewShown();
    // A stamp run has ended and its closing message was answered.
    void runFinished();

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void registerObservers();
    void readModelPhotoDate(ImageSource& source);
    void requestPreview(const QString& path);
    void setLabelText(const std::optional<QString>& text);
    void setLabelFrame(const LabelFrame& frame);
    LabelFrame currentLabelFrame() const;
    bool marginIsOn() const;
    PreviewLayout::Size previewSize() const;
    void finishRun();

    void perform(const ControlRegistry::Control& control, QObject* sender);
    void chooseDateSource();
    void chooseBrowserLayout(QComboBox* control);
    void showInTwin(QComboBox* chosen, qint64 tag, qint64 twinTag);
    void pressPresetButton(qint64 tag);
    void confirmClearAll();
    void removeTickedAndUpdateState();
    void clearModelPhoto();
    AssetCollection& catalogFor(const QUrl& rootURL);
    void openSecondaryWindow(const QString& name);
    void setEnabled(QObject* control, bool enabled);
    void setControlText(qint64 tag, const QString& text);

    AlertPanel& alerts_;
    OpenPanel& openPanel_;
    ControllerState state_;

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
    std::unique_ptr<FontChooser> fontChooser_;
    std::unique_ptr<ColourChooser> colourChooser_;
    std::unique_ptr<RunProgress> run_;
    quint64 previewRequest_ = 0;

    // ---- imports named on the command line or dropped on the window, and
    // counters that follow a scan (StampwiseAppDelegateImport.cpp)
  public:
    // Imports each path as Add Files (files) or Add Folder (a folder) would, one
    // import after the other, so each appends after the photos before it.
    void importPaths(const QStringList& paths);

  private:
    struct PendingImport {
        bool folder = false;
        QStringList paths;
    };
    void connectImports(MainWindow* window);
    // The View menu's browser options (StampwiseAppDelegateBrowserOptions.cpp).
    void connectBrowserOptions(MainWindow* window);
    void loadBrowserOptions();
    void loadStampOptions();
    std::unique_ptr<OptionsWindowController> optionsWindow_;
    void watchCatalog(AssetCollection& catalog);
    void runPendingImports();
    void scheduleAmountInfo();
    void updateWindowTitle();
    QList<PendingImport> pendingImports_;
    QTimer* amountTimer_ = nullptr;
};
