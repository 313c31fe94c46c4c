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

HelpWindowController::HelpWindowController(const QStringList& pageFolders, QWidget* parent)
    : QWidget(parent, Qt::Window), ui_(std::make_unique<Ui::HelpWindowController>()) {
    static const bool registered = (initHelpResources(), true);
    Q_UNUSED(registered);
    ui_->setupUi(this);
    connect(ui_->closeButton, &QAbstractButton::clicked, this,
            [this] { promptEvent(ui_->closeButton); });
    // The data folder is found relative to the program, so a moved installation
    // still finds its guide.
    const QString programFolder = QCoreApplication::applicationDirPath();
    loadWelcomePage(
        pageFolders.isEmpty()
            ? QStringList{programFolder,
                          QDir(programFolder).filePath(QLatin1String(STAMPWISE_DATA_FROM_PROGRAM))}
            : pageFolders);
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
void HelpWindowController::loadWelcomePage(const QStringList& pageFolders) {
    for (const QString& folder : pageFolders) {
        const QFileInfo page(QDir(folder).filePath(QLatin1String(kPageName)));
        if (page.isFile()) {
            ui_->webView->setSource(QUrl::fromLocalFile(page.absoluteFilePath()));
            return;
        }
    }
    ui_->webView->setSource(QUrl(QLatin1String(kBuiltInPage)));
}
