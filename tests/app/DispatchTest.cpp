#include <QLineEdit>

#include "AppFixture.h"
#include "TestRegistry.h"
#include "app/ControlRegistry.h"
#include "platform/ControlTag.h"
#include "platform/NotificationCenter.h"
#include "platform/NotificationNames.h"
#include "ui_MainWindow.h"

using namespace ControlRegistry;

class DispatchTest : public QObject {
    Q_OBJECT
  private slots:
    // One preset on at a time, whichever was on before; a drag step turns all off.
    void presetsActAsOneRadioGroup() {
        AppFixture app;
        app.start();
        app.load(1);
        const auto onlyOn = [&app](int on) {
            for (int i = 0; i < Tag::kPresetCount; ++i) {
                if (app.control<QAbstractButton>(Tag::kFirstPreset + i)->isChecked() != (i == on)) {
                    return false;
                }
            }
            return true;
        };
        for (int preset = Tag::kPresetCount - 1; preset >= 0; --preset) {
            auto* button = app.control<QAbstractButton>(Tag::kFirstPreset + preset);
            button->click();
            button->click();  // pressing the pressed one keeps it on
            QVERIFY2(onlyOn(preset), QByteArray::number(preset));
        }
        NotificationCenter::defaultCenter().post(NotificationNames::kMoveDateTime);
        QVERIFY(onlyOn(-1));
    }

    // Quitting and clearing ask first; only "Ok" acts. No control: the window's close.
    void confirmations_data() {
        QTest::addColumn<QString>("control");
        QTest::addColumn<int>("answer");
        QTest::newRow("quit menu, Ok") << "actionQuit" << 0;
        QTest::newRow("window close, Ok") << "" << 0;
        QTest::newRow("window close, Cancel") << "" << 1;
        QTest::newRow("clear toolbar, Ok") << "actionClearAll" << 0;
        QTest::newRow("clear menu, Cancel") << "actionClearAllMenu" << 1;
    }
    void confirmations() {
        QFETCH(QString, control);
        QFETCH(int, answer);
        AppFixture app;
        StampwiseAppDelegate& d = app.start();
        app.load(3);
        d.setHasImage(true);
        app.window->show();
        QSignalSpy terminating(&d, &StampwiseAppDelegate::applicationWillTerminate);
        app.alerts.answers << answer;
        if (control.isEmpty()) {
            app.window->close();
        } else {
            qobject_cast<QAction*>(app.named(qPrintable(control)))->trigger();
        }
        const bool quits = !control.startsWith("actionClear"), acts = answer == 0;
        QCOMPARE(app.alerts.shown.size(), 1);
        QCOMPARE(app.alerts.shown[0].title, quits ? "Quit Stampwise" : "Reminder");
        QCOMPARE(app.alerts.shown[0].message,
                 quits ? "Are you sure to quit Stampwise?" : "Are you sure to clear all images?");
        QCOMPARE(app.alerts.shown[0].buttons, (QStringList{"Ok", "Cancel"}));
        QCOMPARE(terminating.size(), quits && acts ? 1 : 0);
        QCOMPARE(d.totalAmount(), !quits && acts ? 0 : 3);
        QCOMPARE(d.hasImage(), quits || !acts);
        QCOMPARE(app.window->ui().actionStamp->isEnabled(), quits || !acts);
        QCOMPARE(app.window->isVisible(), !control.isEmpty() || !acts);
    }

    // Rows are named by the window.
    void secondaryWindowIsMadeOnceAndCentred_data() {
        QTest::addColumn<QString>("control");
        QTest::newRow("About") << "actionAbout";
        QTest::newRow("Type") << "typeButton";
        QTest::newRow("Help") << "actionHelp";
    }
    void secondaryWindowIsMadeOnceAndCentred() {
        QFETCH(QString, control);
        const QString name = QLatin1String(QTest::currentDataTag());
        AppFixture app;
        StampwiseAppDelegate& d = app.start();
        app.load(1);
        AppFixture::use(app.named(qPrintable(control)));
        QWidget* window = d.secondaryWindow(name);
        QVERIFY(window != nullptr && window->isVisible());
        QCOMPARE(window->metaObject()->className(), name + "WindowController");
        window->move(0, 0);
        AppFixture::use(app.named(qPrintable(control)));
        QCOMPARE(d.secondaryWindow(name), window);
        const QRect screen = QGuiApplication::primaryScreen()->geometry();
        const QPoint mainOff = app.window->frameGeometry().center() - screen.center();
        QVERIFY(qAbs(mainOff.x()) <= 1 && qAbs(mainOff.y()) <= 1);
        QVERIFY(qAbs(window->frameGeometry().center().x() - screen.width() / 2) <= 1);
        QVERIFY(qAbs(window->frameGeometry().center().y() - screen.height() / 2) <= 1);
        // Its button 31018 hides it.
        qobject_cast<QAbstractButton*>(ControlTag::viewWithTag(window, 31018))->click();
        QVERIFY(!window->isVisible());
    }

    // The combo box offers the four layouts and nothing typed.
    void layoutComboTakesOnlyItsItems_data() {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<int>("layout");
        QTest::newRow("an item's name") << "Loop" << 1;
        QTest::newRow("no layout of that name") << "Spiral" << 3;
    }
    void layoutComboTakesOnlyItsItems() {
        QFETCH(QString, typed);
        QFETCH(int, layout);
        AppFixture app;
        app.start();
        app.window->show();
        auto* combo = app.control<QComboBox>(Tag::kLayoutComboBox);
        combo->lineEdit()->selectAll();
        QTest::keyClicks(combo->lineEdit(), typed);
        QTest::keyClick(combo->lineEdit(), Qt::Key_Return);
        QCOMPARE(combo->count(), 4);
        QCOMPARE(app.window->ui().assetCollectionView->subviewsLayoutType(), layout);
        QCOMPARE(combo->currentText(), combo->itemText(layout));
        QCOMPARE(app.control<QComboBox>(Tag::kLayoutPopUp)->currentIndex(), layout);
    }
};
SW_TEST_CLASS(DispatchTest)

#include "DispatchTest.moc"
