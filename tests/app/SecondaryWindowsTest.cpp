#include <QAbstractButton>
#include <QFile>
#include <QLabel>
#include <QRadioButton>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>
#include <QTextBlock>
#include <QTextBrowser>
#include <QTextDocument>

#include "AppFixture.h"
#include "TestRegistry.h"
#include "app/HelpWindowController.h"
#include "app/TypeWindowController.h"
#include "common/Sandbox.h"
#include "platform/ControlTag.h"
#include "platform/RadioMatrix.h"
#include "ui_MainWindow.h"

using namespace ControlRegistry;

namespace {
TypeWindowController* openTypeWindow(AppFixture& app) {
    app.control<QAbstractButton>(Tag::kTypeButton)->click();
    return qobject_cast<TypeWindowController*>(app.delegate->secondaryWindow("Type"));
}

RadioMatrix* matrix(TypeWindowController* window, qint64 tag) {
    return qobject_cast<RadioMatrix*>(window->getGUIObject(tag, nullptr));
}

// The names of the pictures the page shows.
QStringList imageNames(const QTextDocument* document) {
    QStringList names;
    for (QTextBlock block = document->begin(); block.isValid(); block = block.next()) {
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            const QTextCharFormat format = it.fragment().charFormat();
            if (format.isImageFormat()) {
                names << format.toImageFormat().name();
            }
        }
    }
    return names;
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
        QTest::addColumn<QString>("label");
        QTest::newRow("apply") << qint64(31018) << "03/05/2014 01:34:56 PM";
        QTest::newRow("cancel") << qint64(31011) << "05-Mar-2014 13:34:56";
    }
    void typeWindowButtons() {
        QFETCH(qint64, button);
        QFETCH(QString, label);
        const bool applies = button == 31018;
        Sandbox box;
        PhotoSpec spec;
        spec.dateTimeOriginal = QStringLiteral("2014:03:05 13:34:56");
        AppFixture app;
        StampwiseAppDelegate& d = app.start();
        app.load(1);
        d.setGDateType(1);
        d.setGTimeType(1);
        d.defaultSaveAppSetting();
        QVERIFY(app.showModel(box.photo("p.jpg", spec)));
        TypeWindowController* window = openTypeWindow(app);
        QVERIFY(window != nullptr);
        matrix(window, 32400)->cell(2)->click();
        matrix(window, 32401)->cell(2)->click();
        qobject_cast<QAbstractButton*>(window->getGUIObject(button, nullptr))->click();

        QVERIFY(!window->isVisible());
        const qint64 expected = applies ? 2 : 1;
        QCOMPARE(d.gDateType(), expected);
        QCOMPARE(d.gTimeType(), expected);
        QSettings settings;
        QCOMPARE(settings.value("gDateType").toString(), QString::number(expected));
        QCOMPARE(settings.value("gTimeType").toString(), QString::number(expected));
        QCOMPARE(app.control<QLabel>(Tag::kLabelTextField)->text(), label);

        QCOMPARE(openTypeWindow(app), window);
        QCOMPARE(matrix(window, 32400)->selectedRow(), 1);
        QCOMPARE(matrix(window, 32400)->selectedColumn(), 0);
        QCOMPARE(matrix(window, 32401)->selectedColumn(), 2);
    }

    // 32400 is also the main window's date source: the Type window always looks
    // in its own content; other tags go where the container says.
    void typeWindowFindsItsControls_data() {
        QTest::addColumn<qint64>("tag");
        QTest::addColumn<bool>("inMainWindow");
        QTest::addColumn<QString>("expectedName");
        QTest::newRow("date matrix, main window given")
            << qint64(32400) << true << "dateTypeMatrix";
        QTest::newRow("time matrix") << qint64(32401) << false << "timeTypeMatrix";
        QTest::newRow("apply") << qint64(31018) << false << "applyButton";
        QTest::newRow("button in the given container") << qint64(31007) << true << "typeButton";
        QTest::newRow("unserved 32300 range") << qint64(32300) << false << "";
        QTest::newRow("menu range") << qint64(32500) << true << "";
    }
    void typeWindowFindsItsControls() {
        QFETCH(qint64, tag);
        QFETCH(bool, inMainWindow);
        QFETCH(QString, expectedName);
        AppFixture app;
        app.start();
        TypeWindowController window;
        QObject* found =
            window.getGUIObject(tag, inMainWindow ? app.window->centralWidget() : nullptr);
        QCOMPARE(found != nullptr ? found->objectName() : QString(), expectedName);
    }

    // The page beside the program wins; without one the built-in guide shows,
    // pictures and all.
    void helpShowsWelcomePage_data() {
        QTest::addColumn<QString>("besideProgram");
        QTest::addColumn<QString>("title");
        QTest::newRow("page beside the program")
            << "<html><head><title>Local notes</title></head><body>x</body></html>"
            << "Local notes";
        QTest::newRow("built-in copy") << QString() << "Stampwise Help";
    }
    void helpShowsWelcomePage() {
        QFETCH(QString, besideProgram);
        QFETCH(QString, title);
        QTemporaryDir folder;
        if (!besideProgram.isEmpty()) {
            QFile page(folder.filePath("welcome.html"));
            QVERIFY(page.open(QIODevice::WriteOnly));
            page.write(besideProgram.toUtf8());
        }
        HelpWindowController help(folder.path());
        QTextDocument* document = help.webView()->document();
        QCOMPARE(document->metaInformation(QTextDocument::DocumentTitle), title);
        QVERIFY(!document->isEmpty());
        const QStringList images = imageNames(document);
        QCOMPARE(images.isEmpty(), !besideProgram.isEmpty());
        for (const QString& name : images) {
            QVERIFY2(
                !help.webView()->loadResource(QTextDocument::ImageResource, QUrl(name)).isNull(),
                qPrintable(name));
        }
    }
};
SW_TEST_CLASS(SecondaryWindowsTest)

#include "SecondaryWindowsTest.moc"
