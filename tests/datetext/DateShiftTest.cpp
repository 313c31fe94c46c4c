#include <QTest>

#include "TestRegistry.h"
#include "datetext/DateShift.h"

class DateShiftTest : public QObject {
    Q_OBJECT
  private slots:
    // What people type for a wrong camera clock, and what is no shift at all;
    // a shift written back reads as the same seconds.
    void parse_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<qint64>("seconds");  // -1: not a shift
        QTest::addColumn<QString>("written");
        QTest::newRow("empty") << "  " << qint64(0) << "";
        QTest::newRow("an hour later") << "+01:00" << qint64(3600) << "+01:00";
        QTest::newRow("no sign, one digit") << "1:00" << qint64(3600) << "+01:00";
        QTest::newRow("half an hour earlier") << "-00:30" << qint64(-1800) << "-00:30";
        QTest::newRow("days and seconds")
            << "+2d03:00:15" << qint64((2 * 24 + 3) * 3600 + 15) << "+2d03:00:15";
        QTest::newRow("hours past a day") << "-36:00" << qint64(-36 * 3600) << "-1d12:00";
        QTest::newRow("upper-case D, spaces") << "- 1D 00:00" << qint64(-86400) << "-1d00:00";
        QTest::newRow("minutes over 59") << "+01:60" << qint64(-1) << "";
        QTest::newRow("seconds over 59") << "+01:00:60" << qint64(-1) << "";
        QTest::newRow("no minutes") << "+1" << qint64(-1) << "";
        QTest::newRow("words") << "one hour" << qint64(-1) << "";
        QTest::newRow("two signs") << "+-01:00" << qint64(-1) << "";
    }
    void parse() {
        QFETCH(QString, text);
        QFETCH(qint64, seconds);
        QFETCH(QString, written);
        const std::optional<qint64> parsed = DateShift::parse(text);
        QCOMPARE(parsed.value_or(-1), seconds);
        if (parsed) {
            QCOMPARE(DateShift::format(*parsed), written);
            QCOMPARE(DateShift::parse(written), parsed);
        }
    }
};
SW_TEST_CLASS(DateShiftTest)

#include "DateShiftTest.moc"
