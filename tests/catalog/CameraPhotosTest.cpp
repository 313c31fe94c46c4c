#include <QDir>
#include <QTest>

#include "TestRegistry.h"
#include "catalog/ImageAsset.h"

namespace {

QString photo(const QString& relative) {
    const QString dir = TestRegistry::photosDir();
    return dir.isEmpty() ? QString() : QDir(dir).filePath(relative);
}

}  // namespace

// What only real camera files have: their EXIF dates, stored thumbnails and
// stated resolutions, and damaged data.
class CameraPhotosTest : public QObject {
    Q_OBJECT
  private slots:
    void init() {
        if (!QFileInfo::exists(photo("cameras"))) {
            QSKIP("no camera photos beside the repository");
        }
    }

    void exifDates_data() {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QString>("original");   // empty: none
        QTest::addColumn<QString>("digitized");  // empty: none
        QTest::newRow("Canon 40D") << "cameras/Canon_40D.jpg"
                                   << "2008:05:30 15:56:01"
                                   << "2008:05:30 15:56:01";
        QTest::newRow("Nikon D70, original only") << "cameras/Nikon_D70.jpg"
                                                  << "2008:03:15 09:52:01"
                                                  << "";
        QTest::newRow("Pentax K10D") << "cameras/Pentax_K10D.jpg"
                                     << "2008:05:04 16:47:24"
                                     << "2008:05:04 16:47:24";
        QTest::newRow("Photoshop import, no dates") << "cameras/Canon_40D_photoshop_import.jpg"
                                                    << ""
                                                    << "";
        QTest::newRow("no EXIF at all") << "other/no_exif.jpg"
                                        << ""
                                        << "";
    }
    void exifDates() {
        QFETCH(QString, file);
        QFETCH(QString, original);
        QFETCH(QString, digitized);
        ImageAsset asset(QUrl::fromLocalFile(photo(file)));
        QVERIFY(asset.loadMetadata());
        QCOMPARE(asset.lastPageDateTimeOriginal().value_or(QString()), original);
        QCOMPARE(asset.lastPageDateTimeDigitized().value_or(QString()), digitized);
    }

    void statedResolution_data() {
        QTest::addColumn<QString>("file");
        QTest::addColumn<double>("dpi");
        QTest::newRow("Canon 40D, 72") << "cameras/Canon_40D.jpg" << 72.0;
        QTest::newRow("Nikon D70, 240") << "cameras/Nikon_D70.jpg" << 240.0;
        QTest::newRow("Pentax K10D, 350") << "cameras/Pentax_K10D.jpg" << 350.0;
        QTest::newRow("Fujifilm E500, 96") << "cameras/Fujifilm_FinePix_E500.jpg" << 96.0;
        QTest::newRow("EXIF only, 300") << "other/DSCN0010.jpg" << 300.0;
        QTest::newRow("TIFF stating none") << "tiff/Arbitro.tiff" << 72.0;
    }
    void statedResolution() {
        QFETCH(QString, file);
        QFETCH(double, dpi);
        ImageAsset asset(QUrl::fromLocalFile(photo(file)));
        QCOMPARE(asset.dpiX(), dpi);
        QCOMPARE(asset.pointSize().width(), asset.pixelsWide() * 72.0 / dpi);
    }

    void preview_data() {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QSize>("pixels");
        QTest::addColumn<QSize>("preview");
        // The stored thumbnail of this file is smaller than the scaled-down photo
        // itself, which tells that the stored one is used.
        QTest::newRow("stored thumbnail")
            << "cameras/Canon_40D.jpg" << QSize(100, 68) << QSize(68, 46);
        QTest::newRow("stored thumbnail, 640x480")
            << "other/DSCN0010.jpg" << QSize(640, 480) << QSize(160, 120);
        QTest::newRow("none stored, small")
            << "cameras/Fujifilm_FinePix_E500.jpg" << QSize(59, 100) << QSize(59, 100);
        QTest::newRow("none stored, large")
            << "cameras/Reconyx_HC500_Hyperfire.jpg" << QSize(2048, 1536) << QSize(160, 120);
        QTest::newRow("orientation tag not applied")
            << "orientation/landscape_6.jpg" << QSize(450, 600) << QSize(120, 160);
        QTest::newRow("TIFF") << "tiff/BSG1.tiff" << QSize(635, 348) << QSize(160, 87);
    }
    void preview() {
        QFETCH(QString, file);
        QFETCH(QSize, pixels);
        QFETCH(QSize, preview);
        ImageAsset asset(QUrl::fromLocalFile(photo(file)));
        QCOMPARE(QSize(int(asset.pixelsWide()), int(asset.pixelsHigh())), pixels);
        QVERIFY(asset.loadPreviewImage());
        QCOMPARE(asset.previewImage().size(), preview);
    }

    void damagedFiles() {
        const QStringList names = QDir(photo("invalid")).entryList(QDir::Files);
        QVERIFY(!names.isEmpty());
        for (const QString& name : names) {
            ImageAsset asset(QUrl::fromLocalFile(photo("invalid/" + name)));
            asset.loadMetadata();
            asset.loadPreviewImage();
            const QImage preview = asset.previewImage();
            QVERIFY2(preview.width() <= 160 && preview.height() <= 160, qPrintable(name));
            QVERIFY(asset.pixelsWide() >= 0 && asset.pixelsHigh() >= 0);
        }
    }
};

SW_TEST_CLASS(CameraPhotosTest)
#include "CameraPhotosTest.moc"
