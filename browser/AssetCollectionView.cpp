#include "browser/AssetCollectionView.h"

#include <QGraphicsDropShadowEffect>
#include <QGraphicsEffect>
#include <QHash>
#include <QKeyEvent>
#include <QLinearGradient>
#include <QPainter>
#include <QResizeEvent>
#include <QScrollArea>
#include <QSettings>
#include <QStyleOptionGraphicsItem>
#include <algorithm>
#include <cmath>

#include "browser/AssetCollectionViewNode.h"
#include "browser/CellsBackground.h"
#include "browser/SlideCarrierView.h"
#include "browser/ViewLayout.h"
#include "catalog/AssetCollection.h"
#include "preview/SlideshowImageView.h"

namespace {
constexpr const char* kLayoutDurationKey = "layoutDuration";
constexpr double kDefaultLayoutDuration = 2.5;
// A pass outside a load grouping takes the platform's usual quarter second.
constexpr int kPlainLayoutMs = 250;
// Long enough to gather a scan's arrivals, short enough to look immediate.
constexpr int kBatchMs = 30;
constexpr int kFrameMs = 16;
constexpr qint32 kScatterLayout = 2;
constexpr int kShadowFadeMs = 500;
constexpr qreal kShadowAlpha = 0.75;
// The cells drift slowly; a modest rate looks smooth and leaves the cards' frames alone.
constexpr int kBackgroundFrameMs = 66;
// The cells are drawn at an eighth of the view's size and scaled up.
constexpr int kBackgroundScale = 8;
// A click's highlight fades over half a second; building in between would be thrown away.
constexpr int kRestLayerDelayMs = 100;
// Drawing the layer takes about as long as one frame of the crowd; in slices
// short enough for the event loop to keep its frames.
constexpr int kRestLayerSliceMs = 6;
// The layer pays only where a frame draws each pixel several times over; 16 MB at most.
constexpr double kRestLayerMinOverdraw = 2;
constexpr qint64 kRestLayerMaxPixels = 4'000'000;
}  // namespace

AssetCollectionView::AssetCollectionView(QWidget* parent)
    : QGraphicsView(parent), easing_(SlideshowImageView::easeInEaseOut()) {
    // Cards move on every pass; an index would be rebuilt more than it is used.
    scene_.setItemIndexMethod(QGraphicsScene::NoIndex);
    setScene(&scene_);
    // Files dropped on the cards are the window's to import; a view that took
    // the drag itself would swallow them.
    setAcceptDrops(false);
    viewport()->setAcceptDrops(false);
    setFocusPolicy(Qt::StrongFocus);
    // The main window's scroll area scrolls this view, which is as tall as its cards need.
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFrameShape(QFrame::NoFrame);
    // Hundreds of cards change per frame; a region of their rectangles costs
    // far more to build than repainting the one rectangle around them.
    setViewportUpdateMode(QGraphicsView::BoundingRectViewportUpdate);
    setAlignment(Qt::AlignLeft | Qt::AlignTop);
    // Cards draw their antialiased edges into their own caches; antialiasing
    // the turned blits of those caches would cost several times more.
    setRenderHints(QPainter::SmoothPixmapTransform | QPainter::TextAntialiasing);
    setSceneRect(0, 0, width(), height());

    pendingLayout_.setSingleShot(true);
    pendingLayout_.setInterval(kBatchMs);
    connect(&pendingLayout_, &QTimer::timeout, this, &AssetCollectionView::layoutSubviews);
    animationTick_.setInterval(kFrameMs);
    connect(&animationTick_, &QTimer::timeout, this, &AssetCollectionView::stepAnimations);
    connect(&layoutTimer_, &QTimer::timeout, this, &AssetCollectionView::cycleLayout);
    shadowFade_.setDuration(kShadowFadeMs);
    shadowFade_.setEasingCurve(easing_);
    connect(&shadowFade_, &QVariantAnimation::valueChanged, this,
            [this](const QVariant& value) { setShadowAlpha(value.toReal()); });
    connect(&shadowFade_, &QVariantAnimation::finished, this,
            &AssetCollectionView::finishShadowFade);
    backgroundTick_.setInterval(kBackgroundFrameMs);
    connect(&backgroundTick_, &QTimer::timeout, this, &AssetCollectionView::stepBackground);
    restLayerTimer_.setSingleShot(true);
    connect(&restLayerTimer_, &QTimer::timeout, this, &AssetCollectionView::buildRestLayer);
    clock_.start();
}

AssetCollectionView::~AssetCollectionView() {
    setAutoCyclesLayout(false);
    setAssetCollection(nullptr);
    moving_.clear();
    nodes_.clear();
}

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

void AssetCollectionView::setSubviewsLayoutType(qint32 type) {
    layoutDirty_ = layoutDirty_ || type != subviewsLayoutType_;
    subviewsLayoutType_ = type;
    layoutSubviews();
}

void AssetCollectionView::setSortDescriptors(const QList<AssetSort::SortRule>& rules) {
    if (rules == sortDescriptors_) {
        return;
    }
    sortDescriptors_ = rules;
    layoutDirty_ = true;
    layoutSubviews();
}

void AssetCollectionView::setAssetCollection(AssetCollection* collection) {
    if (collection == assetCollection_) {
        return;
    }
    if (assetCollection_) {
        disconnect(assetCollection_, nullptr, this, nullptr);
    }
    assetCollection_ = collection;
    reloadData();
    if (collection) {
        connect(collection, &AssetCollection::assetsInserted, this,
                &AssetCollectionView::handleAssetsInsertedInCatalogAtIndexes);
        connect(collection, &AssetCollection::assetsRemoved, this,
                &AssetCollectionView::handleAssetsRemovedFromCatalogAtIndexes);
        connect(collection, &AssetCollection::assetsReset, this, &AssetCollectionView::reloadData);
    }
}

void AssetCollectionView::reloadData() {
    layoutDirty_ = true;
    restLayerChanged();
    moving_.clear();
    nodes_.clear();
    if (assetCollection_) {
        const qsizetype count = assetCollection_->assets().size();
        nodes_.reserve(count);
        for (qsizetype i = 0; i < count; ++i) {
            insertNodeForAssetAtIndex(i);
        }
    }
    layoutSubviews();
}

void AssetCollectionView::reloadRemovedData(const QStringList& positions) {
    for (const QString& position : positions) {
        removeNodeForAssetAtIndex(position.toLongLong());
    }
    layoutSubviews();
}

AssetCollectionViewNode* AssetCollectionView::insertNodeForAssetAtIndex(qsizetype index) {
    if (!assetCollection_ || index < 0 || index >= assetCollection_->assets().size()) {
        return nullptr;
    }
    layoutDirty_ = true;
    auto node = std::make_unique<AssetCollectionViewNode>();
    node->setUpright(upright_);
    node->setAsset(assetCollection_->assets().at(index));
    applyShadow(node->rootView());
    connect(node->rootView(), &SlideCarrierView::looksChanged, this,
            &AssetCollectionView::restLayerChanged);
    scene_.addItem(node->rootView());
    node->rootView()->prepareFace(viewport());
    restLayerChanged();
    const qsizetype at = std::min<qsizetype>(index, qsizetype(nodes_.size()));
    return nodes_.insert(nodes_.begin() + at, std::move(node))->get();
}

void AssetCollectionView::removeNodeForAssetAtIndex(qsizetype index) {
    if (index < 0 || index >= qsizetype(nodes_.size())) {
        return;
    }
    layoutDirty_ = true;
    restLayerChanged();
    std::erase(moving_, nodes_[index]->rootView());
    nodes_.erase(nodes_.begin() + index);
}

void AssetCollectionView::handleAssetsInsertedInCatalogAtIndexes(const QList<qsizetype>& indexes) {
    QList<qsizetype> ascending = indexes;
    std::sort(ascending.begin(), ascending.end());
    for (qsizetype index : ascending) {
        insertNodeForAssetAtIndex(index);
    }
    scheduleLayout();
}

void AssetCollectionView::handleAssetsRemovedFromCatalogAtIndexes(const QList<qsizetype>& indexes) {
    QList<qsizetype> descending = indexes;
    std::sort(descending.begin(), descending.end(), std::greater<>());
    for (qsizetype index : descending) {
        removeNodeForAssetAtIndex(index);
    }
    scheduleLayout();
}

void AssetCollectionView::scheduleLayout() {
    if (!pendingLayout_.isActive()) {
        pendingLayout_.start();
    }
}

std::vector<AssetCollectionViewNode*> AssetCollectionView::arrangedNodes() const {
    std::vector<AssetCollectionViewNode*> arranged;
    arranged.reserve(nodes_.size());
    for (const auto& node : nodes_) {
        arranged.push_back(node.get());
    }
    if (sortDescriptors_.isEmpty()) {
        return arranged;
    }
    QHash<const Asset*, AssetCollectionViewNode*> byAsset;
    QList<std::shared_ptr<Asset>> assets;
    assets.reserve(qsizetype(nodes_.size()));
    for (AssetCollectionViewNode* node : arranged) {
        byAsset.insert(node->asset().get(), node);
        assets.append(node->asset());
    }
    // Stable sorts from the last rule to the first give the first rule precedence.
    for (auto rule = sortDescriptors_.crbegin(); rule != sortDescriptors_.crend(); ++rule) {
        assets = AssetSort::sorted(std::move(assets), *rule);
    }
    arranged.clear();
    for (const auto& asset : assets) {
        arranged.push_back(byAsset.value(asset.get()));
    }
    return arranged;
}

void AssetCollectionView::layoutSubviews() {
    pendingLayout_.stop();
    const std::unique_ptr<ViewLayout> layout = ViewLayout::viewLayout(subviewsLayoutType_);
    if (!layout || nodes_.empty()) {
        return;
    }
    // Same cards, size, layout and order give the same places; only scatter
    // draws new ones every pass.
    if (!layoutDirty_ && subviewsLayoutType_ != kScatterLayout) {
        return;
    }
    layoutDirty_ = false;
    const std::vector<AssetCollectionViewNode*> arranged = arrangedNodes();
    const QSizeF card = SlideCarrierView::cardSize();
    std::vector<LayoutSlide> slides(arranged.size(),
                                    LayoutSlide{{card.width(), card.height()}, {}});
    const double viewHeight = height();
    layout->layoutSubviews(slides, BrowserLayout::Rect{0, 0, double(width()), viewHeight});

    const qint64 now = clock_.elapsed();
    int durationMs = -1;  // read only when something moves: it may touch the settings
    bool started = false;
    for (std::size_t i = 0; i < arranged.size(); ++i) {
        SlideCarrierView* slide = arranged[i]->rootView();
        const BrowserLayout::Placement& place = slides[i].placement;
        // y-up frame origin to the scene's top-left; counter-clockwise to Qt's
        // clockwise. Whole pixels, so that an upright card at rest is copied
        // rather than resampled.
        const QPointF pos(std::round(place.x), std::round(viewHeight - place.y - card.height()));
        if (durationMs < 0 &&
            (pos != slide->targetPos() || -place.rotation != slide->targetRotation() ||
             slide->opacity() != 1)) {
            durationMs = isLoadDirectory_ ? int(layoutDuration() * 1000) : kPlainLayoutMs;
        }
        // Drawn now rather than in the frame that first shows it, where a
        // crowd of new cards would not fit.
        slide->prepareFace(viewport());
        if (slide->moveTo(pos, -place.rotation, now, std::max(durationMs, 0))) {
            if (std::find(moving_.begin(), moving_.end(), slide) == moving_.end()) {
                moving_.push_back(slide);
            }
            started = true;
        }
    }
    if (started) {
        restLayerChanged();
    }
    if (started && !animationTick_.isActive()) {
        // Smooth turned blits cost several times the plain ones, too much for
        // a crowd of cards in motion; the still picture gets them back.
        setRenderHint(QPainter::SmoothPixmapTransform, false);
        animationTick_.start();
    }
}

void AssetCollectionView::stepAnimations() {
    const qint64 now = clock_.elapsed();
    std::erase_if(moving_, [&](SlideCarrierView* slide) { return !slide->step(now, easing_); });
    if (moving_.empty()) {
        animationTick_.stop();
        setRenderHint(QPainter::SmoothPixmapTransform, true);
        restLayerTimer_.start(kRestLayerDelayMs);
    }
}

void AssetCollectionView::selectAllNodes() {
    for (const auto& node : nodes_) {
        node->setTitleCheckBox(true);
    }
}

void AssetCollectionView::deselectAllNodes() {
    for (const auto& node : nodes_) {
        node->setTitleCheckBox(false);
    }
}

void AssetCollectionView::setAutoCyclesLayout(bool on) {
    if (on == autoCyclesLayout_) {
        return;
    }
    autoCyclesLayout_ = on;
    if (on) {
        startLayoutCycleTimer();
        cycleLayout();
    } else {
        stopLayoutCycleTimer();
    }
}

void AssetCollectionView::setLayoutCycleInterval(double seconds) {
    if (seconds == layoutCycleInterval_) {
        return;
    }
    layoutCycleInterval_ = seconds;
    if (autoCyclesLayout_) {
        stopLayoutCycleTimer();
        startLayoutCycleTimer();
    }
}

void AssetCollectionView::startLayoutCycleTimer() {
    if (!layoutTimer_.isActive()) {
        layoutTimer_.start(int(layoutCycleInterval_ * 1000));
    }
}

void AssetCollectionView::stopLayoutCycleTimer() {
    layoutTimer_.stop();
}

void AssetCollectionView::cycleLayout() {
    setSubviewsLayoutType((subviewsLayoutType_ + 1) % kLayoutCount);
}

void AssetCollectionView::setSlidesHaveShadows(bool on) {
    if (on == slidesHaveShadows_) {
        return;
    }
    slidesHaveShadows_ = on;
    if (on) {
        for (const auto& node : nodes_) {
            applyShadow(node->rootView());
        }
    }
    // A fade still running carries on from where it is.
    shadowFade_.stop();
    shadowFade_.setStartValue(shadowAlpha_);
    shadowFade_.setEndValue(on ? kShadowAlpha : 0.0);
    shadowFade_.start();
    restLayerChanged();
}

void AssetCollectionView::applyShadow(SlideCarrierView* slide) const {
    if (!slidesHaveShadows_) {
        slide->setGraphicsEffect(nullptr);
        return;
    }
    if (slide->graphicsEffect() != nullptr) {
        return;
    }
    // 3 points right and 3 down, soft, black as dark as the others are now.
    auto* shadow = new QGraphicsDropShadowEffect;
    shadow->setOffset(3, 3);
    shadow->setBlurRadius(4);
    shadow->setColor(QColor::fromRgbF(0.0f, 0.0f, 0.0f, float(shadowAlpha_)));
    slide->setGraphicsEffect(shadow);
}

void AssetCollectionView::setShadowAlpha(qreal alpha) {
    shadowAlpha_ = alpha;
    // Mid-fade only the cards in sight follow: a change to a shadow repaints its
    // card, thousands of them every frame. The end of the fade sets them all.
    const bool all = shadowFade_.state() != QAbstractAnimation::Running;
    const QRectF shown = mapToScene(viewport()->visibleRegion().boundingRect()).boundingRect();
    const QColor colour = QColor::fromRgbF(0.0f, 0.0f, 0.0f, float(alpha));
    for (const auto& node : nodes_) {
        SlideCarrierView* slide = node->rootView();
        auto* shadow = qobject_cast<QGraphicsDropShadowEffect*>(slide->graphicsEffect());
        if (shadow != nullptr && (all || slide->sceneBoundingRect().intersects(shown))) {
            shadow->setColor(colour);
        }
    }
}

// At the end every card takes the final shadow; faded-out shadows come off,
// since an invisible shadow still costs a blur on every paint.
void AssetCollectionView::finishShadowFade() {
    restLayerChanged();
    if (slidesHaveShadows_) {
        setShadowAlpha(shadowAlpha_);
        return;
    }
    for (const auto& node : nodes_) {
        node->rootView()->setGraphicsEffect(nullptr);
    }
}

void AssetCollectionView::setUsesQuartzCompositionBackground(bool on) {
    if (on == usesQuartzCompositionBackground_) {
        return;
    }
    usesQuartzCompositionBackground_ = on;
    restLayerChanged();
    cells_ = QImage();
    cellsMs_ = -1;
    updateBackgroundTimer();
    viewport()->update();
}

void AssetCollectionView::updateBackgroundTimer() {
    if (usesQuartzCompositionBackground_ && isVisible()) {
        backgroundTick_.start();
    } else {
        backgroundTick_.stop();
    }
}

void AssetCollectionView::stepBackground() {
    // Only the part the scroll area shows; the rest is repainted when it comes into sight.
    viewport()->update(viewport()->visibleRegion());
}

void AssetCollectionView::drawBackground(QPainter* painter, const QRectF& rect) {
    // Lighter at the bottom edge, darker at the top, over the whole view.
    const QRectF bounds = sceneRect();
    QLinearGradient gradient(bounds.bottomLeft(), bounds.topLeft());
    gradient.setColorAt(0, QColor::fromRgbF(0.27f, 0.27f, 0.27f));
    gradient.setColorAt(1, QColor::fromRgbF(0.08f, 0.08f, 0.08f));
    painter->fillRect(rect, gradient);
    if (!usesQuartzCompositionBackground_) {
        return;
    }
    // The cells stay put in the visible part while the view scrolls under it.
    const QRectF shown = mapToScene(viewport()->visibleRegion().boundingRect()).boundingRect();
    const qint64 now = clock_.elapsed() / kBackgroundFrameMs * kBackgroundFrameMs;
    if (cells_.isNull() || shown != cellsRect_ || now != cellsMs_) {
        const QSize small((shown.size() / kBackgroundScale).toSize().expandedTo(QSize(1, 1)));
        cells_ = CellsBackground::frame(small, double(now) / 1000);
        cellsRect_ = shown;
        cellsMs_ = now;
    }
    painter->drawImage(cellsRect_, cells_);
}

void AssetCollectionView::drawItems(QPainter* painter, int numItems, QGraphicsItem* items[],
                                    const QStyleOptionGraphicsItem options[]) {
    if (!restLayerReady_) {
        QGraphicsView::drawItems(painter, numItems, items, options);
        return;
    }
    // Every card lies inside the layer, which holds the background under them too.
    painter->drawImage(restLayerRect_.topLeft(), restLayer_);
}

void AssetCollectionView::restLayerChanged() {
    if (restLayerReady_) {
        setOptimizationFlag(QGraphicsView::IndirectPainting, false);
    }
    restLayerReady_ = false;
    restLayer_ = QImage();
    restLayerItems_.clear();
    restLayerNext_ = 0;
    if (moving_.empty()) {
        restLayerTimer_.start(kRestLayerDelayMs);
    } else {
        restLayerTimer_.stop();
    }
}

void AssetCollectionView::buildRestLayer() {
    // A layer would freeze shadows mid-fade and the drifting cells under the cards.
    if (restLayerReady_ || !moving_.empty() || shadowFade_.state() == QAbstractAnimation::Running ||
        usesQuartzCompositionBackground_) {
        return;
    }
    if (restLayer_.isNull()) {
        const QList<QGraphicsItem*> items = scene_.items(Qt::AscendingOrder);
        // What the cards cover, shadows included, plus the margin the view
        // repaints around each.
        QRectF covered;
        double cardArea = 0;
        for (QGraphicsItem* item : items) {
            QRectF bounds = item->boundingRect();
            if (QGraphicsEffect* effect = item->graphicsEffect()) {
                bounds = effect->boundingRectFor(bounds);
            }
            const QRectF inScene = item->sceneTransform().mapRect(bounds);
            covered |= inScene;
            cardArea += inScene.width() * inScene.height();
        }
        const QRect rect =
            covered.toAlignedRect().adjusted(-2, -2, 2, 2) & sceneRect().toAlignedRect();
        const qint64 pixels = qint64(rect.width()) * rect.height();
        if (rect.isEmpty() || pixels > kRestLayerMaxPixels ||
            cardArea < kRestLayerMinOverdraw * double(pixels)) {
            return;
        }
        restLayer_ = QImage(rect.size(), QImage::Format_RGB32);
        restLayerRect_ = rect;
        restLayerItems_ = items;
        restLayerNext_ = 0;
        QPainter painter(&restLayer_);
        painter.translate(-rect.topLeft());
        drawBackground(&painter, rect);
    }
    QPainter painter(&restLayer_);
    painter.setRenderHints(renderHints());
    painter.translate(-restLayerRect_.topLeft());
    QElapsedTimer slice;
    slice.start();
    // Checked for the time every few cards: one takes a tenth of a millisecond or so.
    constexpr qsizetype kBatch = 4;
    QStyleOptionGraphicsItem options[kBatch];
    while (restLayerNext_ < restLayerItems_.size() && slice.elapsed() < kRestLayerSliceMs) {
        const qsizetype count = std::min(kBatch, restLayerItems_.size() - restLayerNext_);
        QGraphicsItem** batch = restLayerItems_.data() + restLayerNext_;
        for (qsizetype i = 0; i < count; ++i) {
            // The tick box takes the view's style; the scene draws here without a widget.
            if (auto* card = dynamic_cast<SlideCarrierView*>(batch[i])) {
                card->prepareFace(viewport());
            }
        }
        // Without a widget the scene neither culls against the view's last
        // exposed region nor records where the cards were painted in the view.
        scene_.drawItems(&painter, int(count), batch, options, nullptr);
        restLayerNext_ += count;
    }
    if (restLayerNext_ < restLayerItems_.size()) {
        restLayerTimer_.start(0);
        return;
    }
    restLayerItems_.clear();
    restLayerReady_ = true;
    // The view then hands the cards it is about to draw to drawItems.
    setOptimizationFlag(QGraphicsView::IndirectPainting, true);
}

void AssetCollectionView::resizeEvent(QResizeEvent* event) {
    QGraphicsView::resizeEvent(event);
    setSceneRect(0, 0, width(), height());
    layoutDirty_ = true;
    restLayerChanged();
    if (!nodes_.empty()) {
        scheduleLayout();
    }
}

void AssetCollectionView::showEvent(QShowEvent* event) {
    QGraphicsView::showEvent(event);
    updateBackgroundTimer();
}

void AssetCollectionView::hideEvent(QHideEvent* event) {
    QGraphicsView::hideEvent(event);
    updateBackgroundTimer();
}

void AssetCollectionView::keyPressEvent(QKeyEvent* event) {
    const std::vector<AssetCollectionViewNode*> nodes = arrangedNodes();
    if (nodes.empty()) {
        QGraphicsView::keyPressEvent(event);
        return;
    }
    const auto last = static_cast<qsizetype>(nodes.size()) - 1;
    qsizetype index = -1;
    for (qsizetype i = 0; i <= last; ++i) {
        if (nodes[static_cast<size_t>(i)]->rootView() == current_) {
            index = i;
        }
    }
    switch (event->key()) {
        case Qt::Key_Right:
        case Qt::Key_Down:
            index = std::min(index + 1, last);
            break;
        case Qt::Key_Left:
        case Qt::Key_Up:
            index = std::max<qsizetype>(index - 1, 0);
            break;
        case Qt::Key_Home:
            index = 0;
            break;
        case Qt::Key_End:
            index = last;
            break;
        case Qt::Key_Space:
            if (current_) {
                current_->toggleCheckBox();
            }
            return;
        case Qt::Key_Return:
        case Qt::Key_Enter:
            if (current_) {
                current_->activate();
                current_->doHighlightEffect(false);
            }
            return;
        default:
            QGraphicsView::keyPressEvent(event);
            return;
    }
    if (current_) {
        current_->setCurrent(false);
    }
    current_ = nodes[static_cast<size_t>(index)]->rootView();
    current_->setCurrent(true);
    // The main window's scroll area moves the view; bring the card into sight there.
    const QPoint centre = mapFromScene(current_->sceneBoundingRect().center());
    for (QWidget* w = parentWidget(); w != nullptr; w = w->parentWidget()) {
        if (auto* area = qobject_cast<QScrollArea*>(w)) {
            const QPoint inArea = mapTo(area->widget(), centre);
            area->ensureVisible(inArea.x(), inArea.y(), 70, 70);
            break;
        }
    }
}

SlideCarrierView* AssetCollectionView::currentSlide() const {
    return current_;
}

void AssetCollectionView::setUpright(bool on) {
    if (on == upright_) {
        return;
    }
    upright_ = on;
    for (const auto& node : nodes_) {
        node->setUpright(on);
    }
}
