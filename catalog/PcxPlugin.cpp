#include "catalog/PcxPlugin.h"

#include "catalog/PcxHandler.h"

QImageIOPlugin::Capabilities PcxPlugin::capabilities(QIODevice* device,
                                                     const QByteArray& format) const {
    if (format.compare("pcx", Qt::CaseInsensitive) == 0) {
        return CanRead;
    }
    if (!format.isEmpty() || device == nullptr || !device->isReadable()) {
        return {};
    }
    return PcxHandler::canRead(device) ? Capabilities(CanRead) : Capabilities();
}

QImageIOHandler* PcxPlugin::create(QIODevice* device, const QByteArray& format) const {
    auto* handler = new PcxHandler;
    handler->setDevice(device);
    handler->setFormat(format.isEmpty() ? QByteArray("pcx") : format);
    return handler;
}
