// Feeds arbitrary bytes to the metadata readers: EXIF dates and thumbnail,
// JFIF/pHYs density and the walk over a TIFF's page directories.
#include <QByteArray>

#include "catalog/ExifMetadata.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const ExifMetadata::Fields fields = ExifMetadata::readBuffer(data, qint64(size), true);
    if (fields.dpiX && !(*fields.dpiX > 0)) {
        __builtin_trap();
    }
    const QByteArray bytes =
        QByteArray::fromRawData(reinterpret_cast<const char*>(data), qsizetype(size));
    const auto dpi = ExifMetadata::containerDpi(bytes);
    if (dpi && !(dpi->first > 0 && dpi->second > 0)) {
        __builtin_trap();
    }
    ExifMetadata::readLastTiffPageDatesFromBuffer(QByteArray(bytes.constData(), bytes.size()));
    return 0;
}
