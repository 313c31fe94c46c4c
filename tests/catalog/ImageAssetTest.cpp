#include <QBuffer>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QThreadPool>
#include <QtEndian>
#include <array>
#include <atomic>
#include <memory>
#include <thread>
#include <vector>

#include "TestRegistry.h"
#include "catalog/ImageAsset.h"
#include "common/Sandbox.h"
#include "tools/ExifJpegWriter.h"

namespace {

QImage flat(QSize size, QColor colour = Qt::blue) {
    QImage image(size, QImage::Format_RGB32);
    image.fill(colour);
    return image;
}

QByteArray encoded(const QImage& image, const char* format) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, format);
    return bytes;
}

// A PNG whose header claims the size, with an empty IDAT so that the header
// reads whole. (Qt's readers of most other formats refuse such sizes themselves.)
QByteArray pngHeader(quint32 width, quint32 height) {
    QByteArray out("\x89PNG\r\n\x1a\n", 8);
    const auto chunk = [&out](QByteArray typeAndData) {
        quint32 crc = 0xFFFFFFFFu;
        for (const char c : typeAndData) {
            crc ^= uchar(c);
            for (int k = 0; k < 8; ++k) {
                crc = (crc >> 1) ^ (0xEDB88320u & (0u - (crc & 1u)));
            }
        }
        QByteArray numbers(8, '\0');
        qToBigEndian(quint32(typeAndData.size() - 4), numbers.data());
        qToBigEndian(~crc, numbers.data() + 4);
        out += numbers.left(4) + typeAndData + numbers.mid(4);
    };
    QByteArray header("IHDR\0\0\0\0\0\0\0\0\x08\x02\0\0\0", 17);  // 8-bit RGB
    qToBigEndian(width, header.data() + 4);
    qToBigEndian(height, header.data() + 8);
    chunk(header);
    chunk("IDAT");
    return out;
}

// An uncompressed 8-bit grey TIFF with one page per size; only the last page
// carries an EXIF directory, with DateTimeOriginal = lastPageDate.
QByteArray multiPageTiff(const QList<QSize>& pages, const QByteArray& lastPageDate) {
    QByteArray out("II*\0\0\0\0\0", 8);
    const auto append = [&out](quint32 v, int bytes) {
        for (int i = 0; i < bytes; ++i) {
            out.append(char(v >> (8 * i)));
        }
    };
    // Appends a directory of {tag, type, count, value} entries; gives its offset.
    const auto directory = [&out, &append](const QList<std::array<quint32, 4>>& entries) {
        out.append(out.size() % 2, '\0');
        const quint32 at = quint32(out.size());
        append(quint32(entries.size()), 2);
        for (const auto& [tag, type, count, value] : entries) {
            append(tag, 2);
            append(type, 2);
            append(count, 4);
            append(value, 4);
        }
        append(0, 4);  // no next directory yet
        return at;
    };
    qsizetype link = 4;  // where the next page's offset goes
    for (const QSize& size : pages) {
        const quint32 w = quint32(size.width()), h = quint32(size.height());
        const quint32 pixels = quint32(out.size());
        out.append(qsizetype(w * h), char(0x80));
        QList<std::array<quint32, 4>> entries = {
            {256, 4, 1, w}, {257, 4, 1, h},      {258, 3, 1, 8},
            {262, 3, 1, 1}, {273, 4, 1, pixels}, {279, 4, 1, w * h},
        };
        if (&size == &pages.last()) {
            const quint32 date = quint32(out.size());
            out.append(lastPageDate).append('\0');
            entries.append(
                {0x8769, 4, 1, directory({{0x9003, 2, quint32(lastPageDate.size() + 1), date}})});
        }
        qToLittleEndian(directory(entries), out.data() + link);
        link = out.size() - 4;
    }
    return out;
}

}  // namespace

class ImageAssetTest : public QObject {
    Q_OBJECT
  private:
    Sandbox dir_;

    QString path(const QString& name) const { return dir_.path(name); }
    // A blue JPEG with the given EXIF fields; its path.
    QString jpeg(const QString& name, QSize size, const ExifJpegWriter::Fields& fields = {}) {
        return ExifJpegWriter::write(path(name), flat(size), fields) ? path(name) : QString();
    }

  private slots:
    void damagedFiles_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<int>("width");  // 0: unreadable
        const QByteArray whole = encoded(flat({640, 480}), "jpeg");
        QTest::newRow("0 bytes") << "empty.jpg" << QByteArray() << 0;
        QTest::newRow("text named .png") << "notes.png" << QByteArray("just some words\n") << 0;
        QTest::newRow("JPEG cut inside its header") << "cut.jpg" << whole.left(100) << 0;
        QTest::newRow("PNG claiming 100000 x 100000")
            << "huge.png" << pngHeader(100000, 100000) << 0;
        // The header is whole, so the size is known; the preview shows what arrived.
        QTest::newRow("JPEG cut in its image data")
            << "cut-data.jpg" << whole.left(whole.size() * 2 / 3) << 640;
    }
    void damagedFiles() {
        QFETCH(QString, name);
        QFETCH(QByteArray, bytes);
        QFETCH(int, width);
        QVERIFY(!dir_.write(name, bytes).isEmpty());
        ImageAsset asset(QUrl::fromLocalFile(path(name)));
        QCOMPARE(asset.createImageSource(), width > 0);
        QCOMPARE(asset.pixelsWide(), width);
        QCOMPARE(asset.loadPreviewImage(), width > 0);
        QVERIFY(asset.previewImage().width() <= 160);
        QVERIFY(asset.includedInSlideshow());
    }

    // Awkward names as well: the file is read by Qt's readers and by Exiv2.
    void preview_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QSize>("imageSize");
        QTest::addColumn<QSize>("thumbnailSize");  // invalid: none stored
        QTest::addColumn<QSize>("previewSize");
        QTest::newRow("stored thumbnail, non-ASCII name")
            << "Ausflug über die Brücke – 東京.JPG" << QSize(1600, 1200) << QSize(80, 60)
            << QSize(80, 60);
        QTest::newRow("stored thumbnail too large, quotes in the name")
            << "a (1) 'b' [c].jpeg" << QSize(1600, 1200) << QSize(320, 240) << QSize(160, 120);
        QTest::newRow("none stored, portrait")
            << "holiday at the sea 01.jpg" << QSize(900, 1600) << QSize() << QSize(90, 160);
        QTest::newRow("none stored, already small")
            << "small.jpg" << QSize(120, 50) << QSize() << QSize(120, 50);
    }
    void preview() {
        QFETCH(QString, name);
        QFETCH(QSize, imageSize);
        QFETCH(QSize, thumbnailSize);
        QFETCH(QSize, previewSize);
        ExifJpegWriter::Fields fields;
        if (thumbnailSize.isValid()) {
            fields.thumbnail = flat(thumbnailSize, Qt::red);
        }
        ImageAsset asset(QUrl::fromLocalFile(jpeg(name, imageSize, fields)));
        QCOMPARE(asset.filename(), name);
        QCOMPARE(asset.pixelsWide(), imageSize.width());
        QSignalSpy changed(&asset, &Asset::previewImageChanged);
        asset.requestPreviewImage();
        QVERIFY(changed.wait(5000));
        const QImage preview = asset.previewImage();
        QCOMPARE(preview.size(), previewSize);
        const QColor centre = preview.pixelColor(preview.width() / 2, preview.height() / 2);
        QCOMPARE(centre.red() > centre.blue(), thumbnailSize.isValid());

        // With a preview in place neither a new request nor the same image changes it.
        asset.requestPreviewImage();
        asset.setPreviewImage(preview);
        QVERIFY(!changed.wait(200));
        asset.setPreviewImage(QImage());
        QCOMPARE(changed.count(), 2);
    }

    void resolution_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("dotsPerMeter");  // as written
        QTest::addColumn<double>("dpi");        // as read
        QTest::newRow("JPEG, JFIF density") << "res.jpg" << 11811 << 300.0;
        QTest::newRow("PNG, pHYs") << "res.png" << 5906 << 150.0;
        QTest::newRow("TIFF, through EXIF") << "res.tif" << 7874 << 200.0;
        QTest::newRow("BMP, none read") << "res.bmp" << 5906 << 72.0;
    }
    void resolution() {
        QFETCH(QString, name);
        QFETCH(int, dotsPerMeter);
        QFETCH(double, dpi);
        QImage image = flat({300, 200}, Qt::gray);
        image.setDotsPerMeterX(dotsPerMeter);
        image.setDotsPerMeterY(dotsPerMeter);
        QVERIFY(image.save(path(name)));
        ImageAsset asset(QUrl::fromLocalFile(path(name)));
        QVERIFY(qAbs(asset.dpiX() - dpi) < 0.1);
        QVERIFY(qAbs(asset.pointSize().width() - 300 * 72.0 / dpi) < 0.1);
    }

    void multiPageFile() {
        const QByteArray tiff =
            multiPageTiff({QSize(30, 10), QSize(20, 40), QSize(25, 5)}, "2001:02:03 04:05:06");
        QVERIFY(!dir_.write("pages.tiff", tiff).isEmpty());
        ImageAsset asset(QUrl::fromLocalFile(path("pages.tiff")));
        QCOMPARE(asset.pixelsWide(), 30);
        QCOMPARE(asset.maxPagePixelSize(), QSize(30, 40));
        QCOMPARE(asset.lastPageDateTimeOriginal(), std::optional<QString>("2001:02:03 04:05:06"));
        QCOMPARE(asset.lastPageDateTimeDigitized(), std::nullopt);
    }

    void concurrentFirstUse() {
        ExifJpegWriter::Fields fields;
        fields.dateTimeDigitized = "2010:01:02 03:04:05";
        fields.thumbnail = flat({160, 120}, Qt::red);
        ImageAsset asset(QUrl::fromLocalFile(jpeg("shared.jpg", {640, 480}, fields)));
        // Each thread may be the first to ask for something; all must see the same.
        std::atomic_int right{0};
        std::vector<std::thread> threads(8);
        for (std::thread& thread : threads) {
            thread = std::thread([&] {
                right += asset.pixelsWide() == 640 &&
                         asset.lastPageDateTimeDigitized() == "2010:01:02 03:04:05" &&
                         asset.imageSource()->thumbnail().size() == QSize(160, 120);
            });
        }
        for (std::thread& thread : threads) {
            thread.join();
        }
        QCOMPARE(right.load(), 8);
    }

    void fileSizeReadAgainWhileZero() {
        const QString file = path("grows.jpg");
        QVERIFY(!dir_.write("grows.jpg", QByteArray()).isEmpty());
        Asset asset(QUrl::fromLocalFile(file));
        QCOMPARE(asset.fileSize(), 0u);
        QVERIFY(!dir_.write("grows.jpg", QByteArray(1234, 'x')).isEmpty());
        QCOMPARE(asset.fileSize(), 1234u);
        // Once known it is kept.
        QVERIFY(!dir_.write("grows.jpg", QByteArray(10, 'x')).isEmpty());
        QCOMPARE(asset.fileSize(), 1234u);
    }

    void previewForAssetsThatGoAway() {
        const QString file = jpeg("many.jpg", {800, 600});
        std::vector<std::unique_ptr<ImageAsset>> assets;
        for (int i = 0; i < 60; ++i) {
            assets.push_back(std::make_unique<ImageAsset>(QUrl::fromLocalFile(file)));
            assets.back()->requestPreviewImage();
        }
        ImageAsset survivor(QUrl::fromLocalFile(file));
        QSignalSpy changed(&survivor, &Asset::previewImageChanged);
        survivor.requestPreviewImage();
        assets.clear();  // their results must be dropped, not delivered to freed objects
        QVERIFY(changed.wait(10000));
        QVERIFY(ImageAsset::previewPool()->waitForDone(10000));
        QTest::qWait(50);  // deliver whatever was queued for the gone assets
        QCOMPARE(changed.count(), 1);
    }

    void requestAfterPoolShutdown() {
        ImageAsset asset(QUrl::fromLocalFile(jpeg("late.jpg", {320, 240})));
        QSignalSpy changed(&asset, &Asset::previewImageChanged);
        // Keep every worker busy so that the request stays queued.
        QThreadPool* pool = ImageAsset::previewPool();
        for (int i = 0; i < pool->maxThreadCount(); ++i) {
            pool->start([] { QThread::msleep(100); });
        }
        asset.requestPreviewImage();
        // Dropping the queued work must not leave the asset waiting forever.
        ImageAsset::shutDownPreviewPool(true);
        QTest::qWait(50);
        QVERIFY(changed.isEmpty());
        asset.requestPreviewImage();
        QVERIFY(changed.wait(5000));
        QCOMPARE(asset.previewImage().size(), QSize(160, 120));
    }
};

SW_TEST_CLASS(ImageAssetTest)
#include "ImageAssetTest.moc"
