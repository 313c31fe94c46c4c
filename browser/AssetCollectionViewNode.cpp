#include "browser/AssetCollectionViewNode.h"

#include "browser/SlideCarrierView.h"
#include "catalog/ImageAsset.h"
#include "catalog/Orientation.h"
#include "platform/NotificationCenter.h"
#include "platform/NotificationNames.h"

AssetCollectionViewNode::AssetCollectionViewNode() : rootView_(new SlideCarrierView) {
    connect(rootView_, &SlideCarrierView::checkBoxClicked, this, [this](bool checked) {
        // The flag first: the counters read it when the notification arrives.
        if (asset_) {
            asset_->setIncludedInSlideshow(checked);
        }
        clickTitleCheckBox();
    });
}

AssetCollectionViewNode::~AssetCollectionViewNode() {
    setAsset(nullptr);
    delete rootView_;
}

void AssetCollectionViewNode::setAsset(const std::shared_ptr<Asset>& asset) {
    if (asset == asset_) {
        return;
    }
    if (asset_) {
        disconnect(asset_.get(), nullptr, this, nullptr);
    }
    asset_ = asset;
    rootView_->releaseHighlightSound();
    if (!asset_) {
        return;
    }
    Asset* raw = asset_.get();
    connect(raw, &Asset::previewImageChanged, this, &AssetCollectionViewNode::showPreview);
    connect(raw, &Asset::includedInSlideshowChanged, this,
            [this, raw] { rootView_->setChecked(raw->includedInSlideshow()); });
    rootView_->setChecked(raw->includedInSlideshow());
    rootView_->setFullFilename(raw->fullFilename());
    rootView_->setTexts(raw->localizedTypeDescription(), QString());
    if (raw->previewImage().isNull()) {
        rootView_->setImage(QImage());
        raw->requestPreviewImage();
    } else {
        showPreview();
    }
}

void AssetCollectionViewNode::showPreview() {
    // The size and the orientation are read once the preview exists: its source
    // is open and its metadata read by then, so this never opens a file on the
    // main thread. A thumbnail is small enough to turn each time it is shown.
    const QImage preview = asset_->previewImage();
    auto* image = qobject_cast<ImageAsset*>(asset_.get());
    const std::shared_ptr<ImageSource> source =
        image && upright_ && !preview.isNull() ? image->imageSource() : nullptr;
    const int turn = source ? source->orientation() : Orientation::kNormal;
    rootView_->setImage(Orientation::upright(preview, turn));
    QString dimensions;
    if (image && !preview.isNull()) {
        const QSize size = Orientation::uprightSize(
            QSize(int(image->pixelsWide()), int(image->pixelsHigh())), turn);
        dimensions = QStringLiteral("%1 \u00d7 %2").arg(size.width()).arg(size.height());
    }
    rootView_->setTexts(asset_->localizedTypeDescription(), dimensions);
}

void AssetCollectionViewNode::setUpright(bool on) {
    if (on == upright_) {
        return;
    }
    upright_ = on;
    if (asset_ && !asset_->previewImage().isNull()) {
        showPreview();
    }
}

void AssetCollectionViewNode::setTitleCheckBox(bool checked) {
    rootView_->setChecked(checked);
}

void AssetCollectionViewNode::clickTitleCheckBox() {
    NotificationCenter::defaultCenter().post(NotificationNames::kClickTitleCheckBox);
}
