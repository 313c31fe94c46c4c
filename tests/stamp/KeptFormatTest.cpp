#include <QDir>
#include <QFile>
#include <QImageWriter>
#include <QTest>
#include <exiv2/exiv2.hpp>

#include "TestRegistry.h"
#include "common/Sandbox.h"
#include "common/StampRuns.h"
#include "common/TestImages.h"
#include "stamp/JpegQuality.h"
#include "stamp/StampRun.h"
#include "tools/ExifJpegWriter.h"

namespace {

Exiv2::ExifData exifOf(const QString& path) {
    auto image = Exiv2::ImageFactory::open(QFile::encodeName(path).toStdString(), false);
    image->readMetadata();
    return image->exifData();
}

QString tag(const Exiv2::ExifData& exif, const char* key) {
    const auto found = exif.findKey(Exiv2::ExifKey(key));
    return found == exif.end() ? QString() : QString::fromStdString(found->toString());
}

StampOutcome stampKept(const QString& photo, const QString& out, bool upright = false) {
    StampJob job = StampRuns::job({photo}, out);
    job.options.keepFormat = true;
    job.options.upright = upright;
    return StampRuns::run(job).value(0);
}

}  // namespace

class KeptFormatTest : public QObject {
    Q_OBJECT

  private slots:
    // A camera-like JPEG keeps its dates, camera and quality; its orientation
    // says 1 once turned upright, and its thumbnail shows the stamped photo.
    void keepsJpegMetadata_data() {
        QTest::addColumn<bool>("upright");
        QTest::newRow("as taken") << false;
        QTest::newRow("upright") << true;
    }
    void keepsJpegMetadata() {
        QFETCH(bool, upright);
        Sandbox dir;
        const QString photo = dir.path("IMG_0001.JPG");
        ExifJpegWriter::Fields fields;
        fields.dateTimeOriginal = QStringLiteral("2014:03:05 13:34:56");
        fields.model = QStringLiteral("Camera 7");
        fields.thumbnail = TestImages::solid({80, 60}, Qt::darkGreen);
        fields.orientation = 6;
        QVERIFY(ExifJpegWriter::write(photo, TestImages::solid({640, 480}, Qt::white), fields, 60));

        const StampOutcome outcome = stampKept(photo, dir.mkdir("out"), upright);
        QVERIFY2(outcome.written, qPrintable(outcome.reason));
        QCOMPARE(outcome.output, dir.path("out/IMG_0001.JPG"));
        QCOMPARE(outcome.note, QString());
        const QByteArray bytes = StampRuns::fileBytes(outcome.output);
        QCOMPARE(JpegQuality::estimate(bytes), 60);  // not Qt's default 75
        const Exiv2::ExifData exif = exifOf(outcome.output);
        QCOMPARE(tag(exif, "Exif.Photo.DateTimeOriginal"), QStringLiteral("2014:03:05 13:34:56"));
        QCOMPARE(tag(exif, "Exif.Image.Model"), QStringLiteral("Camera 7"));
        QCOMPARE(tag(exif, "Exif.Image.Orientation"), upright ? QString("1") : QString("6"));

        const Exiv2::DataBuf thumb = Exiv2::ExifThumbC(exif).copy();
        const QImage small = QImage::fromData(thumb.pData_, int(thumb.size_));
        QCOMPARE(small.size(), upright ? QSize(120, 160) : QSize(160, 120));  // turned too
        QVERIFY(qGreen(small.pixel(80, 20)) > 240 && qRed(small.pixel(80, 20)) > 240);
    }

    // PNG and TIFF stay themselves with their EXIF, a TIFF compressed as it was; BMP
    // stays BMP.
    void keepsOtherFormats_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("magic");
        QTest::addColumn<bool>("exif");
        QTest::newRow("PNG") << "a.png" << QByteArray("\x89PNG") << true;
        QTest::newRow("TIFF") << "b.tif" << QByteArray("II*") << true;
        QTest::newRow("BMP") << "c.bmp" << QByteArray("BM") << false;
    }
    void keepsOtherFormats() {
        QFETCH(QString, name);
        QFETCH(QByteArray, magic);
        QFETCH(bool, exif);
        Sandbox dir;
        const QString photo = dir.path(name);
        QImageWriter source(photo);
        source.setCompression(1);  // LZW for TIFF
        QVERIFY(source.write(TestImages::solid({300, 200}, Qt::white)));
        if (exif) {
            auto image = Exiv2::ImageFactory::open(QFile::encodeName(photo).toStdString());
            image->readMetadata();
            image->exifData()["Exif.Image.Model"] = std::string("Scanner 2");
            image->writeMetadata();
        }
        const StampOutcome outcome = stampKept(photo, dir.mkdir("out"));
        QVERIFY2(outcome.written, qPrintable(outcome.reason));
        QCOMPARE(outcome.output, dir.path("out/" + name));
        QVERIFY(StampRuns::fileBytes(outcome.output).startsWith(magic));
        const QImage back(outcome.output);
        QCOMPARE(back.size(), QSize(300, 200));
        QVERIFY(TestImages::boundsWhere(back, [](QRgb p) { return qGreen(p) < 160; }).isValid());
        if (exif) {
            const Exiv2::ExifData kept = exifOf(outcome.output);
            QCOMPARE(tag(kept, "Exif.Image.Model"), QStringLiteral("Scanner 2"));
            QCOMPARE(tag(kept, "Exif.Image.Compression"),
                     tag(exifOf(photo), "Exif.Image.Compression"));
        }
    }

    // Real cameras' EXIF, maker notes and all, is written back.
    void keepsCameraMetadata() {
        const QDir cameras(TestRegistry::photosDir() + QStringLiteral("/cameras"));
        const QStringList names = cameras.entryList({"*.jpg"}, QDir::Files, QDir::Name);
        if (names.isEmpty()) {
            QSKIP("no camera photos");
        }
        Sandbox dir;
        const QString out = dir.mkdir("out");
        for (const QString& name : names) {
            const QString photo = cameras.filePath(name);
            const Exiv2::ExifData before = exifOf(photo);
            const StampOutcome outcome = stampKept(photo, out);
            QVERIFY2(outcome.written, qPrintable(name + ": " + outcome.reason));
            QVERIFY2(outcome.note.isEmpty(), qPrintable(name + ": " + outcome.note));
            const Exiv2::ExifData after = exifOf(outcome.output);
            for (const char* key : {"Exif.Image.Make", "Exif.Image.Model"}) {
                QCOMPARE(tag(after, key), tag(before, key));
            }
        }
    }
};
SW_TEST_CLASS(KeptFormatTest)

#include "KeptFormatTest.moc"
