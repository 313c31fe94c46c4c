#include <QTest>

#include "TestRegistry.h"
#include "app/SettingValues.h"

class SettingValuesTest : public QObject {
    Q_OBJECT
  private slots:
    void integerValue_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<qint64>("expected");
        QTest::newRow("plain") << "3" << qint64(3);
        QTest::newRow("leading space") << "  \t42" << qint64(42);
        QTest::newRow("trailing words") << "12abc" << qint64(12);
        QTest::newRow("negative") << "-7" << qint64(-7);
        QTest::newRow("plus sign") << "+5" << qint64(5);
        QTest::newRow("word") << "nine" << qint64(0);
        QTest::newRow("empty") << "" << qint64(0);
        QTest::newRow("decimal") << "2.9" << qint64(2);
        QTest::newRow("huge saturates")
            << "99999999999999999999" << std::numeric_limits<qint64>::max();
        QTest::newRow("space inside") << "1 2" << qint64(1);
    }
    void integerValue() {
        QFETCH(QString, text);
        QFETCH(qint64, expected);
        QCOMPARE(SettingValues::integerValue(text), expected);
    }

    void floatValue_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<float>("expected");
        QTest::newRow("plain") << "12.5" << 12.5F;
        QTest::newRow("leading space, trailing text") << " 3.25pt" << 3.25F;
        QTest::newRow("exponent") << "1e2" << 100.0F;
        QTest::newRow("dangling exponent") << "2e" << 2.0F;
        QTest::newRow("word") << "wide" << 0.0F;
        QTest::newRow("nan spelling is not a number") << "nan" << 0.0F;
        QTest::newRow("inf spelling is not a number") << "inf" << 0.0F;
        QTest::newRow("hex is not decimal") << "0x10" << 0.0F;
    }
    void floatValue() {
        QFETCH(QString, text);
        QFETCH(float, expected);
        QCOMPARE(SettingValues::floatValue(text), expected);
    }

    void boolValue_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("expected");
        QTest::newRow("true") << "true" << true;
        QTest::newRow("YES") << "YES" << true;
        QTest::newRow("y") << "y" << true;
        QTest::newRow("T after space") << "  T" << true;
        QTest::newRow("digit") << "7" << true;
        QTest::newRow("leading zeros then 1") << "001" << true;
        QTest::newRow("signed") << "-1" << true;
        QTest::newRow("false") << "false" << false;
        QTest::newRow("no") << "no" << false;
        QTest::newRow("zero") << "0" << false;
        QTest::newRow("zeros only") << "000" << false;
        QTest::newRow("empty") << "" << false;
        QTest::newRow("other word") << "maybe" << false;
    }
    void boolValue() {
        QFETCH(QString, text);
        QFETCH(bool, expected);
        QCOMPARE(SettingValues::boolValue(text), expected);
    }

    void colourRoundTrip() {
        const QColor colour = QColor::fromRgbF(0.25F, 0.5F, 0.75F, 0.4F);
        const std::optional<QColor> back =
            SettingValues::decodeColor(SettingValues::encodeColor(colour));
        QVERIFY(back.has_value());
        QCOMPARE(back->rgba64(), colour.rgba64());
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
