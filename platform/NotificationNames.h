#pragma once

// Names of the notifications the views and the catalog post to the controller.
namespace NotificationNames {
inline constexpr const char* kSelectImageMouseDown = "selectImageMouseDown";
inline constexpr const char* kSelectImageHighlight = "selectImageHighlight";
inline constexpr const char* kMoveDateTime = "moveDateTime";
inline constexpr const char* kGotFileAmount = "gotFileAmount";
inline constexpr const char* kClickTitleCheckBox = "clickTitleCheckBox";
inline constexpr const char* kSplitViewWillResizeSubviews =
    "NSSplitViewWillResizeSubviewsNotification";
}  // namespace NotificationNames
