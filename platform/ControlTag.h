#pragma once

#include <QObject>
#include <QVariant>

class QAction;
class QToolBar;
class QWidget;

// Controls, menu items and toolbar items are named by an integer tag kept in
// the dynamic property "tag" (set in the .ui files).
namespace ControlTag {
inline constexpr const char* kProperty = "tag";

// The object's tag, or nullopt-like 0 when it carries none.
inline bool hasTag(const QObject* object) {
    return object != nullptr && object->property(kProperty).isValid();
}
inline qint64 tagOf(const QObject* object) {
    return object != nullptr ? object->property(kProperty).toLongLong() : 0;
}
inline void setTag(QObject* object, qint64 tag) {
    object->setProperty(kProperty, QVariant::fromValue<qint64>(tag));
}

// The widget itself or its first descendant, depth first, carrying the tag.
QWidget* viewWithTag(QWidget* root, qint64 tag);
// The toolbar's first item carrying the tag; nullptr for no toolbar.
QAction* toolbarItemWithTag(const QToolBar* toolbar, qint64 tag);
}  // namespace ControlTag
