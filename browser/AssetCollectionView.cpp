#include "browser/AssetCollectionView.h"

#include <QSettings>

namespace {
constexpr const char* kLayoutDurationKey = "layoutDuration";
constexpr double kDefaultLayoutDuration = 2.5;
}  // namespace

AssetCollectionView::AssetCollectionView(QWidget* parent) : QWidget(parent) {}

double AssetCollectionView::layoutDuration() {
    QSettings settings;
    const QVariant stored = settings.value(kLayoutDurationKey);
    bool ok = false;
    const double value = stored.toDouble(&ok);
    if (stored.isValid() && ok) {
        return value;
    }
    settings.setValue(kLayoutDurationKey, kDefaultLayoutDuration);
    settings.sync();
    return kDefaultLayoutDuration;
}
