#include <sys/resource.h>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QImageReader>
#include <QTemporaryDir>
#include <QTest>
#include <QtEndian>
#include <csignal>

#include "TestRegistry.h"
#include "stamp/ImageWriter.h"

namespace {
// Every pixel different from its neighbours, so a shifted or flipped row shows.
QImage pattern(int w, int h, QImage::Format format = QImage::Format_RGB32) {
    QImage image(w, h, QImage::Format_RGB32);
    for (int y = 0; y < h; ++y) {
        for (int x = 0; x < w; ++x) {
            image.setPixel(x, y, qRgb((x * 7) & 255, (y * 13) & 255, (x + y * 3) & 255));
        }
    }
    return image.convertToFormat(format);
}

QByteArray readAll(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// Pixels only: the BMP carries no colour profile or resolution of the source.
bool samePixels(const QImage& a, const QImage& b) {
    const QImage x = a.convertToFormat(QImage::Format_RGB32);
    const QImage y = b.convertToFormat(QImage::Format_RGB32);
    if (x.size() != y.size()) {
        return false;
    }
    for (int row = 0; row < x.height(); ++row) {
        const auto* p = reinterpret_cast<const QRgb*>(x.constScanLine(row));
        const auto* q = reinterpret_cast<const QRgb*>(y.constScanLine(row));
        for (int col = 0; col < x.width(); ++col) {
            if ((p[col] & 0xffffff) != (q[col] & 0xffffff)) {
                return false;
            }
        }
    }
    return true;
}

quint32 le32(const QByteArray& bytes, int at) {
    return qFromLittleEndian<quint32>(bytes.constData() + at);
}
quint16 le16(const QByteArray& bytes, int at) {
    return qFromLittleEndian<quint16>(bytes.constData() + at);
}

// Caps the size of any file this process writes, so a write fails even for root.
class FileSizeLimit {
  public:
    explicit FileSizeLimit(rlim_t bytes) {
        getrlimit(RLIMIT_FSIZE, &saved_);
        previous_ = std::signal(SIGXFSZ, SIG_IGN);
        rlimit limit = saved_;
        limit.rlim_cur = bytes;
        ok_ = setrlimit(RLIMIT_FSIZE, &limit) == 0;
    }
    ~FileSizeLimit() {
        setrlimit(RLIMIT_FSIZE, &saved_);
        std::signal(SIGXFSZ, previous_);
    }
    bool ok() const { return ok_; }

  private:
    rlimit saved_{};
    void (*previous_)(int) = nullptr;
    bool ok_ = false;
};
}  // namespace

class ImageWriterTest : public QObject {
    Q_OBJECT
  private:
    QTemporaryDir dir_;

  private slots:
    void initTestCase() { QVERIFY(dir_.isValid()); }

    // The pixel size is what counts, whatever resolution the photo states.
    void writesExactSize_data() {
        QTest::addColumn<int>("dpi");
        QTest::addColumn<int>("w");
        QTest::addColumn<int>("h");
        QTest::newRow("72 dpi") << 72 << 401 << 302;
        QTest::newRow("300 dpi") << 300 << 401 << 302;
        QTest::newRow("one pixel") << 72 << 1 << 1;
        QTest::newRow("row needing no padding") << 300 << 4 << 3;
    }
    void writesExactSize() {
        QFETCH(int, dpi);
        QFETCH(int, w);
        QFETCH(int, h);
        QImage image = pattern(w, h);
        image.setDotsPerMeterX(qRound(dpi / 0.0254));
        image.setDotsPerMeterY(qRound(dpi / 0.0254));
        const QString path = dir_.filePath(QStringLiteral("size-%1.bmp").arg(dpi));
        QVERIFY(ImageWriter::saveImage(image, float(w), float(h), path));
        const QImage back(path, "bmp");
        QCOMPARE(back.size(), QSize(w, h));
        QVERIFY(samePixels(back, image));
    }

    void headerIsPlain24BitBmp_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("format");
        QTest::newRow("jpg name") << "IMG_0001.JPG" << int(QImage::Format_RGB32);
        QTest::newRow("png name, alpha image") << "a.png" << int(QImage::Format_ARGB32);
        QTest::newRow("tiff name, grey image") << "b.tif" << int(QImage::Format_Grayscale8);
        QTest::newRow("no extension, 16-bit image") << "c" << int(QImage::Format_RGB16);
    }
    void headerIsPlain24BitBmp() {
        QFETCH(QString, name);
        QFETCH(int, format);
        const int w = 37;
        const int h = 11;
        const QString path = dir_.filePath(name);
        QVERIFY(ImageWriter::saveImage(pattern(w, h, QImage::Format(format)), w, h, path));
        const QByteArray bytes = readAll(path);
        const int rowBytes = (w * 3 + 3) / 4 * 4;
        QVERIFY(bytes.size() >= 54);
        QCOMPARE(bytes.left(2), QByteArray("BM"));
        QCOMPARE(le32(bytes, 2), quint32(bytes.size()));
        QCOMPARE(le32(bytes, 10), quint32(54));
        QCOMPARE(le32(bytes, 14), quint32(40));
        QCOMPARE(qint32(le32(bytes, 18)), w);
        QCOMPARE(qint32(le32(bytes, 22)), h);  // positive: bottom-up rows
        QCOMPARE(le16(bytes, 26), quint16(1));
        QCOMPARE(le16(bytes, 28), quint16(24));
        QCOMPARE(le32(bytes, 30), quint32(0));
        QCOMPARE(bytes.size(), 54 + rowBytes * h);
        QImageReader reader(path);
        QCOMPARE(reader.format(), QByteArray("bmp"));
        QCOMPARE(reader.size(), QSize(w, h));
    }

    // A drawn image of another size is cut or extended at its top and right
    // edges, so that its bottom-left corner, where y-up positions count from, stays.
    void cropsAndExtendsFromBottomLeft_data() {
        QTest::addColumn<QSize>("source");
        QTest::addColumn<QSize>("output");
        QTest::newRow("crop") << QSize(50, 40) << QSize(30, 25);
        QTest::newRow("extend") << QSize(30, 25) << QSize(50, 40);
        QTest::newRow("wider, lower") << QSize(30, 40) << QSize(50, 25);
    }
    void cropsAndExtendsFromBottomLeft() {
        QFETCH(QSize, source);
        QFETCH(QSize, output);
        const QImage image = pattern(source.width(), source.height());
        const QString path = dir_.filePath("crop.bmp");
        QVERIFY(ImageWriter::saveImage(image, output.width(), output.height(), path));
        const QImage back = QImage(path, "bmp").convertToFormat(QImage::Format_RGB32);
        QCOMPARE(back.size(), output);
        for (int fromBottom = 0; fromBottom < output.height(); ++fromBottom) {
            for (int x = 0; x < output.width(); ++x) {
                const int sy = source.height() - 1 - fromBottom;
                const QRgb expected =
                    x < source.width() && sy >= 0 ? image.pixel(x, sy) : qRgb(0, 0, 0);
                QCOMPARE(back.pixel(x, output.height() - 1 - fromBottom), expected);
            }
        }
    }

    void refusesEmptyInput_data() {
        QTest::addColumn<QImage>("image");
        QTest::addColumn<float>("w");
        QTest::addColumn<float>("h");
        QTest::newRow("null image") << QImage() << 10.0f << 10.0f;
        QTest::newRow("zero width") << pattern(4, 4) << 0.0f << 10.0f;
        QTest::newRow("zero height") << pattern(4, 4) << 10.0f << 0.0f;
        QTest::newRow("nan") << pattern(4, 4) << std::nanf("") << 10.0f;
    }
    void refusesEmptyInput() {
        QFETCH(QImage, image);
        QFETCH(float, w);
        QFETCH(float, h);
        const QString path = dir_.filePath("empty.bmp");
        QFile::remove(path);
        QVERIFY(!ImageWriter::saveImage(image, w, h, path));
        QVERIFY(!QFile::exists(path));
    }

    void expandsTilde_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("expected");
        QTest::newRow("home file") << "~/x.bmp" << QDir::homePath() + "/x.bmp";
        QTest::newRow("home itself") << "~" << QDir::homePath();
        QTest::newRow("inside") << "/a/~/x.bmp"
                                << "/a/~/x.bmp";
        QTest::newRow("relative") << "x~.bmp"
                                  << "x~.bmp";
    }
    void expandsTilde() {
        QFETCH(QString, name);
        QTEST(ImageWriter::expandTilde(name), "expected");
    }

    void writesIntoHomeFolder() {
        // The test runner points HOME at a temporary folder.
        QVERIFY(QDir::homePath() != QDir::rootPath());
        const QString target = QDir::home().filePath("stamped-home.JPG");
        QFile::remove(target);
        QVERIFY(ImageWriter::saveImage(pattern(8, 6), 8, 6, "~/stamped-home.JPG"));
        QCOMPARE(QImage(target, "bmp").size(), QSize(8, 6));
        QFile::remove(target);
    }

    void replacesEarlierOutput() {
        const QString path = dir_.filePath("again.JPG");
        QVERIFY(ImageWriter::saveImage(pattern(20, 10), 20, 10, path));
        QVERIFY(ImageWriter::saveImage(pattern(9, 7), 9, 7, path));
        QCOMPARE(QImage(path, "bmp").size(), QSize(9, 7));
        QCOMPARE(QDir(dir_.path()).entryList({"again.JPG*"}, QDir::Files).size(), 1);
    }

    void missingFolderWritesNothing() {
        const QString path = dir_.filePath("no-such-folder/out.bmp");
        QVERIFY(!ImageWriter::saveImage(pattern(8, 8), 8, 8, path));
        QVERIFY(!QFileInfo::exists(dir_.filePath("no-such-folder")));
    }

    // A write that fails half-way (here: the file size limit) keeps the earlier
    // file byte for byte and leaves no temporary file behind.
    void failedWriteKeepsEarlierFile() {
        QTemporaryDir folder;
        const QString path = folder.filePath("IMG_0002.JPG");
        QVERIFY(ImageWriter::saveImage(pattern(16, 16), 16, 16, path));
        const QByteArray before = readAll(path);
        bool written = true;
        {
            FileSizeLimit limit(64 * 1024);
            QVERIFY(limit.ok());
            written = ImageWriter::saveImage(pattern(400, 300), 400, 300, path);
        }
        QVERIFY(!written);
        QCOMPARE(readAll(path), before);
        QCOMPARE(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden).size(), 1);
    }

    // Camera files come as colour, grey or CMYK JPEGs with various stated
    // resolutions; each must come back pixel for pixel at its pixel size.
    void writesCameraPhotosLosslessly() {
        const QString photos = TestRegistry::photosDir();
        const QStringList names = photos.isEmpty()
                                      ? QStringList()
                                      : QDir(photos + "/cameras").entryList({"*.jpg"}, QDir::Files);
        if (names.isEmpty()) {
            QSKIP("no camera photos");
        }
        for (const QString& name : names) {
            const QImage photo(photos + "/cameras/" + name);
            if (photo.isNull()) {
                continue;
            }
            const QString path = dir_.filePath(name);
            QVERIFY2(ImageWriter::saveImage(photo, photo.width(), photo.height(), path),
                     qPrintable(name));
            QVERIFY2(samePixels(QImage(path, "bmp"), photo), qPrintable(name));
        }
    }
};
SW_TEST_CLASS(ImageWriterTest)

#include "ImageWriterTest.moc"
