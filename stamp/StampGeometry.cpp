#include "stamp/StampGeometry.h"

#include <cmath>

namespace StampGeometry {

Snapshot backupPositionAndSize(const StampArea& area, float x, float y, float w, float h) {
    return Snapshot{area, StampArea{x, y, x + w, y + h}};
}

StampArea outputArea(float W, float H, bool margin) {
    if (!margin) {
        return StampArea{0.0f, 0.0f, W, H};
    }
    const double width = W;
    const double height = H;
    StampArea area;
    area.miniX = static_cast<float>((width - kMarginWidthShare * width) * 0.5);
    area.miniY = static_cast<float>((height - kMarginHeightShare * height) * 0.5);
    area.maxX = static_cast<float>(static_cast<double>(area.miniX) + kMarginWidthShare * width);
    area.maxY = static_cast<float>(static_cast<double>(area.miniY) + kMarginHeightShare * height);
    return area;
}

namespace {
// Offset of the box's centre from the area's centre on one axis; the formula is
// kept in its centre-based form so that the float rounding matches everywhere.
float placeOnAxis(float areaMin, float areaMax, float labelMin, float labelMax, float newMin,
                  float newMax, float newSize) {
    const float centreArea = (areaMin + areaMax) * 0.5f;
    const float centreLabel = (labelMin + labelMax) * 0.5f;
    const float freeTravel = (areaMax - areaMin) - (labelMax - labelMin);
    const float newTravel = (newMax - newMin) - newSize;
    const float offset =
        freeTravel == 0.0f ? 0.0f
                           : std::fabs(2.0f * (centreArea - centreLabel)) / freeTravel * newTravel;
    const float centre = (newMax + newMin) * 0.5f;
    if (centreLabel >= centreArea) {
        return centre + offset * 0.5f - newSize * 0.5f;
    }
    return centre - offset * 0.5f - newSize * 0.5f;
}
}  // namespace

TPosition proportionalPlace(const Snapshot& snapshot, const StampArea& newArea, float newW,
                            float newH) {
    const StampArea& a = snapshot.image;
    const StampArea& l = snapshot.label;
    return TPosition{
        placeOnAxis(a.miniX, a.maxX, l.miniX, l.maxX, newArea.miniX, newArea.maxX, newW),
        placeOnAxis(a.miniY, a.maxY, l.miniY, l.maxY, newArea.miniY, newArea.maxY, newH)};
}

TPosition calculateOutputPosition(const Snapshot& snapshot, const StampArea& output, float fw,
                                  float fh) {
    return proportionalPlace(snapshot, output, fw, fh);
}

}  // namespace StampGeometry
