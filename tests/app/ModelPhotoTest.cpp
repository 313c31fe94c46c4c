#include <QColorDialog>
#include <QFile>
#include <QFontDialog>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QSettings>
#include <QTest>

#include "AppFixture.h"
#include "TestRegistry.h"
#include "app/SettingValues.h"
#include "common/Sandbox.h"
#include "common/TestImages.h"
#include "ui_MainWindow.h"

using namespace ControlRegistry;

namespace {
// The area in Qt's y-down coordinates of the preview.
QRect onScreen(const StampGeometry::StampArea& a, int previewHeight) {
    return QRectF(double(a.miniX), previewHeight - double(a.maxY), double(a.maxX - a.miniX),
                  double(a.maxY - a.miniY))
        .toAlignedRect();
}
PhotoSpec white(QSize size, int dpi = 72) {
    PhotoSpec spec;
    spec.size = size;
    spec.colour = Qt::white;
    spec.dpi = dpi;
    spec.dateTimeOriginal = QStringLiteral("2014:03:05 13:34:56");
    return spec;
}
bool near(const QRect& a, const QRect& b) {
    return qAbs(a.left() - b.left()) <= 1 && qAbs(a.top() - b.top()) <= 1 &&
           qAbs(a.right() - b.right()) <= 1 && qAbs(a.bottom() - b.bottom()) <= 1;
}
}  // namespace

class ModelPhotoTest : public QObject {
    Q_OBJECT
  private slots:
    // The photo on screen lies exactly on the stamp area, whatever its stated
    // resolution; the first label sits in the area's lower-left corner.
    void photoCoversStampArea_data() {
        QTest::addColumn<QSize>("pixels");
        QTest::addColumn<int>("dpi");
        QTest::newRow("larger than the preview, 300 dpi") << QSize(2400, 1800) << 300;
        QTest::newRow("smaller, 72 dpi") << QSize(200, 150) << 72;
        QTest::newRow("smaller, 300 dpi: still a point per pixel") << QSize(200, 150) << 300;
    }
    void photoCoversStampArea() {
        QFETCH(QSize, pixels);
        QFETCH(int, dpi);
        Sandbox box;
        AppFixture app;
        StampwiseAppDelegate& d = app.start();
        const QString photo = box.photo("p.jpg", white(pixels, dpi));
        QVERIFY(app.showModel(photo));
        QCOMPARE(d.imageOriginalWidth(), float(pixels.width()));
        QCOMPARE(d.imageWidth(), float(pixels.width()) * 72.0f / float(dpi));
        QCOMPARE(d.isFirstTime(), 2);
        SlideshowView* preview = app.window->ui().slideshowView;
        const QImage frame = preview->currentImageView()->currentFrame();
        const QRect area = onScreen(d.stampArea(), preview->height());
        const QRect photoOnScreen =
            TestImages::boundsWhere(frame, [](QRgb c) { return qGray(c) > 128; });
        QVERIFY2(near(photoOnScreen, area), qPrintable(QString("%1,%2 %3x%4")
                                                           .arg(photoOnScreen.x())
                                                           .arg(photoOnScreen.y())
                                                           .arg(photoOnScreen.width())
                                                           .arg(photoOnScreen.height())));
        const QRect label = app.window->ui().aQNSDragView->geometry();
        QVERIFY(qAbs(label.left() - area.left()) <= 1 && qAbs(label.bottom() - area.bottom()) <= 1);
    }

    // The label text by channel; reformatting afterwards writes the photo-date
    // rule's date again, whichever channel is chosen.
    void labelTextByChannel_data() {
        QTest::addColumn<int>("channel");
        QTest::addColumn<QString>("original");
        QTest::addColumn<QString>("digitized");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("reformatted");  // with date type 2
        const QString exif = "05-Mar-2014 13:34:56", file = "07-Jun-2015 08:09:10";
        QTest::newRow("own date") << 0 << "2014:03:05 13:34:56"
                                  << "" << exif << "03/05/2014 13:34:56";
        QTest::newRow("digitized only") << 0 << ""
                                        << "2014:03:05 13:34:56" << exif << "03/05/2014 13:34:56";
        QTest::newRow("null original: file date, not digitized")
            << 0 << "0000:00:00 00:00:00"
            << "2014:03:05 13:34:56" << file << "06/07/2015 08:09:10";
        QTest::newRow("file date") << 1 << "2014:03:05 13:34:56"
                                   << "" << file << "03/05/2014 13:34:56";
        QTest::newRow("typed") << 2 << "2014:03:05 13:34:56"
                               << ""
                               << "Zoë ☀ 1 בדיקה"
                               << "03/05/2014 13:34:56";
    }
    void labelTextByChannel() {
        QFETCH(int, channel);
        QFETCH(QString, original);
        QFETCH(QString, digitized);
        QFETCH(QString, text);
        QFETCH(QString, reformatted);
        Sandbox box;
        PhotoSpec spec;
        if (!original.isEmpty()) {
            spec.dateTimeOriginal = original;
        }
        if (!digitized.isEmpty()) {
            spec.dateTimeDigitized = digitized;
        }
        const QString photo = box.photo("p.jpg", spec);
        QFile file(photo);
        QVERIFY(file.open(QIODevice::ReadWrite) &&
                file.setFileTime(QDateTime(QDate(2015, 6, 7), QTime(8, 9, 10)),
                                 QFileDevice::FileModificationTime));
        file.close();
        AppFixture app;
        StampwiseAppDelegate& d = app.start();
        app.load(1);
        d.setGDateType(1);
        d.setGTimeType(1);
        app.control<QLineEdit>(Tag::kCustomTextField)->setText("Zoë ☀ 1 בדיקה");
        d.aMatrix()->cell(channel)->click();
        QVERIFY(app.showModel(photo));
        QLabel* label = app.control<QLabel>(Tag::kLabelTextField);
        QCOMPARE(label->text(), text);
        d.setGDateType(2);
        d.reWriteDataTime();
        QCOMPARE(label->text(), reformatted);
        // Typing always writes the typed text.
        app.control<QLineEdit>(Tag::kCustomTextField)->setText("x");
        QCOMPARE(label->text(), QStringLiteral("x"));
    }

    // Pressing a preset, then resizing the window or dragging out of the area,
    // keeps the label on the area's edges.
    void labelStaysOnTheAreaEdges() {
        Sandbox box;
        AppFixture app;
        StampwiseAppDelegate& d = app.start();
        app.load(1);
        QVERIFY(app.showModel(box.photo("p.jpg", white(QSize(2400, 1600)))));
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
        QVERIFY(!app.control<QAbstractButton>(Tag::kFirstPreset + 4)->isChecked());
        // The margin shrinks the area; the label is pulled in with it.
        app.control<QAbstractButton>(Tag::kMarginCheckBox)->click();
        QVERIFY(touches(false, true));
    }

    // Changes in the font and colour dialogs reach the label at once and are saved.
    void fontAndColourApplyAtOnce() {
        Sandbox box;
        AppFixture app;
        StampwiseAppDelegate& d = app.start();
        app.load(1);
        QVERIFY(app.showModel(box.photo("p.jpg", white(QSize(2400, 1600)))));
        const float width16 = d.standardFontWidth();
        const LabelFrame before = d.labelFrame();
        app.control<QAbstractButton>(Tag::kFontButton)->click();
        QFont font24 = d.aFont();
        font24.setPointSize(24);
        app.window->findChild<QFontDialog*>()->setCurrentFont(font24);
        QCOMPARE(d.aFont().pointSize(), 24);
        QVERIFY(qAbs(d.standardFontWidth() / width16 - 1.5f) < 0.1f);
        QVERIFY(d.labelFrame().width > before.width * 1.4f);
        QCOMPARE(SettingValues::decodeFont(QSettings().value("aFont").toByteArray())->pointSize(),
                 24);

        const LabelFrame sized = d.labelFrame();
        app.control<QAbstractButton>(Tag::kColourButton)->click();
        const QColor translucent(10, 200, 30, 128);
        app.window->findChild<QColorDialog*>()->setCurrentColor(translucent);
        QCOMPARE(d.aColor(), translucent);
        QCOMPARE(app.control<QLabel>(Tag::kLabelTextField)->palette().color(QPalette::WindowText),
                 translucent);
        QCOMPARE(SettingValues::decodeColor(QSettings().value("aColor").toByteArray()),
                 translucent);
        QCOMPARE(d.labelFrame().width, sized.width);
    }
};
SW_TEST_CLASS(ModelPhotoTest)

#include "ModelPhotoTest.moc"
