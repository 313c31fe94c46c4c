#pragma once

namespace ButtonTitles {
inline constexpr const char* kOk = "Ok";
inline constexpr const char* kCancel = "Cancel";
// The file-access alerts use the upper-case form.
inline constexpr const char* kOK = "OK";
}  // namespace ButtonTitles
