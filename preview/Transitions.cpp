#include "preview/Transitions.h"

#include <QtMath>
#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <optional>
#include <vector>

namespace Transitions {

namespace {

using Pixel = quint32;
constexpr float kPi = 3.14159265f;

// ---- pixel helpers (RGB32, 0xffRRGGBB)

// w = 0 gives a, w = 256 gives b; red/blue and green are blended in two lanes.
inline Pixel mix256(Pixel a, Pixel b, quint32 w) {
    const quint32 iw = 256 - w;
    const quint32 rb = (((a & 0xff00ffu) * iw + (b & 0xff00ffu) * w) >> 8) & 0xff00ffu;
    const quint32 g = (((a & 0x00ff00u) * iw + (b & 0x00ff00u) * w) >> 8) & 0x00ff00u;
    return 0xff000000u | rb | g;
}

inline quint32 weight256(float w) {
    return static_cast<quint32>(std::clamp(w, 0.0f, 1.0f) * 256.0f + 0.5f);
}

inline int clampByte(float v) {
    return std::clamp(static_cast<int>(v + 0.5f), 0, 255);
}

inline Pixel rgb(float r, float g, float b) {
    return 0xff000000u | (static_cast<quint32>(clampByte(r)) << 16) |
           (static_cast<quint32>(clampByte(g)) << 8) | static_cast<quint32>(clampByte(b));
}

inline float red(Pixel p) {
    return static_cast<float>((p >> 16) & 0xff);
}
inline float green(Pixel p) {
    return static_cast<float>((p >> 8) & 0xff);
}
inline float blue(Pixel p) {
    return static_cast<float>(p & 0xff);
}

// Moves p towards the colour (r, g, b) by w in 0..1.
inline Pixel towards(Pixel p, float r, float g, float b, float w) {
    const float iw = 1.0f - w;
    return rgb(red(p) * iw + r * w, green(p) * iw + g * w, blue(p) * iw + b * w);
}

// Multiplies each channel by m / 256, saturating (m may exceed 256).
inline Pixel scale256(Pixel p, int m) {
    const int r = std::min(255, static_cast<int>((p >> 16) & 0xff) * m >> 8);
    const int g = std::min(255, static_cast<int>((p >> 8) & 0xff) * m >> 8);
    const int b = std::min(255, static_cast<int>(p & 0xff) * m >> 8);
    return 0xff000000u | (static_cast<quint32>(r) << 16) | (static_cast<quint32>(g) << 8) |
           static_cast<quint32>(b);
}

// Adds v to each channel, clamped to 0..255.
inline Pixel offset(Pixel p, int v) {
    const int r = std::clamp(static_cast<int>((p >> 16) & 0xff) + v, 0, 255);
    const int g = std::clamp(static_cast<int>((p >> 8) & 0xff) + v, 0, 255);
    const int b = std::clamp(static_cast<int>(p & 0xff) + v, 0, 255);
    return 0xff000000u | (static_cast<quint32>(r) << 16) | (static_cast<quint32>(g) << 8) |
           static_cast<quint32>(b);
}

inline int fastFloor(float v) {
    const int i = static_cast<int>(v);
    return v < static_cast<float>(i) ? i - 1 : i;
}

inline float smoothstep(float e0, float e1, float x) {
    if (e1 <= e0) {
        return x < e0 ? 0.0f : 1.0f;
    }
    const float t = std::clamp((x - e0) / (e1 - e0), 0.0f, 1.0f);
    return t * t * (3.0f - 2.0f * t);
}

inline const Pixel* rowOf(const QImage& image, int y) {
    return reinterpret_cast<const Pixel*>(image.constScanLine(y));
}
inline Pixel* rowOf(QImage& image, int y) {
    return reinterpret_cast<Pixel*>(image.scanLine(y));
}

inline Pixel at(const QImage& image, int x, int y) {
    x = std::clamp(x, 0, image.width() - 1);
    y = std::clamp(y, 0, image.height() - 1);
    return rowOf(image, y)[x];
}

// Reads an image between its pixels, within an area of it.
struct Sampler {
    const uchar* bits;
    qsizetype stride;
    QRect area;

    Sampler(const QImage& image, const QRect& within)
        : bits(image.constBits()), stride(image.bytesPerLine()), area(within) {}

    const Pixel* row(int y) const { return reinterpret_cast<const Pixel*>(bits + y * stride); }

    // The image at (x, y), pixel centres lying at +0.5, interpolated between
    // the four nearest pixels of the area (in 1/256 of a pixel, plenty here).
    Pixel bilinear(float x, float y) const {
        const int fx =
            std::clamp(static_cast<int>((x - 0.5f) * 256.0f), area.left() << 8, area.right() << 8);
        const int fy =
            std::clamp(static_cast<int>((y - 0.5f) * 256.0f), area.top() << 8, area.bottom() << 8);
        const int x0 = fx >> 8;
        const int x1 = std::min(x0 + 1, area.right());
        const Pixel* r0 = row(fy >> 8);
        const Pixel* r1 = row(std::min((fy >> 8) + 1, area.bottom()));
        const quint32 wx = static_cast<quint32>(fx & 0xff);
        return mix256(mix256(r0[x0], r0[x1], wx), mix256(r1[x0], r1[x1], wx),
                      static_cast<quint32>(fy & 0xff));
    }
};

inline bool isBlack(Pixel p) {
    return (p & 0xffffffu) == 0;
}

// Where the photo lies in a preview frame: all but the pure black bars that
// letterbox it. Empty for an all-black frame.
QRect photoArea(const QImage& frame) {
    const int w = frame.width();
    const int h = frame.height();
    auto blackRow = [&](int y) {
        const Pixel* row = rowOf(frame, y);
        return std::all_of(row, row + w, isBlack);
    };
    int top = 0;
    while (top < h && blackRow(top)) {
        ++top;
    }
    if (top == h) {
        return {};
    }
    int bottom = h - 1;
    while (blackRow(bottom)) {
        --bottom;
    }
    int left = w - 1;
    int right = 0;
    for (int y = top; y <= bottom; ++y) {
        const Pixel* row = rowOf(frame, y);
        int x = 0;
        while (x < left && isBlack(row[x])) {
            ++x;
        }
        left = x;
        x = w - 1;
        while (x > right && isBlack(row[x])) {
            --x;
        }
        right = x;
    }
    return QRect(QPoint(left, top), QPoint(right, bottom));
}

QImage asRgb32(const QImage& image) {
    return image.format() == QImage::Format_RGB32 ? image
                                                  : image.convertToFormat(QImage::Format_RGB32);
}

// ---- geometry: settings are y-up, image rows are y-down

struct Frame {
    int w;
    int h;
    QRectF extent;   // y-down
    QPointF center;  // y-down
};

Frame frameFor(const Inputs& in, int w, int h) {
    const QRectF& e = in.extent;
    return Frame{w, h, QRectF(e.x(), h - e.y() - e.height(), e.width(), e.height()),
                 QPointF(in.center.x(), h - in.center.y())};
}

// A direction given counter-clockwise in y-up terms, as a y-down vector.
inline QPointF downDirection(float angle) {
    return {std::cos(angle), -std::sin(angle)};
}

// The range of dot(p, d) over a rectangle's corners.
std::pair<float, float> projectedRange(const QRectF& r, QPointF d) {
    const float a = static_cast<float>(r.left() * d.x() + r.top() * d.y());
    const float b = static_cast<float>(r.right() * d.x() + r.top() * d.y());
    const float c = static_cast<float>(r.left() * d.x() + r.bottom() * d.y());
    const float e = static_cast<float>(r.right() * d.x() + r.bottom() * d.y());
    return {std::min({a, b, c, e}), std::max({a, b, c, e})};
}

float farthestCorner(const QRectF& r, QPointF c) {
    float best = 1.0f;
    for (const QPointF& p : {r.topLeft(), r.topRight(), r.bottomLeft(), r.bottomRight()}) {
        best = std::max(best, static_cast<float>(std::hypot(p.x() - c.x(), p.y() - c.y())));
    }
    return best;
}

inline bool inRows(const QRectF& r, float y) {
    const double yd = static_cast<double>(y);
    return yd >= r.top() && yd < r.bottom();
}

inline bool inColumns(const QRectF& r, float x) {
    const double xd = static_cast<double>(x);
    return xd >= r.left() && xd < r.right();
}

inline bool inside(const QRectF& r, float x, float y) {
    return inColumns(r, x) && inRows(r, y);
}

// Brightness across a shading image's middle row, 256 samples of 0..1
// (luminance times alpha); empty without a shading image.
std::optional<std::array<float, 256>> shadingProfile(const QImage& shading) {
    if (shading.isNull() || shading.width() < 1) {
        return std::nullopt;
    }
    const QImage argb = shading.convertToFormat(QImage::Format_ARGB32);
    const QRgb* line = reinterpret_cast<const QRgb*>(argb.constScanLine(argb.height() / 2));
    std::array<float, 256> profile{};
    for (int i = 0; i < 256; ++i) {
        const int x = std::min(argb.width() - 1, i * argb.width() / 256);
        const QRgb p = line[x];
        const float lum = (0.299f * qRed(p) + 0.587f * qGreen(p) + 0.114f * qBlue(p)) / 255.0f;
        profile[static_cast<size_t>(i)] = lum * static_cast<float>(qAlpha(p)) / 255.0f;
    }
    return profile;
}

inline float fastAtan2(float y, float x) {
    const float ax = std::fabs(x);
    const float ay = std::fabs(y);
    const float a = std::min(ax, ay) / (std::max(ax, ay) + 1e-20f);
    const float s = a * a;
    float r = ((-0.0464964749f * s + 0.15931422f) * s - 0.327622764f) * s * a + a;
    if (ay > ax) {
        r = 1.57079637f - r;
    }
    if (x < 0) {
        r = kPi - r;
    }
    return y < 0 ? -r : r;
}

inline quint32 cellHash(int i, int j) {
    quint32 h = static_cast<quint32>(i) * 0x8da6b343u ^ static_cast<quint32>(j) * 0xd8163841u;
    h ^= h >> 13;
    h *= 0x5bd1e995u;
    return h ^ (h >> 15);
}

// ---- the plain slides and blends

QImage crossfade(const QImage& from, const QImage& to, float t) {
    QImage out(from.size(), QImage::Format_RGB32);
    const quint32 w = weight256(t);
    for (int y = 0; y < out.height(); ++y) {
        const Pixel* a = rowOf(from, y);
        const Pixel* b = rowOf(to, y);
        Pixel* o = rowOf(out, y);
        for (int x = 0; x < out.width(); ++x) {
            o[x] = mix256(a[x], b[x], w);
        }
    }
    return out;
}

// Copies src[sx, sx + n) of each row to out[dx, dx + n).
void blitRows(QImage& out, const QImage& src, int dx, int sx, int n) {
    if (n <= 0) {
        return;
    }
    for (int y = 0; y < out.height(); ++y) {
        std::memcpy(rowOf(out, y) + dx, rowOf(src, y) + sx, static_cast<size_t>(n) * 4);
    }
}

// Move-in, push and reveal, all from the left.
QImage slide(Kind kind, const QImage& from, const QImage& to, float t) {
    const int w = from.width();
    QImage out(from.size(), QImage::Format_RGB32);
    const int shift = static_cast<int>(std::lround((1.0f - t) * static_cast<float>(w)));
    if (kind == Kind::Reveal) {
        const int gone = w - shift;  // the old frame has moved this far right
        blitRows(out, to, 0, 0, gone);
        blitRows(out, from, gone, 0, w - gone);
        return out;
    }
    // The new frame's right edge is at w - shift.
    blitRows(out, to, 0, shift, w - shift);
    if (kind == Kind::Push) {
        blitRows(out, from, w - shift, 0, shift);
    } else {
        blitRows(out, from, w - shift, w - shift, shift);
    }
    return out;
}

// ---- the filters

// A lamp bar sweeps across the extent; the new frame lies behind it.
QImage copyMachine(const Inputs& in, const QImage& from, const QImage& to, float t) {
    const Frame f = frameFor(in, from.width(), from.height());
    const QPointF d = downDirection(in.angle);
    const float barWidth = in.width > 0 ? in.width : 200.0f;
    constexpr float kColor[3] = {0.6f * 255, 1.0f * 255, 1.0f * 255};
    constexpr float kOpacity = 1.3f;
    // The bar crosses the whole frame even when the extent is smaller, so
    // every frame ends on the new picture; the lamp lights only the extent.
    const auto [smin, smax] = projectedRange(f.extent | QRectF(0, 0, f.w, f.h), d);
    const float lead = smin + t * (smax - smin + barWidth);

    // Lamp light and colour across the bar, from the leading edge (0) back.
    std::array<float, 256> light{};
    std::array<std::array<float, 3>, 256> lamp{};
    for (size_t i = 0; i < 256; ++i) {
        const float u = (static_cast<float>(i) + 0.5f) / 256.0f;
        light[i] = std::min(1.0f, kOpacity * std::sin(kPi * u) * (1.0f - 0.45f * u));
        const float core = std::max(0.0f, 1.0f - std::fabs(u - 0.18f) * 9.0f);
        for (size_t c = 0; c < 3; ++c) {
            lamp[i][c] = kColor[c] * (1.0f - core) + 255.0f * core;
        }
    }
    QImage out(from.size(), QImage::Format_RGB32);
    const float dx = static_cast<float>(d.x());
    const float dy = static_cast<float>(d.y());
    for (int y = 0; y < f.h; ++y) {
        const Pixel* a = rowOf(from, y);
        const Pixel* b = rowOf(to, y);
        Pixel* o = rowOf(out, y);
        const float py = static_cast<float>(y) + 0.5f;
        const bool rowInExtent = inRows(f.extent, py);
        float s = 0.5f * dx + py * dy;
        for (int x = 0; x < f.w; ++x, s += dx) {
            if (s >= lead) {
                o[x] = a[x];
            } else if (s <= lead - barWidth) {
                o[x] = b[x];
            } else {
                const float u = (lead - s) / barWidth;
                const Pixel base = u > 0.5f ? b[x] : a[x];
                const float px = static_cast<float>(x) + 0.5f;
                if (rowInExtent && inColumns(f.extent, px)) {
                    const size_t i = std::min<size_t>(255, static_cast<size_t>(u * 256.0f));
                    o[x] = towards(base, lamp[i][0], lamp[i][1], lamp[i][2], light[i]);
                } else {
                    o[x] = base;
                }
            }
        }
    }
    return out;
}

// The old frame crumbles away in the order of the mask (dark parts first),
// its remaining pieces casting a soft shadow down onto the new frame.
QImage disintegrate(const Inputs& in, const QImage& from, const QImage& to, float t) {
    if (in.maskImage.isNull()) {
        return crossfade(from, to, t);
    }
    const QImage mask = in.maskImage.format() == QImage::Format_Grayscale8
                            ? in.maskImage
                            : in.maskImage.convertToFormat(QImage::Format_Grayscale8);
    constexpr float kEdge = 0.08f;
    constexpr float kShadowEdge = 0.16f;  // wider: the shadow is blurred
    constexpr float kShadowDensity = 0.65f;
    constexpr int kShadowDrop = 10;  // points down
    std::array<quint32, 256> reveal{};
    std::array<int, 256> shadow{};  // brightness left by the shadow, of 256
    const float tr = t * (1.0f + 2.0f * kEdge) - kEdge;
    const float ts = t * (1.0f + 2.0f * kShadowEdge) - kShadowEdge;
    for (size_t m = 0; m < 256; ++m) {
        const float v = static_cast<float>(m) / 255.0f;
        reveal[m] = weight256(smoothstep(v - kEdge, v + kEdge, tr));
        shadow[m] = static_cast<int>(weight256(
            1.0f - kShadowDensity * (1.0f - smoothstep(v - kShadowEdge, v + kShadowEdge, ts))));
    }
    const int w = from.width();
    const int h = from.height();
    const int rowOffset = h - mask.height();  // the mask sits at the lower-left
    const int mw = std::min(w, mask.width());
    auto maskAt = [&](int x, int y) -> size_t {
        const int my = y - rowOffset;
        if (x >= mw || my < 0 || my >= mask.height()) {
            return 0;
        }
        return mask.constScanLine(my)[x];
    };
    QImage out(from.size(), QImage::Format_RGB32);
    for (int y = 0; y < h; ++y) {
        const Pixel* a = rowOf(from, y);
        const Pixel* b = rowOf(to, y);
        Pixel* o = rowOf(out, y);
        for (int x = 0; x < w; ++x) {
            const quint32 r = reveal[maskAt(x, y)];
            if (r == 0) {
                o[x] = a[x];
                continue;
            }
            const int s = shadow[maskAt(x, y - kShadowDrop)];
            const Pixel n = s < 256 ? scale256(b[x], s) : b[x];
            o[x] = mix256(a[x], n, r);
        }
    }
    return out;
}

// A starburst grows from the centre to white-out the extent, the frames swap
// under it, and it fades away over the new frame.
QImage flash(const Inputs& in, const QImage& from, const QImage& to, float t) {
    const Frame f = frameFor(in, from.width(), from.height());
    constexpr float kColor[3] = {1.0f * 255, 0.8f * 255, 0.6f * 255};
    constexpr float kStriationStrength = 0.5f;
    constexpr float kStriationContrast = 1.375f;
    constexpr float kMaxStriationRadius = 2.58f;
    constexpr float kFadeThreshold = 0.85f;
    const float far = farthestCorner(f.extent, f.center);
    const float rho = (far + 1.0f) / 0.65f * std::pow(std::min(1.0f, t / 0.5f), 1.5f);
    const float fade = 1.0f - smoothstep(0.55f, kFadeThreshold + 0.15f, t);
    const quint32 swap = weight256(smoothstep(0.45f, 0.6f, t));
    const float rayGain = kStriationStrength * kMaxStriationRadius * 0.25f;
    const Pixel tint = rgb(kColor[0], kColor[1], kColor[2]);

    // Rays: a fixed irregular brightness over the angle.
    constexpr int kRays = 1024;
    std::array<float, kRays> rays{};
    for (int i = 0; i < kRays; ++i) {
        const float a = 2.0f * kPi * static_cast<float>(i) / kRays;
        const float v = 0.5f + 0.2f * std::sin(7 * a + 1.3f) + 0.15f * std::sin(13 * a + 0.4f) +
                        0.1f * std::sin(29 * a + 2.1f) + 0.05f * std::sin(53 * a + 4.0f);
        rays[static_cast<size_t>(i)] =
            1.0f + rayGain * std::pow(std::clamp(v, 0.0f, 1.0f), kStriationContrast);
    }
    QImage out(from.size(), QImage::Format_RGB32);
    const float full = 0.65f * rho - 1.0f;  // inside this radius the flash is full
    const float reach = rho * (1.0f + rayGain);
    const float cx = static_cast<float>(f.center.x());
    const float cy = static_cast<float>(f.center.y());
    for (int y = 0; y < f.h; ++y) {
        const Pixel* a = rowOf(from, y);
        const Pixel* b = rowOf(to, y);
        Pixel* o = rowOf(out, y);
        const float py = static_cast<float>(y) + 0.5f;
        const float vy = py - cy;
        const bool rowInExtent = inRows(f.extent, py);
        for (int x = 0; x < f.w; ++x) {
            const Pixel base = mix256(a[x], b[x], swap);
            const float px = static_cast<float>(x) + 0.5f;
            if (!rowInExtent || !inColumns(f.extent, px) || fade <= 0.0f) {
                o[x] = base;
                continue;
            }
            const float vx = px - cx;
            const float dist = std::sqrt(vx * vx + vy * vy);
            if (dist >= reach) {
                o[x] = base;
                continue;
            }
            float amount = 1.0f;
            if (dist > full) {
                const float ray =
                    rays[static_cast<size_t>((fastAtan2(vy, vx) + kPi) * (kRays / (2 * kPi))) &
                         (kRays - 1)];
                const float rr = rho * ray;
                amount = std::clamp((rr - dist) / (0.35f * rr + 1.0f), 0.0f, 1.0f);
            }
            amount *= fade;
            // White at the centre, the flash colour towards the extent's corners.
            const Pixel glare = mix256(0xffffffffu, tint, weight256(std::min(1.0f, dist / far)));
            o[x] = mix256(base, glare, weight256(amount));
        }
    }
    return out;
}

// Staggered holes, squashed across the angle, open in the old frame; those
// near the centre open first, each at its own pace, all fully open at the end.
QImage mod(const Inputs& in, const QImage& from, const QImage& to, float t) {
    const Frame f = frameFor(in, from.width(), from.height());
    const float cellU = in.radius > 0 ? in.radius : 150.0f;
    const float compression = in.compression > 0 ? in.compression : 300.0f;
    const float cellV = std::max(4.0f, cellU * cellU / compression);
    constexpr float kCentreLead = 0.15f;
    constexpr float kMaxDelay = 0.1f;
    constexpr float kSoft = 0.06f;
    constexpr float kRim = 0.12f;
    const float far = farthestCorner(QRectF(0, 0, f.w, f.h), f.center);
    const float ca = std::cos(in.angle);
    const float sa = std::sin(in.angle);
    const float cx = static_cast<float>(f.center.x());
    const float cy = static_cast<float>(f.center.y());

    // Cell coordinates (U along the angle, V across) of a y-down point.
    auto cellCoords = [&](float px, float py) {
        const float vx = px - cx;
        const float vy = cy - py;  // y-up
        return std::pair<float, float>{(vx * ca + vy * sa) / cellU, (-vx * sa + vy * ca) / cellV};
    };
    float minU = 1e30f, maxU = -1e30f, minV = 1e30f, maxV = -1e30f;
    for (const auto& [px, py] : {std::pair<float, float>{0, 0},
                                 {float(f.w), 0},
                                 {0, float(f.h)},
                                 {float(f.w), float(f.h)}}) {
        const auto [cu, cv] = cellCoords(px, py);
        minU = std::min(minU, cu);
        maxU = std::max(maxU, cu);
        minV = std::min(minV, cv);
        maxV = std::max(maxV, cv);
    }
    const int i0 = fastFloor(minU) - 1;
    const int j0 = fastFloor(minV) - 1;
    const int ni = fastFloor(maxU) - i0 + 3;
    const int nj = fastFloor(maxV) - j0 + 3;

    // Everything about a hole that does not change across its cell.
    struct Hole {
        float a, b;    // squash of the hole's shape, times 4
        float inner2;  // below this q^2 the pixel is new and unshaded
        float outer2;  // above this q^2 the pixel is old and unshaded
        float reach, rimGain;
        bool spills;  // reaches past the sides of its own cell
    };
    std::vector<Hole> holes(static_cast<size_t>(ni) * static_cast<size_t>(nj));
    for (int j = 0; j < nj; ++j) {
        for (int i = 0; i < ni; ++i) {
            const int ci = i + i0;
            const int cj = j + j0;
            const quint32 hash = cellHash(ci, cj);
            const float stretch = (static_cast<float>(hash & 0xff) / 255.0f - 0.5f) * 0.6f;
            const float delay = static_cast<float>((hash >> 8) & 0xff) / 255.0f * kMaxDelay;
            const float u = (static_cast<float>(ci) + 0.5f - ((cj & 1) ? 0.5f : 0.0f)) * cellU;
            const float v = (static_cast<float>(cj) + 0.5f) * cellV;
            const float dn = std::min(1.0f, std::sqrt(u * u + v * v) / far);
            const float start = kCentreLead * dn + delay;
            const float open = std::clamp((t - start) / (1.0f - start), 0.0f, 1.0f);
            // Quick at first, as the area grows with the square of the reach,
            // then out to the cells' corners.
            const float open2 = open * open;
            const float reach = 1.15f * std::sqrt(open) + 0.6f * open2 * open2;
            const float rimGain = open * (1.0f - open) * 4.0f;
            const float band = rimGain > 0.0f ? kRim : kSoft;
            Hole& hole =
                holes[static_cast<size_t>(j) * static_cast<size_t>(ni) + static_cast<size_t>(i)];
            hole.a = 4.0f * (1.0f + stretch);
            hole.b = 4.0f * (1.0f - stretch);
            hole.reach = reach;
            hole.rimGain = rimGain;
            hole.inner2 = reach > band ? (reach - band) * (reach - band) : -1.0f;
            hole.outer2 = reach > 0.0f ? (reach + band) * (reach + band) : -1.0f;
            hole.spills = hole.outer2 * 4.0f > std::min(hole.a, hole.b);
        }
    }
    // A hole never reaches past the cells around its own: the two beside it
    // and the two it overlaps in each staggered row above and below. A cell
    // is crowded when one of those reaches into it.
    auto holeAt = [&](int i, int j) -> const Hole& {
        return holes[static_cast<size_t>(j - j0) * static_cast<size_t>(ni) +
                     static_cast<size_t>(i - i0)];
    };
    // The rows next to row j are staggered by half a cell: cell i of row j
    // overlaps their holes i and i + staggerSide(j).
    auto staggerSide = [](int j) { return (j & 1) ? -1 : 1; };
    std::vector<char> crowded(holes.size(), 0);
    for (int j = j0 + 1; j < j0 + nj - 1; ++j) {
        const int side = staggerSide(j);
        for (int i = i0 + 1; i < i0 + ni - 1; ++i) {
            crowded[static_cast<size_t>(j - j0) * static_cast<size_t>(ni) +
                    static_cast<size_t>(i - i0)] =
                holeAt(i - 1, j).spills || holeAt(i + 1, j).spills || holeAt(i, j - 1).spills ||
                holeAt(i + side, j - 1).spills || holeAt(i, j + 1).spills ||
                holeAt(i + side, j + 1).spills;
        }
    }
    const float stepU = ca / cellU;
    const float stepV = -sa / cellV;
    QImage out(from.size(), QImage::Format_RGB32);
    for (int y = 0; y < f.h; ++y) {
        const Pixel* a = rowOf(from, y);
        const Pixel* b = rowOf(to, y);
        Pixel* o = rowOf(out, y);
        auto [cu, cv] = cellCoords(0.5f, static_cast<float>(y) + 0.5f);
        for (int x = 0; x < f.w; ++x, cu += stepU, cv += stepV) {
            const int j = fastFloor(cv);
            const float su = cu + ((j & 1) ? 0.5f : 0.0f);
            const int i = fastFloor(su);
            const Hole& own = holeAt(i, j);
            const float lu = su - static_cast<float>(i) - 0.5f;
            const float lv = cv - static_cast<float>(j) - 0.5f;
            const float q2 = own.a * lu * lu + own.b * lv * lv;
            if (q2 <= own.inner2) {
                o[x] = b[x];
                continue;
            }
            const bool nearOthers = crowded[static_cast<size_t>(j - j0) * static_cast<size_t>(ni) +
                                            static_cast<size_t>(i - i0)] != 0;
            if (q2 >= own.outer2 && !nearOthers) {
                o[x] = a[x];
                continue;
            }
            // How far open the holes here are (the most open one counts) and
            // their dark rims, which show only where no other hole is open.
            float alphas[7];
            float rims[7];
            int n = 0;
            bool covered = false;
            auto edgeOf = [&](const Hole& hole, float hq2) {
                if (hq2 >= hole.outer2) {
                    return;
                }
                if (hq2 <= hole.inner2) {
                    covered = true;
                    return;
                }
                const float q = std::sqrt(hq2);
                alphas[n] = std::clamp((hole.reach - q) / kSoft, 0.0f, 1.0f);
                rims[n] = std::max(0.0f, 1.0f - std::fabs(hole.reach - q) / kRim) * hole.rimGain;
                ++n;
            };
            edgeOf(own, q2);
            if (nearOthers) {
                const int side = staggerSide(j);
                const float du = 0.5f * static_cast<float>(side);
                // Each neighbour at its own local coordinates.
                auto other = [&](int di, int dj, float u, float v) {
                    const Hole& hole = holeAt(i + di, j + dj);
                    if (hole.spills && !covered) {
                        edgeOf(hole, hole.a * u * u + hole.b * v * v);
                    }
                };
                other(-1, 0, lu + 1.0f, lv);
                other(1, 0, lu - 1.0f, lv);
                other(0, 1, lu + du, lv - 1.0f);
                other(side, 1, lu - du, lv - 1.0f);
                other(0, -1, lu + du, lv + 1.0f);
                other(side, -1, lu - du, lv + 1.0f);
            }
            if (covered) {
                o[x] = b[x];
                continue;
            }
            if (n == 0) {
                o[x] = a[x];
                continue;
            }
            float first = 0.0f;  // the two largest alphas
            float second = 0.0f;
            for (int k = 0; k < n; ++k) {
                second = std::max(second, std::min(first, alphas[k]));
                first = std::max(first, alphas[k]);
            }
            float rim = 0.0f;
            for (int k = 0; k < n; ++k) {
                const float others = alphas[k] == first ? second : first;
                rim = std::max(rim, rims[k] * (1.0f - others));
            }
            Pixel p = mix256(a[x], b[x], weight256(first));
            if (rim > 0.01f) {
                p = scale256(p, static_cast<int>(256.0f * (1.0f - 0.45f * rim)));
            }
            o[x] = p;
        }
    }
    return out;
}

// The old frame rolls up over a cylinder, starting at the corner the angle
// points to; its back shows the backside image, shaded by the shading image.
QImage pageCurl(const Inputs& in, const QImage& from, const QImage& to, float t) {
    const Frame f = frameFor(in, from.width(), from.height());
    const QPointF d = downDirection(in.angle);
    const float r = in.radius > 0 ? in.radius : 100.0f;
    // The fold travels over the page and any of the frame beyond it.
    const auto [smin, smax] = projectedRange(f.extent | QRectF(0, 0, f.w, f.h), d);
    constexpr float kShadowReach = 0.35f;  // of the radius, beyond the roll
    const float fold = smax - t * (smax - smin + (1.0f + kShadowReach) * r);
    const auto profile = shadingProfile(in.shadingImage);
    const QImage backside = in.backsideImage.isNull() ? QImage() : asRgb32(in.backsideImage);
    const float dx = static_cast<float>(d.x());
    const float dy = static_cast<float>(d.y());
    const QRectF& page = f.extent;

    // Brightness of the paper (of 256) at roll angle theta: 0 is the flat
    // front, pi/2 the roll's far side, pi the flat back. The shading comes in
    // as the paper turns away, so the roll starts as bright as the flat page.
    auto light = [&](float theta) {
        const float turned = std::sin(std::min(theta, kPi * 0.5f));
        float m = 1.0f - 0.3f * turned;
        if (profile) {
            const size_t k = std::min<size_t>(255, static_cast<size_t>(theta / kPi * 256.0f));
            m *= 1.0f + (0.6f * (*profile)[k] - 0.3f) * turned;
        }
        return static_cast<int>(m * 256.0f);
    };
    // Across the roll, by u / r: the angle and the light of both layers.
    constexpr int kSteps = 1024;
    std::array<float, kSteps + 1> rollAngle{};
    std::array<int, kSteps + 1> frontLight{};
    std::array<int, kSteps + 1> backLight{};
    for (int k = 0; k <= kSteps; ++k) {
        const float theta = std::asin(static_cast<float>(k) / kSteps);
        rollAngle[static_cast<size_t>(k)] = theta;
        frontLight[static_cast<size_t>(k)] = light(theta);
        backLight[static_cast<size_t>(k)] = light(kPi - theta);
    }
    const int flatBackLight = light(kPi);
    const float backScaleX =
        backside.isNull() ? 0.0f : static_cast<float>(backside.width() / page.width());
    const float backScaleY =
        backside.isNull() ? 0.0f : static_cast<float>(backside.height() / page.height());
    const float pageLeft = static_cast<float>(page.left());
    const float pageTop = static_cast<float>(page.top());
    auto backColor = [&](float sx, float sy, int lightLevel) {
        const Pixel under = at(from, static_cast<int>(sx), static_cast<int>(sy));
        Pixel back = 0xffe4e4e4u;
        if (!backside.isNull()) {
            back = at(backside, static_cast<int>((sx - pageLeft) * backScaleX),
                      static_cast<int>((sy - pageTop) * backScaleY));
        }
        // The paper lets a little of its printed side through.
        return scale256(mix256(back, under, 40), lightLevel);
    };
    QImage out(from.size(), QImage::Format_RGB32);
    for (int y = 0; y < f.h; ++y) {
        const Pixel* a = rowOf(from, y);
        const Pixel* b = rowOf(to, y);
        Pixel* o = rowOf(out, y);
        const float py = static_cast<float>(y) + 0.5f;
        float s = 0.5f * dx + py * dy;
        for (int x = 0; x < f.w; ++x, s += dx) {
            const float u = s - fold;
            const float px = static_cast<float>(x) + 0.5f;
            if (u >= r) {
                const float gap = (u - r) / (kShadowReach * r);
                o[x] = gap < 1.0f
                           ? scale256(b[x], static_cast<int>(256.0f * (0.55f + 0.45f * gap * gap)))
                           : b[x];
                continue;
            }
            if (!inside(page, px, py)) {
                o[x] = u < 0 ? a[x] : b[x];
                continue;
            }
            // Paper at arc length L past the fold lies at p + (L - u) * d.
            if (u >= 0) {
                const size_t k = static_cast<size_t>(u / r * kSteps);
                const float theta = rollAngle[k];
                const float top = r * (kPi - theta);
                float sx = px + (top - u) * dx;
                float sy = py + (top - u) * dy;
                if (inside(page, sx, sy)) {
                    o[x] = backColor(sx, sy, backLight[k]);
                    continue;
                }
                const float low = r * theta;
                sx = px + (low - u) * dx;
                sy = py + (low - u) * dy;
                if (inside(page, sx, sy)) {
                    o[x] = scale256(at(from, static_cast<int>(sx), static_cast<int>(sy)),
                                    frontLight[k]);
                } else {
                    o[x] = scale256(b[x], 141);  // in the roll's shadow
                }
                continue;
            }
            const float flat = kPi * r - u;
            const float sx = px + (flat - u) * dx;
            const float sy = py + (flat - u) * dy;
            o[x] = inside(page, sx, sy) ? backColor(sx, sy, flatBackLight) : a[x];
        }
    }
    return out;
}

// A ring wave runs out from the centre; inside it the new frame, outside the
// old, on the wave both displaced and lit by the shading image.
QImage ripple(const Inputs& in, const QImage& from, const QImage& to, float t) {
    const Frame f = frameFor(in, from.width(), from.height());
    const float waveWidth = in.width > 0 ? in.width : 100.0f;
    const float amplitude = in.scale > 0 ? in.scale : 50.0f;
    // Out past the extent and the frame alike, so the wave ends everywhere.
    const float far = farthestCorner(f.extent | QRectF(0, 0, f.w, f.h), f.center);
    const float front = t * (far + waveWidth);
    const float back = front - waveWidth;
    const auto profile = shadingProfile(in.shadingImage);
    std::array<float, 256> push{};
    std::array<quint32, 256> blend{};
    std::array<int, 256> glow{};
    for (size_t i = 0; i < 256; ++i) {
        const float phi = (static_cast<float>(i) + 0.5f) / 256.0f;  // 0 at the front
        push[i] = amplitude * std::sin(2.0f * kPi * phi) * std::sin(kPi * phi);
        blend[i] = weight256(smoothstep(0.3f, 0.7f, phi));
        glow[i] = profile ? static_cast<int>(
                                std::lround(((*profile)[i] - 0.5f) * 160.0f * std::sin(kPi * phi)))
                          : 0;
    }
    const float cx = static_cast<float>(f.center.x());
    const float cy = static_cast<float>(f.center.y());
    const float front2 = front * front;
    const float back2 = back > 0 ? back * back : -1.0f;
    // Each photo ripples within its own area, so the bars beside it are not
    // pulled in as crescents, nor the photo pulled out over them.
    const QRect fromArea = photoArea(from);
    const QRect toArea = photoArea(to);
    const Sampler fromSampler(from, fromArea);
    const Sampler toSampler(to, toArea);
    QImage out(from.size(), QImage::Format_RGB32);
    for (int y = 0; y < f.h; ++y) {
        const Pixel* a = rowOf(from, y);
        const Pixel* b = rowOf(to, y);
        Pixel* o = rowOf(out, y);
        const float py = static_cast<float>(y) + 0.5f;
        const float vy = py - cy;
        const bool rowInExtent = inRows(f.extent, py);
        const bool rowInFrom = y >= fromArea.top() && y <= fromArea.bottom();
        const bool rowInTo = y >= toArea.top() && y <= toArea.bottom();
        for (int x = 0; x < f.w; ++x) {
            const float px = static_cast<float>(x) + 0.5f;
            const float vx = px - cx;
            const float d2 = vx * vx + vy * vy;
            if (d2 >= front2) {
                o[x] = a[x];
                continue;
            }
            if (d2 <= back2) {
                o[x] = b[x];
                continue;
            }
            const float dist = std::sqrt(d2);
            const float phi = (front - dist) / waveWidth;
            const size_t i = std::min<size_t>(255, static_cast<size_t>(phi * 256.0f));
            const bool inFrom = rowInFrom && x >= fromArea.left() && x <= fromArea.right();
            const bool inTo = rowInTo && x >= toArea.left() && x <= toArea.right();
            if (!rowInExtent || !inColumns(f.extent, px) || !(inFrom || inTo)) {
                o[x] = phi > 0.5f ? b[x] : a[x];
                continue;
            }
            const float k = push[i] / std::max(dist, 1.0f);
            const float sx = px + vx * k;
            const float sy = py + vy * k;
            // Near the front only the old frame shows, near the back only the new.
            const quint32 w = blend[i];
            const Pixel pa = w == 256 ? 0 : inFrom ? fromSampler.bilinear(sx, sy) : a[x];
            const Pixel pb = w == 0 ? 0 : inTo ? toSampler.bilinear(sx, sy) : b[x];
            const Pixel p = w == 0 ? pa : w == 256 ? pb : mix256(pa, pb, w);
            o[x] = glow[i] != 0 ? offset(p, glow[i]) : p;
        }
    }
    return out;
}

// A soft-edged wipe along the angle across the whole frame.
QImage swipe(const Inputs& in, const QImage& from, const QImage& to, float t) {
    const int w = from.width();
    const int h = from.height();
    const QPointF d = downDirection(in.angle);
    const float band = in.width > 0 ? in.width : 300.0f;
    const auto [smin, smax] = projectedRange(QRectF(0, 0, w, h), d);
    const float lead = smin + t * (smax - smin + band);
    std::array<quint32, 257> ramp{};
    for (size_t i = 0; i <= 256; ++i) {
        ramp[i] = weight256(smoothstep(0.0f, 1.0f, static_cast<float>(i) / 256.0f));
    }
    const float dx = static_cast<float>(d.x());
    const float dy = static_cast<float>(d.y());
    QImage out(from.size(), QImage::Format_RGB32);
    for (int y = 0; y < h; ++y) {
        const Pixel* a = rowOf(from, y);
        const Pixel* b = rowOf(to, y);
        Pixel* o = rowOf(out, y);
        float s = 0.5f * dx + (static_cast<float>(y) + 0.5f) * dy;
        for (int x = 0; x < w; ++x, s += dx) {
            const float u = (lead - s) / band;  // 1 and more: fully new
            if (u <= 0.0f) {
                o[x] = a[x];
            } else if (u >= 1.0f) {
                o[x] = b[x];
            } else {
                o[x] = mix256(a[x], b[x], ramp[static_cast<size_t>(u * 256.0f)]);
            }
        }
    }
    return out;
}

}  // namespace

Kind kindForStyle(qint32 style) {
    static constexpr Kind kByStyle[] = {
        Kind::Fade,     Kind::MoveIn,      Kind::Push,
        Kind::Reveal,   Kind::CopyMachine, Kind::DisintegrateWithMask,
        Kind::Dissolve, Kind::Flash,       Kind::Mod,
        Kind::PageCurl, Kind::Ripple,      Kind::Swipe,
    };
    return style >= 0 && style < 12 ? kByStyle[style] : Kind::Ripple;
}

Inputs defaultInputs(Kind kind) {
    Inputs in;
    switch (kind) {
        case Kind::CopyMachine:
            in.width = 200.0f;
            break;
        case Kind::Mod:
            in.angle = 2.0f;
            in.radius = 150.0f;
            in.compression = 300.0f;
            break;
        case Kind::PageCurl:
            in.radius = 100.0f;
            break;
        case Kind::Ripple:
            in.width = 100.0f;
            in.scale = 50.0f;
            break;
        case Kind::Swipe:
            in.width = 300.0f;
            break;
        default:
            break;
    }
    return in;
}

QImage render(const Transition& transition, const QImage& fromImage, const QImage& toImage,
              double progress) {
    const QImage from = asRgb32(fromImage);
    const QImage to = asRgb32(toImage);
    if (from.isNull() || from.size() != to.size()) {
        return to;
    }
    const float t = static_cast<float>(std::clamp(progress, 0.0, 1.0));
    const Inputs& in = transition.inputs;
    switch (transition.kind) {
        case Kind::Fade:
        case Kind::Dissolve:
            return crossfade(from, to, t);
        case Kind::MoveIn:
        case Kind::Push:
        case Kind::Reveal:
            return slide(transition.kind, from, to, t);
        case Kind::CopyMachine:
            return copyMachine(in, from, to, t);
        case Kind::DisintegrateWithMask:
            return disintegrate(in, from, to, t);
        case Kind::Flash:
            return flash(in, from, to, t);
        case Kind::Mod:
            return mod(in, from, to, t);
        case Kind::PageCurl:
            return pageCurl(in, from, to, t);
        case Kind::Ripple:
            return ripple(in, from, to, t);
        case Kind::Swipe:
            return swipe(in, from, to, t);
    }
    return to;
}

}  // namespace Transitions
