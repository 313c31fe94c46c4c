#include "app/AboutWindowController.h"

#include <QAbstractButton>

#include "platform/ControlTag.h"
#include "ui_AboutWindowController.h"

AboutWindowController::AboutWindowController(QWidget* parent)
    : QWidget(parent, Qt::Window), ui_(std::make_unique<Ui::AboutWindowController>()) {
    ui_->setupUi(this);
    ui_->versionLabel->setText(tr("Version %1").arg(QLatin1String(STAMPWISE_VERSION)));
    connect(ui_->closeButton, &QAbstractButton::clicked, this,
            [this] { promptEvent(ui_->closeButton); });
}

AboutWindowController::~AboutWindowController() = default;

void AboutWindowController::promptEvent(QObject* sender) {
    if (qobject_cast<QAbstractButton*>(sender) != nullptr && ControlTag::tagOf(sender) == 31018) {
        close();
    }
}
