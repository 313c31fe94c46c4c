#include <QCheckBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <atomic>
#include <set>
#include <thread>

#include "AppFixture.h"
#include "TestRegistry.h"
#include "app/ControlRegistry.h"
#include "platform/ControlTag.h"
#include "platform/NotificationCenter.h"
#include "platform/NotificationNames.h"
#include "ui_MainWindow.h"

using namespace ControlRegistry;

namespace {
// What stays usable with no photo loaded, by name. Every other row of the
// registry needs photos: written out here so the table's flags are checked
// against something other than themselves.
const QStringList kUsableWithoutPhotos = {
    "actionAddFiles", "actionAddFolder", "actionAddFilesMenu", "actionAddFolderMenu",
    "actionAbout",    "actionQuit",      "layoutPopUp",        "layoutComboBox",
    "sortComboBox",   "customTextField", "totalAmountField",   "selectedAmountField",
    "atextfield",     "actionHelp"};
// Commands that act on a model photo only (ModelPhotoTest uses them), and the
// ascending box, whose first click can set what is already set (ImportTest).
const std::set<Command> kNotYetActive = {Nothing, Margin, SortAscending};

// Everything a command can visibly change, to tell whether one ran.
struct Observed {
    qsizetype alerts, panels;
    bool about, safety, type, help;
    int dialogs;
    qint64 total, ticked, channel;
    int presetsOn;
    bool preview;
    qint32 layout;
    QList<AssetSort::SortRule> sort;
    bool operator==(const Observed&) const = default;
};

Observed observe(AppFixture& app) {
    StampwiseAppDelegate& d = *app.delegate;
    int presets = 0;
    for (int i = 0; i < Tag::kPresetCount; ++i) {
        presets |= app.control<QAbstractButton>(Tag::kFirstPreset + i)->isChecked() << i;
    }
    d.redrawAmountInfo();
    return {app.alerts.shown.size(),
            app.openPanel.requests.size(),
            d.secondaryWindow("About") != nullptr,
            d.secondaryWindow("Safety") != nullptr,
            d.secondaryWindow("Type") != nullptr,
            d.secondaryWindow("Help") != nullptr,
            int(app.window->findChildren<QDialog*>().size()),
            d.totalAmount(),
            d.totalSelectedAmount(),
            d.selectChannel(),
            presets,
            app.window->ui().aQNSDragView->isPreview(),
            app.window->ui().assetCollectionView->subviewsLayoutType(),
            app.window->ui().assetCollectionView->sortDescriptors()};
}

Kind kindOf(QObject* object) {
    if (auto* action = qobject_cast<QAction*>(object)) {
        const QList<QObject*> owners = action->associatedObjects();
        const bool inMenu = std::any_of(owners.begin(), owners.end(),
                                        [](QObject* o) { return qobject_cast<QMenu*>(o); });
        return inMenu ? MenuItem : ToolbarItem;
    }
    if (auto* combo = qobject_cast<QComboBox*>(object)) {
        return combo->isEditable() ? ComboBox : PopUp;
    }
    if (qobject_cast<RadioMatrix*>(object) != nullptr) {
        return Matrix;
    }
    if (qobject_cast<QCheckBox*>(object) != nullptr) {
        return CheckBox;
    }
    if (qobject_cast<QAbstractButton*>(object) != nullptr) {
        return Button;
    }
    return qobject_cast<QLineEdit*>(object) != nullptr ? TextField : Label;
}
}  // namespace

class ControlsTest : public QObject {
    Q_OBJECT
  private slots:
    void controlRow_data() {
        QTest::addColumn<int>("row");
        for (size_t i = 0; i < kControls.size(); ++i) {
            QTest::newRow(kControls[i].objectName) << int(i);
        }
    }

    // Each row is in the window under its name, with its tag and kind, getGUIObject
    // finds it where its range says, and its enabled state follows the photos. Used,
    // it does something; the same tag on a control of another kind does nothing.
    void controlRow() {
        QFETCH(int, row);
        const Control& c = kControls[size_t(row)];
        AppFixture app;
        StampwiseAppDelegate& d = app.start();
        QObject* object = app.named(c.objectName);
        QVERIFY(object != nullptr);
        QCOMPARE(object->property("tag").toLongLong(), c.tag);
        QCOMPARE(kindOf(object), c.kind);
        QObject* expected = c.kind == MenuItem || c.kind == Matrix ? nullptr : object;
        QCOMPARE(d.getGUIObject(c.tag, c.kind == ToolbarItem ? d.aToolbar() : nullptr), expected);
        const auto enabled = [object] { return object->property("enabled").toBool(); };
        if (kUsableWithoutPhotos.contains(QLatin1String(c.objectName))) {
            // The add items of the toolbar are switched on; the rest keep their state.
            object->setProperty("enabled", false);
            app.load(4, 0);
            QCOMPARE(enabled(), c.kind == ToolbarItem);
            object->setProperty("enabled", true);
            app.load(0);
            QVERIFY(enabled());
        } else {
            QVERIFY(!enabled());
            app.load(4, 0);  // photos but none ticked: the commands are on
            QVERIFY(enabled());
            app.load(0);
            QVERIFY(!enabled());
        }
        if (kNotYetActive.contains(c.command)) {
            return;
        }
        app.load(3, 1);
        app.alerts.answers << 1;  // "Cancel": keep the catalog and the program
        const Observed before = observe(app);
        std::unique_ptr<QAbstractButton> stranger(
            c.kind == Button ? static_cast<QAbstractButton*>(new QCheckBox) : new QPushButton);
        stranger->setCheckable(true);
        stranger->setChecked(true);
        ControlTag::setTag(stranger.get(), c.tag);
        d.promptEvent(stranger.get());
        QVERIFY(observe(app) == before);
        AppFixture::use(object);
        QVERIFY(!(observe(app) == before));
    }

    // Tags no range of getGUIObject serves with the container given.
    void getGUIObjectRanges_data() {
        QTest::addColumn<qint64>("tag");
        QTest::addColumn<bool>("inToolbar");
        QTest::newRow("toolbar item without toolbar") << qint64(30027) << false;
        QTest::newRow("absent toolbar tag") << qint64(30999) << true;
        QTest::newRow("button searched in the toolbar") << qint64(31007) << true;
        QTest::newRow("menu range") << qint64(32505) << false;
        QTest::newRow("unserved 32000 range") << qint64(32100) << false;
        QTest::newRow("outside every range") << qint64(99999) << false;
    }
    void getGUIObjectRanges() {
        QFETCH(qint64, tag);
        QFETCH(bool, inToolbar);
        AppFixture app;
        StampwiseAppDelegate& d = app.start();
        QCOMPARE(d.getGUIObject(tag, inToolbar ? d.aToolbar() : nullptr), nullptr);
    }

    // The scan thread posts the count and waits while the main thread updates
    // both counters.
    void scanEndHandledOnTheMainThread() {
        AppFixture app;
        StampwiseAppDelegate& d = app.start();
        d.setAssetCollection(AppFixture::catalogOf(6, 4));
        d.setIsLoadDirectory(true);
        std::atomic<qint64> totalSeenByPoster = -1;
        std::thread scan([&] {
            NotificationCenter::defaultCenter().post(NotificationNames::kGotFileAmount,
                                                     QStringLiteral("6"));
            totalSeenByPoster = d.totalAmount();  // the handler has finished
        });
        QTRY_VERIFY(totalSeenByPoster != -1);
        scan.join();
        QCOMPARE(totalSeenByPoster, 6);
        QCOMPARE(d.totalSelectedAmount(), qint64(4));
        QVERIFY(!d.isLoadDirectory());
        QCOMPARE(app.control<QLabel>(Tag::kTotalAmountField)->text(), QStringLiteral("6"));
        QCOMPARE(app.control<QLabel>(Tag::kSelectedAmountField)->text(), QStringLiteral("4"));
    }
};
SW_TEST_CLASS(ControlsTest)

#include "ControlsTest.moc"
