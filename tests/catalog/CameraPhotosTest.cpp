#include <QDir>
#include <QTest>

#include "TestRegistry.h"
#include "catalog/ImageAsset.h"

namespace {

QString photo(const QString& relative) {
    return QDir(TestRegistry::photosDir()).filePath(relative);
}

}  // namespace

// What only real camera files have: their EXIF dates, stored thumbnails and
// stated resolutions, and damaged data.
class CameraPhotosTest : public QObject {
    Q_OBJECT
  private slots:
    void init() {
        if (TestRegistry::photosDir().isEmpty() || !QFileInfo::exists(photo("cameras"))) {
            QSKIP("no camera photos beside the repository");
        }
    }

    void photos_data() {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QString>("original");   // empty: none
        QTest::addColumn<QString>("digitized");  // empty: none
        QTest::addColumn<double>("dpi");
        QTest::addColumn<QSize>("preview");
        const QString date40D = "2008:05:30 15:56:01";
        // The stored thumbnail is smaller than the scaled-down photo would be.
        QTest::newRow("Canon 40D, stored thumbnail")
            << "cameras/Canon_40D.jpg" << date40D << date40D << 72.0 << QSize(68, 46);
        QTest::newRow("Nikon D70, original date only") << "cameras/Nikon_D70.jpg"
                                                       << "2008:03:15 09:52:01"
                                                       << "" << 240.0 << QSize(66, 43);
        QTest::newRow("resolution in EXIF only")
            << "other/DSCN0010.jpg"
            << "2008:10:22 16:28:39"
            << "2008:10:22 16:28:39" << 300.0 << QSize(160, 120);
        QTest::newRow("orientation tag not applied") << "orientation/landscape_6.jpg"
                                                     << ""
                                                     << "" << 72.0 << QSize(120, 160);
        QTest::newRow("TIFF stating no resolution") << "tiff/BSG1.tiff"
                                                    << ""
                                                    << "" << 72.0 << QSize(160, 87);
    }
    void photos() {
        QFETCH(QString, file);
        QFETCH(QString, original);
        QFETCH(QString, digitized);
        QFETCH(double, dpi);
        QFETCH(QSize, preview);
        ImageAsset asset(QUrl::fromLocalFile(photo(file)));
        QCOMPARE(asset.lastPageDateTimeOriginal().value_or(QString()), original);
        QCOMPARE(asset.lastPageDateTimeDigitized().value_or(QString()), digitized);
        QCOMPARE(asset.dpiX(), dpi);
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
        }
    }
};

SW_TEST_CLASS(CameraPhotosTest)
#include "CameraPhotosTest.moc"
