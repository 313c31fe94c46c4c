#include "browser/AssetCollectionViewNode.h"

#include "browser/SlideCarrierView.h"
#include "catalog/ImageAsset.h"
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
    rootView_->setImage(asset_->previewImage());
    // The size is read once the preview exists: its source is open by then,
    // so this never opens a file on the main thread.
    QString dimensions;
    if (auto* image = qobject_cast<ImageAsset*>(asset_.get());
        image && !asset_->previewImage().isNull()) {
        dimensions =
            QStringLiteral("%1 \u00d7 %2").arg(image->pixelsWide()).arg(image->pixelsHigh());
    }
    rootView_->setTexts(asset_->localizedTypeDescription(), dimensions);
}

void AssetCollectionViewNode::setTitleCheckBox(bool checked) {
    rootView_->setChecked(checked);
}

void AssetCollectionViewNode::clickTitleCheckBox() {
    NotificationCenter::defaultCenter().post(NotificationNames::kClickTitleCheckBox);
}
