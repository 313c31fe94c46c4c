#include "preview/Pointillize.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace Pointillize {

namespace {

inline quint32 cellHash(int i, int j) {
    quint32 h = static_cast<quint32>(i) * 0x27d4eb2du ^ static_cast<quint32>(j) * 0x165667b1u;
    h ^= h >> 15;
    h *= 0x85ebca6bu;
    return h ^ (h >> 13);
}

struct Dot {
    float x = 0;
    float y = 0;
    QRgb color = 0;
};

}  // namespace

QImage render(const QImage& source, float radius, QPointF center) {
    if (source.isNull() || radius <= 0.0f) {
        return source.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    }
    const QImage src = source.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    const int w = src.width();
    const int h = src.height();
    const float cell = 2.0f * radius;
    const float cx = static_cast<float>(center.x());
    const float cy = static_cast<float>(h - center.y());  // y-down
    // Cell indices covering the image with one cell to spare on each side.
    const int i0 = static_cast<int>(std::floor((0 - cx) / cell)) - 1;
    const int j0 = static_cast<int>(std::floor((0 - cy) / cell)) - 1;
    const int ni = static_cast<int>(std::floor((static_cast<float>(w) - cx) / cell)) - i0 + 2;
    const int nj = static_cast<int>(std::floor((static_cast<float>(h) - cy) / cell)) - j0 + 2;
    std::vector<Dot> dots(static_cast<size_t>(ni) * static_cast<size_t>(nj));
    const int reach = static_cast<int>(std::ceil(radius));
    for (int j = 0; j < nj; ++j) {
        for (int i = 0; i < ni; ++i) {
            const quint32 hash = cellHash(i + i0, j + j0);
            Dot& dot =
                dots[static_cast<size_t>(j) * static_cast<size_t>(ni) + static_cast<size_t>(i)];
            dot.x = cx + cell * (static_cast<float>(i + i0) + 0.15f +
                                 0.7f * static_cast<float>(hash & 0xffff) / 65535.0f);
            dot.y = cy + cell * (static_cast<float>(j + j0) + 0.15f +
                                 0.7f * static_cast<float>(hash >> 16) / 65535.0f);
            quint32 sum[4] = {0, 0, 0, 0};
            quint32 n = 0;
            const int px = static_cast<int>(dot.x);
            const int py = static_cast<int>(dot.y);
            for (int y = std::max(0, py - reach); y <= std::min(h - 1, py + reach); ++y) {
                const QRgb* line = reinterpret_cast<const QRgb*>(src.constScanLine(y));
                for (int x = std::max(0, px - reach); x <= std::min(w - 1, px + reach); ++x) {
                    const float ddx = static_cast<float>(x) + 0.5f - dot.x;
                    const float ddy = static_cast<float>(y) + 0.5f - dot.y;
                    if (ddx * ddx + ddy * ddy > radius * radius) {
                        continue;
                    }
                    sum[0] += qAlpha(line[x]);
                    sum[1] += qRed(line[x]);
                    sum[2] += qGreen(line[x]);
                    sum[3] += qBlue(line[x]);
                    ++n;
                }
            }
            if (n > 0) {
                dot.color = qRgba(static_cast<int>(sum[1] / n), static_cast<int>(sum[2] / n),
                                  static_cast<int>(sum[3] / n), static_cast<int>(sum[0] / n));
            } else {
                // A dot beyond the border takes the nearest border pixel, so
                // the edges are not left without colour.
                dot.color = src.pixel(std::clamp(px, 0, w - 1), std::clamp(py, 0, h - 1));
            }
        }
    }
    QImage out(w, h, QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < h; ++y) {
        const QRgb* in = reinterpret_cast<const QRgb*>(src.constScanLine(y));
        QRgb* line = reinterpret_cast<QRgb*>(out.scanLine(y));
        const float fy = static_cast<float>(y) + 0.5f;
        const int j = static_cast<int>(std::floor((fy - cy) / cell)) - j0;
        for (int x = 0; x < w; ++x) {
            const float fx = static_cast<float>(x) + 0.5f;
            const int i = static_cast<int>(std::floor((fx - cx) / cell)) - i0;
            float best = 1e30f;
            QRgb color = 0;
            for (int dj = -1; dj <= 1; ++dj) {
                for (int di = -1; di <= 1; ++di) {
                    const int ii = i + di;
                    const int jj = j + dj;
                    if (ii < 0 || jj < 0 || ii >= ni || jj >= nj) {
                        continue;
                    }
                    const Dot& dot = dots[static_cast<size_t>(jj) * static_cast<size_t>(ni) +
                                          static_cast<size_t>(ii)];
                    const float d2 = (fx - dot.x) * (fx - dot.x) + (fy - dot.y) * (fy - dot.y);
                    if (d2 < best) {
                        best = d2;
                        color = dot.color;
                    }
                }
            }
            // Soft dot edge, one pixel wide, then the darker gap colour.
            const float edge = std::clamp(std::sqrt(best) - radius + 0.5f, 0.0f, 1.0f);
            const float m = 1.0f - 0.3f * edge;
            const int a = std::min(qAlpha(color), qAlpha(in[x]));
            line[x] = qRgba(std::min(a, static_cast<int>(qRed(color) * m)),
                            std::min(a, static_cast<int>(qGreen(color) * m)),
                            std::min(a, static_cast<int>(qBlue(color) * m)), a);
        }
    }
    return out;
}

}  // namespace Pointillize
