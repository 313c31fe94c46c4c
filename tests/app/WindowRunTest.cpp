#include <QAbstractButton>
#include <QDir>
#include <QFile>
#include <QImageReader>
#include <QLineEdit>
#include <QTest>

#include "AppFixture.h"
#include "TestRegistry.h"
#include "app/RunProgress.h"
#include "common/Sandbox.h"
#include "common/TestImages.h"

using namespace ControlRegistry;

namespace {
PhotoSpec whitePhoto(QSize size, int dpi = 72) {
    PhotoSpec spec;
    spec.size = size;
    spec.colour = Qt::white;
    spec.dpi = dpi;
    spec.dateTimeOriginal = QStringLiteral("2014:03:05 13:34:56");
    return spec;
}

QByteArray fileBytes(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// Waits for the run's closing message, polling (a nested loop may be stopped).
bool waitForRun(StampwiseAppDelegate& d) {
    for (int i = 0; i < 1500 && d.isRunning(); ++i) {
        QTest::qWait(20);
    }
    return !d.isRunning();
}
}  // namespace

class WindowRunTest : public QObject {
    Q_OBJECT
  private slots:
    // The checks run in order and stop the run before anything is written.
    void refusesBeforeWriting_data() {
        QTest::addColumn<QString>("output");  // "photos": the photos' own folder
        QTest::addColumn<bool>("placed");
        QTest::addColumn<QString>("message");  // empty: no message at all
        QTest::newRow("no folder, no label") << "" << false << "Output directory does not exist!";
        QTest::newRow("missing folder") << "missing" << true << "Output directory does not exist!";
        QTest::newRow("a file") << "file" << true << "";
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
        box.touch("file");
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
        QVERIFY(waitForRun(d));
        QCOMPARE(app.alerts.shown.size(), message.isEmpty() ? 0 : 1);
        if (!message.isEmpty()) {
            QCOMPARE(app.alerts.shown[0].title, QStringLiteral("Warning"));
            QVERIFY(app.alerts.shown[0].message.contains(message == "photos" ? photos : message));
        }
        QVERIFY(QDir(box.path("out")).isEmpty());
        QCOMPARE(fileBytes(photos + "/p0.jpg"), original);
    }

    // Ticked photos, one stated at 300 dpi, get the stamp in the corner the
    // preset chose; the unticked and the unreadable are not written.
    void stampsTickedPhotosWhereTheLabelIs() {
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
        app.control<QAbstractButton>(Tag::kFirstPreset + 4)->click();  // bottom right
        app.control<QLineEdit>(Tag::kOutputFolderField)->setText(box.mkdir("out"));
        app.control<QAbstractButton>(Tag::kStampButton)->click();
        QVERIFY(waitForRun(d));
        QCOMPARE(app.alerts.shown.size(), 1);
        QCOMPARE(app.alerts.shown[0].title, QStringLiteral("Reminder"));
        QCOMPARE(app.alerts.shown[0].message, QStringLiteral("Completed!"));
        QVERIFY(app.alerts.shown[0].informativeText.contains("p2.jpg"));
        QCOMPARE(QDir(box.path("out")).entryList(QDir::Files), (QStringList{"p0.jpg", "p1.jpg"}));
        for (const QString name : {"p0.jpg", "p1.jpg"}) {
            QImageReader reader(box.path("out/" + name));
            QCOMPARE(reader.format(), QByteArray("bmp"));
            const QImage out = reader.read();
            QCOMPARE(out.size(), QImageReader(photos + "/" + name).size());
            const QRect ink = TestImages::boundsWhere(out, [](QRgb c) { return qGray(c) < 200; });
            // The stamp touches the right and bottom edges (up to the text's descent)
            // and stays in that corner.
            QVERIFY2(ink.right() >= out.width() * 99 / 100 &&
                         ink.bottom() >= out.height() * 29 / 30 && ink.left() > out.width() / 2 &&
                         ink.top() > out.height() / 2,
                     qPrintable(name + QString(" %1,%2 %3x%4")
                                           .arg(ink.x())
                                           .arg(ink.y())
                                           .arg(ink.width())
                                           .arg(ink.height())));
        }
    }

    // Cancel stops before the next photo, leaves no partial file and says so.
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
        QVERIFY(waitForRun(d));
        const QStringList written = QDir(box.path("out")).entryList(QDir::Files | QDir::Hidden);
        QVERIFY(written.size() < 12);
        for (const QString& name : written) {
            QVERIFY(QImage(box.path("out/" + name)).size() == QSize(1600, 1200));
        }
        QVERIFY(app.alerts.shown.last().informativeText.contains("cancelled"));
    }
};
SW_TEST_CLASS(WindowRunTest)

#include "WindowRunTest.moc"
