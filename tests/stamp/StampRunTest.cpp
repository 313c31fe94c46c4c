#include <QDir>
#include <QFile>
#include <QTest>

#include "TestRegistry.h"
#include "common/PipeWatch.h"
#include "common/Sandbox.h"
#include "common/StampRuns.h"
#include "common/TestImages.h"
#include "stamp/StampRun.h"
#include "stamp/TextMetrics.h"

using StampRuns::whitePhoto;

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
        QTest::newRow("300 dpi, top, a third across, margin")
            << "c.tiff" << QSize(1600, 1200) << 300 << QPointF(1.0 / 3, 1) << true;
    }
    void stampsInsideExpectedRectangle() {
        QFETCH(QString, name);
        QFETCH(QSize, size);
        QFETCH(int, dpi);
        QFETCH(QPointF, share);
        QFETCH(bool, margin);
        Sandbox dir;
        StampJob job = StampRuns::job({dir.photo(name, whitePhoto(size, dpi))}, dir.mkdir("out"),
                                      share, margin);
        const auto outcomes = StampRuns::run(job);
        QVERIFY2(outcomes.value(0).written, qPrintable(outcomes.value(0).reason));
        const QImage out(outcomes[0].output, "bmp");
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
            PhotoRecipe recipe = whitePhoto({64, 48});
            recipe.colour = colour;
            return dir.photo(name, recipe);
        };
        const QString first = coloured("a/IMG.png", Qt::red);
        const QList<std::pair<QString, QString>> cases{
            // photo, reason it is skipped
            {first, {}},
            {pipe, StampRun::kNotRegular},
            {dir.write("broken.png", "\x89PNG\r\n\x1a\n garbage"), StampRun::kUnreadable},
            {dir.write("c/DUP.png", "not a photo"), StampRun::kUnreadable},
            {dir.write("cut.jpg", jpeg.left(jpeg.size() / 2)), StampRun::kIncomplete},
            {coloured("b/IMG.png", Qt::green), "same name as " + first},
            {dir.path("gone.png"), "No such file"},
            {coloured("d/DUP.png", Qt::blue), {}}};
        QStringList photos;
        for (const auto& c : cases) {
            photos << c.first;
        }
        const auto outcomes = StampRuns::run(StampRuns::job(photos, dir.mkdir("out")), 2);
        QCOMPARE(outcomes.size(), photos.size());
        for (const StampOutcome& o : outcomes) {
            QCOMPARE(o.written, cases[o.index].second.isEmpty());
            QVERIFY2(o.reason.contains(cases[o.index].second), qPrintable(o.reason));
        }
        QCOMPARE(QImage(dir.path("out/IMG.png")).pixelColor(0, 0), QColor(Qt::red));
        QCOMPARE(QImage(dir.path("out/DUP.png")).pixelColor(0, 0), QColor(Qt::blue));
        QCOMPARE(QDir(dir.path("out")).count(), 2u + 2);  // with "." and ".."
    }

    // However the folder is named, or through a link inside it, an output that is
    // one of the photos is refused before anything is written.
    void refusesToReplaceOriginals_data() {
        QTest::addColumn<QString>("output");
        QTest::addColumn<bool>("linkedPhoto");  // photos/far.png, a link, not photos/IMG_1.JPG
        QTest::addColumn<bool>("refused");
        QTest::newRow("trailing slash") << "photos/" << false << true;
        QTest::newRow("through a link") << "link" << false << true;
        QTest::newRow("where a linked photo lies") << "elsewhere" << true << true;
        QTest::newRow("holds a link to the photo") << "trap" << false << true;
        QTest::newRow("another folder") << "out" << false << false;
    }
    void refusesToReplaceOriginals() {
        QFETCH(QString, output);
        QFETCH(bool, linkedPhoto);
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
        const QString photo = dir.path(linkedPhoto ? "photos/far.png" : "photos/IMG_1.JPG");
        const QByteArray before = StampRuns::fileBytes(photo);
        StampRun run(StampRuns::job({photo}, dir.path(output)));
        const QString message = run.refusal();
        QCOMPARE(!message.isEmpty(), refused);
        QVERIFY2(!refused || message.contains(QDir::cleanPath(dir.path(output))),
                 qPrintable(message));
        int reports = 0;
        run.run(1, [&](const StampOutcome&) { ++reports; });
        QCOMPARE(reports, refused ? 0 : 1);
        QCOMPARE(StampRuns::fileBytes(photo), before);
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
            photos << dir.photo(QStringLiteral("p%1.png").arg(i), whitePhoto({900, 700}));
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
