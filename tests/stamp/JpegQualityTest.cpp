#include <QBuffer>
#include <QImageWriter>
#include <QTest>

#include "TestRegistry.h"
#include "common/TestImages.h"
#include "stamp/JpegQuality.h"

class JpegQualityTest : public QObject {
    Q_OBJECT

  private slots:
    // Qt's writer scales the standard tables exactly as the estimate assumes.
    void readsQtsQuality_data() {
        QTest::addColumn<int>("quality");
        for (const int quality : {10, 50, 75, 90, 95, 100}) {
            QTest::addRow("%d", quality) << quality;
        }
    }
    void readsQtsQuality() {
        QFETCH(int, quality);
        QByteArray bytes;
        QBuffer buffer(&bytes);
        buffer.open(QIODevice::WriteOnly);
        QImageWriter writer(&buffer, "jpeg");
        writer.setQuality(quality);
        QVERIFY(writer.write(TestImages::pattern({64, 48})));
        QCOMPARE(JpegQuality::estimate(bytes), quality);
    }

    void unknownWithoutTable_data() {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("PNG") << QByteArray("\x89PNG\r\n\x1a\n\0\0\0\rIHDR", 16);
        // A header cut inside its table, and one whose only table is chroma.
        QTest::newRow("cut in DQT") << QByteArray("\xFF\xD8\xFF\xDB\x00\x43\x00\x10\x0B", 9);
        QByteArray chroma("\xFF\xD8\xFF\xDB\x00\x43\x01", 7);
        chroma.append(64, '\x02');
        QTest::newRow("chroma only") << chroma + QByteArray("\xFF\xDA\x00\x02", 4);
    }
    void unknownWithoutTable() {
        QFETCH(QByteArray, bytes);
        QCOMPARE(JpegQuality::estimate(bytes), JpegQuality::kUnknown);
    }
};

SW_TEST_CLASS(JpegQualityTest)

#include "JpegQualityTest.moc"
