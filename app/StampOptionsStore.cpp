#include "app/StampOptionsStore.h"

#include <QSettings>
#include <array>

#include "app/SettingValues.h"
#include "app/SettingsKeys.h"
#include "datetext/DateShift.h"

namespace {
struct Switch {
    const char* key;
    bool StampOptions::*field;
};
constexpr std::array kSwitches = {
    Switch{SettingsKeys::kOptionUpright, &StampOptions::upright},
    Switch{SettingsKeys::kOptionKeepFormat, &StampOptions::keepFormat},
    Switch{SettingsKeys::kOptionOutline, &StampOptions::outline},
    Switch{SettingsKeys::kOptionShadow, &StampOptions::shadow},
    Switch{SettingsKeys::kOptionBox, &StampOptions::box},
    Switch{SettingsKeys::kOptionNames, &StampOptions::names},
};
}  // namespace

namespace StampOptionsStore {

StampOptions load(const QSettings& settings) {
    StampOptions options;
    for (const Switch& s : kSwitches) {
        options.*s.field =
            SettingValues::boolValue(settings.value(QLatin1String(s.key)).toString());
    }
    options.shiftSeconds =
        DateShift::parse(settings.value(QLatin1String(SettingsKeys::kOptionShift)).toString())
            .value_or(0);
    return options;
}

void save(QSettings& settings, const StampOptions& options) {
    for (const Switch& s : kSwitches) {
        settings.setValue(QLatin1String(s.key),
                          options.*s.field ? QStringLiteral("true") : QStringLiteral("false"));
    }
    settings.setValue(QLatin1String(SettingsKeys::kOptionShift),
                      DateShift::format(options.shiftSeconds));
}

}  // namespace StampOptionsStore
