#pragma once

#include <QImage>
#include <QImageIOHandler>
#include <QVariant>

// Reads ZSoft PCX images: 1-bit, 2- and 4-bit (packed or as 1-bit planes),
// 8-bit with the 256-colour palette at the end, and 24-bit as three planes,
// all run-length encoded. Any inconsistency in the data makes the file
// unreadable; nothing is trusted before it is checked against the data size.
class PcxHandler : public QImageIOHandler {
  public:
    // Largest side accepted, far beyond any real PCX file.
    static constexpr int kMaxSide = 16384;

    bool canRead() const override;
    bool read(QImage* image) override;
    bool supportsOption(ImageOption option) const override;
    QVariant option(ImageOption option) const override;

    // Whether the device's next bytes start a PCX header we can decode; the
    // device position is left unchanged.
    static bool canRead(QIODevice* device);
};
