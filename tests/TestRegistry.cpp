#include "TestRegistry.h"

#include <QApplication>
#include <QDir>
#include <QTemporaryDir>
#include <QTest>
#include <utility>

namespace {
std::vector<std::pair<const char*, TestRegistry::Factory>>& entries() {
    static std::vector<std::pair<const char*, TestRegistry::Factory>> list;
    return list;
}
}  // namespace

int TestRegistry::add(const char* name, Factory factory) {
    entries().emplace_back(name, std::move(factory));
    return static_cast<int>(entries().size());
}

QString TestRegistry::photosDir() {
    const QString env = qEnvironmentVariable("STAMPWISE_PHOTOS");
    const QString chosen = env.isEmpty() ? QString::fromUtf8(STAMPWISE_PHOTOS_DIR) : env;
    return QDir(chosen).exists() ? QDir(chosen).canonicalPath() : QString();
}

// Runs every registered class; "-class Name" picks one, other arguments go to QtTest.
int main(int argc, char** argv) {
    // Keep the user's real settings and caches out of reach of every test.
    QTemporaryDir home;
    qputenv("HOME", home.path().toUtf8());
    qputenv("XDG_CONFIG_HOME", (home.path() + "/config").toUtf8());
    qputenv("XDG_CACHE_HOME", (home.path() + "/cache").toUtf8());
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    QApplication app(argc, argv);
    QApplication::setOrganizationName("Stampwise");
    QApplication::setApplicationName("StampwiseTest");

    QStringList args = QApplication::arguments();
    QString only;
    const int classIdx = static_cast<int>(args.indexOf("-class"));
    if (classIdx >= 0 && classIdx + 1 < args.size()) {
        only = args.at(classIdx + 1);
        args.remove(classIdx, 2);
    }
    int failures = 0;
    for (auto& [name, factory] : entries()) {
        if (!only.isEmpty() && only != QLatin1String(name)) {
            continue;
        }
        std::unique_ptr<QObject> test = factory();
        failures += QTest::qExec(test.get(), args);
    }
    return failures == 0 ? 0 : 1;
}
