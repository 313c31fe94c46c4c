#include "preview/Lanczos.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace Lanczos {

namespace {

constexpr double kLobes = 3.0;

// For every target index, the first source index and the weights of the taps.
struct Taps {
    std::vector<int> first;
    std::vector<int> count;
    std::vector<float> weights;  // count[i] weights per target index, packed
    std::vector<size_t> offset;
};

Taps tapsFor(int sourceLength, int targetLength) {
    Taps taps;
    const double scale = static_cast<double>(targetLength) / sourceLength;
    const double widen = std::max(1.0, 1.0 / scale);
    const double support = kLobes * widen;
    taps.first.resize(static_cast<size_t>(targetLength));
    taps.count.resize(static_cast<size_t>(targetLength));
    taps.offset.resize(static_cast<size_t>(targetLength));
    for (int i = 0; i < targetLength; ++i) {
        const double centre = (i + 0.5) / scale - 0.5;
        const int lo = static_cast<int>(std::floor(centre - support)) + 1;
        const int hi = static_cast<int>(std::floor(centre + support));
        const size_t at = taps.weights.size();
        double sum = 0.0;
        for (int j = lo; j <= hi; ++j) {
            const double w = kernel((j - centre) / widen);
            taps.weights.push_back(static_cast<float>(w));
            sum += w;
        }
        if (sum != 0.0) {
            for (size_t k = at; k < taps.weights.size(); ++k) {
                taps.weights[k] = static_cast<float>(static_cast<double>(taps.weights[k]) / sum);
            }
        }
        const size_t ui = static_cast<size_t>(i);
        taps.first[ui] = lo;
        taps.count[ui] = hi - lo + 1;
        taps.offset[ui] = at;
    }
    return taps;
}

// Resamples interleaved 8-bit channels; edge pixels repeat outside the image.
void resample(const QImage& src, QImage& dst, int channels) {
    const int sw = src.width();
    const int sh = src.height();
    const int dw = dst.width();
    const int dh = dst.height();
    const Taps across = tapsFor(sw, dw);
    const Taps down = tapsFor(sh, dh);
    const size_t rowFloats = static_cast<size_t>(dw) * static_cast<size_t>(channels);
    std::vector<float> wide(static_cast<size_t>(sh) * rowFloats);
    for (int y = 0; y < sh; ++y) {
        const uchar* in = src.constScanLine(y);
        float* out = wide.data() + static_cast<size_t>(y) * rowFloats;
        for (int x = 0; x < dw; ++x) {
            const size_t ux = static_cast<size_t>(x);
            const float* w = across.weights.data() + across.offset[ux];
            for (int c = 0; c < channels; ++c) {
                float acc = 0.0f;
                for (int k = 0; k < across.count[ux]; ++k) {
                    const int sx = std::clamp(across.first[ux] + k, 0, sw - 1);
                    acc += w[k] * in[sx * channels + c];
                }
                out[ux * static_cast<size_t>(channels) + static_cast<size_t>(c)] = acc;
            }
        }
    }
    for (int y = 0; y < dh; ++y) {
        const size_t uy = static_cast<size_t>(y);
        const float* w = down.weights.data() + down.offset[uy];
        uchar* out = dst.scanLine(y);
        for (size_t i = 0; i < rowFloats; ++i) {
            float acc = 0.0f;
            for (int k = 0; k < down.count[uy]; ++k) {
                const int sy = std::clamp(down.first[uy] + k, 0, sh - 1);
                acc += w[k] * wide[static_cast<size_t>(sy) * rowFloats + i];
            }
            out[i] = static_cast<uchar>(std::clamp(std::lround(acc), 0L, 255L));
        }
    }
}

}  // namespace

double kernel(double x) {
    x = std::fabs(x);
    if (x < 1e-9) {
        return 1.0;
    }
    if (x >= kLobes) {
        return 0.0;
    }
    const double px = M_PI * x;
    return kLobes * std::sin(px) * std::sin(px / kLobes) / (px * px);
}

QImage scaled(const QImage& source, QSize size) {
    if (source.isNull() || size.isEmpty()) {
        return {};
    }
    const bool grey = source.format() == QImage::Format_Grayscale8;
    const QImage src = grey ? source : source.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    QImage dst(size, src.format());
    resample(src, dst, grey ? 1 : 4);
    if (!grey) {
        // Ringing can push a colour above its alpha, which premultiplied data forbids.
        for (int y = 0; y < dst.height(); ++y) {
            QRgb* line = reinterpret_cast<QRgb*>(dst.scanLine(y));
            for (int x = 0; x < dst.width(); ++x) {
                const int a = qAlpha(line[x]);
                line[x] = qRgba(std::min(qRed(line[x]), a), std::min(qGreen(line[x]), a),
                                std::min(qBlue(line[x]), a), a);
            }
        }
    }
    return dst;
}

}  // namespace Lanczos
