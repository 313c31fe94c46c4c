#include "app/SafetyWindowController.h"

#include <QAbstractButton>

#include "platform/ControlTag.h"
#include "ui_SafetyWindowController.h"

SafetyWindowController::SafetyWindowController(QWidget* parent)
    : QWidget(parent, Qt::Window), ui_(std::make_unique<Ui::SafetyWindowController>()) {
    ui_->setupUi(this);
    connect(ui_->closeButton, &QAbstractButton::clicked, this,
            [this] { promptEvent(ui_->closeButton); });
}

SafetyWindowController::~SafetyWindowController() = default;

void SafetyWindowController::promptEvent(QObject* sender) {
    if (qobject_cast<QAbstractButton*>(sender) != nullptr && ControlTag::tagOf(sender) == 31018) {
        close();
    }
}
