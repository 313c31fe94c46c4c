#pragma once

#include <memory>

class QSoundEffect;

// The short signal a card gives when pressed. One sound serves every card
// that holds it; it is loaded when the first of them needs it and goes when
// the last lets go. Without an audio output it stays silent.
class ClickSound {
  public:
    ClickSound();
    ~ClickSound();
    ClickSound(const ClickSound&) = delete;
    ClickSound& operator=(const ClickSound&) = delete;

    // The sound now held by some card, or a newly loaded one.
    static std::shared_ptr<ClickSound> shared();

    bool isAudible() const { return effect_ != nullptr; }
    void play();

  private:
    std::unique_ptr<QSoundEffect> effect_;
};
