#include <QAbstractButton>
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalSpy>
#include <QTest>
#include <set>

#include "AppFixture.h"
#include "TestRegistry.h"
#include "app/ControlRegistry.h"
#include "platform/ControlTag.h"
#include "platform/NotificationCenter.h"
#include "platform/NotificationNames.h"
#include "platform/RadioMatrix.h"
#include "ui_MainWindow.h"

using namespace ControlRegistry;

namespace {
// Commands whose work arrives with the stamp workflow and the browser.
const std::set<Command> kNotYetActive = {Nothing,      Stamp,  OpenType,      ChooseFont,
                                         ChooseColour, Margin, SortAscending, SortKey};

// Everything a command can visibly change, to tell whether one ran.
struct Observed {
    qsizetype alerts, panels;
    bool about, safety;
    qint64 total, ticked, channel;
    int presetsOn;
    bool preview;
    qint32 layout;
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
            d.totalAmount(),
            d.totalSelectedAmount(),
            d.selectChannel(),
            presets,
            app.window->ui().aQNSDragView->isPreview(),
            app.window->ui().assetCollectionView->subviewsLayoutType()};
}

// Uses the control as a person would.
void use(QObject* control) {
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
}  // namespace

class DispatchTest : public QObject {
    Q_OBJECT
  private slots:
    void commandRow_data() {
        QTest::addColumn<int>("row");
        for (size_t i = 0; i < kControls.size(); ++i) {
            if (!kNotYetActive.contains(kControls[i].command)) {
                QTest::newRow(kControls[i].objectName) << int(i);
            }
        }
    }

    // Each control does something; the same tag on a control of another kind
    // does nothing.
    void commandRow() {
        QFETCH(int, row);
        const Control& c = kControls[size_t(row)];
        AppFixture app;
        StampwiseAppDelegate& d = app.start();
        app.load(3, 1);
        app.alerts.answers << 1;  // "Cancel": keep the catalog and the program
        const Observed before = observe(app);

        std::unique_ptr<QAbstractButton> stranger;
        if (c.kind == Button) {
            stranger = std::make_unique<QCheckBox>();
        } else {
            stranger = std::make_unique<QPushButton>();
        }
        stranger->setCheckable(true);
        stranger->setChecked(true);
        ControlTag::setTag(stranger.get(), c.tag);
        d.promptEvent(stranger.get());
        QVERIFY(observe(app) == before);

        use(app.named(c.objectName));
        QVERIFY(!(observe(app) == before));
    }

    void dateSourceMatrix_data() {
        QTest::addColumn<int>("row");
        QTest::newRow("photo date") << 0;
        QTest::newRow("file date") << 1;
        QTest::newRow("own text") << 2;
    }
    void dateSourceMatrix() {
        QFETCH(int, row);
        AppFixture app;
        StampwiseAppDelegate& d = app.start();
        app.load(1);
        QWidget* field = app.control<QWidget>(Tag::kCustomTextField);
        QWidget* typeButton = app.control<QWidget>(Tag::kTypeButton);
        // Start from the opposite state so both directions are seen.
        field->setEnabled(row != 2);
        typeButton->setEnabled(row == 2);
        d.aMatrix()->cell(row)->click();
        QCOMPARE(d.selectChannel(), qint64(row));
        QCOMPARE(field->isEnabled(), row == 2);
        QCOMPARE(typeButton->isEnabled(), row != 2);
        // A tick in the browser switches the photo controls on again, the field not.
        NotificationCenter::defaultCenter().post(NotificationNames::kClickTitleCheckBox);
        QVERIFY(typeButton->isEnabled());
        QCOMPARE(field->isEnabled(), row == 2);
    }

    // One preset on at a time, whichever was on before; a drag step turns all off.
    void presetsActAsOneRadioGroup_data() {
        QTest::addColumn<int>("preset");
        for (int i = 0; i < Tag::kPresetCount; ++i) {
            QTest::addRow("preset %d", i) << i;
        }
    }
    void presetsActAsOneRadioGroup() {
        QFETCH(int, preset);
        AppFixture app;
        app.start();
        app.load(1);
        const auto button = [&app](int i) {
            return app.control<QAbstractButton>(Tag::kFirstPreset + i);
        };
        button((preset + 1) % Tag::kPresetCount)->click();
        button(preset)->click();
        button(preset)->click();  // pressing the pressed one keeps it on
        for (int i = 0; i < Tag::kPresetCount; ++i) {
            QCOMPARE(button(i)->isChecked(), i == preset);
        }
        NotificationCenter::defaultCenter().post(NotificationNames::kMoveDateTime);
        for (int i = 0; i < Tag::kPresetCount; ++i) {
            QVERIFY(!button(i)->isChecked());
        }
    }

    // Quitting and clearing ask first; only "Ok" acts. No control: the window's close.
    void confirmations_data() {
        QTest::addColumn<QString>("control");
        QTest::addColumn<int>("answer");
        QTest::addColumn<QString>("title");
        QTest::addColumn<QString>("message");
        const QString quit = "Quit Stampwise", quitText = "Are you sure to quit Stampwise?";
        const QString clear = "Reminder", clearText = "Are you sure to clear all images?";
        QTest::newRow("quit menu, Ok") << "actionQuit" << 0 << quit << quitText;
        QTest::newRow("window close, Ok") << "" << 0 << quit << quitText;
        QTest::newRow("window close, Cancel") << "" << 1 << quit << quitText;
        QTest::newRow("clear toolbar, Ok") << "actionClearAll" << 0 << clear << clearText;
        QTest::newRow("clear menu, Cancel") << "actionClearAllMenu" << 1 << clear << clearText;
    }
    void confirmations() {
        QFETCH(QString, control);
        QFETCH(int, answer);
        QFETCH(QString, title);
        QFETCH(QString, message);
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
            use(app.named(qPrintable(control)));
        }
        QCOMPARE(app.alerts.shown.size(), 1);
        QCOMPARE(app.alerts.shown[0].title, title);
        QCOMPARE(app.alerts.shown[0].message, message);
        QCOMPARE(app.alerts.shown[0].buttons, (QStringList{"Ok", "Cancel"}));
        const bool quits = title == QLatin1String("Quit Stampwise"), acts = answer == 0;
        QCOMPARE(terminating.size(), quits && acts ? 1 : 0);
        QCOMPARE(d.totalAmount(), !quits && acts ? 0 : 3);
        QCOMPARE(d.hasImage(), quits || !acts);
        QCOMPARE(app.window->ui().actionStamp->isEnabled(), quits || !acts);
        QCOMPARE(app.window->isVisible(), !control.isEmpty() || !acts);
    }

    // The main window and the About window, made once, open centred on the screen.
    void windowsOpenCentred() {
        AppFixture app;
        StampwiseAppDelegate& d = app.start();
        app.window->ui().actionAbout->trigger();
        QWidget* about = d.secondaryWindow(QStringLiteral("About"));
        QVERIFY(about != nullptr && about->isVisible());
        about->move(0, 0);
        app.window->ui().actionAbout->trigger();
        QCOMPARE(d.secondaryWindow(QStringLiteral("About")), about);
        const QPoint centre = QGuiApplication::primaryScreen()->geometry().center();
        for (const QWidget* window : {static_cast<QWidget*>(app.window.get()), about}) {
            const QPoint off = window->frameGeometry().center() - centre;
            QVERIFY2(qAbs(off.x()) <= 1 && qAbs(off.y()) <= 1, qPrintable(window->objectName()));
        }
        // Its close button (31018) hides it.
        about->findChild<QAbstractButton*>(QStringLiteral("closeButton"))->click();
        QVERIFY(!about->isVisible());
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
    }
};
SW_TEST_CLASS(DispatchTest)

#include "DispatchTest.moc"
