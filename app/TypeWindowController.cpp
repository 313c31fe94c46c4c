#include "app/TypeWindowController.h"

#include <QAbstractButton>
#include <QToolBar>

#include "app/MyProtocolDelegate.h"
#include "app/StampwiseAppDelegate.h"
#include "platform/ControlTag.h"
#include "platform/RadioMatrix.h"
#include "ui_TypeWindowController.h"

namespace {
constexpr qint64 kCancel = 31011;
constexpr qint64 kApply = 31018;
constexpr qint64 kDateTypeMatrix = 32400;
constexpr qint64 kTimeTypeMatrix = 32401;

bool inRange(qint64 tag, qint64 low, qint64 high) {
    return tag >= low && tag <= high;
}
}  // namespace

TypeWindowController::TypeWindowController(QWidget* parent)
    : QWidget(parent, Qt::Window), ui_(std::make_unique<Ui::TypeWindowController>()) {
    ui_->setupUi(this);
    for (QAbstractButton* button : {ui_->applyButton, ui_->cancelButton}) {
        connect(button, &QAbstractButton::clicked, this, [this, button] { promptEvent(button); });
    }
}

TypeWindowController::~TypeWindowController() = default;

// Only the two buttons act; a click on a matrix cell is just a selection.
void TypeWindowController::promptEvent(QObject* sender) {
    if (qobject_cast<QAbstractButton*>(sender) == nullptr) {
        return;
    }
    switch (ControlTag::tagOf(sender)) {
        case kCancel:
            close();
            break;
        case kApply:
            apply();
            close();
            break;
        default:
            break;
    }
}

// The date matrix shares its tag with the main window's date-source matrix, so
// 32400 to 32499 are always looked up here, whatever container is given.
QObject* TypeWindowController::getGUIObject(qint64 tag, QObject* container) {
    if (inRange(tag, 30000, 30999)) {
        return ControlTag::toolbarItemWithTag(qobject_cast<QToolBar*>(container), tag);
    }
    if (inRange(tag, 32400, 32499)) {
        return ControlTag::viewWithTag(this, tag);
    }
    if (inRange(tag, 31000, 31999) || inRange(tag, 32200, 32299) || inRange(tag, 34000, 36999) ||
        inRange(tag, 40000, 40199)) {
        auto* root = container != nullptr ? qobject_cast<QWidget*>(container) : this;
        return root != nullptr ? ControlTag::viewWithTag(root, tag) : nullptr;
    }
    return nullptr;
}

void TypeWindowController::apply() {
    const auto* dates = qobject_cast<RadioMatrix*>(getGUIObject(kDateTypeMatrix, nullptr));
    const auto* times = qobject_cast<RadioMatrix*>(getGUIObject(kTimeTypeMatrix, nullptr));
    if (appDelegate_ != nullptr && dates != nullptr && times != nullptr) {
        const qint32 dateType = dates->selectedColumn() + 2 * dates->selectedRow();
        appDelegate_->setGDateType(dateType);
        appDelegate_->setGTimeType(times->selectedColumn());
    }
    if (myProtocolDelegate_ != nullptr) {
        myProtocolDelegate_->defaultSaveAppSetting();
        myProtocolDelegate_->reWriteDataTime();
    }
}
