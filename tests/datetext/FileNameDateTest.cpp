#include <QTest>

#include "TestRegistry.h"
#include "datetext/FileNameDate.h"

class FileNameDateTest : public QObject {
    Q_OBJECT
  private slots:
    // Every pattern once, and the names that come close to one without being a date.
    void find_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("found");  // as EXIF writes it; empty: no date
        QTest::addColumn<bool>("hasTime");
        const QString none;
        const QString at = "2014:03:05 13:34:56";
        QTest::newRow("camera") << "IMG_20140305_133456.jpg" << at << true;
        QTest::newRow("folder is not read") << "/x/IMG_20150101_000000/a.jpg" << none << false;
        QTest::newRow("bare, lower case") << "/photos/img_20140305_133456.JPG" << at << true;
        QTest::newRow("no prefix") << "20140305_133456.jpg" << at << true;
        QTest::newRow("burst suffix") << "IMG_20140305_133456_1.jpg" << at << true;
        QTest::newRow("video") << "VID_20140305_133456.mp4" << at << true;
        QTest::newRow("pixel ms") << "PXL_20140305_133456789.jpg" << at << true;
        QTest::newRow("screenshot compact") << "Screenshot_20140305-133456.png" << at << true;
        QTest::newRow("screenshot dashed") << "Screenshot_2014-03-05-13-34-56.png" << at << true;
        QTest::newRow("desktop screenshot")
            << "Screenshot from 2014-03-05 13-34-56.png" << at << true;
        QTest::newRow("dropbox") << "2014-03-05 13.34.56.jpg" << at << true;
        QTest::newRow("signal") << "signal-2014-03-05-133456.jpg" << at << true;
        QTest::newRow("signal with ms") << "signal-2014-03-05-13-34-56-123.jpg" << at << true;
        QTest::newRow("whatsapp: noon") << "IMG-20140305-WA0001.jpg"
                                        << "2014:03:05 12:00:00" << false;
        QTest::newRow("leap day") << "IMG_20160229_235959.jpg"
                                  << "2016:02:29 23:59:59" << true;
        QTest::newRow("eight digits alone") << "IMG_99999999.jpg" << none << false;
        QTest::newRow("underscored numbers") << "2014_13_45.jpg" << none << false;
        QTest::newRow("month 13") << "IMG_20141305_133456.jpg" << none << false;
        QTest::newRow("feb 29, no leap year") << "IMG_20150229_133456.jpg" << none << false;
        QTest::newRow("hour 24") << "IMG_20140305_243456.jpg" << none << false;
        QTest::newRow("year 1969") << "IMG_19691231_235959.jpg" << none << false;
        QTest::newRow("year 2101") << "IMG_21010101_000000.jpg" << none << false;
        QTest::newRow("nine-digit date") << "120140305_133456.jpg" << none << false;
        QTest::newRow("seven-digit time") << "IMG_20140305_1334561.jpg" << none << false;
        QTest::newRow("unknown prefix") << "DSC_20140305_133456.jpg" << none << false;
        QTest::newRow("counter only") << "IMG_0001.JPG" << none << false;
    }
    void find() {
        QFETCH(QString, name);
        QFETCH(QString, found);
        QFETCH(bool, hasTime);
        const std::optional<FileNameDate::Found> date = FileNameDate::find(name);
        QCOMPARE(date ? date->exifText() : QString(), found);
        QCOMPARE(date && date->hasTime(), hasTime);
    }
};
SW_TEST_CLASS(FileNameDateTest)

#include "FileNameDateTest.moc"
