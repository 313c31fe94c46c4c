#include <QDir>
#include <QFile>
#include <QImageReader>
#include <QTest>

#include "TestRegistry.h"
#include "common/PipeWatch.h"
#include "common/Sandbox.h"
#include "common/StampRuns.h"
#include "common/TestImages.h"
#include "stamp/StampRun.h"
#include "stamp/TextMetrics.h"

namespace {
PhotoSpec photoOf(QSize size, QColor colour = Qt::white, int dpi = 72) {
    PhotoSpec spec;
    spec.size = size;
    spec.colour = colour;
    spec.dpi = dpi;
    return spec;
}
}  // namespace

class StampRunTest : public QObject {
    Q_OBJECT

  private slots:
    // A BMP of the photo's pixel size whose ink lies inside the text's box at the
    // label's share of its free travel, in the photo's points scaled to pixels.
    void stampsInsideExpectedRectangle_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QSize>("size");
        QTest::addColumn<int>("dpi");
        QTest::addColumn<QPointF>("share");
        QTest::addColumn<bool>("margin");
        QTest::newRow("72 dpi, bottom-left")
            << "a.jpg" << QSize(400, 300) << 72 << QPointF(0, 0) << false;
        QTest::newRow("72 dpi, top-right, margin")
            << "b.png" << QSize(500, 260) << 72 << QPointF(1, 1) << true;
        QTest::newRow("300 dpi, a third across, centred")
            << "c.jpg" << QSize(1600, 1200) << 300 << QPointF(1.0 / 3, 0.5) << false;
        QTest::newRow("144 dpi, bottom-right, margin")
            << "d.tiff" << QSize(700, 900) << 144 << QPointF(1, 0) << true;
    }
    void stampsInsideExpectedRectangle() {
        QFETCH(QString, name);
        QFETCH(QSize, size);
        QFETCH(int, dpi);
        QFETCH(QPointF, share);
        QFETCH(bool, margin);
        Sandbox dir;
        StampJob job = StampRuns::job({dir.photo(name, photoOf(size, Qt::white, dpi))},
                                      dir.mkdir("out"), share, margin);
        const auto outcomes = StampRuns::run(job);
        QVERIFY2(outcomes.value(0).written, qPrintable(outcomes.value(0).reason));
        QImageReader reader(outcomes[0].output);
        QCOMPARE(reader.format(), QByteArray("bmp"));
        const QImage out = reader.read();
        QCOMPARE(out.size(), size);

        const QSizeF text = TextMetrics::measureText(job.customText, job.font) * (dpi / 72.0);
        const double w = size.width() * (margin ? 0.83 : 1);
        const double h = size.height() * (margin ? 0.95 : 1);
        const double left = (size.width() - w) / 2 + share.x() * (w - text.width());
        const double up = (size.height() - h) / 2 + share.y() * (h - text.height());
        const QRectF box(left, size.height() - up - text.height(), text.width(), text.height());
        const QRect ink = TestImages::boundsWhere(out, [](QRgb p) { return qGreen(p) < 160; });
        QVERIFY(box.adjusted(-2, -2, 2, 2).contains(QRectF(ink)));
        QVERIFY(ink.width() > 0.85 * box.width() && ink.height() > 0.6 * box.height());
    }

    // The photo's own date (EXIF, the last page's), the file date, or the text as
    // typed, whatever its script or length.
    void textByChannel_data() {
        QTest::addColumn<qint64>("channel");
        QTest::addColumn<QString>("custom");
        QTest::addColumn<QString>("expected");
        const QString mixed = QStringLiteral("📷 שלום 2014 ") + QString(1990, QChar(0x0645));
        QTest::newRow("photo date") << qint64(0) << QString() << "05-Mar-2014 13:34:56";
        QTest::newRow("file date") << qint64(1) << QString() << "09-Jul-2011 08:07:06";
        QTest::newRow("typed, 2000 characters") << qint64(2) << mixed << mixed;
    }
    void textByChannel() {
        QFETCH(qint64, channel);
        QFETCH(QString, custom);
        QFETCH(QString, expected);
        Sandbox dir;
        PhotoSpec spec;
        spec.dateTimeOriginal = "2014:03:05 13:34:56";
        QFile photo(dir.photo("p.jpg", spec));
        QVERIFY(photo.open(QIODevice::ReadWrite));
        QVERIFY(photo.setFileTime(QDateTime(QDate(2011, 7, 9), QTime(8, 7, 6)),
                                  QFileDevice::FileModificationTime));
        StampJob job = StampRuns::job({photo.fileName()}, dir.mkdir("out"));
        job.selectChannel = channel;
        job.gDateType = 1;
        job.gTimeType = 1;
        job.customText = custom;
        const auto outcomes = StampRuns::run(job);
        QVERIFY(outcomes.value(0).written);
        QCOMPARE(outcomes[0].text, expected);
    }

    // Every photo is reported: a pipe named like a photo, a file that is no image,
    // one cut short and one gone are skipped with their reason, the others are
    // written; of photos sharing a name the first that can be written wins.
    void reportsEveryPhoto() {
        Sandbox dir;
        for (const char* folder : {"a", "b", "c", "d"}) {
            dir.mkdir(folder);
        }
        const QString pipe = dir.fifo("x.jpg");
        PipeWatch watch(pipe);
        const QByteArray jpeg = TestImages::encoded(TestImages::pattern({600, 400}), "jpeg");
        const auto coloured = [&](const char* name, QColor colour) {
            return dir.photo(name, photoOf({64, 48}, colour));
        };
        const QStringList photos{coloured("a/IMG.png", Qt::red),
                                 pipe,
                                 dir.write("broken.png", "\x89PNG\r\n\x1a\n garbage"),
                                 dir.write("c/DUP.png", "not a photo"),
                                 dir.write("cut.jpg", jpeg.left(jpeg.size() / 2)),
                                 coloured("b/IMG.png", Qt::green),
                                 dir.path("gone.png"),
                                 coloured("d/DUP.png", Qt::blue)};
        const QStringList reasons{QString(),
                                  StampRun::kNotRegular,
                                  StampRun::kUnreadable,
                                  StampRun::kUnreadable,
                                  StampRun::kIncomplete,
                                  "same name as " + photos[0],
                                  "No such file",
                                  QString()};
        const auto outcomes = StampRuns::run(StampRuns::job(photos, dir.mkdir("out")), 2);
        QCOMPARE(outcomes.size(), photos.size());
        for (const StampOutcome& o : outcomes) {
            QCOMPARE(o.written, reasons[o.index].isEmpty());
            QVERIFY2(o.reason.contains(reasons[o.index]), qPrintable(o.reason));
        }
        QCOMPARE(QImage(dir.path("out/IMG.png")).pixelColor(0, 0), QColor(Qt::red));
        QCOMPARE(QImage(dir.path("out/DUP.png")).pixelColor(0, 0), QColor(Qt::blue));
        QCOMPARE(QDir(dir.path("out")).count(), 2u + 2);  // with "." and ".."
    }

    // However the folder is named, or through a link inside it, an output that is
    // one of the photos is refused before anything is written.
    void refusesToReplaceOriginals_data() {
        QTest::addColumn<QString>("output");
        QTest::addColumn<QString>("photo");
        QTest::addColumn<bool>("refused");
        QTest::newRow("the photo's folder") << "photos"
                                            << "photos/IMG_1.JPG" << true;
        QTest::newRow("trailing slash") << "photos/"
                                        << "photos/IMG_1.JPG" << true;
        QTest::newRow("through ..") << "out/../photos"
                                    << "photos/IMG_1.JPG" << true;
        QTest::newRow("through a link") << "link"
                                        << "photos/IMG_1.JPG" << true;
        QTest::newRow("where a linked photo lies") << "elsewhere"
                                                   << "photos/far.png" << true;
        QTest::newRow("holds a link to the photo") << "trap"
                                                   << "photos/IMG_1.JPG" << true;
        QTest::newRow("another folder") << "out"
                                        << "photos/IMG_1.JPG" << false;
    }
    void refusesToReplaceOriginals() {
        QFETCH(QString, output);
        QFETCH(QString, photo);
        QFETCH(bool, refused);
        Sandbox dir;
        for (const char* folder : {"photos", "out", "trap", "elsewhere"}) {
            dir.mkdir(folder);
        }
        dir.photo("photos/IMG_1.JPG");
        dir.photo("elsewhere/far.png");
        QVERIFY(QFile::link(dir.path("photos"), dir.path("link")));
        QVERIFY(QFile::link(dir.path("elsewhere/far.png"), dir.path("photos/far.png")));
        QVERIFY(QFile::link(dir.path("photos/IMG_1.JPG"), dir.path("trap/IMG_1.JPG")));
        const QByteArray before = TestImages::encoded(QImage(dir.path(photo)), "png");
        StampRun run(StampRuns::job({dir.path(photo)}, dir.path(output)));
        const QString message = run.refusal();
        QCOMPARE(!message.isEmpty(), refused);
        QVERIFY2(!refused || message.contains(QDir::cleanPath(dir.path(output))),
                 qPrintable(message));
        int reports = 0;
        run.run(1, [&](const StampOutcome&) { ++reports; });
        QCOMPARE(reports, refused ? 0 : 1);
        QCOMPARE(TestImages::encoded(QImage(dir.path(photo)), "png"), before);
    }

    // Cancel stops before the next photo and every file present is whole; a folder
    // that vanishes mid-run leaves the rest skipped with the reason.
    void cancelAndVanishedFolder_data() {
        QTest::addColumn<bool>("vanish");
        QTest::newRow("cancel") << false;
        QTest::newRow("folder vanishes") << true;
    }
    void cancelAndVanishedFolder() {
        QFETCH(bool, vanish);
        Sandbox dir;
        QStringList photos;
        for (int i = 0; i < 6; ++i) {
            photos << dir.photo(QStringLiteral("p%1.png").arg(i), photoOf({900, 700}));
        }
        const QString out = dir.mkdir("out");
        StampRun run(StampRuns::job(photos, out));
        QList<StampOutcome> outcomes;
        run.run(vanish ? 1 : 2, [&](const StampOutcome& o) {
            outcomes << o;
            if (outcomes.size() == 1) {
                vanish ? (void)QDir(out).removeRecursively() : run.cancel();
            }
        });
        QCOMPARE(run.cancelled(), !vanish);
        if (vanish) {
            QCOMPARE(outcomes.size(), photos.size());
            QVERIFY(outcomes.last().reason.startsWith("cannot be written"));
            return;
        }
        QVERIFY(outcomes.size() <= 2);  // the other worker's photo was under way
        const QStringList files = QDir(out).entryList(QDir::Files | QDir::Hidden);
        QCOMPARE(files.size(), outcomes.size());
        for (const QString& name : files) {
            QCOMPARE(QImage(QDir(out).filePath(name), "bmp").size(), QSize(900, 700));
        }
    }
};
SW_TEST_CLASS(StampRunTest)

#include "StampRunTest.moc"
