#include "app/FontChooser.h"

#include <QFontDialog>

FontChooser::FontChooser(QWidget* window) : window_(window) {}

FontChooser::~FontChooser() {
    delete dialog_;
}

void FontChooser::open(const QFont& current) {
    if (!dialog_) {
        dialog_ = new QFontDialog(window_);
        // Changes apply as they are made, so there is nothing to confirm.
        dialog_->setOptions(QFontDialog::NoButtons | QFontDialog::DontUseNativeDialog);
        dialog_->setModal(false);
        dialog_->setWindowTitle(tr("Stamp Font"));
        connect(dialog_, &QFontDialog::currentFontChanged, this, &FontChooser::fontChanged);
    }
    // Selecting the current font is not a change.
    const bool blocked = dialog_->blockSignals(true);
    dialog_->setCurrentFont(current);
    dialog_->blockSignals(blocked);
    dialog_->show();
    dialog_->raise();
    dialog_->activateWindow();
}
