#pragma once

// The texts of the main window's alerts.
namespace Messages {
inline constexpr const char* kQuitTitle = "Quit Stampwise";
inline constexpr const char* kQuitMessage = "Are you sure to quit Stampwise?";
inline constexpr const char* kReminderTitle = "Reminder";
inline constexpr const char* kClearAllMessage = "Are you sure to clear all images?";
inline constexpr const char* kCantLoadFile = "Can't load file";
inline constexpr const char* kCantBrowsePath = "Can't browse path";
inline constexpr const char* kNotADirectory = "Path exists but isn't a directory (%1)";
inline constexpr const char* kPathDoesNotExist = "Path doesn't exist (%1)";
inline constexpr const char* kWarningTitle = "Warning";
inline constexpr const char* kNoOutputDirectory = "Output directory does not exist!";
inline constexpr const char* kSelectPicture =
    "Please select one picture to set the position and font of output date text!";
inline constexpr const char* kCompleted = "Completed!";
}  // namespace Messages
