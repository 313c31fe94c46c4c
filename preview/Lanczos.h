#pragma once

#include <QImage>
#include <QSize>

// High-quality resampling with a Lanczos-3 kernel.
namespace Lanczos {

// The image resampled to size. Grey images stay Grayscale8; everything else
// comes back as ARGB32_Premultiplied. When shrinking, the kernel is widened
// by the shrink factor so it also filters out detail the target cannot hold.
QImage scaled(const QImage& source, QSize size);

// The Lanczos-3 kernel itself: sinc(x) * sinc(x / 3) for |x| < 3, else 0.
double kernel(double x);

}  // namespace Lanczos
