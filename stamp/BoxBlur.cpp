#include "stamp/BoxBlur.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace {
constexpr int kPasses = 3;

// One box pass over `count` pixels `stride` apart, each channel of ARGB32 words;
// `scratch` holds a copy of the line.
void boxLine(quint32* line, int count, qsizetype stride, int half, std::vector<quint32>& scratch) {
    scratch.resize(static_cast<size_t>(count));
    for (int i = 0; i < count; ++i) {
        scratch[static_cast<size_t>(i)] = line[i * stride];
    }
    const int width = 2 * half + 1;
    int sum[4] = {0, 0, 0, 0};
    const auto add = [&sum](quint32 p, int sign) {
        sum[0] += sign * static_cast<int>(p & 0xff);
        sum[1] += sign * static_cast<int>((p >> 8) & 0xff);
        sum[2] += sign * static_cast<int>((p >> 16) & 0xff);
        sum[3] += sign * static_cast<int>(p >> 24);
    };
    for (int i = 0; i < std::min(half, count); ++i) {
        add(scratch[static_cast<size_t>(i)], 1);
    }
    for (int i = 0; i < count; ++i) {
        if (i + half < count) {
            add(scratch[static_cast<size_t>(i + half)], 1);
        }
        if (i - half - 1 >= 0) {
            add(scratch[static_cast<size_t>(i - half - 1)], -1);
        }
        // Rounded to the nearest: the premultiplied channels stay within their alpha.
        const auto mean = [width](int s) { return static_cast<quint32>((s + width / 2) / width); };
        line[i * stride] =
            mean(sum[0]) | (mean(sum[1]) << 8) | (mean(sum[2]) << 16) | (mean(sum[3]) << 24);
    }
}
}  // namespace

void BoxBlur::blur(QImage& image, qreal reachX, qreal reachY) {
    if (image.isNull()) {
        return;
    }
    if (image.format() != QImage::Format_ARGB32_Premultiplied) {
        image = image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    }
    // Three passes of half-width h spread an edge over 3h pixels.
    const int halfX = std::max(0, static_cast<int>(std::lround(reachX / kPasses)));
    const int halfY = std::max(0, static_cast<int>(std::lround(reachY / kPasses)));
    const int w = image.width();
    const int h = image.height();
    const qsizetype stride = image.bytesPerLine() / 4;
    auto* bits = reinterpret_cast<quint32*>(image.bits());
    std::vector<quint32> scratch;
    for (int pass = 0; pass < kPasses; ++pass) {
        if (halfX > 0) {
            for (int y = 0; y < h; ++y) {
                boxLine(bits + y * stride, w, 1, halfX, scratch);
            }
        }
        if (halfY > 0) {
            for (int x = 0; x < w; ++x) {
                boxLine(bits + x, h, stride, halfY, scratch);
            }
        }
    }
}
