#include <QCoreApplication>
#include <QDateTime>
#include <QProcess>
#include <QTest>

#include "TestRegistry.h"
#include "datetext/DateText.h"

// ICU reads its locale from the environment once per process, so this runs
// itself again with LC_ALL set and only the class DateTextInLocale.
class DateTextInLocale : public QObject {
    Q_OBJECT
  private slots:
    void followsLocale() {
        if (qgetenv("LC_ALL") != "de_DE.UTF-8") {
            QSKIP("run by DateTextLocaleTest");
        }
        const QDateTime t(QDate(2014, 3, 5), QTime(13, 34, 56), Qt::LocalTime);
        QCOMPARE(DateText::stringFromDate(t, 1, 2), QStringLiteral("05-März-2014 01:34:56 PM"));
        QCOMPARE(DateText::dateFromString("05-März-2014 01:34:56 PM"), t);
        QCOMPARE(DateText::dateFromString("März 05, 2014 13:34:56"), t);
        QVERIFY(!DateText::dateFromString("March 05, 2014 13:34:56"));
    }
};
SW_TEST_CLASS(DateTextInLocale)

class DateTextLocaleTest : public QObject {
    Q_OBJECT
  private slots:
    void runsInGerman() {
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert("LC_ALL", "de_DE.UTF-8");
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
