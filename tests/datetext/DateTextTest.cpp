#include <QDateTime>
#include <QTest>
#include <QTimeZone>
#include <ctime>

#include "TestRegistry.h"
#include "datetext/DateText.h"

namespace {
QDateTime local(int y, int mo, int d, int h, int mi, int s) {
    return QDateTime(QDate(y, mo, d), QTime(h, mi, s), Qt::LocalTime);
}
}  // namespace

class DateTextTest : public QObject {
    Q_OBJECT
  private slots:
    // ICU caches the locale and zone on first use, so both are pinned before any call.
    void initTestCase() {
        qputenv("TZ", "Europe/Berlin");
        qputenv("LANG", "en_US.UTF-8");
        qputenv("LC_ALL", "en_US.UTF-8");
        tzset();
    }

    void writes_data() {
        QTest::addColumn<qint64>("dateType");
        QTest::addColumn<qint64>("timeType");
        QTest::addColumn<QString>("expected");
        const char* const expected[4][3] = {
            {"2014:03:05", "2014:03:05 13:34:56", "2014:03:05 01:34:56 PM"},
            {"05-Mar-2014", "05-Mar-2014 13:34:56", "05-Mar-2014 01:34:56 PM"},
            {"03/05/2014", "03/05/2014 13:34:56", "03/05/2014 01:34:56 PM"},
            {"March 05, 2014", "March 05, 2014 13:34:56", "March 05, 2014 01:34:56 PM"}};
        for (qint64 d = 0; d < 4; ++d) {
            for (qint64 t = 0; t < 3; ++t) {
                QTest::addRow("%lld/%lld", d, t) << d << t << QString(expected[d][t]);
            }
        }
        QTest::newRow("date type 4") << qint64(4) << qint64(1) << "";
        QTest::newRow("time type 3") << qint64(0) << qint64(3) << "";
        QTest::newRow("date type -1") << qint64(-1) << qint64(0) << "";
    }
    void writes() {
        QFETCH(qint64, dateType);
        QFETCH(qint64, timeType);
        QTEST(DateText::stringFromDate(local(2014, 3, 5, 13, 34, 56), dateType, timeType),
              "expected");
        QVERIFY(DateText::stringFromDate(std::nullopt, dateType, timeType).isEmpty());
    }

    void reads_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QDateTime>("expected");
        const QDateTime t = local(2014, 3, 5, 13, 34, 56);
        const QDateTime none;
        QTest::newRow("exif") << "2014:03:05 13:34:56" << t;
        QTest::newRow("dash key") << "05-Mar-2014 13:34:56" << t;
        QTest::newRow("slash key") << "03/05/2014 13:34:56" << t;
        QTest::newRow("comma key") << "March 05, 2014 13:34:56" << t;
        QTest::newRow("nine-letter month") << "September 05, 2014 13:34:56" << none;
        QTest::newRow("PM, exif form") << "2014:03:05 01:34:56 PM" << t;
        QTest::newRow("PM, dash") << "05-Mar-2014 01:34:56 PM" << t;
        QTest::newRow("PM, slash") << "03/05/2014 01:34:56 PM" << t;
        QTest::newRow("PM, comma") << "March 05, 2014 01:34:56 PM" << t;
        QTest::newRow("PM, hour 13 kept") << "03/05/2014 13:34:56 PM" << t;
        QTest::newRow("noon") << "03/05/2014 12:10:00 PM" << local(2014, 3, 5, 12, 10, 0);
        QTest::newRow("AM left over") << "03/05/2014 01:34:56 AM" << none;
        QTest::newRow("pm is case-sensitive") << "03/05/2014 01:34:56 pm" << none;
        QTest::newRow("11 characters") << "05-Mar-2014" << none;
        QTest::newRow("trailing text") << "2014:03:05 13:34:56 x" << none;
        QTest::newRow("month 13") << "2014:13:05 13:34:56" << none;
        QTest::newRow("null exif date") << "0000:00:00 00:00:00" << none;
        QTest::newRow("PM on summer-time day")
            << "03/28/2021 02:07:09 PM" << local(2021, 3, 28, 14, 7, 9);
        QTest::newRow("hour skipped by summer time") << "2021:03:28 02:30:00" << none;
    }
    void reads() {
        QFETCH(QString, text);
        QFETCH(QDateTime, expected);
        const std::optional<QDateTime> date = DateText::dateFromString(text);
        QCOMPARE(date.has_value(), expected.isValid());
        if (date) {
            QCOMPARE(date->toMSecsSinceEpoch(), expected.toMSecsSinceEpoch());
        }
    }

    // Every layout with a time reads back what it wrote, at every hour of days that
    // include both summer-time changes, except morning 12-hour texts and long month names.
    void readsBackWhatItWrote() {
        for (qint64 dateType = 0; dateType < 4; ++dateType) {
            for (qint64 timeType = 1; timeType < 3; ++timeType) {
                for (int month = 1; month <= 12; ++month) {
                    for (int hour = 0; hour < 24; ++hour) {
                        const QDateTime written = local(2021, month, 28, hour, 7, 9);
                        if (!written.isValid()) {
                            continue;  // the hour skipped in March
                        }
                        const QString text = DateText::stringFromDate(written, dateType, timeType);
                        const bool refused =
                            (timeType == 2 && hour < 12) ||
                            (dateType == 3 && QLocale::c().monthName(month).size() >= 9);
                        const std::optional<QDateTime> read = DateText::dateFromString(text);
                        QVERIFY2(read.has_value() != refused, qPrintable(text));
                        QVERIFY2(!read || *read == written, qPrintable(text));
                    }
                }
            }
        }
    }
};
SW_TEST_CLASS(DateTextTest)

#include "DateTextTest.moc"
