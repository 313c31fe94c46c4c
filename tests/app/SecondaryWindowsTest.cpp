#include <QAbstractButton>
#include <QRadioButton>
#include <QSettings>
#include <QTest>

#include "AppFixture.h"
#include "TestRegistry.h"
#include "app/TypeWindowController.h"
#include "platform/ControlTag.h"
#include "platform/RadioMatrix.h"
#include "ui_MainWindow.h"

using namespace ControlRegistry;

namespace {
TypeWindowController* openTypeWindow(AppFixture& app) {
    app.control<QAbstractButton>(Tag::kTypeButton)->click();
    return qobject_cast<TypeWindowController*>(app.delegate->secondaryWindow("Type"));
}

RadioMatrix* matrix(TypeWindowController* window, qint64 tag) {
    return qobject_cast<RadioMatrix*>(window->getGUIObject(tag, nullptr));
}
}  // namespace

class SecondaryWindowsTest : public QObject {
    Q_OBJECT
  private slots:
    // Second row, first column of the dates and the 12-hour time: apply takes and
    // saves them, cancel leaves them; either way the next opening shows the pick.
    void typeWindowButtons_data() {
        QTest::addColumn<qint64>("button");
        QTest::newRow("apply") << qint64(31018);
        QTest::newRow("cancel") << qint64(31011);
    }
    void typeWindowButtons() {
        QFETCH(qint64, button);
        const bool applies = button == 31018;
        AppFixture app;
        StampwiseAppDelegate& d = app.start();
        app.load(1);
        d.setGDateType(1);
        d.setGTimeType(1);
        d.defaultSaveAppSetting();
        TypeWindowController* window = openTypeWindow(app);
        QVERIFY(window != nullptr);
        matrix(window, 32400)->cell(2)->click();
        matrix(window, 32401)->cell(2)->click();
        qobject_cast<QAbstractButton*>(window->getGUIObject(button, nullptr))->click();

        QVERIFY(!window->isVisible());
        const qint64 expected = applies ? 2 : 1;
        QCOMPARE(d.gDateType(), expected);
        QCOMPARE(d.gTimeType(), expected);
        QSettings settings;
        QCOMPARE(settings.value("gDateType").toString(), QString::number(expected));
        QCOMPARE(settings.value("gTimeType").toString(), QString::number(expected));

        QCOMPARE(openTypeWindow(app), window);
        QCOMPARE(matrix(window, 32400)->selectedRow(), 1);
        QCOMPARE(matrix(window, 32400)->selectedColumn(), 0);
        QCOMPARE(matrix(window, 32401)->selectedColumn(), 2);
    }

    // 32400 is also the main window's date source: the Type window always looks
    // in its own content; other tags go where the container says.
    void typeWindowFindsItsControls_data() {
        QTest::addColumn<qint64>("tag");
        QTest::addColumn<bool>("inMainWindow");
        QTest::addColumn<QString>("expectedName");
        QTest::newRow("date matrix, main window given")
            << qint64(32400) << true << "dateTypeMatrix";
        QTest::newRow("time matrix") << qint64(32401) << false << "timeTypeMatrix";
        QTest::newRow("apply") << qint64(31018) << false << "applyButton";
        QTest::newRow("button in the given container") << qint64(31007) << true << "typeButton";
        QTest::newRow("unserved 32300 range") << qint64(32300) << false << "";
        QTest::newRow("menu range") << qint64(32500) << true << "";
    }
    void typeWindowFindsItsControls() {
        QFETCH(qint64, tag);
        QFETCH(bool, inMainWindow);
        QFETCH(QString, expectedName);
        AppFixture app;
        app.start();
        TypeWindowController window;
        QObject* found =
            window.getGUIObject(tag, inMainWindow ? app.window->centralWidget() : nullptr);
        QCOMPARE(found != nullptr ? found->objectName() : QString(), expectedName);
    }
};
SW_TEST_CLASS(SecondaryWindowsTest)

#include "SecondaryWindowsTest.moc"
