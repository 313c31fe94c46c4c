#pragma once

#include <QList>
#include <QString>
#include <memory>

class Asset;

// How the browser orders its cards: by one property of the photo's record.
namespace AssetSort {

// The property named as a key path "asset.<property>", in one direction.
struct SortRule {
    QString keyPath;
    bool ascending = true;
    bool operator==(const SortRule&) const = default;
};

// The key path for a property name ("filename" gives "asset.filename").
QString keyPathFor(const QString& property);

// Whether a record has a readable property of that name to sort by.
bool isSortKey(const QString& property);

// The assets in the rule's order; equal ones, and all of them for a property
// that does not exist, keep their order. File names compare without regard to
// letter case, other values by their own order.
QList<std::shared_ptr<Asset>> sorted(QList<std::shared_ptr<Asset>> assets, const SortRule& rule);

}  // namespace AssetSort
