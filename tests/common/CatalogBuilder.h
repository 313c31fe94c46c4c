#pragma once

#include <QString>
#include <memory>

#include "catalog/AssetCollection.h"

// A catalog of plain records on made-up paths ("<folder>/p0.jpg", ...), the first
// `ticked` of them ticked (all when negative). Nothing is read from disk.
std::unique_ptr<AssetCollection> catalogOf(int count, int ticked = -1,
                                           const QString& folder = QStringLiteral("/tmp"));
