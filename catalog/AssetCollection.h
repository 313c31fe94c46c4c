#pragma once

#include <QList>
#include <QObject>
#include <QUrl>
#include <memory>

#include "catalog/Asset.h"

using AssetPtr = std::shared_ptr<Asset>;

// The ordered catalog of loaded photos, in the order they were added.
class AssetCollection : public QObject {
    Q_OBJECT
public:
    explicit AssetCollection(const QUrl& rootURL);  // initWithRootURL
    ~AssetCollection() override;

    // The catalog's own list; callers that change it directly bypass the
    // change signals and must rebuild the browser themselves.
    QList<AssetPtr>& assets() { return assets_; }

    void insertObject(const AssetPtr& asset, qsizetype index);
    void removeObjectFromAssetsAtIndex(qsizetype index);
    void addAsset(const AssetPtr& asset);

signals:
    void assetsInserted(const QList<qsizetype>& indexes);
    void assetsRemoved(const QList<qsizetype>& indexes);

private:
    QUrl rootURL_;
    QList<AssetPtr> assets_;
};
