#include "catalog/Asset.h"

#include <QFileInfo>

Asset::Asset(const QUrl& url) { setURL(url); }

Asset::~Asset() = default;

void Asset::setURL(const QUrl& url) { url_ = url; }

QString Asset::fullFilename() const { return url_.toLocalFile(); }

QString Asset::filename() const { return QFileInfo(fullFilename()).fileName(); }

void Asset::setIncludedInSlideshow(bool included) {
    includedInSlideshow_ = included;
    emit includedInSlideshowChanged();
}
