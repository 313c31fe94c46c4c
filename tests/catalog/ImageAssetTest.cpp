#include <fcntl.h>
#include <unistd.h>
#include <QFile>
#include <QSignalSpy>
#include <QTest>
#include <QThreadPool>
#include <QtEndian>
#include <array>
#include <atomic>
#include <memory>
#include <thread>
#include <vector>

#include "TestRegistry.h"
#include "catalog/ExifMetadata.h"
#include "catalog/ImageAsset.h"
#include "common/PipeWatch.h"
#include "common/Sandbox.h"
#include "common/TestImages.h"

namespace {

// An uncompressed 8-bit grey TIFF with one page per size; only the last page
// carries an EXIF directory, with DateTimeOriginal = lastPageDate.
QByteArray multiPageTiff(const QList<QSize>& pages, const QByteArray& lastPageDate) {
    QByteArray out("II*\0\0\0\0\0", 8);
    const auto append = [&out](quint32 v, int bytes) {
        const quint32 le = qToLittleEndian(v);
        out.append(reinterpret_cast<const char*>(&le), bytes);
    };
    // Appends a directory of {tag, type, count, value} entries and gives its offset.
    const auto directory = [&](const QList<std::array<quint32, 4>>& entries) {
        const quint32 at = quint32(out.append(out.size() % 2, '\0').size());
        append(quint32(entries.size()), 2);
        for (const auto& [tag, type, count, value] : entries) {
            append(tag, 2), append(type, 2), append(count, 4), append(value, 4);
        }
        append(0, 4);  // no next directory yet
        return at;
    };
    for (qsizetype link = 4; const QSize& size : pages) {
        const quint32 w = quint32(size.width()), h = quint32(size.height()),
                      pixels = quint32(out.size());
        out.append(qsizetype(w * h), char(0x80));
        QList<std::array<quint32, 4>> entries = {{256, 4, 1, w},      {257, 4, 1, h},
                                                 {258, 3, 1, 8},      {262, 3, 1, 1},
                                                 {273, 4, 1, pixels}, {279, 4, 1, w * h}};
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

  private slots:
    // A JPEG whose frame header claims 30000 x 30000 is refused before any
    // reader tries; a named pipe is answered without being opened.
    void unreadable() {
        QByteArray huge = TestImages::encoded(TestImages::solid({16, 16}), "jpeg");
        huge.replace(QByteArray("\xFF\xC0\0\x11\x08\0\x10\0\x10", 9),
                     QByteArray("\xFF\xC0\0\x11\x08\x75\x30\x75\x30", 9));
        QVERIFY(!ImageAsset(QUrl::fromLocalFile(dir_.write("huge.jpg", huge))).createImageSource());
        const QString pipe = dir_.fifo("x.jpg");
        PipeWatch watch(pipe);
        ImageAsset asset(QUrl::fromLocalFile(pipe));
        QVERIFY(!asset.createImageSource());
        QCOMPARE(asset.fileSize(), 0u);
        QCOMPARE(ExifMetadata::readFile(pipe).dpiX, std::nullopt);
        QCOMPARE(ExifMetadata::readLastTiffPageDates(pipe).dateTimeOriginal, std::nullopt);
        QVERIFY(!watch.opened());
    }

    // A file still being copied when first read: a failed open is tried again
    // later, while what the whole file gave is kept.
    void fileStillBeingCopied() {
        ImageAsset asset(QUrl::fromLocalFile(dir_.write("copying.jpg", QByteArray())));
        QCOMPARE(asset.fileSize(), 0u);
        QCOMPARE(asset.pixelsWide(), 0);
        const QByteArray whole = TestImages::encoded(TestImages::solid({640, 480}), "jpeg");
        QVERIFY(!dir_.write("copying.jpg", whole).isEmpty());
        QSignalSpy changed(&asset, &Asset::previewImageChanged);
        asset.requestPreviewImage();
        QVERIFY(changed.wait(5000));
        QCOMPARE(asset.previewImage().size(), QSize(160, 120));
        QCOMPARE(asset.fileSize(), quint64(whole.size()));
        const QByteArray other = TestImages::encoded(TestImages::solid({32, 32}), "jpeg");
        QVERIFY(!dir_.write("copying.jpg", other).isEmpty());
        QCOMPARE(asset.pixelsWide(), 640);
        QCOMPARE(asset.fileSize(), quint64(whole.size()));
    }

    // Awkward names as well: the file is read by Qt's readers and by Exiv2. Threads
    // asking first at once share one source and see the same.
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
    }
    void preview() {
        QFETCH(QString, name);
        QFETCH(QSize, imageSize);
        QFETCH(QSize, thumbnailSize);
        QFETCH(QSize, previewSize);
        PhotoRecipe recipe;
        recipe.size = imageSize;
        recipe.dateTimeDigitized = "2010:01:02 03:04:05";
        recipe.thumbnail = thumbnailSize;
        ImageAsset asset(QUrl::fromLocalFile(dir_.photo(name, recipe)));
        std::atomic_int right{0};
        std::vector<std::thread> threads(8);
        for (std::thread& thread : threads) {
            thread = std::thread([&] {
                right += asset.pixelsWide() == imageSize.width() &&
                         asset.lastPageDateTimeDigitized() == recipe.dateTimeDigitized &&
                         asset.imageSource()->thumbnail().size() == previewSize;
            });
        }
        for (std::thread& thread : threads) {
            thread.join();
        }
        QCOMPARE(right.load(), 8);
        QVERIFY(asset.includedInSlideshow());
        // The stored thumbnail the threads took is read again for the preview.
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

    // The stated resolution, 72 dpi when none is stated, gives the size in points.
    // The camera rows need the photos beside the repository.
    void resolutionAndPreview_data() {
        QTest::addColumn<QString>("path");  // empty: no camera photos
        QTest::addColumn<double>("dpi");
        QTest::addColumn<QSize>("previewSize");
        const auto saved = [this](const QString& name, double dpi) {
            QImage image = TestImages::solid({300, 200}, Qt::gray);
            image.setDotsPerMeterX(qRound(dpi / 0.0254));
            image.setDotsPerMeterY(qRound(dpi / 0.0254));
            return image.save(dir_.path(name)) ? dir_.path(name) : QString("not saved");
        };
        const QString photos = TestRegistry::photosDir();
        const auto camera = [&photos](const char* name) {
            return photos.isEmpty() ? QString() : photos + '/' + name;
        };
        QTest::newRow("JPEG, JFIF density") << saved("res.jpg", 300) << 300.0 << QSize(160, 106);
        QTest::newRow("PNG, pHYs") << saved("res.png", 150) << 150.0 << QSize(160, 106);
        QTest::newRow("TIFF, through EXIF") << saved("res.tif", 200) << 200.0 << QSize(160, 106);
        QTest::newRow("camera TIFF stating none")
            << camera("tiff/BSG1.tiff") << 72.0 << QSize(160, 87);
        QTest::newRow("camera JPEG, orientation tag not applied")
            << camera("orientation/landscape_6.jpg") << 72.0 << QSize(120, 160);
    }
    void resolutionAndPreview() {
        QFETCH(QString, path);
        QFETCH(double, dpi);
        if (path.isEmpty()) {
            QSKIP("no camera photos beside the repository");
        }
        ImageAsset asset(QUrl::fromLocalFile(path));
        QVERIFY(qAbs(asset.dpiX() - dpi) < 0.1);
        QVERIFY(qAbs(asset.pointSize().width() - double(asset.pixelsWide()) * 72.0 / dpi) < 0.1);
        QVERIFY(asset.loadPreviewImage());
        QTEST(asset.previewImage().size(), "previewSize");
    }

    void multiPageFile() {
        const QByteArray tiff =
            multiPageTiff({QSize(30, 10), QSize(20, 40), QSize(25, 5)}, "2001:02:03 04:05:06");
        ImageAsset asset(QUrl::fromLocalFile(dir_.write("pages.tiff", tiff)));
        QCOMPARE(asset.pixelsWide(), 30);
        QCOMPARE(asset.maxPagePixelSize(), QSize(30, 40));
        QCOMPARE(asset.lastPageDateTimeOriginal(), std::optional<QString>("2001:02:03 04:05:06"));
        QCOMPARE(asset.lastPageDateTimeDigitized(), std::nullopt);
    }

    void previewForAssetsThatGoAway() {
        const QString file = dir_.photo("many.jpg");
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
        ImageAsset asset(QUrl::fromLocalFile(dir_.photo("late.jpg")));
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
    }
};

SW_TEST_CLASS(ImageAssetTest)
#include "ImageAssetTest.moc"
