#include "browser/ClickSound.h"

#include <QAudioDevice>
#include <QCoreApplication>
#include <QMediaDevices>
#include <QSoundEffect>
#include <QThread>
#include <QUrl>

// The built-in sound lives in a static library, whose resource registration
// the linker would otherwise drop.
static void initSoundResources() {
    Q_INIT_RESOURCE(sounds);
}

namespace {

QtMessageHandler outerHandler = nullptr;

// The audio back end complains on the console when it finds no sound server;
// for an optional click that is noise. Only the asking thread is hushed.
void hushMainThread(QtMsgType type, const QMessageLogContext& context, const QString& message) {
    if (QThread::currentThread() != QCoreApplication::instance()->thread() && outerHandler) {
        outerHandler(type, context, message);
    }
}

bool hasAudioOutput() {
    outerHandler = qInstallMessageHandler(hushMainThread);
    const bool found = !QMediaDevices::audioOutputs().isEmpty();
    qInstallMessageHandler(outerHandler);
    return found;
}

}  // namespace

ClickSound::ClickSound() {
    static const bool registered = (initSoundResources(), true);
    Q_UNUSED(registered);
    // Asking for the outputs is quick whether or not a server answers, and it
    // spares a sound effect that would complain on every play.
    if (hasAudioOutput()) {
        effect_ = std::make_unique<QSoundEffect>();
        effect_->setSource(QUrl(QStringLiteral("qrc:/sounds/click.wav")));
    }
}

ClickSound::~ClickSound() = default;

std::shared_ptr<ClickSound> ClickSound::shared() {
    static std::weak_ptr<ClickSound> current;
    std::shared_ptr<ClickSound> sound = current.lock();
    if (!sound) {
        sound = std::make_shared<ClickSound>();
        current = sound;
    }
    return sound;
}

void ClickSound::play() {
    if (effect_) {
        effect_->play();
    }
}
