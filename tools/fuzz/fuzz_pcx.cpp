// Feeds arbitrary bytes to the PCX reader: it must refuse or decode, never
// crash, read out of bounds or allocate without bound.
#include <QBuffer>
#include <QImage>

#include "catalog/PcxHandler.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    QBuffer buffer;
    buffer.setData(reinterpret_cast<const char*>(data), qsizetype(size));
    buffer.open(QIODevice::ReadOnly);
    PcxHandler handler;
    handler.setDevice(&buffer);
    if (!handler.canRead()) {
        return 0;
    }
    const QSize size0 = handler.option(QImageIOHandler::Size).toSize();
    QImage image;
    if (handler.read(&image) && image.size() != size0) {
        __builtin_trap();  // the header's size and the decoded size must agree
    }
    return 0;
}
