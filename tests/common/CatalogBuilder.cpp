#include "common/CatalogBuilder.h"

#include <QUrl>

#include "catalog/Asset.h"

std::unique_ptr<AssetCollection> catalogOf(int count, int ticked, const QString& folder) {
    auto catalog = std::make_unique<AssetCollection>(QUrl());
    for (int i = 0; i < count; ++i) {
        auto asset = std::make_shared<Asset>(
            QUrl::fromLocalFile(QStringLiteral("%1/p%2.jpg").arg(folder).arg(i)));
        asset->setIncludedInSlideshow(ticked < 0 || i < ticked);
        catalog->addAsset(asset);
    }
    return catalog;
}
