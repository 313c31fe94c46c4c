#include "browser/CellsBackground.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace {

// Each cell's centre wanders on its own slow closed path over the unit square.
struct Seed {
    double x, y;    // resting place
    double ax, ay;  // reach
    double wx, wy;  // radians per second
    double phase;
};

constexpr std::array kSeeds = {
    Seed{0.12, 0.18, 0.10, 0.08, 0.050, 0.070, 0.0},
    Seed{0.45, 0.10, 0.08, 0.10, 0.060, 0.040, 1.3},
    Seed{0.82, 0.22, 0.09, 0.07, 0.045, 0.065, 2.1},
    Seed{0.25, 0.52, 0.11, 0.09, 0.070, 0.050, 0.7},
    Seed{0.60, 0.45, 0.10, 0.11, 0.040, 0.055, 3.4},
    Seed{0.92, 0.62, 0.07, 0.10, 0.065, 0.045, 4.2},
    Seed{0.10, 0.85, 0.09, 0.08, 0.055, 0.060, 5.0},
    Seed{0.42, 0.88, 0.10, 0.07, 0.050, 0.075, 2.8},
    Seed{0.75, 0.90, 0.08, 0.09, 0.060, 0.050, 1.9},
    Seed{0.55, 0.70, 0.09, 0.10, 0.045, 0.060, 0.4},
};

// Soft light blue, mostly transparent.
constexpr double kRed = 0.55, kGreen = 0.68, kBlue = 0.85;
constexpr double kWallAlpha = 0.22;
constexpr double kGlowAlpha = 0.05;

}  // namespace

QImage CellsBackground::frame(QSize size, double seconds) {
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    if (image.isNull()) {
        return image;
    }
    std::array<double, kSeeds.size()> sx{};
    std::array<double, kSeeds.size()> sy{};
    // Distances in units of the shorter side, so cells stay round on wide views.
    const double unit = std::min(size.width(), size.height());
    for (std::size_t i = 0; i < kSeeds.size(); ++i) {
        const Seed& s = kSeeds[i];
        sx[i] = (s.x + s.ax * std::sin(seconds * s.wx * 6.0 + s.phase)) * size.width() / unit;
        sy[i] =
            (s.y + s.ay * std::cos(seconds * s.wy * 6.0 + s.phase * 0.7)) * size.height() / unit;
    }
    const double wall = 3.0 / unit;  // a wall is about three small pixels wide
    for (int y = 0; y < size.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
        const double py = (y + 0.5) / unit;
        for (int x = 0; x < size.width(); ++x) {
            const double px = (x + 0.5) / unit;
            // Squared distances while searching; roots only for the two nearest.
            double nearest = 1e18;
            double second = 1e18;
            for (std::size_t i = 0; i < kSeeds.size(); ++i) {
                const double dx = px - sx[i];
                const double dy = py - sy[i];
                const double d = dx * dx + dy * dy;
                if (d < nearest) {
                    second = nearest;
                    nearest = d;
                } else if (d < second) {
                    second = d;
                }
            }
            nearest = std::sqrt(nearest);
            second = std::sqrt(second);
            // Bright where two cells meet, a faint glow towards each centre.
            const double edge = std::exp(-(second - nearest) / wall);
            const double glow = std::max(0.0, 1.0 - nearest * 4.0);
            const double alpha = std::clamp(kWallAlpha * edge + kGlowAlpha * glow, 0.0, 1.0);
            line[x] = qRgba(int(255 * kRed * alpha), int(255 * kGreen * alpha),
                            int(255 * kBlue * alpha), int(255 * alpha));
        }
    }
    return image;
}
