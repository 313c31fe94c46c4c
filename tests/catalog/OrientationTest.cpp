#include <QImage>
#include <QImageReader>
#include <QTest>

#include "TestRegistry.h"
#include "catalog/Orientation.h"
#include "common/Sandbox.h"
#include "common/TestImages.h"
#include "tools/ExifJpegWriter.h"

namespace {
// Rows of letters, "abc/def": one pixel a letter, the letter in its blue channel.
QImage lettered(const QString& rows) {
    const QStringList lines = rows.split('/');
    QImage image(int(lines[0].size()), int(lines.size()), QImage::Format_RGB32);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            image.setPixel(x, y, qRgb(0, 0, lines[y][x].toLatin1()));
        }
    }
    return image;
}

QString letters(const QImage& image) {
    QStringList lines;
    for (int y = 0; y < image.height(); ++y) {
        QString line;
        for (int x = 0; x < image.width(); ++x) {
            line += QChar(qBlue(image.pixel(x, y)));
        }
        lines << line;
    }
    return lines.join('/');
}
}  // namespace

class OrientationTest : public QObject {
    Q_OBJECT

  private slots:
    // Every orientation on a non-square photo, and the size it is said to turn to.
    void turnsUpright_data() {
        QTest::addColumn<int>("orientation");
        QTest::addColumn<QString>("upright");
        QTest::newRow("1 normal") << 1 << "abc/def";
        QTest::newRow("2 mirrored left-right") << 2 << "cba/fed";
        QTest::newRow("3 half turn") << 3 << "fed/cba";
        QTest::newRow("4 mirrored top-bottom") << 4 << "def/abc";
        QTest::newRow("5 transposed") << 5 << "ad/be/cf";
        QTest::newRow("6 quarter turn clockwise") << 6 << "da/eb/fc";
        QTest::newRow("7 transversed") << 7 << "fc/eb/da";
        QTest::newRow("8 quarter turn counter-clockwise") << 8 << "cf/be/ad";
    }
    void turnsUpright() {
        QFETCH(int, orientation);
        const QImage turned = Orientation::upright(lettered("abc/def"), orientation);
        QTEST(letters(turned), "upright");
        QCOMPARE(Orientation::uprightSize(QSize(3, 2), orientation), turned.size());
        QCOMPARE(Orientation::uprightSize(QSizeF(3, 2), orientation), QSizeF(turned.size()));

        // Wider than a tile and not in blocks of four, against Qt's own reading of the tag.
        Sandbox dir;
        ExifJpegWriter::Fields fields;
        fields.orientation = orientation;
        const QString path = dir.path("tagged.jpg");
        QVERIFY(ExifJpegWriter::write(path, TestImages::pattern({70, 45}), fields));
        QImageReader stored(path);
        stored.setAutoTransform(false);
        QImageReader shown(path);
        shown.setAutoTransform(true);
        QCOMPARE(Orientation::upright(stored.read(), orientation), shown.read());
    }
};
SW_TEST_CLASS(OrientationTest)

#include "OrientationTest.moc"
