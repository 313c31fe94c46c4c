#include "platform/QtOpenPanel.h"

#include <QFileDialog>
#include <QStandardPaths>

std::optional<QStringList> QtOpenPanel::run(const OpenPanelRequest& request) {
    QFileDialog dialog(parent_.data());
    dialog.setDirectory(QStandardPaths::writableLocation(QStandardPaths::PicturesLocation));
    if (request.canChooseDirectories && !request.canChooseFiles) {
        dialog.setFileMode(QFileDialog::Directory);
        dialog.setOption(QFileDialog::ShowDirsOnly, true);
        dialog.setWindowTitle(QObject::tr("Choose a Folder"));
    } else {
        dialog.setFileMode(request.allowsMultipleSelection ? QFileDialog::ExistingFiles
                                                           : QFileDialog::ExistingFile);
        dialog.setWindowTitle(request.allowsMultipleSelection ? QObject::tr("Choose Photos")
                                                              : QObject::tr("Choose a Photo"));
    }
    if (dialog.exec() != QDialog::Accepted) {
        return std::nullopt;
    }
    return dialog.selectedFiles();
}
