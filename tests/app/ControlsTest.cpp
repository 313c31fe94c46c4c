#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QRadioButton>
#include <QTest>
#include <atomic>
#include <thread>

#include "AppFixture.h"
#include "TestRegistry.h"
#include "app/ControlRegistry.h"
#include "platform/NotificationCenter.h"
#include "platform/NotificationNames.h"
#include "platform/RadioMatrix.h"

using namespace ControlRegistry;

namespace {
// What stays usable with no photo loaded, by name. Every other row of the
// registry needs photos: written out here so the table's flags are checked
// against something other than themselves.
const QStringList kUsableWithoutPhotos = {
    "actionAddFiles", "actionAddFolder", "actionAddFilesMenu", "actionAddFolderMenu",
    "actionAbout",    "actionQuit",      "layoutPopUp",        "layoutComboBox",
    "sortComboBox",   "customTextField", "totalAmountField",   "selectedAmountField",
    "atextfield"};

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

bool isEnabled(QObject* object) {
    auto* action = qobject_cast<QAction*>(object);
    return action != nullptr ? action->isEnabled() : qobject_cast<QWidget*>(object)->isEnabled();
}

void setEnabled(QObject* object, bool enabled) {
    if (auto* action = qobject_cast<QAction*>(object)) {
        action->setEnabled(enabled);
    } else {
        qobject_cast<QWidget*>(object)->setEnabled(enabled);
    }
}
}  // namespace

class ControlsTest : public QObject {
    Q_OBJECT
  private slots:
    void registryRow_data() {
        QTest::addColumn<int>("row");
        for (size_t i = 0; i < kControls.size(); ++i) {
            QTest::newRow(kControls[i].objectName) << int(i);
        }
    }

    // Each row is in the window under its name, with its tag and kind, getGUIObject
    // finds it where its range says, and its enabled state follows the photos.
    void registryRow() {
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
        if (!kUsableWithoutPhotos.contains(QLatin1String(c.objectName))) {
            QVERIFY(!isEnabled(object));
            app.load(4, 0);  // photos but none ticked: the commands are on
            QVERIFY(isEnabled(object));
            app.load(0);
            QVERIFY(!isEnabled(object));
            return;
        }
        // The add items of the toolbar are switched on; the rest keep their state.
        setEnabled(object, false);
        app.load(4, 0);
        QCOMPARE(isEnabled(object), c.kind == ToolbarItem);
        setEnabled(object, true);
        app.load(0);
        QVERIFY(isEnabled(object));
    }

    void getGUIObjectRanges_data() {
        QTest::addColumn<qint64>("tag");
        QTest::addColumn<bool>("inToolbar");
        QTest::addColumn<QString>("expectedName");
        QTest::newRow("toolbar item without toolbar") << qint64(30027) << false << "";
        QTest::newRow("absent toolbar tag") << qint64(30999) << true << "";
        QTest::newRow("button searched in the toolbar") << qint64(31007) << true << "";
        QTest::newRow("menu range") << qint64(32505) << false << "";
        QTest::newRow("unserved 32000 range") << qint64(32100) << false << "";
        QTest::newRow("outside every range") << qint64(99999) << false << "";
    }
    void getGUIObjectRanges() {
        QFETCH(qint64, tag);
        QFETCH(bool, inToolbar);
        QFETCH(QString, expectedName);
        AppFixture app;
        StampwiseAppDelegate& d = app.start();
        QObject* found = d.getGUIObject(tag, inToolbar ? d.aToolbar() : nullptr);
        QCOMPARE(found != nullptr ? found->objectName() : QString(), expectedName);
    }

    void counters_data() {
        QTest::addColumn<int>("total");
        QTest::addColumn<int>("ticked");
        QTest::newRow("five, three ticked") << 5 << 3;
        QTest::newRow("empty catalog") << 0 << 0;
    }
    void counters() {
        QFETCH(int, total);
        QFETCH(int, ticked);
        AppFixture app;
        StampwiseAppDelegate& d = app.start();
        app.load(total, ticked);
        QCOMPARE(app.control<QLabel>(Tag::kTotalAmountField)->text(), QString::number(total));
        QCOMPARE(app.control<QLabel>(Tag::kSelectedAmountField)->text(), QString::number(ticked));
        QCOMPARE(d.totalAmount(), qint64(total));
        QCOMPARE(d.totalSelectedAmount(), qint64(ticked));
    }

    // The scan thread posts the count and waits while the main thread updates.
    void scanEndHandledOnTheMainThread() {
        AppFixture app;
        StampwiseAppDelegate& d = app.start();
        d.setAssetCollection(AppFixture::catalogOf(6));
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
        QVERIFY(!d.isLoadDirectory());
        QCOMPARE(app.control<QLabel>(Tag::kTotalAmountField)->text(), QStringLiteral("6"));
    }
};
SW_TEST_CLASS(ControlsTest)

#include "ControlsTest.moc"
