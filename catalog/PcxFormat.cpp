#include "catalog/PcxFormat.h"

#include <QCoreApplication>
#include <QtPlugin>
#include <mutex>

// Defined by moc for the static plugin class PcxPlugin.
extern const QStaticPlugin qt_static_plugin_PcxPlugin();

void PcxFormat::registerFormat() {
    static std::once_flag once;
    std::call_once(once, [] { qRegisterStaticPluginFunction(qt_static_plugin_PcxPlugin()); });
}

namespace {
void registerAtStartUp() {
    PcxFormat::registerFormat();
}
}  // namespace
Q_COREAPP_STARTUP_FUNCTION(registerAtStartUp)
