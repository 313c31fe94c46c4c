#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>

#include "AppFixture.h"
#include "TestRegistry.h"
#include "app/OptionsWindowController.h"
#include "app/SettingValues.h"
#include "app/WindowPlacement.h"

class StartupTest : public QObject {
    Q_OBJECT
  private slots:
    void whatOneRunSavesTheNextReads() {
        AppFixture app;
        StampwiseAppDelegate& first = app.start();
        first.setGDateType(2);
        first.setGTimeType(1);
        first.setAColor(QColor::fromRgbF(0.1F, 0.2F, 0.3F, 0.5F));
        first.defaultSaveAppSetting();
        const QFont savedFont = first.aFont();
        QSettings().setValue("standardFontWidth", "12.5");

        StampwiseAppDelegate& second = app.start();
        QCOMPARE(second.gDateType(), 2);
        QCOMPARE(second.gTimeType(), 1);
        QCOMPARE(second.aColor().rgba64(), QColor::fromRgbF(0.1F, 0.2F, 0.3F, 0.5F).rgba64());
        QCOMPARE(second.aFont().family(), savedFont.family());
        // Read only while no settings were ever saved.
        QCOMPARE(second.standardFontWidth(), 0.0F);
    }

    // A store never saved gives the first-run defaults, saves them at once, and
    // reads the keys only a first run reads.
    void firstRun_data() {
        QTest::addColumn<QString>("hasDefaults");  // empty: nothing stored at all
        QTest::newRow("empty store") << "";
        QTest::newRow("hasDefaults no") << "no";
    }
    void firstRun() {
        QFETCH(QString, hasDefaults);
        AppFixture app;
        if (!hasDefaults.isEmpty()) {
            QSettings settings;
            settings.setValue("hasDefaults", hasDefaults);
            settings.setValue("aColor", SettingValues::encodeColor(QColor(Qt::green)));
            settings.setValue("standardFontWidth", " 12.5");
            settings.setValue("standardFontHeight", "7");
            settings.setValue("isSafety", "Yes");
            settings.setValue("isLoadDirectory", "yes");
            settings.setValue("dateTimeString", "typed");
        }
        StampwiseAppDelegate& d = app.start();
        QCOMPARE(d.gDateType(), 0);
        QCOMPARE(d.gTimeType(), 0);  // the 1 set at start-up is read over as absent
        QCOMPARE(d.aColor(), QColor(Qt::red));
        QCOMPARE(d.aFont(), SettingValues::defaultStampFont());
        QVERIFY(d.selectChannel() == 0 && d.isFirstTime() == 0 && !d.hasImage() && d.aDate());
        QCOMPARE(d.standardFontWidth(), hasDefaults.isEmpty() ? 0.0F : 12.5F);
        QCOMPARE(d.standardFontHeight(), hasDefaults.isEmpty() ? 0.0F : 7.0F);
        QCOMPARE(d.isSafety(), !hasDefaults.isEmpty());
        QCOMPARE(d.dateTimeString().has_value(), !hasDefaults.isEmpty());
        QCOMPARE(d.isLoadDirectory(), !hasDefaults.isEmpty());
        const QSettings settings;
        QCOMPARE(settings.value("hasDefaults").toString(), QStringLiteral("true"));
        QCOMPARE(settings.value("gTimeType").toString(), QStringLiteral("0"));
        QCOMPARE(SettingValues::decodeColor(settings.value("aColor").toByteArray()), Qt::red);
        QVERIFY(SettingValues::decodeFont(settings.value("aFont").toByteArray()).has_value());
        auto* label = app.control<QLabel>(ControlRegistry::Tag::kLabelTextField);
        QCOMPARE(label->palette().color(QPalette::WindowText), QColor(Qt::red));
    }

    // A damaged store still starts, with the first-run colour and font as fallbacks.
    void garbageStore_data() {
        QTest::addColumn<QVariant>("dateType");
        QTest::addColumn<QVariant>("colour");
        QTest::addColumn<QVariant>("font");
        QTest::addColumn<qint64>("expectedDateType");
        QTest::addColumn<double>("expectedFontSize");
        const QVariant serif20 =
            SettingValues::encodeFont(QFont(QStringLiteral("DejaVu Serif"), 20));
        const QVariant none;
        // Damaged numbers and colour or font data are the readers' own tests; here
        // only how the start-up treats what they cannot use.
        QTest::newRow("no range check") << QVariant("9") << none << serif20 << qint64(9) << 20.0;
        QTest::newRow("colour stored as text")
            << QVariant("1") << QVariant("blue") << serif20 << qint64(1) << 20.0;
        // The only row whose font data decodes to nothing: the default font takes its place.
        QTest::newRow("truncated font")
            << QVariant("2") << none << QVariant(QByteArray("stampwise-font/1\nDejaVu"))
            << qint64(2) << 16.0;
        QTest::newRow("number as font")
            << QVariant("2") << none << QVariant(42) << qint64(2) << 16.0;
    }
    void garbageStore() {
        QFETCH(QVariant, dateType);
        QFETCH(QVariant, colour);
        QFETCH(QVariant, font);
        QFETCH(qint64, expectedDateType);
        QFETCH(double, expectedFontSize);
        AppFixture app;
        {
            QSettings settings;
            settings.setValue("hasDefaults", "true");
            settings.setValue("gDateType", dateType);
            settings.setValue("gTimeType", QStringList{"a", "b"});
            if (colour.isValid()) {
                settings.setValue("aColor", colour);
            }
            settings.setValue("aFont", font);
        }
        StampwiseAppDelegate& d = app.start();
        QCOMPARE(d.gDateType(), expectedDateType);
        QCOMPARE(d.gTimeType(), 0);
        QCOMPARE(d.aColor(), QColor(Qt::red));
        QCOMPARE(d.aFont().pointSizeF(), expectedFontSize);
    }

    // Each View option reaches the browser and is back at the next start,
    // the others staying off.
    void browserOptionsRemembered_data() {
        QTest::addColumn<QString>("action");
        QTest::newRow("shadows") << "actionDropShadows";
        QTest::newRow("background") << "actionAnimatedBackground";
        QTest::newRow("layout") << "actionChangeLayoutAutomatically";
    }
    void browserOptionsRemembered() {
        QFETCH(QString, action);
        AppFixture app;
        app.start();
        const QByteArray name = action.toLatin1();
        qobject_cast<QAction*>(app.named(name.constData()))->trigger();
        for (int run = 0; run < 2; ++run) {
            const auto* view = app.window->findChild<AssetCollectionView*>();
            QCOMPARE(
                (QList<bool>{view->slidesHaveShadows(), view->usesQuartzCompositionBackground(),
                             view->autoCyclesLayout()}),
                (QList<bool>{action == "actionDropShadows", action == "actionAnimatedBackground",
                             action == "actionChangeLayoutAutomatically"}));
            QVERIFY(qobject_cast<QAction*>(app.named(name.constData()))->isChecked());
            app.start();
        }
    }

    // The Options window's choices are in force at once and back at the next
    // start; a shift that cannot be read leaves the last good one.
    void stampOptionsRemembered() {
        AppFixture app;
        StampwiseAppDelegate* d = &app.start();
        d->openOptionsWindow();
        auto* options = app.window->findChild<OptionsWindowController*>();
        for (const char* name : {"uprightCheckBox", "outlineCheckBox", "boxCheckBox"}) {
            options->findChild<QCheckBox*>(name)->click();
        }
        auto* shift = options->findChild<QLineEdit*>("shiftField");
        shift->setText("-1d01:30");
        shift->setText("-1d01:3");
        const StampOptions expected{
            .upright = true, .outline = true, .box = true, .shiftSeconds = -(25 * 3600 + 1800)};
        for (int run = 0; run < 2; ++run) {
            QVERIFY(d->stampOptions() == expected);
            d = &app.start();
        }
    }

    void centredOrigin() {
        QCOMPARE(WindowPlacement::centredOrigin(QSizeF(1440, 900), QSizeF(1000, 700)),
                 QPointF(220, 100));
        // The screen is truncated to whole points, the frame is not.
        QCOMPARE(WindowPlacement::centredOrigin(QSizeF(1440.9, 900.9), QSizeF(999, 700)),
                 QPointF(220.5, 100));
    }
};
SW_TEST_CLASS(StartupTest)

#include "StartupTest.moc"
