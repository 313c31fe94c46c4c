#include <QColorDialog>
#include <QFile>
#include <QFontDialog>
#include <QLabel>
#include <QLineEdit>

#include "AppFixture.h"
#include "TestRegistry.h"
#include "app/SettingValues.h"
#include "common/Sandbox.h"
#include "common/StampRuns.h"
#include "common/TestImages.h"
#include "platform/NotificationCenter.h"
#include "platform/NotificationNames.h"
#include "ui_MainWindow.h"

using namespace ControlRegistry;
using StampRuns::whitePhoto;

class ModelPhotoTest : public QObject {
    Q_OBJECT
  private slots:
    // The photo on screen lies on the stamp area to a pixel, whatever its stated
    // resolution; the first label sits in the area's lower-left corner.
    void photoCoversStampArea_data() {
        QTest::addColumn<QSize>("pixels");
        QTest::addColumn<int>("dpi");
        QTest::newRow("larger than the preview, 300 dpi") << QSize(2400, 1800) << 300;
        QTest::newRow("smaller, 300 dpi: still a point per pixel") << QSize(200, 150) << 300;
    }
    void photoCoversStampArea() {
        QFETCH(QSize, pixels);
        QFETCH(int, dpi);
        Sandbox box;
        AppFixture app;
        StampwiseAppDelegate& d = app.start();
        QVERIFY(app.showModel(box.photo("p.jpg", whitePhoto(pixels, dpi))));
        QCOMPARE(d.imageWidth(), float(pixels.width()) * 72.0f / float(dpi));
        SlideshowView* preview = app.window->ui().slideshowView;
        const StampGeometry::StampArea& a = d.stampArea();  // y-up
        const QRect area =
            QRectF(a.miniX, preview->height() - a.maxY, a.maxX - a.miniX, a.maxY - a.miniY)
                .toAlignedRect();
        const QRect shown = TestImages::boundsWhere(preview->currentImageView()->currentFrame(),
                                                    [](QRgb c) { return qGray(c) > 128; });
        QVERIFY(area.adjusted(-1, -1, 1, 1).contains(shown) &&
                shown.adjusted(-1, -1, 1, 1).contains(area));
        const QRect label = app.window->ui().aQNSDragView->geometry();
        QVERIFY(qAbs(label.left() - area.left()) <= 1 && qAbs(label.bottom() - area.bottom()) <= 1);
    }

    // The label text by channel; only typed text enables its field, and a tick in
    // the browser switches the type button on again, the field not. Reformatting
    // afterwards writes the photo's date again, whichever channel is chosen, and
    // typing always writes the typed text.
    void labelTextByChannel_data() {
        QTest::addColumn<int>("channel");
        QTest::addColumn<QString>("text");
        QTest::newRow("own date") << 0 << "05-Mar-2014 13:34:56";
        QTest::newRow("file date") << 1 << "07-Jun-2015 08:09:10";
        QTest::newRow("typed") << 2 << "Zoë ☀ 1 בדיקה";
    }
    void labelTextByChannel() {
        QFETCH(int, channel);
        QFETCH(QString, text);
        Sandbox box;
        QFile photo(box.photo("p.jpg", whitePhoto({320, 240})));
        QVERIFY(photo.open(QIODevice::ReadWrite) &&
                photo.setFileTime(QDateTime(QDate(2015, 6, 7), QTime(8, 9, 10)),
                                  QFileDevice::FileModificationTime));
        AppFixture app;
        StampwiseAppDelegate& d = app.start();
        app.load(1);
        d.setGDateType(1);
        d.setGTimeType(1);
        auto* field = app.control<QLineEdit>(Tag::kCustomTextField);
        QWidget* typeButton = app.control<QWidget>(Tag::kTypeButton);
        field->setText("Zoë ☀ 1 בדיקה");
        // Start from the opposite state so both directions are seen.
        field->setEnabled(channel != 2);
        typeButton->setEnabled(channel == 2);
        d.aMatrix()->cell(channel)->click();
        QCOMPARE(d.selectChannel(), qint64(channel));
        QCOMPARE(field->isEnabled(), channel == 2);
        QCOMPARE(typeButton->isEnabled(), channel != 2);
        NotificationCenter::defaultCenter().post(NotificationNames::kClickTitleCheckBox);
        QVERIFY(typeButton->isEnabled());
        QCOMPARE(field->isEnabled(), channel == 2);
        QVERIFY(app.showModel(photo.fileName()));
        QLabel* label = app.control<QLabel>(Tag::kLabelTextField);
        QCOMPARE(label->text(), text);
        d.setGDateType(2);
        d.reWriteDataTime();
        QCOMPARE(label->text(), QStringLiteral("03/05/2014 13:34:56"));
        field->setText("x");
        QCOMPARE(label->text(), QStringLiteral("x"));
    }

    // Pressing a preset, then resizing the window, dragging out of the area or
    // turning the margin on keeps the label on the area's edges; the font and
    // colour dialogs reach the label at once and are saved.
    void labelFollowsPlaceFontAndColour() {
        Sandbox box;
        AppFixture app;
        StampwiseAppDelegate& d = app.start();
        app.load(1);
        QVERIFY(app.showModel(box.photo("p.jpg", whitePhoto({2400, 1600}))));
        const auto touches = [&d](bool right, bool top) {
            const StampGeometry::StampArea& a = d.stampArea();
            const LabelFrame& f = d.labelFrame();
            const float x = right ? f.x + f.width - a.maxX : f.x - a.miniX;
            const float y = top ? f.y + f.height - a.maxY : f.y - a.miniY;
            return qAbs(x) < 0.01f && qAbs(y) < 0.01f;
        };
        app.control<QAbstractButton>(Tag::kFirstPreset + 4)->click();
        QVERIFY(touches(true, false));
        app.window->resize(1400, 900);
        QTRY_VERIFY(d.stampArea().maxX > 700);
        QVERIFY(touches(true, false));
        QNSDragView* label = app.window->ui().aQNSDragView;
        label->mouseDownAt(QPointF(10, 10));
        label->mouseDraggedTo(QPointF(-5000, 5000));
        QVERIFY(touches(false, true));
        app.control<QAbstractButton>(Tag::kMarginCheckBox)->click();
        QVERIFY(touches(false, true));

        const float width16 = d.labelFrame().width;
        app.control<QAbstractButton>(Tag::kFontButton)->click();
        QFont font24 = d.aFont();
        font24.setPointSize(24);
        app.window->findChild<QFontDialog*>()->setCurrentFont(font24);
        QVERIFY(qAbs(d.labelFrame().width / width16 - 1.5f) < 0.1f);
        QCOMPARE(SettingValues::decodeFont(QSettings().value("aFont").toByteArray())->pointSize(),
                 24);
        app.control<QAbstractButton>(Tag::kColourButton)->click();
        const QColor translucent(10, 200, 30, 128);
        app.window->findChild<QColorDialog*>()->setCurrentColor(translucent);
        QCOMPARE(app.control<QLabel>(Tag::kLabelTextField)->palette().color(QPalette::WindowText),
                 translucent);
    }
};
SW_TEST_CLASS(ModelPhotoTest)

#include "ModelPhotoTest.moc"
