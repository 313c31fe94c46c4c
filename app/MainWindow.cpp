#include "app/MainWindow.h"

#include <QCloseEvent>
#include <QComboBox>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QLineEdit>
#include <QMimeData>
#include <QStyle>
#include <QUrl>

#include "ui_MainWindow.h"

MainWindow::MainWindow(QWidget* parent)
    : QMainWindow(parent), ui_(std::make_unique<Ui::MainWindow>()) {
    ui_->setupUi(this);
    // Photos and folders dragged from a file manager are imported.
    setAcceptDrops(true);
    // Icons come from the desktop theme, with the style's own as fallback.
    const auto icon = [this](const char* themeName, QStyle::StandardPixmap fallback) {
        return QIcon::fromTheme(QLatin1String(themeName), style()->standardIcon(fallback));
    };
    ui_->actionAddFiles->setIcon(icon("document-open", QStyle::SP_DialogOpenButton));
    ui_->actionAddFolder->setIcon(icon("folder-open", QStyle::SP_DirOpenIcon));
    ui_->actionRemoveTicked->setIcon(icon("list-remove", QStyle::SP_DialogDiscardButton));
    ui_->actionClearAll->setIcon(icon("edit-clear", QStyle::SP_TrashIcon));
    ui_->actionTickAll->setIcon(icon("edit-select-all", QStyle::SP_DialogApplyButton));
    ui_->actionUntickAll->setIcon(icon("edit-select-none", QStyle::SP_DialogResetButton));
    ui_->actionStamp->setIcon(icon("document-save-as", QStyle::SP_DialogSaveButton));
    ui_->actionQuit->setMenuRole(QAction::QuitRole);
    ui_->actionAbout->setMenuRole(QAction::AboutRole);
    ui_->splitView->setStretchFactor(0, 0);
    ui_->splitView->setStretchFactor(1, 1);
    ui_->splitView->setSizes({330, 670});
    // The combo boxes offer a fixed list: typed text that names no item is undone.
    for (QComboBox* combo : {ui_->layoutComboBox, ui_->sortComboBox}) {
        connect(combo->lineEdit(), &QLineEdit::editingFinished, combo, [combo] {
            if (combo->findText(combo->currentText()) < 0) {
                combo->setEditText(combo->itemText(combo->currentIndex()));
            }
        });
    }
}

MainWindow::~MainWindow() = default;

void MainWindow::closeEvent(QCloseEvent* event) {
    if (shouldClose_ && !shouldClose_()) {
        event->ignore();
        return;
    }
    event->accept();
}

QStringList MainWindow::localPaths(const QMimeData* data) {
    QStringList paths;
    if (data == nullptr || !data->hasUrls()) {
        return paths;
    }
    for (const QUrl& url : data->urls()) {
        const QString path = url.toLocalFile();  // empty for other kinds of URL
        if (!path.isEmpty()) {
            paths.append(path);
        }
    }
    return paths;
}

namespace {
// Takes a drag only when it names local files or folders; copy, never move:
// the photos stay where they are.
bool acceptLocalPaths(QDropEvent* event) {
    if (MainWindow::localPaths(event->mimeData()).isEmpty()) {
        event->ignore();
        return false;
    }
    event->setDropAction(Qt::CopyAction);
    event->accept();
    return true;
}
}  // namespace

void MainWindow::dragEnterEvent(QDragEnterEvent* event) {
    acceptLocalPaths(event);
}

void MainWindow::dragMoveEvent(QDragMoveEvent* event) {
    acceptLocalPaths(event);
}

void MainWindow::dropEvent(QDropEvent* event) {
    if (acceptLocalPaths(event)) {
        emit pathsDropped(localPaths(event->mimeData()));
    }
}
