#include <QImageReader>
#include <QTest>
#include <QtEndian>
#include <vector>

#include "TestRegistry.h"
#include "catalog/ImageAsset.h"
#include "catalog/PcxFormat.h"
#include "common/Sandbox.h"

namespace {

QByteArray pcxHeader(int width, int height, int bitsPerPixel, int planes, int bytesPerLine) {
    QByteArray out(128, '\0');
    out[0] = 0x0A;  // manufacturer
    out[1] = 5;     // version
    out[2] = 1;     // run-length encoded
    out[3] = char(bitsPerPixel);
    qToLittleEndian<quint16>(quint16(width - 1), out.data() + 8);
    qToLittleEndian<quint16>(quint16(height - 1), out.data() + 10);
    out[65] = char(planes);
    qToLittleEndian<quint16>(quint16(bytesPerLine), out.data() + 66);
    return out;
}

// Encodes bitsPerPixel 1/2/4/8 with planes 1, 1 with planes 4, or 8 with planes
// 3. Indexed images give their colour table to the 16-colour header or the
// 256-colour trailer. Runs are of up to 63; single bytes >= 0xC0 become runs of one.
QByteArray encodePcx(const QImage& source, int bitsPerPixel, int planes) {
    const bool rgb = planes == 3;
    const QImage image = rgb ? source.convertToFormat(QImage::Format_RGB32) : source;
    const int bytesPerLine = ((image.width() * bitsPerPixel + 7) / 8 + 1) / 2 * 2;  // even
    QByteArray palette;  // the colour table as RGB bytes, 256 entries
    for (int i = 0; i < 256; ++i) {
        const QRgb c = image.colorTable().value(i, qRgb(0, 0, 0));
        palette.append(char(qRed(c))).append(char(qGreen(c))).append(char(qBlue(c)));
    }
    QByteArray out = pcxHeader(image.width(), image.height(), bitsPerPixel, planes, bytesPerLine)
                         .replace(16, 48, palette.left(48));
    for (int y = 0; y < image.height(); ++y) {
        for (int plane = 0; plane < planes; ++plane) {
            std::vector<uchar> line(size_t(bytesPerLine), 0);
            for (int x = 0; x < image.width(); ++x) {
                // A colour channel, a whole index, or one bit of the index.
                const uint value = rgb           ? (image.pixel(x, y) >> (16 - 8 * plane)) & 0xFF
                                   : planes == 1 ? uint(image.pixelIndex(x, y))
                                                 : uint(image.pixelIndex(x, y) >> plane) & 1;
                const int bit = x * bitsPerPixel;
                line[size_t(bit / 8)] |= uchar(value << (8 - bitsPerPixel - bit % 8));
            }
            for (size_t i = 0, run = 1; i < line.size(); i += run, run = 1) {
                while (i + run < line.size() && line[i + run] == line[i] && run < 63) {
                    ++run;
                }
                if (run > 1 || line[i] >= 0xC0) {
                    out.append(char(0xC0 | run));
                }
                out.append(char(line[i]));
            }
        }
    }
    if (bitsPerPixel == 8 && planes == 1) {
        out.append(char(0x0C)).append(palette);
    }
    return out;
}

// A pattern that changes from pixel to pixel, so that misplaced bits or planes
// show: RGB, or indexed using every colour index below colours.
QImage pattern(int width, int height, int colours = 0) {
    QImage image(width, height, colours ? QImage::Format_Indexed8 : QImage::Format_RGB32);
    for (int i = 0; i < colours; ++i) {
        image.setColor(i, qRgb((i * 97) % 256, (i * 53 + 20) % 256, (i * 29 + 200) % 256));
    }
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            image.setPixel(x, y,
                           colours ? uint((x * 7 + y * 3 + x * y) % colours)
                                   : qRgb((x * 37) % 256, (y * 91) % 256, x * y * 13 + 7));
        }
    }
    return image;
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
        QTest::newRow("1-bit") << pattern(21, 9, 2) << 1 << 1;
        QTest::newRow("2-bit packed") << pattern(13, 5, 4) << 2 << 1;
        QTest::newRow("4-bit packed") << pattern(17, 6, 16) << 4 << 1;
        QTest::newRow("4-bit as four planes") << pattern(19, 7, 16) << 1 << 4;
        QTest::newRow("8-bit palette") << pattern(33, 11, 256) << 8 << 1;
        QTest::newRow("24-bit three planes") << pattern(23, 10) << 8 << 3;
        QImage runs = pattern(200, 3, 256);
        runs.fill(0xD5);  // runs longer than 63 of a value above 0xC0
        QTest::newRow("long runs, 8-bit") << runs << 8 << 1;
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
        const QImage decoded = QImage::fromData(encodePcx(source, bitsPerPixel, planes), "pcx");
        QCOMPARE(decoded.convertToFormat(QImage::Format_RGB32),
                 expected.convertToFormat(QImage::Format_RGB32));
    }

    void foundByContentAndByCatalog() {
        Sandbox dir;
        const QImage source = pattern(400, 100);
        QVERIFY(!dir.write("SCAN.PCX", encodePcx(source, 8, 3)).isEmpty());
        QVERIFY(QFile::copy(dir.path("SCAN.PCX"), dir.path("misnamed.dat")));
        QImageReader reader(dir.path("misnamed.dat"));
        QCOMPARE(reader.size(), QSize(400, 100));
        QCOMPARE(reader.read().convertToFormat(QImage::Format_RGB32), source);
        ImageAsset asset(QUrl::fromLocalFile(dir.path("SCAN.PCX")));
        QCOMPARE(asset.pixelsWide(), 400);
        QVERIFY(asset.loadPreviewImage());
        QCOMPARE(asset.previewImage().size(), QSize(160, 40));
    }

    // Hand-made files: a run crossing the line end decodes, as some writers make
    // them; headers the reader cannot decode and data that ends too soon give nothing.
    void handMadeData_data() {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QImage>("expected");  // null: not decoded
        const QByteArray filler(400, 'x');
        QImage grey(4, 2, QImage::Format_RGB32);
        grey.fill(qRgb(3, 3, 3));  // without a palette trailer the indices are grey levels
        QTest::newRow("two lines in one run") << pcxHeader(4, 2, 8, 1, 4) + "\xC8\x03" << grey;
        QTest::newRow("run marker as last byte") << pcxHeader(2, 1, 8, 1, 2) + "\xC2" << QImage();
        QTest::newRow("line shorter than a row")
            << pcxHeader(100, 2, 8, 1, 10) + filler << QImage();
        QTest::newRow("zero planes") << pcxHeader(4, 4, 8, 0, 4) + filler << QImage();
    }
    void handMadeData() {
        QFETCH(QByteArray, bytes);
        QFETCH(QImage, expected);
        QCOMPARE(QImage::fromData(bytes, "pcx").convertToFormat(QImage::Format_RGB32), expected);
    }
};

SW_TEST_CLASS(PcxHandlerTest)
#include "PcxHandlerTest.moc"
