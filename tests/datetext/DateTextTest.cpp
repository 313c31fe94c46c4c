#include <QDateTime>
#include <QTest>
#include <ctime>

#include <unicode/locid.h>

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
    // ICU caches the zone on first use, so it is pinned before any call. ICU's
    // own default locale is made German, as LC_MESSAGES=de_DE would make it, so
    // that English texts show the time locale is the one used.
    void initTestCase() {
        qputenv("TZ", "Europe/Berlin");
        tzset();
        UErrorCode status = U_ZERO_ERROR;
        icu::Locale::setDefault(icu::Locale::getGermany(), status);
        cleanup();
    }
    void cleanup() {
        qputenv("LANG", "en_US.UTF-8");
        qputenv("LC_ALL", "en_US.UTF-8");
        qunsetenv("LC_TIME");
    }

    // The first of LC_ALL, LC_TIME and LANG that is set.
    void followsTimeLocale_data() {
        QTest::addColumn<QByteArray>("lcAll");  // null: unset
        QTest::addColumn<QByteArray>("lcTime");
        QTest::addColumn<QByteArray>("lang");
        QTest::addColumn<QString>("expected");
        const QByteArray unset, de = "de_DE.UTF-8", en = "en_US.UTF-8";
        const QString german = "05-März-2014 01:34:56 PM", english = "05-Mar-2014 01:34:56 PM";
        QTest::newRow("LC_TIME over LANG") << unset << de << en << german;
        QTest::newRow("LC_ALL over LC_TIME") << en << de << de << english;
        QTest::newRow("LANG alone") << unset << unset << de << german;
        QTest::newRow("C.UTF-8") << unset << QByteArray("C.UTF-8") << de << english;
        QTest::newRow("POSIX") << QByteArray("POSIX") << de << de << english;
        QTest::newRow("none") << unset << unset << unset << english;
    }
    void followsTimeLocale() {
        QFETCH(QByteArray, lcAll);
        QFETCH(QByteArray, lcTime);
        QFETCH(QByteArray, lang);
        for (const auto& [name, value] :
             {std::pair{"LC_ALL", lcAll}, {"LC_TIME", lcTime}, {"LANG", lang}}) {
            value.isNull() ? qunsetenv(name) : qputenv(name, value);
        }
        const QDateTime t = local(2014, 3, 5, 13, 34, 56);
        const QString text = DateText::stringFromDate(t, 1, 2);
        QTEST(text, "expected");
        QCOMPARE(DateText::dateFromString(text), t);
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
        QTest::newRow("PM, hour 13 kept") << "03/05/2014 13:34:56 PM" << t;
        QTest::newRow("pm is case-sensitive") << "03/05/2014 01:34:56 pm" << none;
        QTest::newRow("trailing text") << "2014:03:05 13:34:56 x" << none;
        QTest::newRow("month 13") << "2014:13:05 13:34:56" << none;
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
