#pragma once

namespace SettingsKeys {
inline constexpr const char* kHasDefaults = "hasDefaults";
inline constexpr const char* kTimeType = "gTimeType";
inline constexpr const char* kDateType = "gDateType";
inline constexpr const char* kColor = "aColor";
inline constexpr const char* kFont = "aFont";
inline constexpr const char* kIsLoadDirectory = "isLoadDirectory";
inline constexpr const char* kStandardFontWidth = "standardFontWidth";
inline constexpr const char* kStandardFontHeight = "standardFontHeight";
inline constexpr const char* kIsSafety = "isSafety";
inline constexpr const char* kDateTimeString = "dateTimeString";
inline constexpr const char* kTrue = "true";
// The browser's View options, each "true" or "false".
inline constexpr const char* kBrowserShadows = "browserShadows";
inline constexpr const char* kBrowserAnimatedBackground = "browserAnimatedBackground";
inline constexpr const char* kBrowserCyclesLayout = "browserCyclesLayout";
// The stamp options, each "true" or "false"; the date shift as [+|-][Nd]HH:MM[:SS].
inline constexpr const char* kOptionUpright = "optionUpright";
inline constexpr const char* kOptionKeepFormat = "optionKeepFormat";
inline constexpr const char* kOptionOutline = "optionOutline";
inline constexpr const char* kOptionShadow = "optionShadow";
inline constexpr const char* kOptionBox = "optionBox";
inline constexpr const char* kOptionShift = "optionShift";
inline constexpr const char* kOptionNames = "optionNames";
}  // namespace SettingsKeys
