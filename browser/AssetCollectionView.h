#pragma once

#include <QEasingCurve>
#include <QElapsedTimer>
#include <QGraphicsScene>
#include <QGraphicsView>
#include <QImage>
#include <QList>
#include <QPointer>
#include <QStringList>
#include <QTimer>
#include <QVariantAnimation>
#include <memory>
#include <vector>

#include "catalog/AssetCollection.h"
#include "catalog/AssetSort.h"

class AssetCollectionViewNode;
class SlideCarrierView;

// The thumbnail browser: one card per photo of its catalog, arranged by one of
// the four layouts. Layout results are y-up; they become scene coordinates
// only where the cards are moved.
class AssetCollectionView : public QGraphicsView {
    Q_OBJECT
  public:
    explicit AssetCollectionView(QWidget* parent = nullptr);
    ~AssetCollectionView() override;

    bool isLoadDirectory() const { return isLoadDirectory_; }
    void setIsLoadDirector(bool isLoadDirectory) { isLoadDirectory_ = isLoadDirectory; }

    // Circular, loop, scatter and wrapped.
    static constexpr qint32 kLayoutCount = 4;

    qint32 subviewsLayoutType() const { return subviewsLayoutType_; }
    // Stored unchecked; a number without a layout leaves the cards where they are.
    void setSubviewsLayoutType(qint32 type);

    // The order of the cards; a new order lays out at once.
    const QList<AssetSort::SortRule>& sortDescriptors() const { return sortDescriptors_; }
    void setSortDescriptors(const QList<AssetSort::SortRule>& rules);

    // Seconds an animated layout pass takes; stored on first use.
    static double layoutDuration();

    AssetCollection* assetCollection() const { return assetCollection_; }
    // Follows the catalog's insertions, removals and resets from now on.
    void setAssetCollection(AssetCollection* collection);

    // Every node again from the catalog, then one pass.
    void reloadData();
    // Drops the nodes at the given positions, in the order given, then one pass.
    void reloadRemovedData(const QStringList& positions);
    AssetCollectionViewNode* insertNodeForAssetAtIndex(qsizetype index);
    void removeNodeForAssetAtIndex(qsizetype index);

    // The nodes in the catalog's order.
    const std::vector<std::unique_ptr<AssetCollectionViewNode>>& nodes() const { return nodes_; }
    // The nodes in display order: sorted by the sort rules, else as added.
    std::vector<AssetCollectionViewNode*> arrangedNodes() const;

    // One layout pass now; passes after catalog changes wait for the batch.
    void layoutSubviews();

    void selectAllNodes();
    void deselectAllNodes();

    // The card the keyboard is on, none before the first arrow key.
    SlideCarrierView* currentSlide() const;

    bool autoCyclesLayout() const { return autoCyclesLayout_; }
    void setAutoCyclesLayout(bool on);
    double layoutCycleInterval() const { return layoutCycleInterval_; }
    void setLayoutCycleInterval(double seconds);
    void cycleLayout();

    // A drop shadow under every card, fading in and out over half a second;
    // off unless asked for.
    bool slidesHaveShadows() const { return slidesHaveShadows_; }
    void setSlidesHaveShadows(bool on);

    // Slowly drifting light cells behind the cards; off unless asked for.
    bool usesQuartzCompositionBackground() const { return usesQuartzCompositionBackground_; }
    void setUsesQuartzCompositionBackground(bool on);
    // A crowd of cards at rest in a small area is drawn once into a picture,
    // built a slice per event-loop turn, then copied instead of drawn again.
    bool hasRestLayer() const { return restLayerReady_; }

    // Thumbnails and their sizes turned by each photo's orientation tag.
    void setUpright(bool on);

  protected:
    void drawBackground(QPainter* painter, const QRectF& rect) override;
    // Called only while the rest layer is ready.
    void drawItems(QPainter* painter, int numItems, QGraphicsItem* items[],
                   const QStyleOptionGraphicsItem options[]) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    // Arrows and Home/End move between cards in display order, Space ticks,
    // Enter makes the photo the model.
    void keyPressEvent(QKeyEvent* event) override;

  private:
    void handleAssetsInsertedInCatalogAtIndexes(const QList<qsizetype>& indexes);
    void handleAssetsRemovedFromCatalogAtIndexes(const QList<qsizetype>& indexes);
    void scheduleLayout();
    void stepAnimations();
    void startLayoutCycleTimer();
    void stopLayoutCycleTimer();
    void applyShadow(SlideCarrierView* slide) const;
    void setShadowAlpha(qreal alpha);
    void finishShadowFade();
    void updateBackgroundTimer();
    void stepBackground();
    // Drops the rest layer; it is built again once the cards are still.
    void restLayerChanged();
    void buildRestLayer();

    bool isLoadDirectory_ = false;
    QPointer<AssetCollection> assetCollection_;
    std::vector<std::unique_ptr<AssetCollectionViewNode>> nodes_;
    bool autoCyclesLayout_ = false;
    double layoutCycleInterval_ = 3.0;
    QTimer layoutTimer_;
    qint32 subviewsLayoutType_ = 3;
    QList<AssetSort::SortRule> sortDescriptors_;
    bool slidesHaveShadows_ = false;
    bool upright_ = false;
    // One fade drives every card's shadow; cards come and go with it.
    QVariantAnimation shadowFade_;
    qreal shadowAlpha_ = 0;
    bool usesQuartzCompositionBackground_ = false;
    QTimer backgroundTick_;
    // The last frame of the cells, kept until the clock or the visible part moves.
    QImage cells_;
    QRectF cellsRect_;
    qint64 cellsMs_ = -1;
    QPointer<SlideCarrierView> current_;

    // Lets the rest layer draw cards the way the view does, a few at a time.
    class CardScene : public QGraphicsScene {
      public:
        using QGraphicsScene::drawItems;
    };
    CardScene scene_;
    // Coalesces the passes of a scan's arrivals.
    QTimer pendingLayout_;
    // One clock for every card in motion, rather than an animation per card.
    QTimer animationTick_;
    QElapsedTimer clock_;
    QEasingCurve easing_;
    std::vector<SlideCarrierView*> moving_;
    // Something a pass depends on changed since the last pass.
    bool layoutDirty_ = true;

    QTimer restLayerTimer_;
    // Background and cards of restLayerRect_, opaque, so that it stands in for both.
    QImage restLayer_;
    QRect restLayerRect_;
    // The cards bottom to top; those from restLayerNext_ on are not drawn yet.
    QList<QGraphicsItem*> restLayerItems_;
    qsizetype restLayerNext_ = 0;
    bool restLayerReady_ = false;
};
