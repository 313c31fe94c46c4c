#include <QTest>

#include "TestRegistry.h"
#include "app/SettingValues.h"

class SettingValuesTest : public QObject {
    Q_OBJECT
  private slots:
    // One stored string, read as an integer, a float and a yes/no.
    void readings_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<qint64>("integer");
        QTest::addColumn<float>("real");
        QTest::addColumn<bool>("yes");
        const qint64 huge = std::numeric_limits<qint64>::max();
        QTest::newRow("leading space, trailing text") << " \t42.5pt" << qint64(42) << 42.5F << true;
        QTest::newRow("negative") << "-7" << qint64(-7) << -7.0F << true;
        QTest::newRow("plus sign") << "+5" << qint64(5) << 5.0F << true;
        QTest::newRow("word") << "nine" << qint64(0) << 0.0F << false;
        QTest::newRow("empty") << "" << qint64(0) << 0.0F << false;
        QTest::newRow("huge saturates") << "99999999999999999999" << huge << 1e20F << true;
        QTest::newRow("exponent") << "1e2" << qint64(1) << 100.0F << true;
        QTest::newRow("dangling exponent") << "2e" << qint64(2) << 2.0F << true;
        QTest::newRow("nan spelling") << "nan" << qint64(0) << 0.0F << false;
        QTest::newRow("inf spelling") << "inf" << qint64(0) << 0.0F << false;
        QTest::newRow("hex is not decimal") << "0x10" << qint64(0) << 0.0F << false;
        QTest::newRow("space inside") << "1 2" << qint64(1) << 1.0F << true;
        QTest::newRow("leading zeros then 1") << "001" << qint64(1) << 1.0F << true;
        QTest::newRow("zeros only") << "000" << qint64(0) << 0.0F << false;
        QTest::newRow("true") << "true" << qint64(0) << 0.0F << true;
        QTest::newRow("YES") << "YES" << qint64(0) << 0.0F << true;
        QTest::newRow("T after space") << "  T" << qint64(0) << 0.0F << true;
        QTest::newRow("false") << "false" << qint64(0) << 0.0F << false;
    }
    void readings() {
        QFETCH(QString, text);
        QFETCH(qint64, integer);
        QFETCH(float, real);
        QFETCH(bool, yes);
        QCOMPARE(SettingValues::integerValue(text), integer);
        QCOMPARE(SettingValues::floatValue(text), real);
        QCOMPARE(SettingValues::boolValue(text), yes);
    }

    void fontRoundTrip() {
        QFont font(QStringLiteral("DejaVu Serif"));
        font.setPointSizeF(23.5);
        font.setItalic(true);
        const std::optional<QFont> back =
            SettingValues::decodeFont(SettingValues::encodeFont(font));
        QVERIFY(back.has_value());
        QCOMPARE(back->family(), font.family());
        QCOMPARE(back->pointSizeF(), 23.5);
        QVERIFY(back->italic());
        QVERIFY(!back->bold());
    }

    void damagedData_data() {
        QTest::addColumn<QByteArray>("data");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("foreign archive") << QByteArray::fromHex("040b73747265616d747970656481e803");
        QTest::newRow("truncated") << QByteArray("stampwise-color/1\n1\n0");
        QTest::newRow("words") << QByteArray("stampwise-color/1\nred\n0\n0\n1");
        QTest::newRow("out of range") << QByteArray("stampwise-color/1\n7\n0\n0\n1");
        QTest::newRow("font truncated") << QByteArray("stampwise-font/1\nDejaVu Sans\n\n16");
        QTest::newRow("font size garbage")
            << QByteArray("stampwise-font/1\nDejaVu Sans\n\nbig\n1\n1");
        QTest::newRow("font size huge")
            << QByteArray("stampwise-font/1\nDejaVu Sans\n\n1e30\n1\n1");
        QTest::newRow("font without family") << QByteArray("stampwise-font/1\n\n\n16\n1\n1");
    }
    void damagedData() {
        QFETCH(QByteArray, data);
        QVERIFY(!SettingValues::decodeColor(data).has_value());
        QVERIFY(!SettingValues::decodeFont(data).has_value());
    }

    void defaultFontResolvesToBoldItalic() {
        const QFont font = SettingValues::defaultStampFont();
        const QFontInfo info(font);
        QVERIFY2(info.family() == QLatin1String("Verdana") ||
                     info.family() == QLatin1String("DejaVu Sans"),
                 qPrintable(info.family()));
        QVERIFY(info.bold());
        QVERIFY(info.italic());
        QCOMPARE(font.pointSizeF(), 16.0);
    }
};
SW_TEST_CLASS(SettingValuesTest)

#include "SettingValuesTest.moc"
