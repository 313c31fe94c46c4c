#include "stamp/PreviewLayout.h"

#include <algorithm>
#include <cmath>

using StampGeometry::StampArea;
using StampGeometry::TPosition;

namespace PreviewLayout {

Size fitPhoto(Size original, Size preview) {
    const float ow = original.width;
    const float oh = original.height;
    const float sw = preview.width;
    const float sh = preview.height;
    if (oh <= sh && ow <= sw) {
        return original;
    }
    if (ow > sw && oh > sh) {
        // The preview's ratio in doubles against the photo's in floats: equal
        // ratios let the width limit.
        const double previewRatio = static_cast<double>(sw) / static_cast<double>(sh);
        if (previewRatio > static_cast<double>(ow / oh)) {
            return Size{ow * sh / oh, sh};
        }
        return Size{sw, oh * sw / ow};
    }
    if (ow > sw) {
        return Size{sw, oh * sw / ow};
    }
    return Size{ow * sh / oh, sh};
}

StampArea stampArea(Size preview, Size shown, bool margin) {
    StampArea area;
    if (!margin) {
        area.miniX = (preview.width - shown.width) * 0.5f;
        area.miniY = (preview.height - shown.height) * 0.5f;
        area.maxX = area.miniX + shown.width;
        area.maxY = area.miniY + shown.height;
        return area;
    }
    const double w = static_cast<double>(shown.width) * StampGeometry::kMarginWidthShare;
    const double h = static_cast<double>(shown.height) * StampGeometry::kMarginHeightShare;
    area.miniX = static_cast<float>((static_cast<double>(preview.width) - w) * 0.5);
    area.miniY = static_cast<float>((static_cast<double>(preview.height) - h) * 0.5);
    area.maxX = static_cast<float>(static_cast<double>(area.miniX) + w);
    area.maxY = static_cast<float>(static_cast<double>(area.miniY) + h);
    return area;
}

namespace {
float clampAxis(float value, float low, float high, float size) {
    float result = value;
    if (value < low) {
        result = low;
    } else if (value > high - size) {
        result = high - size;
    }
    return std::isnan(result) ? low : result;
}
}  // namespace

TPosition clampIntoArea(const StampArea& area, TPosition origin, Size label) {
    return TPosition{clampAxis(origin.x, area.miniX, area.maxX, label.width),
                     clampAxis(origin.y, area.miniY, area.maxY, label.height)};
}

Size labelSize(Size text, Size shown, Size photoPoints) {
    // A photo without a size (unreadable) has no scale: keep the text's own size.
    if (photoPoints.width <= 0 || photoPoints.height <= 0) {
        return text;
    }
    return Size{text.width * shown.width / photoPoints.width,
                text.height * shown.height / photoPoints.height};
}

TPosition presetOrigin(int place, const StampArea& area, Size label) {
    switch (place) {
        case 0:
            return TPosition{area.miniX, area.maxY - label.height};
        case 1:
            return TPosition{area.maxX - label.width, area.maxY - label.height};
        case 2:
            return TPosition{(area.miniX + area.maxX - label.width) * 0.5f,
                             (area.miniY + area.maxY - label.height) * 0.5f};
        case 4:
            return TPosition{area.maxX - label.width, area.miniY};
        default:  // 3, and anything unknown: bottom left
            return TPosition{area.miniX, area.miniY};
    }
}

TPosition fractionOrigin(double fx, double fy, const StampArea& area, Size label) {
    const double travelX = static_cast<double>(area.maxX - area.miniX - label.width);
    const double travelY = static_cast<double>(area.maxY - area.miniY - label.height);
    return TPosition{static_cast<float>(static_cast<double>(area.miniX) + fx * travelX),
                     static_cast<float>(static_cast<double>(area.miniY) + fy * travelY)};
}

namespace {
// A browser narrower than one cell still has one column.
qsizetype columnsIn(double browserWidth) {
    return std::max<qsizetype>(1, static_cast<qsizetype>(browserWidth / kCellPitch));
}
double contentHeight(double browserWidth, qsizetype count) {
    const qsizetype columns = columnsIn(browserWidth);
    const qsizetype rows = count / columns + (count % columns != 0 ? 1 : 0);
    return static_cast<double>(rows) * kCellPitch;
}
}  // namespace

double browserHeight(double browserWidth, qsizetype count, double visibleHeight) {
    const double content = contentHeight(browserWidth, count);
    // A short catalog fills the visible part, less the frame, so no scroll bar shows.
    return visibleHeight > content ? visibleHeight - 2.0 : content;
}

double heightAfterRemoval(double browserWidth, qsizetype count, double visibleHeight) {
    return std::max(contentHeight(browserWidth, count), visibleHeight);
}

bool rebuildsAfterRemoval(qsizetype removed, double browserWidth) {
    return removed > columnsIn(browserWidth);
}

double constrainDivider(double proposed) {
    return std::min(std::max(proposed, kMinDivider), kMaxDivider);
}

}  // namespace PreviewLayout
