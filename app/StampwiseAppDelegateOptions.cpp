#include <QAbstractButton>
#include <QSettings>

#include "app/MainWindow.h"
#include "app/OptionsWindowController.h"
#include "app/StampOptionsStore.h"
#include "app/StampwiseAppDelegate.h"
#include "browser/AssetCollectionView.h"

void StampwiseAppDelegate::loadStampOptions() {
    state_.options = StampOptionsStore::load(QSettings());
    if (assetCollectionView_) {
        assetCollectionView_->setUpright(state_.options.upright);
    }
}

void StampwiseAppDelegate::setStampOptions(const StampOptions& options) {
    if (options == state_.options) {
        return;
    }
    state_.options = options;
    QSettings settings;
    StampOptionsStore::save(settings, options);
    if (optionsWindow_) {
        optionsWindow_->setOptions(options);
    }
    if (assetCollectionView_) {
        assetCollectionView_->setUpright(options.upright);
    }
    // The model photo's date, shape and label follow the options.
    if (state_.model.hasImage) {
        displayImageFileName(state_.model.selectImageFile);
    }
}

void StampwiseAppDelegate::openOptionsWindow() {
    if (!optionsWindow_) {
        optionsWindow_ = std::make_unique<OptionsWindowController>(window_);
        connect(optionsWindow_.get(), &OptionsWindowController::optionsChanged, this,
                &StampwiseAppDelegate::setStampOptions);
    }
    optionsWindow_->setOptions(state_.options);
    optionsWindow_->show();
    optionsWindow_->raise();
    optionsWindow_->activateWindow();
}
