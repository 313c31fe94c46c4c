#include <QDateTime>
#include <QFile>
#include <QTest>
#include <QVariant>

#include "TestRegistry.h"
#include "common/Sandbox.h"
#include "datetext/PhotoDate.h"

class PhotoDateTest : public QObject {
    Q_OBJECT
  private slots:
    void choosesSource_data() {
        QTest::addColumn<QVariant>("original");  // invalid: no such EXIF field
        QTest::addColumn<QVariant>("digitized");
        QTest::addColumn<qint64>("timeType");
        QTest::addColumn<QString>("dateTimeString");
        const QVariant none;
        QTest::newRow("original") << QVariant("2014:03:05 13:34:56")
                                  << QVariant("2015:01:01 10:00:00") << qint64(1)
                                  << "05-Mar-2014 13:34:56";
        QTest::newRow("digitized only")
            << none << QVariant("2015:01:01 10:00:00") << qint64(1) << "01-Jan-2015 10:00:00";
        QTest::newRow("null original skips digitized")
            << QVariant("0000:00:00 00:00:00") << QVariant("2015:01:01 10:00:00") << qint64(1)
            << "01-Jun-2020 15:04:05";
        QTest::newRow("no exif, 12-hour") << none << none << qint64(2) << "01-Jun-2020 03:04:05 PM";
        QTest::newRow("no exif, date only") << none << none << qint64(0) << "";
        QTest::newRow("unreadable original") << QVariant("May") << none << qint64(1) << "";
    }
    void choosesSource() {
        QFETCH(QVariant, original);
        QFETCH(QVariant, digitized);
        QFETCH(qint64, timeType);
        const auto text = [](const QVariant& v) {
            return v.isValid() ? std::optional<QString>(v.toString()) : std::nullopt;
        };
        const QDateTime fileDate(QDate(2020, 6, 1), QTime(15, 4, 5), Qt::LocalTime);
        const PhotoDate::Result result =
            PhotoDate::photoDateText(text(original), text(digitized), fileDate, 1, timeType);
        QTEST(result.dateTimeString, "dateTimeString");
    }

    void readsFileModificationDate() {
        Sandbox dir;
        QFile file(dir.touch("IMG_0001.JPG"));
        const QDateTime stamp(QDate(2019, 11, 2), QTime(8, 15, 30), Qt::LocalTime);
        QVERIFY(file.open(QIODevice::ReadOnly) &&
                file.setFileTime(stamp, QFileDevice::FileModificationTime));
        QCOMPARE(PhotoDate::fileModificationDate(file.fileName()), stamp);
        QVERIFY(!PhotoDate::fileModificationDate(dir.path("missing.jpg")));
    }
};
SW_TEST_CLASS(PhotoDateTest)

#include "PhotoDateTest.moc"
