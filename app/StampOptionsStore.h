#pragma once

#include "stamp/StampOptions.h"

class QSettings;

// The stamp options in the settings store, shared by the window and the
// command line. A value that cannot be read counts as off.
namespace StampOptionsStore {

StampOptions load(const QSettings& settings);
void save(QSettings& settings, const StampOptions& options);

}  // namespace StampOptionsStore
