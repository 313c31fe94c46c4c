#include <QBuffer>
#include <QElapsedTimer>
#include <QImageReader>
#include <QTemporaryDir>
#include <QTest>

#include "CatalogFixtures.h"
#include "TestRegistry.h"
#include "catalog/ImageAsset.h"
#include "catalog/PcxFormat.h"

namespace {

// A deterministic pattern that uses every colour index up to colours-1 and
// changes from pixel to pixel, so misplaced bits or planes show.
QImage indexedPattern(int width, int height, int colours) {
    QImage image(width, height, QImage::Format_Indexed8);
    QList<QRgb> table;
    for (int i = 0; i < colours; ++i) {
        table.append(qRgb((i * 97) % 256, (i * 53 + 20) % 256, (i * 29 + 200) % 256));
    }
    image.setColorTable(table);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            image.setPixel(x, y, uint((x * 7 + y * 3 + x * y) % colours));
        }
    }
    return image;
}

QImage rgbPattern(int width, int height) {
    QImage image(width, height, QImage::Format_RGB32);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            image.setPixel(x, y, qRgb((x * 37) % 256, (y * 91) % 256, (x * y * 13 + 7) % 256));
        }
    }
    return image;
}

QImage readPcx(const QByteArray& bytes) {
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer, "pcx");
    return reader.read();
}

QByteArray header(int width, int height, int bitsPerPixel, int planes, int bytesPerLine) {
    QByteArray out(128, '\0');
    out[0] = 0x0A;
    out[1] = 5;
    out[2] = 1;
    out[3] = char(bitsPerPixel);
    out[8] = char((width - 1) & 0xFF);
    out[9] = char(((width - 1) >> 8) & 0xFF);
    out[10] = char((height - 1) & 0xFF);
    out[11] = char(((height - 1) >> 8) & 0xFF);
    out[65] = char(planes);
    out[66] = char(bytesPerLine & 0xFF);
    out[67] = char((bytesPerLine >> 8) & 0xFF);
    return out;
}

}  // namespace

class PcxHandlerTest : public QObject {
    Q_OBJECT
  private slots:
    void initTestCase() { PcxFormat::registerFormat(); }

    void roundTrip_data() {
        QTest::addColumn<QImage>("source");
        QTest::addColumn<int>("bitsPerPixel");
        QTest::addColumn<int>("planes");
        QTest::newRow("1-bit") << indexedPattern(21, 9, 2) << 1 << 1;
        QTest::newRow("2-bit packed") << indexedPattern(13, 5, 4) << 2 << 1;
        QTest::newRow("4-bit packed") << indexedPattern(17, 6, 16) << 4 << 1;
        QTest::newRow("4-bit as four planes") << indexedPattern(19, 7, 16) << 1 << 4;
        QTest::newRow("8-bit palette") << indexedPattern(33, 11, 256) << 8 << 1;
        QTest::newRow("24-bit three planes") << rgbPattern(23, 10) << 8 << 3;
        QTest::newRow("one pixel, 24-bit") << rgbPattern(1, 1) << 8 << 3;
        QTest::newRow("long runs, 8-bit") << [] {
            QImage image = indexedPattern(200, 3, 256);
            image.fill(0xD5);  // a run longer than 63 of a value above 0xC0
            return image;
        }() << 8 << 1;
    }
    void roundTrip() {
        QFETCH(QImage, source);
        QFETCH(int, bitsPerPixel);
        QFETCH(int, planes);
        QImage expected = source;
        if (bitsPerPixel == 1 && planes == 1) {
            // One-bit files are black and white whatever the header palette says.
            expected.setColorTable({qRgb(0, 0, 0), qRgb(255, 255, 255)});
        }
        const QImage decoded = readPcx(CatalogFixtures::encodePcx(source, bitsPerPixel, planes));
        QVERIFY(!decoded.isNull());
        QCOMPARE(decoded.size(), source.size());
        QCOMPARE(decoded.convertToFormat(QImage::Format_RGB32),
                 expected.convertToFormat(QImage::Format_RGB32));
    }

    void readsThroughFileNameAndContent() {
        QTemporaryDir dir;
        const QImage source = rgbPattern(40, 30);
        const QByteArray bytes = CatalogFixtures::encodePcx(source, 8, 3);
        const QString named = dir.filePath("picture.pcx");
        const QString misnamed = dir.filePath("picture.dat");
        QVERIFY(CatalogFixtures::writeBytes(named, bytes));
        QVERIFY(CatalogFixtures::writeBytes(misnamed, bytes));
        QVERIFY(QImageReader::supportedImageFormats().contains("pcx"));
        for (const QString& path : {named, misnamed}) {
            QImageReader reader(path);
            QCOMPARE(reader.size(), QSize(40, 30));
            QCOMPARE(reader.read().convertToFormat(QImage::Format_RGB32), source);
        }
    }

    void catalogReadsPcx() {
        QTemporaryDir dir;
        const QString file = dir.filePath("SCAN.PCX");
        QVERIFY(CatalogFixtures::writeBytes(
            file, CatalogFixtures::encodePcx(rgbPattern(400, 100), 8, 3)));
        ImageAsset asset(QUrl::fromLocalFile(file));
        QCOMPARE(asset.pixelsWide(), 400);
        QCOMPARE(asset.pixelsHigh(), 100);
        QVERIFY(asset.loadPreviewImage());
        QCOMPARE(asset.previewImage().size(), QSize(160, 40));
    }

    void runAcrossLineEnd() {
        // Two lines of 4 bytes written as one run of 8: some writers do this.
        QByteArray bytes = header(4, 2, 8, 1, 4);
        bytes.append(char(0xC8));
        bytes.append(char(3));
        const QImage decoded = readPcx(bytes);
        QCOMPARE(decoded.size(), QSize(4, 2));
        QCOMPARE(decoded.pixelIndex(3, 1), 3);
        // No palette trailer: grey levels.
        QCOMPARE(decoded.pixel(0, 0), qRgb(3, 3, 3));
    }

    void hostileData_data() {
        QTest::addColumn<QByteArray>("bytes");
        const QByteArray good = CatalogFixtures::encodePcx(rgbPattern(16, 16), 8, 3);
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("half a header") << good.left(64);
        QTest::newRow("header without data") << good.left(128);
        QTest::newRow("cut in the middle") << good.left(good.size() / 2);
        QTest::newRow("run marker as last byte")
            << header(2, 1, 8, 1, 2) + QByteArray(1, char(0xC2));
        QTest::newRow("huge size, tiny data")
            << header(16384, 16384, 8, 3, 16384) + QByteArray(64, 'x');
        QTest::newRow("beyond the side limit")
            << header(30000, 10, 8, 1, 30000) + QByteArray(64, 'x');
        QTest::newRow("line shorter than a row") << header(100, 2, 8, 1, 10) + QByteArray(400, 'x');
        QTest::newRow("three planes of 4 bits") << header(4, 4, 4, 3, 2) + QByteArray(400, 'x');
        QTest::newRow("zero planes") << header(4, 4, 8, 0, 4) + QByteArray(400, 'x');
        QByteArray inverted = good;
        inverted[8] = 0;
        inverted[9] = 0;
        inverted[4] = 5;  // xmin beyond xmax
        QTest::newRow("xmax before xmin") << inverted;
        QByteArray notPcx = good;
        notPcx[0] = '\n';
        notPcx[1] = 'h';
        QTest::newRow("text starting with a newline") << notPcx;
    }
    void hostileData() {
        QFETCH(QByteArray, bytes);
        QElapsedTimer timer;
        timer.start();
        QVERIFY(readPcx(bytes).isNull());
        // Refused from the header, not after trying to decode gigabytes.
        QVERIFY(timer.elapsed() < 2000);
    }
};

SW_TEST_CLASS(PcxHandlerTest)
#include "PcxHandlerTest.moc"
