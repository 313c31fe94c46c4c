#include <QDir>
#include <QLineEdit>

#include "AppFixture.h"
#include "TestRegistry.h"
#include "app/RunProgress.h"
#include "app/StampCommand.h"
#include "common/Sandbox.h"
#include "common/StampRuns.h"

using namespace ControlRegistry;
using StampRuns::fileBytes;
using StampRuns::whitePhoto;

class WindowRunTest : public QObject {
    Q_OBJECT
  private slots:
    // The checks run in order and stop the run before anything is written.
    void refusesBeforeWriting_data() {
        QTest::addColumn<QString>("output");  // "photos": the photos' own folder
        QTest::addColumn<bool>("placed");
        QTest::addColumn<QString>("message");
        QTest::newRow("no folder, no label") << "" << false << "Output directory does not exist!";
        QTest::newRow("label not placed")
            << "out" << false
            << "Please select one picture to set the position and font of output date text!";
        QTest::newRow("the photos' folder, spelled with ..") << "photos" << true << "photos";
    }
    void refusesBeforeWriting() {
        QFETCH(QString, output);
        QFETCH(bool, placed);
        QFETCH(QString, message);
        Sandbox box;
        box.mkdir("out");
        const QString photos = box.mkdir("photos");
        box.photo("photos/p0.jpg", whitePhoto(QSize(600, 400)));
        AppFixture app;
        StampwiseAppDelegate& d = app.start();
        app.load(1, 1, photos);
        if (placed) {
            QVERIFY(app.showModel(photos + "/p0.jpg"));
        }
        const QString folder = output == "photos" ? box.path("out/../photos/")
                                                  : (output.isEmpty() ? "" : box.path(output));
        app.control<QLineEdit>(Tag::kOutputFolderField)->setText(folder);
        const QByteArray original = fileBytes(photos + "/p0.jpg");
        app.control<QAbstractButton>(Tag::kStampButton)->click();
        QTRY_VERIFY_WITH_TIMEOUT(!d.isRunning(), 30000);
        QCOMPARE(app.alerts.shown.size(), message.isEmpty() ? 0 : 1);
        if (!message.isEmpty()) {
            QCOMPARE(app.alerts.shown[0].title, QStringLiteral("Warning"));
            QVERIFY(app.alerts.shown[0].message.contains(message == "photos" ? photos : message));
        }
        QVERIFY(QDir(box.path("out")).isEmpty());
        QCOMPARE(fileBytes(photos + "/p0.jpg"), original);
    }

    // The ticked photos, one stated at 300 dpi, come out byte for byte as the
    // command writes them with the same preset and saved choices; the unticked
    // and the unreadable are not written.
    void writesTickedPhotosAsTheCommand_data() {
        QTest::addColumn<int>("preset");
        QTest::addColumn<QString>("place");
        QTest::newRow("bottom-right") << 4 << "bottom-right";
        QTest::newRow("centre") << 2 << "centre";
    }
    void writesTickedPhotosAsTheCommand() {
        QFETCH(int, preset);
        QFETCH(QString, place);
        Sandbox box;
        const QString photos = box.mkdir("photos");
        box.photo("photos/p0.jpg", whitePhoto(QSize(900, 600)));
        box.photo("photos/p1.jpg", whitePhoto(QSize(1200, 900), 300));
        box.write("photos/p2.jpg", "not a photo");
        box.photo("photos/p3.jpg", whitePhoto(QSize(500, 500)));
        AppFixture app;
        StampwiseAppDelegate& d = app.start();
        app.load(4, 3, photos);  // p3 unticked
        QVERIFY(app.showModel(photos + "/p0.jpg"));
        app.control<QAbstractButton>(Tag::kFirstPreset + preset)->click();
        app.control<QLineEdit>(Tag::kOutputFolderField)->setText(box.mkdir("window"));
        app.control<QAbstractButton>(Tag::kStampButton)->click();
        QTRY_VERIFY_WITH_TIMEOUT(!d.isRunning(), 30000);
        QCOMPARE(app.alerts.shown.size(), 1);
        QVERIFY(app.alerts.shown[0].informativeText.contains("p2.jpg"));
        const QStringList written{"p0.jpg", "p1.jpg"};
        QCOMPARE(QDir(box.path("window")).entryList(QDir::Files), written);

        QString printed;
        QTextStream stream(&printed);
        const QStringList arguments{photos + "/p0.jpg", photos + "/p1.jpg", "--output",
                                    box.mkdir("cli"),   "--place",          place};
        QCOMPARE(StampCommand(stream, stream).run(arguments), 0);
        for (const QString& name : written) {
            QVERIFY2(fileBytes(box.path("window/" + name)) == fileBytes(box.path("cli/" + name)),
                     qPrintable(name));
        }
    }

    // Cancel stops before the next photo and says so.
    void cancelStopsBetweenPhotos() {
        Sandbox box;
        const QString photos = box.mkdir("photos");
        for (int i = 0; i < 12; ++i) {
            box.photo(QStringLiteral("photos/p%1.jpg").arg(i), whitePhoto(QSize(1600, 1200)));
        }
        AppFixture app;
        StampwiseAppDelegate& d = app.start();
        app.load(12, 12, photos);
        QVERIFY(app.showModel(photos + "/p0.jpg"));
        app.control<QLineEdit>(Tag::kOutputFolderField)->setText(box.mkdir("out"));
        app.control<QAbstractButton>(Tag::kStampButton)->click();
        QVERIFY(d.isRunning());
        d.currentRun()->cancel();
        QTRY_VERIFY_WITH_TIMEOUT(!d.isRunning(), 30000);
        QVERIFY(QDir(box.path("out")).entryList(QDir::Files | QDir::Hidden).size() < 12);
        QVERIFY(app.alerts.shown.last().informativeText.contains("cancelled"));
    }
};
SW_TEST_CLASS(WindowRunTest)

#include "WindowRunTest.moc"
