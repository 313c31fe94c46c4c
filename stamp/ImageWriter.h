#pragma once

#include <QImage>
#include <QString>

// Writes a stamped photo as a standard 24-bit uncompressed BMP file.
namespace ImageWriter {

// Writes exactly width x height pixels (rounded to whole pixels), taken from the
// image's bottom-left corner: a larger image is cropped at its top and right, a
// smaller one is extended there with black. The data is BMP whatever the name's
// extension; a leading "~" stands for the home folder. The file is replaced
// atomically, so a failed write leaves an earlier file untouched; a symbolic
// link at the path is replaced, never written through. False when
// nothing was written; then error, when given, says why ("No space left on device").
bool saveImage(const QImage& image, float width, float height, const QString& fileName,
               QString* error = nullptr);

// The name with a leading "~" (alone or before "/") replaced by the home folder.
QString expandTilde(const QString& fileName);

}  // namespace ImageWriter
