// Lays out the preview, the date label and the browser. The arithmetic is
// PreviewLayout's; here frames are read and set.
#include <QAbstractButton>
#include <QEvent>
#include <QLabel>
#include <cmath>

#include "app/StampwiseAppDelegate.h"

using namespace ControlRegistry;
using PreviewLayout::Size;

bool StampwiseAppDelegate::marginIsOn() const {
    auto* box = qobject_cast<QAbstractButton*>(getGUIObject(Tag::kMarginCheckBox, nullptr));
    return box != nullptr && box->isChecked();
}

PreviewLayout::Size StampwiseAppDelegate::previewSize() const {
    if (!slideshowView_) {
        return {};
    }
    return Size{static_cast<float>(slideshowView_->width()),
                static_cast<float>(slideshowView_->height())};
}

// The float frame, unless the label was dragged since it was set: then where it lies.
LabelFrame StampwiseAppDelegate::currentLabelFrame() const {
    LabelFrame frame = state_.placement.frame;
    if (!aQNSDragView_) {
        return LabelFrame{};
    }
    const QPointF origin = aQNSDragView_->frameOrigin();
    const float previewHeight = previewSize().height;
    const QPoint expected(qRound(frame.x), qRound(previewHeight - frame.y - frame.height));
    if (aQNSDragView_->pos() != expected) {
        frame.x = static_cast<float>(origin.x());
        frame.y = static_cast<float>(origin.y());
    }
    return frame;
}

void StampwiseAppDelegate::setLabelFrame(const LabelFrame& frame) {
    state_.placement.frame = frame;
    if (!aQNSDragView_) {
        return;
    }
    // y-up frame to Qt's top-left geometry, in whole points.
    const float top = previewSize().height - frame.y - frame.height;
    aQNSDragView_->setGeometry(qRound(frame.x), qRound(top), qRound(frame.width),
                               qRound(frame.height));
}

void StampwiseAppDelegate::redrawAll(const QString& argument) {
    ModelPhoto& model = state_.model;
    LabelPlacement& placement = state_.placement;
    updateSortDescriptors();
    if (!model.hasImage) {
        return;
    }
    if (aQNSDragView_) {
        aQNSDragView_->show();
    }
    const Size preview = previewSize();
    const Size shown =
        PreviewLayout::fitPhoto(Size{model.imageOriginalWidth, model.imageOriginalHeight}, preview);
    placement.stampArea = PreviewLayout::stampArea(preview, shown, marginIsOn());
    const StampGeometry::StampArea& area = placement.stampArea;
    const LabelFrame old = currentLabelFrame();
    const StampGeometry::TPosition kept =
        PreviewLayout::clampIntoArea(area, {old.x, old.y}, Size{old.width, old.height});
    const Size label = PreviewLayout::labelSize(
        Size{state_.style.standardFontWidth, state_.style.standardFontHeight}, shown,
        Size{model.imageWidth, model.imageHeight});
    setLabelText(model.dateTimeString);

    StampGeometry::TPosition origin{area.miniX, area.miniY};
    if (placement.isFirstTime == 0) {
        if (aQNSDragView_) {
            aQNSDragView_->hide();
        }
        return;
    }
    if (placement.isFirstTime == 1) {
        placement.isFirstTime = 2;
    } else if (argument == QLatin1String("1")) {
        origin = kept;
    } else {
        origin =
            StampGeometry::proportionalPlace(placement.snapshot, area, label.width, label.height);
    }
    setLabelFrame(LabelFrame{origin.x, origin.y, label.width, label.height});
    backupPositionAndSize(origin.x, origin.y, label.width, label.height);
    if (aQNSDragView_) {
        aQNSDragView_->setLegibility(state_.options, state_.style.aFont);
        aQNSDragView_->repaint();
    }
}

void StampwiseAppDelegate::locateSlideshowView(int position) {
    const LabelFrame old = currentLabelFrame();
    const StampGeometry::TPosition origin = PreviewLayout::presetOrigin(
        position, state_.placement.stampArea, Size{old.width, old.height});
    setLabelFrame(LabelFrame{origin.x, origin.y, old.width, old.height});
    backupPositionAndSize(origin.x, origin.y, old.width, old.height);
}

void StampwiseAppDelegate::resizeAssetCollectionView() {
    if (!assetCollectionView_) {
        return;
    }
    const int width = assetCollectionView_->width();
    const qsizetype count = assetCollection_ ? assetCollection_->assets().size() : 0;
    const double visible = aNSScrollView_ ? aNSScrollView_->height() : 0.0;
    const double height = PreviewLayout::browserHeight(width, count, visible);
    assetCollectionView_->resize(width, static_cast<int>(height));
}

double StampwiseAppDelegate::constrainMinCoordinate(double proposed) const {
    return std::max(proposed, PreviewLayout::kMinDivider);
}

double StampwiseAppDelegate::constrainMaxCoordinate(double proposed) const {
    return std::min(proposed, PreviewLayout::kMaxDivider);
}

void StampwiseAppDelegate::splitViewDidResizeSubviews() {
    resizeAssetCollectionView();
    redrawAll(QString());
}

// A resized preview lays the label out again; a resized browser pane resizes the browser.
bool StampwiseAppDelegate::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Resize) {
        if (watched == slideshowView_) {
            redrawAll(QString());
        } else if (watched == aNSScrollView_) {
            resizeAssetCollectionView();
        }
    }
    return QObject::eventFilter(watched, event);
}
