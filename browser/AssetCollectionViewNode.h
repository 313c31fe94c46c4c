#pragma once

#include <QObject>
#include <memory>

#include "catalog/Asset.h"

class SlideCarrierView;

// One photo in the browser: its asset and its card, kept in step both ways
// (tick box and flag, thumbnail and preview).
class AssetCollectionViewNode : public QObject {
    Q_OBJECT
  public:
    AssetCollectionViewNode();
    ~AssetCollectionViewNode() override;

    // The card; owned by the node, shown by the browser's scene.
    SlideCarrierView* rootView() const { return rootView_; }

    const std::shared_ptr<Asset>& asset() const { return asset_; }
    void setAsset(const std::shared_ptr<Asset>& asset);

    // Shows the thumbnail and its size turned by the photo's orientation tag.
    void setUpright(bool on);

    // The box only; the flag is the caller's.
    void setTitleCheckBox(bool checked);
    void clickTitleCheckBox();

  private:
    void showPreview();

    std::shared_ptr<Asset> asset_;
    SlideCarrierView* rootView_;
    bool upright_ = false;
};
