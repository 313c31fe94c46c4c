#include "app/HelpWindowController.h"

#include <QAbstractButton>
#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QTextBrowser>
#include <QUrl>

#include "platform/ControlTag.h"
#include "ui_HelpWindowController.h"

// The built-in page lives in a static library, whose resource registration the
// linker would otherwise drop.
static void initHelpResources() {
    Q_INIT_RESOURCE(help);
}

namespace {
constexpr const char* kPageName = "welcome.html";
constexpr const char* kBuiltInPage = "qrc:/manual/welcome.html";
}  // namespace

HelpWindowController::HelpWindowController(const QString& pageFolder, QWidget* parent)
    : QWidget(parent, Qt::Window), ui_(std::make_unique<Ui::HelpWindowController>()) {
    static const bool registered = (initHelpResources(), true);
    Q_UNUSED(registered);
    ui_->setupUi(this);
    connect(ui_->closeButton, &QAbstractButton::clicked, this,
            [this] { promptEvent(ui_->closeButton); });
    loadWelcomePage(pageFolder.isEmpty() ? QCoreApplication::applicationDirPath() : pageFolder);
}

HelpWindowController::~HelpWindowController() = default;

QTextBrowser* HelpWindowController::webView() const {
    return ui_->webView;
}

void HelpWindowController::promptEvent(QObject* sender) {
    if (qobject_cast<QAbstractButton*>(sender) != nullptr && ControlTag::tagOf(sender) == 31018) {
        close();
    }
}

// The page's pictures are named relative to it, so they come from wherever the
// page came from.
void HelpWindowController::loadWelcomePage(const QString& pageFolder) {
    const QFileInfo besideProgram(QDir(pageFolder).filePath(QLatin1String(kPageName)));
    ui_->webView->setSource(besideProgram.isFile()
                                ? QUrl::fromLocalFile(besideProgram.absoluteFilePath())
                                : QUrl(QLatin1String(kBuiltInPage)));
}
