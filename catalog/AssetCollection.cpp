#include "catalog/AssetCollection.h"

AssetCollection::AssetCollection(const QUrl& rootURL) : rootURL_(rootURL) {}

AssetCollection::~AssetCollection() = default;

void AssetCollection::insertObject(const AssetPtr& asset, qsizetype index) {
    assets_.insert(index, asset);
    emit assetsInserted({index});
}

void AssetCollection::removeObjectFromAssetsAtIndex(qsizetype index) {
    assets_.removeAt(index);
    emit assetsRemoved({index});
}

void AssetCollection::addAsset(const AssetPtr& asset) { insertObject(asset, assets_.size()); }
