#include "app/ColourChooser.h"

#include <QColorDialog>

ColourChooser::ColourChooser(QWidget* window) : window_(window) {}

ColourChooser::~ColourChooser() {
    delete dialog_;
}

void ColourChooser::open(const QColor& current) {
    if (!dialog_) {
        dialog_ = new QColorDialog(window_);
        dialog_->setOptions(QColorDialog::ShowAlphaChannel | QColorDialog::NoButtons |
                            QColorDialog::DontUseNativeDialog);
        dialog_->setModal(false);
        dialog_->setWindowTitle(tr("Stamp Colour"));
        connect(dialog_, &QColorDialog::currentColorChanged, this, &ColourChooser::colourChanged);
    }
    // Selecting the current colour is not a change.
    const bool blocked = dialog_->blockSignals(true);
    dialog_->setCurrentColor(current);
    dialog_->blockSignals(blocked);
    dialog_->show();
    dialog_->raise();
    dialog_->activateWindow();
}
