#include <sys/resource.h>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QTest>
#include <QtEndian>
#include <csignal>

#include "TestRegistry.h"
#include "common/Sandbox.h"
#include "common/StampRuns.h"
#include "common/TestImages.h"
#include "stamp/ImageWriter.h"

namespace {
// Neighbouring pixels differ, so a shifted or flipped row shows.
using TestImages::pattern;
}  // namespace

class ImageWriterTest : public QObject {
    Q_OBJECT
    Sandbox dir_;

  private slots:
    // Only the pixel size counts, whatever resolution the photo states; a drawn
    // image of another size is cut or extended (black) at its top and right, so
    // its bottom-left corner, from which y-up places count, stays.
    void writesExactPixels_data() {
        QTest::addColumn<QSize>("source");
        QTest::addColumn<QSize>("output");
        QTest::newRow("same size") << QSize(401, 302) << QSize(401, 302);
        QTest::newRow("crop") << QSize(50, 40) << QSize(30, 25);
        QTest::newRow("extend") << QSize(30, 25) << QSize(50, 40);
    }
    void writesExactPixels() {
        QFETCH(QSize, source);
        QFETCH(QSize, output);
        QImage image = pattern(source);
        image.setDotsPerMeterX(qRound(300 / 0.0254));  // 300 dpi
        image.setDotsPerMeterY(qRound(300 / 0.0254));
        const QString path = dir_.path("size.bmp");
        QVERIFY(ImageWriter::saveImage(image, output.width(), output.height(), path));
        const QImage back = QImage(path, "bmp").convertToFormat(QImage::Format_RGB32);
        QCOMPARE(back.size(), output);
        for (int up = 0; up < output.height(); ++up) {
            const int sy = source.height() - 1 - up;
            for (int x = 0; x < output.width(); ++x) {
                const bool inside = x < source.width() && sy >= 0;
                QCOMPARE(back.pixel(x, output.height() - 1 - up) & 0xffffff,
                         inside ? image.pixel(x, sy) & 0xffffff : 0u);
            }
        }
    }

    // Plain 24-bit uncompressed BMP, whatever the name's extension or image format.
    void writesPlainBmp_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("format");
        QTest::newRow("JPG name") << "IMG_0001.JPG" << int(QImage::Format_RGB32);
        QTest::newRow("grey image") << "b.tif" << int(QImage::Format_Grayscale8);
        QTest::newRow("alpha image") << "c.png" << int(QImage::Format_ARGB32_Premultiplied);
    }
    void writesPlainBmp() {
        QFETCH(QString, name);
        QFETCH(int, format);
        const QImage image = pattern({37, 11}).convertToFormat(QImage::Format(format));
        QVERIFY(ImageWriter::saveImage(image, 37, 11, dir_.path(name)));
        const QByteArray b = StampRuns::fileBytes(dir_.path(name));
        QCOMPARE(b.left(2), QByteArray("BM"));
        QCOMPARE(b.size(), 54 + 112 * 11);  // 24-bit rows of 37 * 3 bytes padded to 112
        QCOMPARE(qFromLittleEndian<quint32>(b.constData() + 2), quint32(b.size()));
        QCOMPARE(qFromLittleEndian<qint32>(b.constData() + 22), 11);  // bottom-up
    }

    void expandsTilde() {
        QCOMPARE(ImageWriter::expandTilde("~/x.JPG"), QDir::homePath() + "/x.JPG");
        QCOMPARE(ImageWriter::expandTilde("/a/~/x.JPG"), QStringLiteral("/a/~/x.JPG"));
        // The test runner points HOME at a temporary folder.
        QVERIFY(ImageWriter::saveImage(pattern({8, 6}), 8, 6, "~/stamped.JPG"));
        QCOMPARE(QImage(QDir::home().filePath("stamped.JPG"), "bmp").size(), QSize(8, 6));
    }

    void failsWithoutTouchingEarlierFile() {
        const QString path = dir_.path("IMG_0002.JPG");
        QVERIFY(ImageWriter::saveImage(pattern({16, 16}), 16, 16, path));
        const QByteArray before = StampRuns::fileBytes(path);
        QVERIFY(!ImageWriter::saveImage(pattern({8, 8}), 8, 8, dir_.path("missing/x.JPG")));
        QVERIFY(!ImageWriter::saveImage(QImage(), 8, 8, path));
        // A write that fails half-way, even for root: cap this process's file size.
        rlimit saved{};
        getrlimit(RLIMIT_FSIZE, &saved);
        rlimit capped = saved;
        capped.rlim_cur = 64 * 1024;
        const auto handler = std::signal(SIGXFSZ, SIG_IGN);
        QCOMPARE(setrlimit(RLIMIT_FSIZE, &capped), 0);
        const bool written = ImageWriter::saveImage(pattern({400, 300}), 400, 300, path);
        setrlimit(RLIMIT_FSIZE, &saved);
        std::signal(SIGXFSZ, handler);
        QVERIFY(!written);
        QCOMPARE(StampRuns::fileBytes(path), before);
        QVERIFY(QDir(dir_.path()).entryList({"IMG_0002*"}, QDir::Files | QDir::Hidden).size() == 1);
        // And a later write replaces it without a question.
        QVERIFY(ImageWriter::saveImage(pattern({9, 7}), 9, 7, path));
        QCOMPARE(QImage(path, "bmp").size(), QSize(9, 7));
        // A link at the path is replaced by the file; what it points to stays as it was.
        QVERIFY(QFile::link(path, dir_.path("link.JPG")));
        QVERIFY(ImageWriter::saveImage(pattern({5, 4}), 5, 4, dir_.path("link.JPG")));
        QCOMPARE(QImage(path, "bmp").size(), QSize(9, 7));
        QVERIFY(!QFileInfo(dir_.path("link.JPG")).isSymLink());
    }
};
SW_TEST_CLASS(ImageWriterTest)

#include "ImageWriterTest.moc"
