#include <QAbstractButton>
#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QMenu>
#include <QSignalBlocker>
#include <QToolBar>
#include <algorithm>

#include "app/AboutWindowController.h"
#include "app/HelpWindowController.h"
#include "app/Messages.h"
#include "app/SafetyWindowController.h"
#include "app/StampwiseAppDelegate.h"
#include "app/TypeWindowController.h"
#include "platform/AlertPanel.h"
#include "platform/ControlTag.h"

using namespace ControlRegistry;

namespace {
constexpr const char* kAboutWindow = "About";
constexpr const char* kSafetyWindow = "Safety";
constexpr const char* kTypeWindow = "Type";
constexpr const char* kHelpWindow = "Help";

bool inRange(qint64 tag, qint64 low, qint64 high) {
    return tag >= low && tag <= high;
}

bool isViewSearchTag(qint64 tag) {
    return inRange(tag, 31000, 31999) || inRange(tag, 32200, 32299) || inRange(tag, 34000, 34999) ||
           inRange(tag, 35000, 36999) || inRange(tag, 39000, 39999) || inRange(tag, 40000, 40199);
}

bool isInWidgetOfType(const QAction* action, const QMetaObject& type) {
    const QList<QObject*> owners = action->associatedObjects();
    return std::any_of(owners.begin(), owners.end(),
                       [&type](const QObject* o) { return type.cast(o) != nullptr; });
}

// Whether a sender of this class can be the registry's control of that kind.
bool senderIsOfKind(QObject* sender, Kind kind) {
    if (auto* action = qobject_cast<QAction*>(sender)) {
        return (kind == MenuItem && isInWidgetOfType(action, QMenu::staticMetaObject)) ||
               (kind == ToolbarItem && isInWidgetOfType(action, QToolBar::staticMetaObject));
    }
    if (auto* combo = qobject_cast<QComboBox*>(sender)) {
        // An editable combo box stands for a combo box, a fixed one for a pop-up button.
        return kind == (combo->isEditable() ? ComboBox : PopUp);
    }
    if (qobject_cast<QCheckBox*>(sender) != nullptr) {
        return kind == CheckBox;
    }
    if (qobject_cast<QAbstractButton*>(sender) != nullptr) {
        return kind == Button;
    }
    return kind == Matrix && qobject_cast<RadioMatrix*>(sender) != nullptr;
}
}  // namespace

QObject* StampwiseAppDelegate::getGUIObject(qint64 tag, QObject* container) const {
    if (inRange(tag, 30000, 30999)) {
        return ControlTag::toolbarItemWithTag(qobject_cast<QToolBar*>(container), tag);
    }
    if (!isViewSearchTag(tag)) {
        return nullptr;
    }
    QWidget* root = qobject_cast<QWidget*>(container);
    if (container == nullptr && window_) {
        root = window_->centralWidget();
    }
    return root != nullptr ? ControlTag::viewWithTag(root, tag) : nullptr;
}

// A tag the window does not have, or a known tag on a control of another kind,
// is ignored.
void StampwiseAppDelegate::promptEvent(QObject* sender) {
    if (sender == nullptr) {
        return;
    }
    const std::optional<Control> control = find(ControlTag::tagOf(sender));
    if (control && senderIsOfKind(sender, control->kind)) {
        perform(*control, sender);
    }
}

void StampwiseAppDelegate::perform(const Control& control, QObject* sender) {
    switch (control.command) {
        case AddFiles:
            openBrowserWindowFile();
            break;
        case AddFolder:
            openBrowserWindowDirectory();
            break;
        case RemoveTicked:
            removeTickedAndUpdateState();
            break;
        case ClearAll:
            confirmClearAll();
            break;
        case TickAll:
            selectAllImage();
            break;
        case UntickAll:
            deSelectAllImage();
            break;
        case OpenAbout:
            openSecondaryWindow(QLatin1String(kAboutWindow));
            break;
        case OpenSafety:
            openSecondaryWindow(QLatin1String(kSafetyWindow));
            break;
        case OpenType:
            openSecondaryWindow(QLatin1String(kTypeWindow));
            break;
        case OpenHelp:
            openSecondaryWindow(QLatin1String(kHelpWindow));
            break;
        case Quit:
            if (alerts_.confirm(QLatin1String(Messages::kQuitTitle),
                                QLatin1String(Messages::kQuitMessage))) {
                closeApp();
            }
            break;
        case ChooseOutputFolder:
            openSaveWindow();
            break;
        case PreviewMode:
            if (aQNSDragView_) {
                aQNSDragView_->setIsPreview(qobject_cast<QAbstractButton*>(sender)->isChecked());
                aQNSDragView_->repaint();
            }
            break;
        case PresetPlace:
            locateSlideshowView(static_cast<int>(control.tag - Tag::kFirstPreset));
            pressPresetButton(control.tag);
            break;
        case Margin:
            redrawAll(QStringLiteral("1"));
            break;
        case ChooseFont:
            openFontPanel();
            break;
        case ChooseColour:
            openColorPanel();
            break;
        case BrowserLayout:
            chooseBrowserLayout(qobject_cast<QComboBox*>(sender));
            break;
        case DateSource:
            chooseDateSource();
            break;
        case Stamp:
            runIt();
            break;
        case SortAscending:
            setSortsAscending(qobject_cast<QAbstractButton*>(sender)->isChecked());
            break;
        case SortKey:
            if (auto* combo = qobject_cast<QComboBox*>(sender); combo->currentIndex() >= 0) {
                showInTwin(combo, Tag::kSortPopUp, Tag::kSortComboBox);
                setSortKey(combo->itemText(combo->currentIndex()));
            }
            break;
        case Nothing:
            break;
    }
}

void StampwiseAppDelegate::chooseDateSource() {
    const int row = aMatrix_ ? aMatrix_->selectedRow() : 0;
    setEnabled(getGUIObject(Tag::kCustomTextField, nullptr), row == 2);
    setEnabled(getGUIObject(Tag::kTypeButton, nullptr), row != 2);
    state_.model.selectChannel = row;
    reWriteDataTimeFromChannel(row);
}

// The window has two choosers each for layout and order; both show the choice.
void StampwiseAppDelegate::showInTwin(QComboBox* chosen, qint64 tag, qint64 twinTag) {
    const qint64 other = ControlTag::tagOf(chosen) == tag ? twinTag : tag;
    if (auto* twin = qobject_cast<QComboBox*>(getGUIObject(other, nullptr))) {
        const QSignalBlocker quiet(twin);
        twin->setCurrentIndex(twin->findText(chosen->currentText()));
    }
}

void StampwiseAppDelegate::chooseBrowserLayout(QComboBox* control) {
    const int type = control->currentIndex();
    showInTwin(control, Tag::kLayoutPopUp, Tag::kLayoutComboBox);
    if (assetCollectionView_ && type >= 0 && type < AssetCollectionView::kLayoutCount) {
        assetCollectionView_->setSubviewsLayoutType(type);
    }
}

void StampwiseAppDelegate::pressPresetButton(qint64 tag) {
    for (int i = 0; i < Tag::kPresetCount; ++i) {
        const qint64 t = Tag::kFirstPreset + i;
        if (auto* button = qobject_cast<QAbstractButton*>(getGUIObject(t, nullptr))) {
            button->setChecked(t == tag);
        }
    }
}

void StampwiseAppDelegate::confirmClearAll() {
    if (alerts_.confirm(QLatin1String(Messages::kReminderTitle),
                        QLatin1String(Messages::kClearAllMessage))) {
        removeAllImage();
    }
}

void StampwiseAppDelegate::openSecondaryWindow(const QString& name) {
    std::unique_ptr<QWidget>& slot = secondaryWindows_[name];
    if (!slot) {
        if (name == QLatin1String(kAboutWindow)) {
            slot = std::make_unique<AboutWindowController>();
        } else if (name == QLatin1String(kSafetyWindow)) {
            slot = std::make_unique<SafetyWindowController>();
        } else if (name == QLatin1String(kTypeWindow)) {
            auto type = std::make_unique<TypeWindowController>();
            type->setAppDelegate(this);
            type->setMyProtocolDelegate(this);
            slot = std::move(type);
        } else if (name == QLatin1String(kHelpWindow)) {
            slot = std::make_unique<HelpWindowController>();
        } else {
            secondaryWindows_.erase(name);
            return;
        }
    }
    setWindowToCenter(slot.get());
    slot->show();
    slot->raise();
    slot->activateWindow();
}

QWidget* StampwiseAppDelegate::secondaryWindow(const QString& name) const {
    const auto it = secondaryWindows_.find(name);
    return it != secondaryWindows_.end() ? it->second.get() : nullptr;
}
