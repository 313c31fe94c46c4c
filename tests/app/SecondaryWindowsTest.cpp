#include <QLabel>
#include <QRegularExpression>
#include <QTextBrowser>

#include "AppFixture.h"
#include "TestRegistry.h"
#include "app/HelpWindowController.h"
#include "app/TypeWindowController.h"
#include "common/Sandbox.h"
#include "common/StampRuns.h"
#include "ui_MainWindow.h"

using namespace ControlRegistry;

namespace {
// Asked with the main window as container, whose date source also carries 32400:
// the Type window's matrices are always its own.
RadioMatrix* matrix(AppFixture& app, TypeWindowController* window, qint64 tag) {
    return qobject_cast<RadioMatrix*>(window->getGUIObject(tag, app.window->centralWidget()));
}
}  // namespace

class SecondaryWindowsTest : public QObject {
    Q_OBJECT
  private slots:
    // Second row, first column of the dates and the 12-hour time: apply takes,
    // saves and writes them, cancel leaves them; either way the next opening
    // shows the pick.
    void typeWindowButtons_data() {
        QTest::addColumn<qint64>("button");
        QTest::addColumn<qint64>("types");
        QTest::addColumn<QString>("label");
        QTest::newRow("apply") << qint64(31018) << qint64(2) << "03/05/2014 01:34:56 PM";
        QTest::newRow("cancel") << qint64(31011) << qint64(1) << "05-Mar-2014 13:34:56";
    }
    void typeWindowButtons() {
        QFETCH(qint64, button);
        QFETCH(qint64, types);
        QFETCH(QString, label);
        Sandbox box;
        AppFixture app;
        StampwiseAppDelegate& d = app.start();
        app.load(1);
        d.setGDateType(1);
        d.setGTimeType(1);
        d.defaultSaveAppSetting();
        QVERIFY(app.showModel(box.photo("p.jpg", StampRuns::whitePhoto({320, 240}))));
        app.control<QAbstractButton>(Tag::kTypeButton)->click();
        auto* window = qobject_cast<TypeWindowController*>(app.delegate->secondaryWindow("Type"));
        matrix(app, window, 32400)->cell(2)->click();
        matrix(app, window, 32401)->cell(2)->click();
        qobject_cast<QAbstractButton*>(window->getGUIObject(button, nullptr))->click();

        QVERIFY(!window->isVisible());
        QCOMPARE(QSettings().value("gDateType").toString(), QString::number(types));
        QCOMPARE(app.control<QLabel>(Tag::kLabelTextField)->text(), label);

        app.control<QAbstractButton>(Tag::kTypeButton)->click();
        QCOMPARE(matrix(app, window, 32400)->selectedRow(), 1);
        QCOMPARE(matrix(app, window, 32400)->selectedColumn(), 0);
        QCOMPARE(matrix(app, window, 32401)->selectedColumn(), 2);
    }

    // The page beside the program wins over the installed one; without either
    // the built-in guide shows, pictures and all.
    void helpShowsWelcomePage_data() {
        QTest::addColumn<QString>("besideProgram");
        QTest::addColumn<QString>("installed");
        QTest::addColumn<QString>("title");
        const QString local = "<html><head><title>Local notes</title></head><body>x</body></html>";
        const QString shared = "<html><head><title>Installed</title></head><body>x</body></html>";
        QTest::newRow("page beside the program") << local << shared << "Local notes";
        QTest::newRow("installed page") << QString() << shared << "Installed";
        QTest::newRow("built-in copy") << QString() << QString() << "Stampwise Help";
    }
    void helpShowsWelcomePage() {
        QFETCH(QString, besideProgram);
        QFETCH(QString, installed);
        QFETCH(QString, title);
        Sandbox programFolder;
        Sandbox dataFolder;
        if (!besideProgram.isEmpty()) {
            programFolder.write("welcome.html", besideProgram.toUtf8());
        }
        if (!installed.isEmpty()) {
            dataFolder.write("welcome.html", installed.toUtf8());
        }
        HelpWindowController help({programFolder.path(), dataFolder.path()});
        QTextBrowser* page = help.webView();
        QCOMPARE(page->documentTitle(), title);
        const QRegularExpression image(QStringLiteral("<img src=\"([^\"]+)\""));
        auto images = image.globalMatch(page->toHtml());
        QCOMPARE(images.hasNext(), installed.isEmpty());
        while (images.hasNext()) {
            const QString name = images.next().captured(1);
            QVERIFY2(!page->loadResource(QTextDocument::ImageResource, QUrl(name)).isNull(),
                     qPrintable(name));
        }
    }
};
SW_TEST_CLASS(SecondaryWindowsTest)

#include "SecondaryWindowsTest.moc"
