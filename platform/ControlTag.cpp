#include "platform/ControlTag.h"

#include <QAction>
#include <QToolBar>
#include <QWidget>

QWidget* ControlTag::viewWithTag(QWidget* root, qint64 tag) {
    if (hasTag(root) && tagOf(root) == tag) {
        return root;
    }
    for (QObject* child : root->children()) {
        if (auto* widget = qobject_cast<QWidget*>(child)) {
            if (QWidget* found = viewWithTag(widget, tag)) {
                return found;
            }
        }
    }
    return nullptr;
}

QAction* ControlTag::toolbarItemWithTag(const QToolBar* toolbar, qint64 tag) {
    if (toolbar == nullptr) {
        return nullptr;
    }
    const QList<QAction*> items = toolbar->actions();
    for (QAction* item : items) {
        if (hasTag(item) && tagOf(item) == tag) {
            return item;
        }
    }
    return nullptr;
}
