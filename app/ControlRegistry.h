#pragma once

#include <QtGlobal>
#include <array>
#include <optional>

// Every tagged control of the main window, menu and toolbar, once. The
// dispatcher, the enabled states and the tests all read this table.
namespace ControlRegistry {

namespace Tag {
inline constexpr qint64 kAddFiles = 30008;
inline constexpr qint64 kAddFolder = 30108;
inline constexpr qint64 kRemoveTicked = 30023;
inline constexpr qint64 kClearAll = 30024;
inline constexpr qint64 kTickAll = 30025;
inline constexpr qint64 kUntickAll = 30026;
inline constexpr qint64 kStamp = 30027;
inline constexpr qint64 kSafetyButton = 31002;
inline constexpr qint64 kTypeButton = 31007;
inline constexpr qint64 kOutputFolderButton = 31010;
inline constexpr qint64 kStampButton = 31031;
inline constexpr qint64 kPreviewCheckBox = 31034;
inline constexpr qint64 kAscendingCheckBox = 31035;
inline constexpr qint64 kFontButton = 31036;
inline constexpr qint64 kMarginCheckBox = 31037;
inline constexpr qint64 kColourButton = 31039;
// The five preset places, 0 to 4, are consecutive tags from here.
inline constexpr qint64 kFirstPreset = 31080;
inline constexpr int kPresetCount = 5;
inline constexpr qint64 kLayoutPopUp = 31200;
inline constexpr qint64 kSortPopUp = 31201;
inline constexpr qint64 kPhotosHint = 31202;
inline constexpr qint64 kDateSourceMatrix = 32400;
inline constexpr qint64 kAboutMenu = 32500;
inline constexpr qint64 kQuitMenu = 32502;
inline constexpr qint64 kAddFolderMenu = 32504;
inline constexpr qint64 kAddFilesMenu = 32505;
inline constexpr qint64 kClearAllMenu = 32506;
inline constexpr qint64 kTickAllMenu = 32507;
inline constexpr qint64 kUntickAllMenu = 32508;
inline constexpr qint64 kRemoveTickedMenu = 32509;
inline constexpr qint64 kStampMenu = 32510;
inline constexpr qint64 kHelpMenu = 32511;
inline constexpr qint64 kCustomTextField = 35000;
inline constexpr qint64 kOutputFolderField = 35001;
inline constexpr qint64 kTotalAmountField = 36005;
inline constexpr qint64 kSelectedAmountField = 36006;
inline constexpr qint64 kLabelTextField = 36007;
inline constexpr qint64 kLayoutComboBox = 40100;
inline constexpr qint64 kSortComboBox = 40101;
}  // namespace Tag

enum class Kind {
    ToolbarItem,
    MenuItem,
    Button,
    CheckBox,
    PopUp,
    ComboBox,
    Matrix,
    TextField,
    Label
};

// How setToolbarStatus treats a control.
enum class Enabling {
    Untouched,   // its state is someone else's business
    Always,      // enabled whatever is loaded
    WithPhotos,  // enabled exactly while the catalog holds photos
};

// What using the control does.
enum class Command {
    Nothing,
    AddFiles,
    AddFolder,
    RemoveTicked,
    ClearAll,
    TickAll,
    UntickAll,
    Stamp,
    OpenSafety,
    OpenType,
    OpenAbout,
    OpenHelp,
    Quit,
    ChooseOutputFolder,
    PreviewMode,
    SortAscending,
    ChooseFont,
    ChooseColour,
    Margin,
    PresetPlace,
    BrowserLayout,
    SortKey,
    DateSource,
};

struct Control {
    qint64 tag;
    Kind kind;
    const char* objectName;  // in MainWindow.ui
    Enabling enabling;
    Command command;
};

using enum Kind;
using enum Enabling;
using enum Command;

// Photo-dependent rows are in the order setToolbarStatus switches them.
inline constexpr std::array kControls = {
    Control{Tag::kAddFiles, ToolbarItem, "actionAddFiles", Always, AddFiles},
    Control{Tag::kAddFolder, ToolbarItem, "actionAddFolder", Always, AddFolder},
    Control{Tag::kRemoveTicked, ToolbarItem, "actionRemoveTicked", WithPhotos, RemoveTicked},
    Control{Tag::kClearAll, ToolbarItem, "actionClearAll", WithPhotos, ClearAll},
    Control{Tag::kTickAll, ToolbarItem, "actionTickAll", WithPhotos, TickAll},
    Control{Tag::kUntickAll, ToolbarItem, "actionUntickAll", WithPhotos, UntickAll},
    Control{Tag::kStamp, ToolbarItem, "actionStamp", WithPhotos, Stamp},
    Control{Tag::kStampButton, Button, "stampButton", WithPhotos, Stamp},
    Control{Tag::kTypeButton, Button, "typeButton", WithPhotos, OpenType},
    Control{Tag::kColourButton, Button, "colorButton", WithPhotos, ChooseColour},
    Control{Tag::kFontButton, Button, "fontButton", WithPhotos, ChooseFont},
    Control{Tag::kPreviewCheckBox, CheckBox, "previewCheckBox", WithPhotos, PreviewMode},
    Control{Tag::kMarginCheckBox, CheckBox, "marginCheckBox", WithPhotos, Margin},
    Control{Tag::kFirstPreset, Button, "topLeftButton", WithPhotos, PresetPlace},
    Control{Tag::kFirstPreset + 1, Button, "topRightButton", WithPhotos, PresetPlace},
    Control{Tag::kFirstPreset + 2, Button, "centreButton", WithPhotos, PresetPlace},
    Control{Tag::kFirstPreset + 3, Button, "bottomLeftButton", WithPhotos, PresetPlace},
    Control{Tag::kFirstPreset + 4, Button, "bottomRightButton", WithPhotos, PresetPlace},
    Control{Tag::kPhotosHint, Label, "hintLabel", WithPhotos, Nothing},
    Control{Tag::kOutputFolderButton, Button, "chooseOutputButton", WithPhotos, ChooseOutputFolder},
    Control{Tag::kSafetyButton, Button, "safetyButton", WithPhotos, OpenSafety},
    Control{Tag::kAscendingCheckBox, CheckBox, "ascendingCheckBox", WithPhotos, SortAscending},
    Control{Tag::kSortPopUp, PopUp, "sortPopUp", WithPhotos, SortKey},
    Control{Tag::kOutputFolderField, TextField, "outputFolderField", WithPhotos, Nothing},
    Control{Tag::kDateSourceMatrix, Matrix, "dateSourceMatrix", WithPhotos, DateSource},
    Control{Tag::kRemoveTickedMenu, MenuItem, "actionRemoveTickedMenu", WithPhotos, RemoveTicked},
    Control{Tag::kClearAllMenu, MenuItem, "actionClearAllMenu", WithPhotos, ClearAll},
    Control{Tag::kTickAllMenu, MenuItem, "actionTickAllMenu", WithPhotos, TickAll},
    Control{Tag::kUntickAllMenu, MenuItem, "actionUntickAllMenu", WithPhotos, UntickAll},
    Control{Tag::kStampMenu, MenuItem, "actionStampMenu", WithPhotos, Stamp},
    Control{Tag::kLayoutPopUp, PopUp, "layoutPopUp", Untouched, BrowserLayout},
    Control{Tag::kLayoutComboBox, ComboBox, "layoutComboBox", Untouched, BrowserLayout},
    Control{Tag::kSortComboBox, ComboBox, "sortComboBox", Untouched, SortKey},
    Control{Tag::kCustomTextField, TextField, "customTextField", Untouched, Nothing},
    Control{Tag::kTotalAmountField, Label, "totalAmountField", Untouched, Nothing},
    Control{Tag::kSelectedAmountField, Label, "selectedAmountField", Untouched, Nothing},
    Control{Tag::kLabelTextField, Label, "atextfield", Untouched, Nothing},
    Control{Tag::kAboutMenu, MenuItem, "actionAbout", Untouched, OpenAbout},
    Control{Tag::kHelpMenu, MenuItem, "actionHelp", Untouched, OpenHelp},
    Control{Tag::kQuitMenu, MenuItem, "actionQuit", Untouched, Quit},
    Control{Tag::kAddFolderMenu, MenuItem, "actionAddFolderMenu", Untouched, AddFolder},
    Control{Tag::kAddFilesMenu, MenuItem, "actionAddFilesMenu", Untouched, AddFiles},
};

// The row of a tag, if the window has such a control.
constexpr std::optional<Control> find(qint64 tag) {
    for (const Control& control : kControls) {
        if (control.tag == tag) {
            return control;
        }
    }
    return std::nullopt;
}

}  // namespace ControlRegistry
