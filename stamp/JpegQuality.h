#pragma once

#include <QByteArrayView>

// The quality a JPEG was saved with, read back from its quantisation tables.
namespace JpegQuality {

// What a photo whose quality cannot be told is written with.
constexpr int kUnknown = 92;

// The IJG quality (1..100) whose scaled standard luminance table lies closest
// to the file's first luminance table; kUnknown when the bytes hold no usable
// table before the image data (not a JPEG, cut short, no luminance table).
int estimate(QByteArrayView jpeg);

}  // namespace JpegQuality
