#include "catalog/Asset.h"

#include <QFileInfo>
#include <QHash>

#include "catalog/RegularFile.h"

namespace {

// Our own names for the kinds of file a user may load, by lower-case extension.
const QHash<QString, QString>& typeDescriptions() {
    static const QHash<QString, QString> table = {
        {"jpg", "JPEG image"},
        {"jpeg", "JPEG image"},
        {"jpe", "JPEG image"},
        {"png", "PNG image"},
        {"tif", "TIFF image"},
        {"tiff", "TIFF image"},
        {"bmp", "Windows bitmap image"},
        {"pcx", "PCX image"},
        {"gif", "GIF image"},
        {"webp", "WebP image"},
        {"ico", "Windows icon image"},
        {"cur", "Windows cursor"},
        {"icns", "Apple icon image"},
        {"tga", "Targa image"},
        {"wbmp", "WBMP image"},
        {"mng", "MNG animation"},
        {"pbm", "Portable bitmap image"},
        {"pgm", "Portable graymap image"},
        {"ppm", "Portable pixmap image"},
        {"xbm", "X bitmap image"},
        {"xpm", "X pixmap image"},
        {"svg", "SVG image"},
        {"zip", "ZIP archive"},
        {"mp3", "MP3 audio"},
        {"wav", "Waveform audio"},
        {"txt", "Plain text document"},
    };
    return table;
}

}  // namespace

Asset::Asset(const QUrl& url) {
    setURL(url);
}

Asset::~Asset() = default;

void Asset::setURL(const QUrl& url) {
    url_ = url;
}

QString Asset::fullFilename() const {
    return url_.toLocalFile();
}

QString Asset::filename() const {
    return QFileInfo(fullFilename()).fileName();
}

QString Asset::localizedTypeDescription() const {
    const QString suffix = QFileInfo(fullFilename()).suffix().toLower();
    return typeDescriptions().value(suffix, QString::fromLatin1(kUnrecognizedFileType));
}

quint64 Asset::fileSize() {
    if (fileSize_ == 0) {
        const QString path = fullFilename();
        fileSize_ = RegularFile::exists(path) ? quint64(QFileInfo(path).size()) : 0;
    }
    return fileSize_;
}

void Asset::setPreviewImage(const QImage& image) {
    if (image.cacheKey() == previewImage_.cacheKey()) {
        return;
    }
    previewImage_ = image;
    emit previewImageChanged();
}

void Asset::setIncludedInSlideshow(bool included) {
    includedInSlideshow_ = included;
    emit includedInSlideshowChanged();
}
