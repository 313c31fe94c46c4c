#include "browser/BrowserLayout.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace BrowserLayout {

namespace {
constexpr double kInset = 10.0;
constexpr double kGap = 10.0;
constexpr double kDegreesPerRadian = 57.29577951308232;

// Half the diagonal of a card as wide as the widest and as high as the highest:
// a card of any size and turn centred that far inside the area stays inside.
double halfDiagonal(std::span<const Size> sizes) {
    double hx = 0;
    double hy = 0;
    for (const Size& size : sizes) {
        hx = std::max(hx, size.width * 0.5);
        hy = std::max(hy, size.height * 0.5);
    }
    return std::sqrt(hx * hx + hy * hy);
}

double angleStep(std::span<const Size> sizes) {
    return 2.0 * std::numbers::pi / static_cast<double>(sizes.size());
}
}  // namespace

Rect layoutArea(Rect bounds) {
    return Rect{bounds.x + kInset, bounds.y + kInset, bounds.width - 2 * kInset,
                bounds.height - 2 * kInset};
}

std::vector<Placement> circular(std::span<const Size> sizes, Rect bounds) {
    std::vector<Placement> placements;
    if (sizes.empty()) {
        return placements;
    }
    const Rect area = layoutArea(bounds);
    const double cx = area.x + area.width / 2;
    const double cy = area.y + area.height / 2;
    const double radius = std::min(area.width, area.height) / 2 - halfDiagonal(sizes);
    const double step = angleStep(sizes);
    double angle = 0;
    placements.reserve(sizes.size());
    for (const Size& size : sizes) {
        const double px = cx + radius * std::cos(angle);
        const double py = cy + radius * std::sin(angle);
        placements.push_back(Placement{px - size.width / 2, py - size.height / 2,
                                       std::fmod(angle * kDegreesPerRadian + 270, 360)});
        angle += step;
    }
    return placements;
}

std::vector<Placement> loop(std::span<const Size> sizes, Rect bounds) {
    std::vector<Placement> placements;
    if (sizes.empty()) {
        return placements;
    }
    const Rect area = layoutArea(bounds);
    const double d = halfDiagonal(sizes);
    const double cx = area.x + area.width / 2;
    const double cy = area.y + area.height / 2;
    const double rx = (area.width - 2 * d) / 2;
    const double ry = (area.height - 2 * d) / 2;
    const double step = angleStep(sizes);
    double angle = 0;
    placements.reserve(sizes.size());
    for (const Size& size : sizes) {
        const double px = cx + rx * std::cos(angle);
        const double py = cy + ry * std::sin(2 * angle);
        placements.push_back(Placement{px - size.width / 2, py - size.height / 2, 0});
        angle += step;
    }
    return placements;
}

std::vector<Placement> scatter(std::span<const Size> sizes, Rect bounds, Random random) {
    const Rect area = layoutArea(bounds);
    std::vector<Placement> placements;
    placements.reserve(sizes.size());
    for (const Size& size : sizes) {
        // Separate statements: the draws must go to x, y and tilt in this order.
        const double u1 = random();
        const double u2 = random();
        Placement placement{area.x + u1 * (area.width - size.width),
                            area.y + u2 * (area.height - size.height), 0};
        placement.rotation = random() * 60 - 30;
        placements.push_back(placement);
    }
    return placements;
}

std::vector<Placement> wrapped(std::span<const Size> sizes, Rect bounds) {
    const Rect area = layoutArea(bounds);
    double cursor = area.x;
    double rowTop = area.y + area.height;
    double rowHeight = 0;
    std::vector<Placement> placements;
    placements.reserve(sizes.size());
    for (const Size& size : sizes) {
        double x = cursor;
        if (cursor + size.width > area.x + area.width) {
            rowTop = rowTop - (rowHeight + kGap);
            rowHeight = size.height;
            x = area.x;
            cursor = area.x + size.width + kGap;
        } else {
            cursor = cursor + size.width + kGap;
            rowHeight = std::max(rowHeight, size.height);
        }
        placements.push_back(Placement{x, rowTop - size.height, 0});
    }
    return placements;
}

}  // namespace BrowserLayout
