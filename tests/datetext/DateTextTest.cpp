#include <QDateTime>
#include <QTest>
#include <QTimeZone>
#include <cstdlib>
#include <ctime>

#include "TestRegistry.h"
#include "datetext/DateText.h"

namespace {
// ICU caches the locale and zone on first use, so both are pinned before any call.
void pinLocaleAndZone() {
    qputenv("TZ", "Europe/Berlin");
    qputenv("LANG", "en_US.UTF-8");
    qputenv("LC_ALL", "en_US.UTF-8");
    tzset();
}

QDateTime local(int y, int mo, int d, int h, int mi, int s) {
    return QDateTime(QDate(y, mo, d), QTime(h, mi, s), Qt::LocalTime);
}
}  // namespace

class DateTextTest : public QObject {
    Q_OBJECT
  private slots:
    void initTestCase() { pinLocaleAndZone(); }

    void writesEachLayout_data() {
        QTest::addColumn<qint64>("dateType");
        QTest::addColumn<qint64>("timeType");
        QTest::addColumn<QString>("expected");
        QTest::newRow("0/0") << qint64(0) << qint64(0) << "2014:03:05";
        QTest::newRow("0/1") << qint64(0) << qint64(1) << "2014:03:05 13:34:56";
        QTest::newRow("0/2") << qint64(0) << qint64(2) << "2014:03:05 01:34:56 PM";
        QTest::newRow("1/0") << qint64(1) << qint64(0) << "05-Mar-2014";
        QTest::newRow("1/1") << qint64(1) << qint64(1) << "05-Mar-2014 13:34:56";
        QTest::newRow("1/2") << qint64(1) << qint64(2) << "05-Mar-2014 01:34:56 PM";
        QTest::newRow("2/0") << qint64(2) << qint64(0) << "03/05/2014";
        QTest::newRow("2/1") << qint64(2) << qint64(1) << "03/05/2014 13:34:56";
        QTest::newRow("2/2") << qint64(2) << qint64(2) << "03/05/2014 01:34:56 PM";
        QTest::newRow("3/0") << qint64(3) << qint64(0) << "March 05, 2014";
        QTest::newRow("3/1") << qint64(3) << qint64(1) << "March 05, 2014 13:34:56";
        QTest::newRow("3/2") << qint64(3) << qint64(2) << "March 05, 2014 01:34:56 PM";
        QTest::newRow("date type 4") << qint64(4) << qint64(1) << "";
        QTest::newRow("time type 3") << qint64(0) << qint64(3) << "";
        QTest::newRow("negative date type") << qint64(-1) << qint64(0) << "";
    }
    void writesEachLayout() {
        QFETCH(qint64, dateType);
        QFETCH(qint64, timeType);
        QFETCH(QString, expected);
        QCOMPARE(DateText::stringFromDate(local(2014, 3, 5, 13, 34, 56), dateType, timeType),
                 expected);
    }

    void writesNothingWithoutDate() {
        QVERIFY(DateText::stringFromDate(std::nullopt, 0, 1).isEmpty());
        QVERIFY(DateText::stringFromDate(QDateTime(), 0, 1).isEmpty());
    }

    // An instant given in another zone is written as local wall-clock time.
    void writesInLocalZone() {
        const QDateTime utc(QDate(2014, 7, 5), QTime(11, 0, 0), QTimeZone::utc());
        QCOMPARE(DateText::stringFromDate(utc, 0, 1), QStringLiteral("2014:07:05 13:00:00"));
    }

    void reads_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QDateTime>("expected");
        const QDateTime afternoon = local(2014, 3, 5, 13, 34, 56);
        const QDateTime none;
        QTest::newRow("exif") << "2014:03:05 13:34:56" << afternoon;
        QTest::newRow("exif summer") << "2014:07:05 13:00:00" << local(2014, 7, 5, 13, 0, 0);
        QTest::newRow("month abbreviation") << "05-Mar-2014 13:34:56" << afternoon;
        QTest::newRow("slashes") << "03/05/2014 13:34:56" << afternoon;
        QTest::newRow("month name") << "March 05, 2014 13:34:56" << afternoon;
        QTest::newRow("nine-letter month") << "September 05, 2014 13:34:56" << none;
        QTest::newRow("eight-letter month")
            << "December 05, 2014 13:34:56" << local(2014, 12, 5, 13, 34, 56);
        QTest::newRow("morning marker") << "03/05/2014 01:34:56 AM" << none;
        QTest::newRow("afternoon exif form") << "2014:03:05 01:34:56 PM" << afternoon;
        QTest::newRow("afternoon abbreviation") << "05-Mar-2014 01:34:56 PM" << afternoon;
        QTest::newRow("afternoon slashes") << "03/05/2014 01:34:56 PM" << afternoon;
        QTest::newRow("afternoon month name") << "March 05, 2014 01:34:56 PM" << afternoon;
        QTest::newRow("noon") << "03/05/2014 12:10:00 PM" << local(2014, 3, 5, 12, 10, 0);
        QTest::newRow("24-hour with marker") << "03/05/2014 13:34:56 PM" << afternoon;
        QTest::newRow("lower-case pm") << "03/05/2014 01:34:56 pm" << none;
        QTest::newRow("date only") << "2014:03:05" << none;
        QTest::newRow("eleven characters") << "05-Mar-2014" << none;
        QTest::newRow("empty") << "" << none;
        QTest::newRow("colon before dash") << "2014:03-05 13:34:56" << none;
        QTest::newRow("dash before colon read as colon") << "2-14:03:05 13:34:56" << none;
        QTest::newRow("separator only in first character") << ":014 03 05 13 34 56" << none;
        QTest::newRow("no separator") << "20140305 133456" << none;
        QTest::newRow("trailing text") << "2014:03:05 13:34:56 x" << none;
        QTest::newRow("month 13") << "2014:13:05 13:34:56" << none;
        QTest::newRow("hour 24") << "2014:03:05 24:00:00" << none;
        QTest::newRow("dashes in exif form") << "2014-03-05 13:34:56" << none;
        QTest::newRow("afternoon on the summer-time day")
            << "03/28/2021 02:07:09 PM" << local(2021, 3, 28, 14, 7, 9);
        QTest::newRow("hour skipped by summer time") << "2021:03:28 02:30:00" << none;
        QTest::newRow("never-set camera clock") << "0000:00:00 00:00:00" << none;
    }
    void reads() {
        QFETCH(QString, text);
        QFETCH(QDateTime, expected);
        const std::optional<QDateTime> date = DateText::dateFromString(text);
        if (!expected.isValid()) {
            QVERIFY2(!date, qPrintable(date ? date->toString(Qt::ISODate) : QString()));
            return;
        }
        QVERIFY(date.has_value());
        QCOMPARE(date->toMSecsSinceEpoch(), expected.toMSecsSinceEpoch());
    }

    // Every layout with a time reads back what it wrote, over a whole day, except
    // the morning 12-hour texts and the long month names that the reading rule refuses.
    void roundTrips_data() {
        QTest::addColumn<qint64>("dateType");
        QTest::addColumn<qint64>("timeType");
        for (qint64 dateType = 0; dateType < 4; ++dateType) {
            for (qint64 timeType = 1; timeType < 3; ++timeType) {
                QTest::addRow("%lld/%lld", dateType, timeType) << dateType << timeType;
            }
        }
    }
    void roundTrips() {
        QFETCH(qint64, dateType);
        QFETCH(qint64, timeType);
        for (int month = 1; month <= 12; ++month) {
            for (int hour = 0; hour < 24; ++hour) {
                // The 28th holds the change to summer time in March and back in October.
                const QDateTime written = local(2021, month, 28, hour, 7, 9);
                if (!written.isValid()) {
                    continue;
                }
                const QString text = DateText::stringFromDate(written, dateType, timeType);
                const bool morning12 = timeType == 2 && hour < 12;
                const bool longMonth = dateType == 3 && QLocale::c().monthName(month).size() >= 9;
                const std::optional<QDateTime> read = DateText::dateFromString(text);
                if (morning12 || longMonth) {
                    QVERIFY2(!read, qPrintable(text));
                } else {
                    QVERIFY2(read.has_value(), qPrintable(text));
                    QCOMPARE(read->toMSecsSinceEpoch(), written.toMSecsSinceEpoch());
                }
            }
        }
    }

    // Wall-clock texts keep their time of day across the change to summer time.
    void readsAcrossSummerTime() {
        const auto before = DateText::dateFromString(QStringLiteral("2014:03:30 01:30:00"));
        const auto after = DateText::dateFromString(QStringLiteral("2014:03:30 03:30:00"));
        QVERIFY(before && after);
        QCOMPARE(before->secsTo(*after), qint64(3600));
        QCOMPARE(DateText::stringFromDate(after, 0, 1), QStringLiteral("2014:03:30 03:30:00"));
    }
};
SW_TEST_CLASS(DateTextTest)

#include "DateTextTest.moc"
