#include "app/OptionsWindowController.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QPushButton>

#include "datetext/DateShift.h"
#include "ui_OptionsWindowController.h"

OptionsWindowController::OptionsWindowController(QWidget* parent)
    : QWidget(parent, Qt::Window), ui_(std::make_unique<Ui::OptionsWindowController>()) {
    ui_->setupUi(this);
    for (QCheckBox* box : {ui_->uprightCheckBox, ui_->keepFormatCheckBox, ui_->outlineCheckBox,
                           ui_->shadowCheckBox, ui_->boxCheckBox, ui_->namesCheckBox}) {
        connect(box, &QCheckBox::toggled, this, &OptionsWindowController::readControls);
    }
    connect(ui_->shiftField, &QLineEdit::textChanged, this, &OptionsWindowController::readControls);
    connect(ui_->closeButton, &QPushButton::clicked, this, &QWidget::close);
}

OptionsWindowController::~OptionsWindowController() = default;

void OptionsWindowController::setOptions(const StampOptions& options) {
    showing_ = true;
    options_ = options;
    ui_->uprightCheckBox->setChecked(options.upright);
    ui_->keepFormatCheckBox->setChecked(options.keepFormat);
    ui_->outlineCheckBox->setChecked(options.outline);
    ui_->shadowCheckBox->setChecked(options.shadow);
    ui_->boxCheckBox->setChecked(options.box);
    ui_->namesCheckBox->setChecked(options.names);
    if (DateShift::parse(ui_->shiftField->text()) != options.shiftSeconds) {
        ui_->shiftField->setText(DateShift::format(options.shiftSeconds));
    }
    showing_ = false;
}

void OptionsWindowController::readControls() {
    if (showing_) {
        return;
    }
    StampOptions next;
    next.upright = ui_->uprightCheckBox->isChecked();
    next.keepFormat = ui_->keepFormatCheckBox->isChecked();
    next.outline = ui_->outlineCheckBox->isChecked();
    next.shadow = ui_->shadowCheckBox->isChecked();
    next.box = ui_->boxCheckBox->isChecked();
    next.names = ui_->namesCheckBox->isChecked();
    const std::optional<qint64> shift = DateShift::parse(ui_->shiftField->text());
    next.shiftSeconds = shift.value_or(options_.shiftSeconds);
    ui_->shiftHint->setText(shift ? QString()
                                  : tr("Not a shift: write it like +01:00, -00:30 or +1d02:00"));
    if (next != options_) {
        options_ = next;
        emit optionsChanged(options_);
    }
}
