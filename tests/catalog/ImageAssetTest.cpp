#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QThreadPool>
#include <memory>
#include <thread>
#include <vector>

#include "CatalogFixtures.h"
#include "TestRegistry.h"
#include "catalog/ImageAsset.h"

using CatalogFixtures::JpegOptions;

namespace {

bool isMostly(const QImage& image, QColor colour) {
    const QColor centre = image.pixelColor(image.width() / 2, image.height() / 2);
    return qAbs(centre.red() - colour.red()) < 40 && qAbs(centre.green() - colour.green()) < 40 &&
           qAbs(centre.blue() - colour.blue()) < 40;
}

}  // namespace

class ImageAssetTest : public QObject {
    Q_OBJECT
  private:
    QTemporaryDir dir_;

    QString path(const QString& name) const { return dir_.filePath(name); }

  private slots:
    void fileTypes_data() {
        QTest::addColumn<QString>("extension");
        QTest::addColumn<bool>("accepted");
        QTest::newRow("jpg") << "jpg" << true;
        QTest::newRow("JPG, as cameras write it") << "JPG" << true;
        QTest::newRow("Jpg, mixed case") << "Jpg" << false;
        QTest::newRow("pcx, our own reader") << "pcx" << true;
        QTest::newRow("PCX") << "PCX" << true;
        QTest::newRow("png with a dot") << ".png" << false;
        QTest::newRow("txt") << "txt" << false;
        QTest::newRow("empty") << "" << false;
    }
    void fileTypes() {
        QFETCH(QString, extension);
        QFETCH(bool, accepted);
        QCOMPARE(ImageAsset::fileTypes().contains(extension, Qt::CaseSensitive), accepted);
        QVERIFY(Asset::fileTypes().isEmpty());
    }

    void unreadableFiles_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("bytes");
        QByteArray jpeg;
        {
            JpegOptions options;
            options.size = QSize(300, 200);
            const QString scratch = path("scratch.jpg");
            QVERIFY(CatalogFixtures::writeJpeg(scratch, options));
            QFile file(scratch);
            QVERIFY(file.open(QIODevice::ReadOnly));
            jpeg = file.readAll();
        }
        QTest::newRow("0 bytes") << "empty.jpg" << QByteArray();
        QTest::newRow("text named .png") << "notes.png" << QByteArray("just some words\n");
        QTest::newRow("JPEG cut inside its header") << "cut.jpg" << jpeg.left(100);
        QTest::newRow("PNG claiming 100000 x 100000")
            << "huge.png" << CatalogFixtures::pngHeader(100000, 100000);
        QTest::newRow("BMP claiming 100000 x 100000")
            << "huge.bmp" << CatalogFixtures::bmpHeader(100000, 100000);
        QTest::newRow("PNG claiming 0 x 0") << "zero.png" << CatalogFixtures::pngHeader(0, 0);
    }
    void unreadableFiles() {
        QFETCH(QString, name);
        QFETCH(QByteArray, bytes);
        QVERIFY(CatalogFixtures::writeBytes(path(name), bytes));
        ImageAsset asset(QUrl::fromLocalFile(path(name)));
        QVERIFY(!asset.createImageSource());
        QCOMPARE(asset.pixelsWide(), 0);
        QCOMPARE(asset.pixelsHigh(), 0);
        QVERIFY(!asset.loadMetadata());
        QVERIFY(!asset.loadPreviewImage());
        QVERIFY(asset.previewImage().isNull());
        QCOMPARE(asset.maxPagePixelSize(), QSize(0, 0));
        QVERIFY(asset.includedInSlideshow());
    }

    void jpegCutInItsImageData() {
        // The header is whole, so the size is known; the preview shows what
        // arrived, as the decoder fills the rest.
        JpegOptions options;
        options.size = QSize(640, 480);
        const QString scratch = path("whole.jpg");
        QVERIFY(CatalogFixtures::writeJpeg(scratch, options));
        QFile file(scratch);
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray bytes = file.readAll();
        QVERIFY(
            CatalogFixtures::writeBytes(path("cut-data.jpg"), bytes.left(bytes.size() * 2 / 3)));
        ImageAsset asset(QUrl::fromLocalFile(path("cut-data.jpg")));
        QVERIFY(asset.createImageSource());
        QCOMPARE(asset.pixelsWide(), 640);
        asset.loadPreviewImage();
        QVERIFY(asset.previewImage().width() <= 160);
    }

    void awkwardNames_data() {
        QTest::addColumn<QString>("name");
        QTest::newRow("spaces") << "holiday at the sea 01.jpg";
        QTest::newRow("non-ASCII") << "Ausflug über die Brücke – 東京.JPG";
        QTest::newRow("brackets and quotes") << "a (1) 'b' [c].jpeg";
    }
    void awkwardNames() {
        QFETCH(QString, name);
        JpegOptions options;
        options.size = QSize(320, 240);
        options.dateTimeOriginal = "2014:03:05 13:34:56";
        QVERIFY(CatalogFixtures::writeJpeg(path(name), options));
        ImageAsset asset(QUrl::fromLocalFile(path(name)));
        QCOMPARE(asset.filename(), name);
        QCOMPARE(asset.pixelsWide(), 320);
        QCOMPARE(asset.lastPageDateTimeOriginal(), std::optional<QString>("2014:03:05 13:34:56"));
        QVERIFY(asset.loadPreviewImage());
        QCOMPARE(asset.previewImage().size(), QSize(160, 120));
    }

    void preview_data() {
        QTest::addColumn<QSize>("imageSize");
        QTest::addColumn<QSize>("thumbnailSize");  // empty: none stored
        QTest::addColumn<QSize>("previewSize");
        QTest::addColumn<bool>("fromThumbnail");
        QTest::newRow("stored thumbnail")
            << QSize(1600, 1200) << QSize(160, 120) << QSize(160, 120) << true;
        QTest::newRow("stored thumbnail smaller than 160")
            << QSize(1600, 1200) << QSize(80, 60) << QSize(80, 60) << true;
        QTest::newRow("stored thumbnail too large")
            << QSize(1600, 1200) << QSize(320, 240) << QSize(160, 120) << true;
        QTest::newRow("none stored, landscape")
            << QSize(1600, 1200) << QSize() << QSize(160, 120) << false;
        QTest::newRow("none stored, portrait")
            << QSize(900, 1600) << QSize() << QSize(90, 160) << false;
        QTest::newRow("none stored, already small")
            << QSize(120, 50) << QSize() << QSize(120, 50) << false;
    }
    void preview() {
        QFETCH(QSize, imageSize);
        QFETCH(QSize, thumbnailSize);
        QFETCH(QSize, previewSize);
        QFETCH(bool, fromThumbnail);
        JpegOptions options;
        options.size = imageSize;
        options.imageColour = Qt::blue;
        options.thumbnailColour = Qt::red;
        if (thumbnailSize.isValid()) {
            options.thumbnailSize = thumbnailSize;
        }
        const QString file = path(QStringLiteral("preview-%1.jpg").arg(QTest::currentDataTag()));
        QVERIFY(CatalogFixtures::writeJpeg(file, options));

        ImageAsset asset(QUrl::fromLocalFile(file));
        QSignalSpy changed(&asset, &Asset::previewImageChanged);
        asset.requestPreviewImage();
        QVERIFY(changed.wait(5000));
        QCOMPARE(asset.previewImage().size(), previewSize);
        QVERIFY(isMostly(asset.previewImage(), fromThumbnail ? Qt::red : Qt::blue));

        // With a preview in place a new request does nothing.
        asset.requestPreviewImage();
        QVERIFY(!changed.wait(200));
        QCOMPARE(changed.count(), 1);
    }

    void settingTheSamePreviewDoesNothing() {
        Asset asset(QUrl::fromLocalFile(path("x.jpg")));
        QSignalSpy changed(&asset, &Asset::previewImageChanged);
        QImage image(4, 4, QImage::Format_RGB32);
        image.fill(Qt::green);
        asset.setPreviewImage(image);
        asset.setPreviewImage(image);
        QCOMPARE(changed.count(), 1);
        asset.setPreviewImage(QImage());
        QCOMPARE(changed.count(), 2);
    }

    void resolution_data() {
        QTest::addColumn<int>("dpi");
        QTest::addColumn<QSizeF>("points");
        QTest::newRow("72 dpi") << 72 << QSizeF(4000, 3000);
        QTest::newRow("300 dpi") << 300 << QSizeF(960, 720);
        QTest::newRow("350 dpi") << 350 << QSizeF(4000 * 72.0 / 350, 3000 * 72.0 / 350);
    }
    void resolution() {
        QFETCH(int, dpi);
        QFETCH(QSizeF, points);
        JpegOptions options;
        options.size = QSize(4000, 3000);
        options.dpi = dpi;
        const QString file = path(QStringLiteral("res%1.jpg").arg(dpi));
        QVERIFY(CatalogFixtures::writeJpeg(file, options));
        ImageAsset asset(QUrl::fromLocalFile(file));
        QCOMPARE(asset.dpiX(), double(dpi));
        QCOMPARE(asset.pointSize(), points);
        QCOMPARE(asset.maxPagePixelSize(), QSize(4000, 3000));
    }

    void resolutionOfOtherKinds() {
        QImage image(150, 100, QImage::Format_RGB32);
        image.fill(Qt::gray);
        image.setDotsPerMeterX(5906);  // 150 dpi
        image.setDotsPerMeterY(5906);
        QVERIFY(image.save(path("phys.png")));
        QVERIFY(image.save(path("plain.bmp")));
        ImageAsset png(QUrl::fromLocalFile(path("phys.png")));
        QVERIFY(qAbs(png.dpiX() - 150.0) < 0.1);
        QVERIFY(qAbs(png.pointSize().width() - 72.0) < 0.1);
        // BMP states no resolution we read: 72 dpi, points equal pixels.
        ImageAsset bmp(QUrl::fromLocalFile(path("plain.bmp")));
        QCOMPARE(bmp.pointSize(), QSizeF(150, 100));
    }

    void multiPageFile() {
        const QString file = path("pages.tiff");
        QVERIFY(CatalogFixtures::writeBytes(
            file, CatalogFixtures::multiPageTiff({QSize(30, 10), QSize(20, 40), QSize(25, 5)},
                                                 "2001:02:03 04:05:06")));
        ImageAsset asset(QUrl::fromLocalFile(file));
        QCOMPARE(asset.pixelsWide(), 30);
        QCOMPARE(asset.pixelsHigh(), 10);
        QCOMPARE(asset.maxPagePixelSize(), QSize(30, 40));
        QCOMPARE(asset.lastPageDateTimeOriginal(), std::optional<QString>("2001:02:03 04:05:06"));
        QCOMPARE(asset.lastPageDateTimeDigitized(), std::nullopt);
    }

    void concurrentFirstUse() {
        JpegOptions options;
        options.size = QSize(640, 480);
        options.dateTimeDigitized = "2010:01:02 03:04:05";
        options.thumbnailSize = QSize(160, 120);
        const QString file = path("shared.jpg");
        QVERIFY(CatalogFixtures::writeJpeg(file, options));
        ImageAsset asset(QUrl::fromLocalFile(file));
        struct Seen {
            qint64 width = 0;
            std::optional<QString> digitized;
            ImageSource* source = nullptr;
            QSize thumbnail;
        };
        std::vector<Seen> seen(8);
        std::vector<std::thread> threads;
        for (Seen& s : seen) {
            threads.emplace_back([&asset, &s] {
                s.width = asset.pixelsWide();
                s.digitized = asset.lastPageDateTimeDigitized();
                s.source = asset.imageSource().get();
                s.thumbnail = asset.imageSource()->thumbnail().size();
            });
        }
        for (std::thread& t : threads) {
            t.join();
        }
        for (const Seen& s : seen) {
            QCOMPARE(s.width, 640);
            QCOMPARE(s.digitized, std::optional<QString>("2010:01:02 03:04:05"));
            QCOMPARE(s.source, seen.front().source);  // one source for every caller
            QCOMPARE(s.thumbnail, QSize(160, 120));
        }
    }

    void fileSizeReadAgainWhileZero() {
        const QString file = path("grows.jpg");
        QVERIFY(CatalogFixtures::writeBytes(file, QByteArray()));
        Asset asset(QUrl::fromLocalFile(file));
        QCOMPARE(asset.fileSize(), 0u);
        QVERIFY(CatalogFixtures::writeBytes(file, QByteArray(1234, 'x')));
        QCOMPARE(asset.fileSize(), 1234u);
        // Once known it is kept.
        QVERIFY(CatalogFixtures::writeBytes(file, QByteArray(10, 'x')));
        QCOMPARE(asset.fileSize(), 1234u);
        Asset missing(QUrl::fromLocalFile(path("does-not-exist.jpg")));
        QCOMPARE(missing.fileSize(), 0u);
    }

    void typeDescription_data() {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QString>("description");
        QTest::newRow("JPG") << "/tmp/a/IMG_1.JPG"
                             << "JPEG image";
        QTest::newRow("unknown extension") << "/tmp/a/file.qqq"
                                           << "(Unrecognized file type)";
        QTest::newRow("no extension") << "/tmp/a/README"
                                      << "(Unrecognized file type)";
    }
    void typeDescription() {
        QFETCH(QString, file);
        QFETCH(QString, description);
        QCOMPARE(Asset(QUrl::fromLocalFile(file)).localizedTypeDescription(), description);
    }

    void previewForAssetsThatGoAway() {
        JpegOptions options;
        options.size = QSize(800, 600);
        const QString file = path("many.jpg");
        QVERIFY(CatalogFixtures::writeJpeg(file, options));
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
        QCOMPARE(survivor.previewImage().size(), QSize(160, 120));
        QVERIFY(ImageAsset::previewPool()->waitForDone(10000));
        QTest::qWait(50);  // deliver whatever was queued for the gone assets
        QCOMPARE(changed.count(), 1);
    }

    void requestAfterPoolShutdown() {
        JpegOptions options;
        options.size = QSize(320, 240);
        QVERIFY(CatalogFixtures::writeJpeg(path("late.jpg"), options));
        ImageAsset asset(QUrl::fromLocalFile(path("late.jpg")));
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
