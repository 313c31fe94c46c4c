#include "catalog/AssetSort.h"

#include <QDateTime>
#include <QVariant>
#include <algorithm>

#include "catalog/Asset.h"
#include "catalog/ImageAsset.h"

namespace AssetSort {

namespace {
const QString kPrefix = QStringLiteral("asset.");

// The property's value for comparing; invalid when the record has no such property.
QVariant valueOf(Asset& asset, const QString& property) {
    if (property == QLatin1String("filename")) {
        return asset.filename();
    }
    if (property == QLatin1String("fullFilename")) {
        return asset.fullFilename();
    }
    if (property == QLatin1String("fileSize")) {
        return QVariant::fromValue(asset.fileSize());
    }
    if (property == QLatin1String("localizedTypeDescription")) {
        return asset.localizedTypeDescription();
    }
    if (property == QLatin1String("dateLastUpdated")) {
        // A record without a date sorts before every dated one.
        const std::optional<QDateTime> date = asset.dateLastUpdated();
        return QVariant::fromValue(date ? date->toMSecsSinceEpoch() : LLONG_MIN);
    }
    if (property == QLatin1String("includedInSlideshow")) {
        return asset.includedInSlideshow();
    }
    auto* image = dynamic_cast<ImageAsset*>(&asset);
    if (image != nullptr && property == QLatin1String("pixelsWide")) {
        return QVariant::fromValue(image->pixelsWide());
    }
    if (image != nullptr && property == QLatin1String("pixelsHigh")) {
        return QVariant::fromValue(image->pixelsHigh());
    }
    return {};
}
}  // namespace

QString keyPathFor(const QString& property) {
    return kPrefix + property;
}

bool isSortKey(const QString& property) {
    static const QStringList keys = {
        "filename",        "fullFilename",        "fileSize",   "localizedTypeDescription",
        "dateLastUpdated", "includedInSlideshow", "pixelsWide", "pixelsHigh"};
    return keys.contains(property);
}

QList<std::shared_ptr<Asset>> sorted(QList<std::shared_ptr<Asset>> assets, const SortRule& rule) {
    if (!rule.keyPath.startsWith(kPrefix)) {
        return assets;
    }
    const QString property = rule.keyPath.mid(kPrefix.size());
    if (!isSortKey(property)) {
        return assets;
    }
    const bool byName = property == QLatin1String("filename");
    // Values are read once: a pixel size may open the file.
    QList<std::pair<QVariant, std::shared_ptr<Asset>>> keyed;
    keyed.reserve(assets.size());
    for (const std::shared_ptr<Asset>& asset : assets) {
        keyed.append({asset ? valueOf(*asset, property) : QVariant(), asset});
    }
    const auto less = [byName](const QVariant& a, const QVariant& b) {
        if (byName) {
            return a.toString().compare(b.toString(), Qt::CaseInsensitive) < 0;
        }
        return QVariant::compare(a, b) == QPartialOrdering::Less;
    };
    std::stable_sort(keyed.begin(), keyed.end(), [&](const auto& x, const auto& y) {
        return rule.ascending ? less(x.first, y.first) : less(y.first, x.first);
    });
    for (qsizetype i = 0; i < keyed.size(); ++i) {
        assets[i] = keyed[i].second;
    }
    return assets;
}

}  // namespace AssetSort
