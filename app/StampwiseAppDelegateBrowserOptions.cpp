#include <QAction>
#include <QSettings>
#include <array>

#include "app/SettingValues.h"
#include "app/SettingsKeys.h"
#include "app/StampwiseAppDelegate.h"

namespace {
// The View menu's switches for the browser's extras, all off until chosen.
struct BrowserOption {
    const char* action;  // in MainWindow.ui
    const char* key;
    void (AssetCollectionView::*apply)(bool);
};

constexpr std::array kBrowserOptions = {
    BrowserOption{"actionDropShadows", SettingsKeys::kBrowserShadows,
                  &AssetCollectionView::setSlidesHaveShadows},
    BrowserOption{"actionAnimatedBackground", SettingsKeys::kBrowserAnimatedBackground,
                  &AssetCollectionView::setUsesQuartzCompositionBackground},
    BrowserOption{"actionChangeLayoutAutomatically", SettingsKeys::kBrowserCyclesLayout,
                  &AssetCollectionView::setAutoCyclesLayout},
};
}  // namespace

void StampwiseAppDelegate::connectBrowserOptions(MainWindow* window) {
    for (const BrowserOption& option : kBrowserOptions) {
        auto* action = window->findChild<QAction*>(QLatin1String(option.action));
        if (action == nullptr) {
            continue;
        }
        connect(action, &QAction::toggled, this, [this, option](bool on) {
            if (assetCollectionView_) {
                (assetCollectionView_.data()->*option.apply)(on);
            }
            QSettings().setValue(QLatin1String(option.key),
                                 on ? QStringLiteral("true") : QStringLiteral("false"));
        });
    }
}

// Checking a remembered option applies it through the connection above.
void StampwiseAppDelegate::loadBrowserOptions() {
    if (!window_) {
        return;
    }
    const QSettings settings;
    for (const BrowserOption& option : kBrowserOptions) {
        if (auto* action = window_->findChild<QAction*>(QLatin1String(option.action))) {
            action->setChecked(
                SettingValues::boolValue(settings.value(QLatin1String(option.key)).toString()));
        }
    }
}
