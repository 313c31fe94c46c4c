#include "stamp/JpegQuality.h"

#include <array>
#include <cstdlib>
#include <limits>

namespace {

// The IJG standard luminance table in zigzag order, as DQT stores its entries.
constexpr std::array<int, 64> kLuminance{
    16, 11, 12,  14,  12,  10, 16, 14,  13,  14,  18,  17,  16, 19,  24,  40,
    26, 24, 22,  22,  24,  49, 35, 37,  29,  40,  58,  51,  61, 60,  57,  51,
    56, 55, 64,  72,  92,  78, 64, 68,  87,  69,  55,  56,  80, 109, 81,  87,
    95, 98, 103, 104, 103, 62, 77, 113, 121, 112, 100, 120, 92, 101, 103, 99};

// libjpeg's jpeg_quality_scaling and jpeg_add_quant_table with baseline limits.
int scaled(int base, int quality) {
    const int scale = quality < 50 ? 5000 / quality : 200 - quality * 2;
    const int value = (base * scale + 50) / 100;
    return value < 1 ? 1 : (value > 255 ? 255 : value);
}

int closestQuality(const std::array<int, 64>& table) {
    int best = JpegQuality::kUnknown;
    long bestDistance = std::numeric_limits<long>::max();
    // From the top, so that among equal tables the higher quality is kept.
    for (int quality = 100; quality >= 1; --quality) {
        long distance = 0;
        for (size_t i = 0; i < table.size(); ++i) {
            distance += std::labs(long(table[i]) - scaled(kLuminance[i], quality));
        }
        if (distance < bestDistance) {
            bestDistance = distance;
            best = quality;
        }
    }
    return best;
}

}  // namespace

int JpegQuality::estimate(QByteArrayView jpeg) {
    const auto byte = [&](qsizetype at) { return static_cast<unsigned char>(jpeg[at]); };
    if (jpeg.size() < 4 || byte(0) != 0xFF || byte(1) != 0xD8) {
        return kUnknown;
    }
    qsizetype at = 2;
    while (at + 4 <= jpeg.size()) {
        if (byte(at) != 0xFF) {
            return kUnknown;
        }
        const unsigned char marker = byte(at + 1);
        if (marker == 0xFF) {  // fill byte before a marker
            ++at;
            continue;
        }
        if (marker == 0xDA || marker == 0xD9) {  // image data or end: no table came
            return kUnknown;
        }
        const qsizetype length = (qsizetype(byte(at + 2)) << 8) | byte(at + 3);
        const qsizetype end = at + 2 + length;
        if (length < 2 || end > jpeg.size()) {
            return kUnknown;
        }
        if (marker == 0xDB) {
            // One segment may hold several tables; 0 is luminance by convention.
            for (qsizetype t = at + 4; t < end;) {
                const int precision = byte(t) >> 4;
                const int id = byte(t) & 0x0F;
                const qsizetype entryBytes = precision == 0 ? 1 : 2;
                if (t + 1 + 64 * entryBytes > end) {
                    return kUnknown;
                }
                if (id == 0) {
                    std::array<int, 64> table{};
                    for (qsizetype i = 0; i < 64; ++i) {
                        const qsizetype e = t + 1 + i * entryBytes;
                        table[size_t(i)] =
                            entryBytes == 1 ? byte(e) : (int(byte(e)) << 8) | byte(e + 1);
                    }
                    return closestQuality(table);
                }
                t += 1 + 64 * entryBytes;
            }
        }
        at = end;
    }
    return kUnknown;
}
