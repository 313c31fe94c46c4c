#pragma once

#include <QImageIOPlugin>

// Offers PcxHandler to QImageReader under the format name "pcx"; linked in
// statically and registered by PcxFormat::registerFormat().
class PcxPlugin : public QImageIOPlugin {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QImageIOHandlerFactoryInterface_iid FILE "PcxPlugin.json")
  public:
    Capabilities capabilities(QIODevice* device, const QByteArray& format) const override;
    QImageIOHandler* create(QIODevice* device, const QByteArray& format = {}) const override;
};
