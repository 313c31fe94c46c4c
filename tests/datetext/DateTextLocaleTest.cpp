#include <QCoreApplication>
#include <QDateTime>
#include <QProcess>
#include <QTest>

#include "TestRegistry.h"
#include "datetext/DateText.h"

// ICU takes its locale from the environment once per process, so each locale
// is checked in a child run of this executable with only DateTextInLocale.
namespace {
const char* const kChildLocale = "STAMPWISE_TEST_ICU_LOCALE";

QDateTime afternoon() {
    return QDateTime(QDate(2014, 3, 5), QTime(13, 34, 56), Qt::LocalTime);
}
}  // namespace

class DateTextInLocale : public QObject {
    Q_OBJECT
  private slots:
    void writes_data() {
        QTest::addColumn<qint64>("dateType");
        QTest::addColumn<qint64>("timeType");
        QTest::addColumn<QString>("expected");
        const QByteArray locale = qgetenv(kChildLocale);
        if (locale == "de_DE") {
            QTest::newRow("abbreviation") << qint64(1) << qint64(1) << "05-März-2014 13:34:56";
            QTest::newRow("full name") << qint64(3) << qint64(0) << "März 05, 2014";
        } else if (locale == "ja_JP") {
            QTest::newRow("marker") << qint64(2) << qint64(2) << "03/05/2014 01:34:56 午後";
        } else {
            QSKIP("run by DateTextLocaleTest in a child process");
        }
    }
    void writes() {
        QFETCH(qint64, dateType);
        QFETCH(qint64, timeType);
        QTEST(DateText::stringFromDate(afternoon(), dateType, timeType), "expected");
    }

    void reads_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("readable");
        const QByteArray locale = qgetenv(kChildLocale);
        if (locale == "de_DE") {
            QTest::newRow("abbreviation, PM") << "05-März-2014 01:34:56 PM" << true;
            QTest::newRow("full name") << "März 05, 2014 13:34:56" << true;
            QTest::newRow("English month") << "March 05, 2014 13:34:56" << false;
        } else if (locale == "ja_JP") {
            // The afternoon marker is not "PM", so the marker pattern is never chosen.
            QTest::newRow("afternoon marker") << "03/05/2014 01:34:56 午後" << false;
            QTest::newRow("24-hour") << "03/05/2014 13:34:56" << true;
        } else {
            QSKIP("run by DateTextLocaleTest in a child process");
        }
    }
    void reads() {
        QFETCH(QString, text);
        QFETCH(bool, readable);
        const std::optional<QDateTime> date = DateText::dateFromString(text);
        QCOMPARE(date.has_value(), readable);
        if (readable) {
            QCOMPARE(*date, afternoon());
        }
    }
};
SW_TEST_CLASS(DateTextInLocale)

class DateTextLocaleTest : public QObject {
    Q_OBJECT
  private slots:
    void followsLocale_data() {
        QTest::addColumn<QString>("locale");
        QTest::newRow("German") << "de_DE";
        QTest::newRow("Japanese") << "ja_JP";
    }
    void followsLocale() {
        QFETCH(QString, locale);
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(kChildLocale, locale);
        env.insert("LANG", locale + ".UTF-8");
        env.insert("LC_ALL", locale + ".UTF-8");
        env.insert("TZ", "Europe/Berlin");
        QProcess child;
        child.setProcessEnvironment(env);
        child.start(QCoreApplication::applicationFilePath(), {"-class", "DateTextInLocale"});
        QVERIFY(child.waitForFinished(60000));
        const QString output = QString::fromUtf8(child.readAll());
        QVERIFY2(child.exitStatus() == QProcess::NormalExit && child.exitCode() == 0,
                 qPrintable(output));
        QVERIFY2(output.contains(" 0 failed, 0 skipped"), qPrintable(output));
    }
};
SW_TEST_CLASS(DateTextLocaleTest)

#include "DateTextLocaleTest.moc"
