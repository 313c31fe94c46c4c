#include <QDir>
#include <QImage>
#include <QTest>

#include "TestRegistry.h"
#include "common/Sandbox.h"
#include "common/StampRuns.h"
#include "common/TestImages.h"

class UprightRunTest : public QObject {
    Q_OBJECT

  private slots:
    // Camera photos stored in all eight orientations of one picture: turned
    // upright, each output is that picture, and the label placed at the bottom
    // right of the preview stamps the bottom right of every one.
    void stampsUprightPhotos_data() {
        QTest::addColumn<QString>("shape");
        QTest::addColumn<QSize>("size");
        QTest::newRow("landscape") << "landscape" << QSize(600, 450);
        QTest::newRow("portrait") << "portrait" << QSize(450, 600);
    }
    void stampsUprightPhotos() {
        QFETCH(QString, shape);
        QFETCH(QSize, size);
        const QString folder = TestRegistry::photosDir() + QStringLiteral("/orientation");
        if (TestRegistry::photosDir().isEmpty() || !QDir(folder).exists()) {
            QSKIP("no camera photos beside the repository");
        }
        QStringList photos;
        for (int tag = 1; tag <= 8; ++tag) {
            photos << QStringLiteral("%1/%2_%3.jpg").arg(folder, shape).arg(tag);
        }
        Sandbox dir;
        StampJob job = StampRuns::job(photos, dir.mkdir("out"), {1, 0});
        job.options.upright = true;
        job.color = QColor(255, 0, 255);
        const auto outcomes = StampRuns::run(job);
        QCOMPARE(outcomes.size(), photos.size());
        QImage first;
        for (const StampOutcome& outcome : outcomes) {
            QVERIFY2(outcome.written, qPrintable(outcome.reason));
            const QImage out = QImage(outcome.output, "bmp").convertToFormat(QImage::Format_RGB32);
            QCOMPARE(out.size(), size);
            const QRect ink = TestImages::boundsWhere(
                out, [](QRgb p) { return qRed(p) > 200 && qGreen(p) < 80 && qBlue(p) > 200; });
            QVERIFY2(ink.width() > 50 && ink.left() > size.width() / 2 &&
                         ink.top() > size.height() * 3 / 4,
                     qPrintable(outcome.source));
            // At low resolution only the picture counts, not the tag's number drawn on it.
            const QImage small =
                out.scaled(size / 50, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
            if (first.isNull()) {
                first = small;
            }
            QVERIFY2(TestImages::difference(small, first).mean < 25, qPrintable(outcome.source));
        }
    }
};
SW_TEST_CLASS(UprightRunTest)

#include "UprightRunTest.moc"
