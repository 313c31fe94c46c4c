#include <QDir>
#include <QFile>
#include <QImageReader>
#include <QTest>
#include <mutex>

#include "TestRegistry.h"
#include "common/PipeWatch.h"
#include "common/Sandbox.h"
#include "common/StampRuns.h"
#include "common/TestImages.h"
#include "stamp/StampRun.h"
#include "stamp/TextMetrics.h"

class StampRunTest : public QObject {
    Q_OBJECT

  private slots:
    // Each photo comes out as a BMP of its pixel size with the text's ink inside
    // the rectangle the label's share of its travel gives, in the photo's points
    // scaled to pixels, and nowhere else.
    void stampsInsideExpectedRectangle_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QSize>("size");
        QTest::addColumn<int>("dpi");
        QTest::addColumn<QPointF>("share");
        QTest::addColumn<bool>("margin");
        QTest::newRow("72 dpi, bottom-left")
            << "a.png" << QSize(400, 300) << 72 << QPointF(0, 0) << false;
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
        PhotoSpec spec;
        spec.size = size;
        spec.dpi = dpi;
        spec.colour = Qt::white;
        StampJob job = StampRuns::job({dir.photo(name, spec)}, dir.mkdir("out"), share, margin);
        const auto outcomes = StampRuns::run(job);
        QCOMPARE(outcomes.size(), 1);
        QVERIFY2(outcomes[0].written, qPrintable(outcomes[0].reason));

        QImageReader reader(outcomes[0].output);
        QCOMPARE(reader.format(), QByteArray("bmp"));
        const QImage out = reader.read();
        QCOMPARE(out.size(), size);
        // The text's box in pixels: its share of the free travel counted from the
        // area's bottom-left corner (y-up), turned into rows from the top.
        const double k = dpi / 72.0;
        const QSizeF text = TextMetrics::measureText(job.customText, job.font) * k;
        const double areaW = size.width() * (margin ? 0.83 : 1);
        const double areaH = size.height() * (margin ? 0.95 : 1);
        const double left = (size.width() - areaW) / 2 + share.x() * (areaW - text.width());
        const double bottomUp = (size.height() - areaH) / 2 + share.y() * (areaH - text.height());
        const QRectF box(left, size.height() - bottomUp - text.height(), text.width(),
                         text.height());
        const QRect ink = TestImages::boundsWhere(out, [](QRgb p) { return qGreen(p) < 160; });
        const QRectF slack = box.adjusted(-2, -2, 2, 2);
        QVERIFY2(slack.contains(QRectF(ink)), qPrintable(QStringLiteral("ink %1,%2 %3x%4")
                                                             .arg(ink.x())
                                                             .arg(ink.y())
                                                             .arg(ink.width())
                                                             .arg(ink.height())));
        // Drawn at the scaled size, not at one pixel per point.
        QVERIFY(ink.width() > 0.85 * box.width() && ink.height() > 0.6 * box.height());
    }

    // Channel 0 reads the EXIF dates with the file date as fallback, channel 1
    // the file date, channel 2 the typed text as it is, whatever its script or length.
    void textByChannel_data() {
        QTest::addColumn<qint64>("channel");
        QTest::addColumn<QString>("original");
        QTest::addColumn<QString>("digitized");
        QTest::addColumn<QString>("custom");
        QTest::addColumn<QString>("expected");
        const QString mixed = QStringLiteral("📷 שלום 2014 ") + QString(1990, QChar(0x0645));
        QTest::newRow("EXIF original")
            << qint64(0) << "2014:03:05 13:34:56"
            << "2001:01:01 01:01:01" << QString() << "05-Mar-2014 13:34:56";
        QTest::newRow("EXIF digitized only") << qint64(0) << QString() << "2012:12:24 18:00:00"
                                             << QString() << "24-Dec-2012 18:00:00";
        QTest::newRow("null EXIF date, file date")
            << qint64(0) << "0000:00:00 00:00:00"
            << "2012:12:24 18:00:00" << QString() << "09-Jul-2011 08:07:06";
        QTest::newRow("file date") << qint64(1) << "2014:03:05 13:34:56" << QString() << QString()
                                   << "09-Jul-2011 08:07:06";
        QTest::newRow("typed emoji, right-to-left, 2000 characters")
            << qint64(2) << "2014:03:05 13:34:56" << QString() << mixed << mixed;
    }
    void textByChannel() {
        QFETCH(qint64, channel);
        QFETCH(QString, original);
        QFETCH(QString, digitized);
        QFETCH(QString, custom);
        QFETCH(QString, expected);
        Sandbox dir;
        PhotoSpec spec;
        if (!original.isNull()) {
            spec.dateTimeOriginal = original;
        }
        if (!digitized.isNull()) {
            spec.dateTimeDigitized = digitized;
        }
        const QString photo = dir.photo("p.jpg", spec);
        QFile file(photo);
        QVERIFY(file.open(QIODevice::ReadWrite));
        QVERIFY(file.setFileTime(QDateTime(QDate(2011, 7, 9), QTime(8, 7, 6)),
                                 QFileDevice::FileModificationTime));
        file.close();
        StampJob job = StampRuns::job({photo}, dir.mkdir("out"));
        job.selectChannel = channel;
        job.gDateType = 1;
        job.gTimeType = 1;
        job.customText = custom;
        const auto outcomes = StampRuns::run(job);
        QCOMPARE(outcomes.size(), 1);
        QVERIFY(outcomes[0].written);
        QCOMPARE(outcomes[0].text, expected);
    }

    // Of photos sharing a file name, the first in the list that can be written is;
    // the others are reported and leave its file alone.
    void sameNameFirstWins_data() {
        QTest::addColumn<bool>("firstReadable");
        QTest::newRow("first written") << true;
        QTest::newRow("first unreadable, second written") << false;
    }
    void sameNameFirstWins() {
        QFETCH(bool, firstReadable);
        Sandbox dir;
        QStringList photos;
        const QList<QColor> colours{Qt::red, Qt::green, Qt::blue};
        for (int i = 0; i < 3; ++i) {
            dir.mkdir(QString::number(i));
            PhotoSpec spec;
            spec.colour = colours[i];
            photos << dir.photo(QStringLiteral("%1/IMG.png").arg(i), spec);
        }
        if (!firstReadable) {
            dir.write("0/IMG.png", "not a photo");
        }
        const int winner = firstReadable ? 0 : 1;
        photos.insert(1, dir.photo("other.png"));
        const auto outcomes = StampRuns::run(StampRuns::job(photos, dir.mkdir("out")), 2);
        QCOMPARE(outcomes.size(), 4);
        int written = 0;
        for (const StampOutcome& o : outcomes) {
            written += o.written ? 1 : 0;
            if (o.source.endsWith("/IMG.png") && !o.written && o.index != 0) {
                QVERIFY2(o.reason.contains(photos[winner == 0 ? 0 : 2]), qPrintable(o.reason));
            }
        }
        QCOMPARE(written, 2);
        const QImage out(dir.path("out/IMG.png"));
        QCOMPARE(out.pixelColor(0, 0), colours[winner]);
    }

    // A pipe named like a photo, a file that is no image, one cut short and one
    // that is gone are each skipped with a reason; the others are written.
    void badPhotosSkipped() {
        Sandbox dir;
        const QString pipe = dir.fifo("x.jpg");
        PipeWatch watch(pipe);
        const QByteArray jpeg = TestImages::encoded(TestImages::pattern({600, 400}), "jpeg");
        const QStringList photos{dir.photo("good.jpg"),
                                 pipe,
                                 dir.write("broken.png", "\x89PNG\r\n\x1a\n garbage"),
                                 dir.write("cut.jpg", jpeg.left(jpeg.size() / 2)),
                                 dir.path("gone.png"),
                                 dir.photo("good.tiff")};
        const auto outcomes = StampRuns::run(StampRuns::job(photos, dir.mkdir("out")), 2);
        QCOMPARE(outcomes.size(), photos.size());
        const QStringList reasons{QString(),
                                  StampRun::kNotRegular,
                                  StampRun::kUnreadable,
                                  StampRun::kIncomplete,
                                  "No such file",
                                  QString()};
        for (const StampOutcome& o : outcomes) {
            const QString& reason = reasons[o.index];
            QCOMPARE(o.written, reason.isEmpty());
            QVERIFY2(o.reason.contains(reason), qPrintable(o.reason));
            QCOMPARE(QFileInfo::exists(o.output), o.written);
        }
    }

    // Folders named through a link, "..", a trailing slash, the real folder of a
    // photo named through a link, or an output file that is a link to a photo:
    // the run refuses and writes nothing.
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

    // Cancel stops before the next photo; every file present is whole, and a
    // folder that vanishes mid-run makes the rest skipped with the reason.
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
            PhotoSpec spec;
            spec.size = QSize(900, 700);
            photos << dir.photo(QStringLiteral("p%1.png").arg(i), spec);
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
            QVERIFY(!QFileInfo::exists(out));
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
