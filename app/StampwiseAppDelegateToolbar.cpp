#include <QAction>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>

#include "app/StampwiseAppDelegate.h"
#include "platform/ControlTag.h"

using namespace ControlRegistry;

void StampwiseAppDelegate::setEnabled(QObject* control, bool enabled) {
    if (auto* action = qobject_cast<QAction*>(control)) {
        action->setEnabled(enabled);
    } else if (auto* widget = qobject_cast<QWidget*>(control)) {
        widget->setEnabled(enabled);
    }
}

// Menu items are found by tag in the main menu; the matrix is reached through
// its outlet, toolbar items in the toolbar, the other controls by view search.
void StampwiseAppDelegate::setToolbarStatus(bool photosLoaded) {
    QList<QAction*> menuItems;
    if (mainMenu_) {
        for (QAction* top : mainMenu_->actions()) {
            if (top->menu() != nullptr) {
                menuItems += top->menu()->actions();
            }
        }
    }
    const auto menuItem = [&menuItems](qint64 tag) -> QObject* {
        const auto it = std::find_if(menuItems.begin(), menuItems.end(), [tag](QAction* item) {
            return ControlTag::hasTag(item) && ControlTag::tagOf(item) == tag;
        });
        return it != menuItems.end() ? *it : nullptr;
    };
    for (const Control& control : kControls) {
        if (control.enabling == Untouched) {
            continue;
        }
        QObject* object = nullptr;
        switch (control.kind) {
            case ToolbarItem:
                object = getGUIObject(control.tag, aToolbar_);
                break;
            case MenuItem:
                object = menuItem(control.tag);
                break;
            case Matrix:
                object = aMatrix_;
                break;
            default:
                object = getGUIObject(control.tag, nullptr);
                break;
        }
        setEnabled(object, control.enabling == Always || photosLoaded);
    }
}

void StampwiseAppDelegate::setControlText(qint64 tag, const QString& text) {
    QObject* control = getGUIObject(tag, nullptr);
    if (auto* label = qobject_cast<QLabel*>(control)) {
        label->setText(text);
    } else if (auto* field = qobject_cast<QLineEdit*>(control)) {
        field->setText(text);
    }
}

void StampwiseAppDelegate::redrawAmountInfo() {
    qint64 total = 0;
    qint64 ticked = 0;
    if (assetCollection_) {
        const QList<AssetPtr>& assets = assetCollection_->assets();
        total = assets.size();
        for (qsizetype i = assets.size() - 1; i >= 0; --i) {
            if (assets.at(i)->includedInSlideshow()) {
                ++ticked;
            }
        }
    }
    state_.catalog.totalAmount = total;
    state_.catalog.totalSelectedAmount = ticked;
    setControlText(Tag::kSelectedAmountField, QString::number(ticked));
    setControlText(Tag::kTotalAmountField, QString::number(total));
    setToolbarStatus(total != 0);
    updateWindowTitle();
}
