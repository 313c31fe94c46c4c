#pragma once

#include <QList>
#include <QWidget>

#include "catalog/AssetSort.h"

// The thumbnail browser.
class AssetCollectionView : public QWidget {
    Q_OBJECT
  public:
    explicit AssetCollectionView(QWidget* parent = nullptr);

    bool isLoadDirectory() const { return isLoadDirectory_; }
    void setIsLoadDirector(bool isLoadDirectory) { isLoadDirectory_ = isLoadDirectory; }

    // Circular, loop, scatter and wrapped.
    static constexpr qint32 kLayoutCount = 4;

    qint32 subviewsLayoutType() const { return subviewsLayoutType_; }
    void setSubviewsLayoutType(qint32 type) { subviewsLayoutType_ = type; }

    // The order of the cards; the cards follow it at the next layout pass.
    const QList<AssetSort::SortRule>& sortDescriptors() const { return sortDescriptors_; }
    void setSortDescriptors(const QList<AssetSort::SortRule>& rules) { sortDescriptors_ = rules; }

    // Seconds an animated layout pass takes; stored on first use.
    static double layoutDuration();

  private:
    bool isLoadDirectory_ = false;
    qint32 subviewsLayoutType_ = 3;
    QList<AssetSort::SortRule> sortDescriptors_;
};
