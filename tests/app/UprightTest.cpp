#include <QJsonObject>
#include <QPainter>

#include "AppFixture.h"
#include "TestRegistry.h"
#include "app/InfoCommand.h"
#include "common/Sandbox.h"
#include "common/TestImages.h"
#include "tools/ExifJpegWriter.h"
#include "ui_MainWindow.h"

class UprightTest : public QObject {
    Q_OBJECT
  private slots:
    // A 300 x 200 photo at 144 dpi stored on its side (tag 6), its top-left
    // quarter white: turned upright it is 200 x 300 with the white at the top
    // right, in the window's preview and sizes and in `info`.
    void modelAndInfoAreUpright_data() {
        QTest::addColumn<bool>("upright");
        QTest::addColumn<QSize>("pixels");
        QTest::addColumn<bool>("whiteOnRight");
        QTest::newRow("as stored") << false << QSize(300, 200) << false;
        QTest::newRow("upright") << true << QSize(200, 300) << true;
    }
    void modelAndInfoAreUpright() {
        QFETCH(bool, upright);
        QFETCH(QSize, pixels);
        QFETCH(bool, whiteOnRight);
        Sandbox box;
        QImage stored = TestImages::solid({300, 200}, Qt::black);
        QPainter(&stored).fillRect(0, 0, 150, 100, Qt::white);
        ExifJpegWriter::Fields fields;
        fields.dpi = 144;
        fields.orientation = 6;
        const QString path = box.path("side.jpg");
        QVERIFY(ExifJpegWriter::write(path, stored, fields));

        const QJsonObject info = InfoCommand::describe(path, 0, 0, {.upright = upright});
        QCOMPARE(info["pixelWidth"].toInt(), pixels.width());
        QCOMPARE(info["pointHeight"].toDouble(), pixels.height() / 2.0);
        QCOMPARE(info["orientation"].toInt(), upright ? 6 : 0);

        AppFixture app;
        StampwiseAppDelegate& d = app.start();
        d.setStampOptions({.upright = upright});
        QVERIFY(app.showModel(path));
        QCOMPARE(d.imageOriginalWidth(), float(pixels.width()));
        QCOMPARE(d.imageHeight(), float(pixels.height()) / 2);
        SlideshowView* preview = app.window->ui().slideshowView;
        const StampGeometry::StampArea& a = d.stampArea();  // y-up
        const QRectF area(a.miniX, preview->height() - a.maxY, a.maxX - a.miniX, a.maxY - a.miniY);
        const QRect white = TestImages::boundsWhere(preview->currentImageView()->currentFrame(),
                                                    [](QRgb c) { return qGray(c) > 128; });
        QVERIFY(white.center().y() < area.center().y());
        QCOMPARE(white.center().x() > area.center().x(), whiteOnRight);
    }
};
SW_TEST_CLASS(UprightTest)

#include "UprightTest.moc"
