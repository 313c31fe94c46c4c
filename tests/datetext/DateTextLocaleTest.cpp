#include <QCoreApplication>
#include <QDateTime>
#include <QProcess>
#include <QTest>

#include "TestRegistry.h"
#include "datetext/DateText.h"

// ICU reads its locale from the environment once per process, so the German and
// Japanese checks run in a child run of this executable with only DateTextInLocale.
class DateTextInLocale : public QObject {
    Q_OBJECT
  private slots:
    void followsLocale() {
        const QByteArray locale = qgetenv("STAMPWISE_TEST_ICU_LOCALE");
        if (locale.isEmpty()) {
            QSKIP("run by DateTextLocaleTest in a child process");
        }
        const QDateTime t(QDate(2014, 3, 5), QTime(13, 34, 56), Qt::LocalTime);
        if (locale == "de_DE") {
            QCOMPARE(DateText::stringFromDate(t, 1, 2), QStringLiteral("05-März-2014 01:34:56 PM"));
            QCOMPARE(DateText::dateFromString("05-März-2014 01:34:56 PM"), t);
            QCOMPARE(DateText::dateFromString("März 05, 2014 13:34:56"), t);
            QVERIFY(!DateText::dateFromString("March 05, 2014 13:34:56"));
        } else {
            // The afternoon marker is not "PM", so the marker pattern is never chosen.
            QCOMPARE(DateText::stringFromDate(t, 2, 2), QStringLiteral("03/05/2014 01:34:56 午後"));
            QVERIFY(!DateText::dateFromString("03/05/2014 01:34:56 午後"));
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
        env.insert("STAMPWISE_TEST_ICU_LOCALE", locale);
        env.insert("LANG", locale + ".UTF-8");
        env.insert("LC_ALL", locale + ".UTF-8");
        env.insert("TZ", "Europe/Berlin");
        QProcess child;
        child.setProcessEnvironment(env);
        child.start(QCoreApplication::applicationFilePath(), {"-class", "DateTextInLocale"});
        QVERIFY(child.waitForFinished(60000));
        const QString output = QString::fromUtf8(child.readAll());
        QVERIFY2(child.exitCode() == 0 && output.contains(" 0 failed, 0 skipped"),
                 qPrintable(output));
    }
};
SW_TEST_CLASS(DateTextLocaleTest)

#include "DateTextLocaleTest.moc"
