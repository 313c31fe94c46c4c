#pragma once

#include <QImage>
#include <QPointer>
#include <QVariantAnimation>
#include <QWidget>

#include "preview/Transitions.h"

// One photo in the preview: shown shrunk to fit and centred, never enlarged.
// While a transition plays, the view shows the transition's frames instead,
// drawn from the frame it replaces to its own photo.
class SlideshowImageView : public QWidget {
    Q_OBJECT
  public:
    explicit SlideshowImageView(QWidget* parent = nullptr);

    const QImage& image() const { return image_; }
    void setImage(const QImage& image);

    // What the view shows now at its size: the current transition frame, the
    // photo on black, or black when hidden.
    QImage currentFrame() const;

    // Plays the transition from `from` (a frame of this view's size) to the
    // photo. The easing is the usual ease-in-ease-out curve.
    void playTransition(const Transitions::Transition& transition, const QImage& from);
    // Plays the transition from what the view shows to black, then deletes the view.
    void playRemoval(const Transitions::Transition& transition);
    void stopTransition();
    bool isTransitioning() const;

    // The photo shrunk to fit `size`, centred on black, as an RGB32 frame.
    static QImage fittedFrame(const QImage& image, QSize size);
    static QEasingCurve easeInEaseOut();

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    void start(const Transitions::Transition& transition, const QImage& from, const QImage& to);

    QImage image_;
    QImage display_;      // the photo, at most screen-sized
    QImage scaledCache_;  // the photo fitted to the view's size
    QImage from_;
    QImage to_;
    QImage frame_;
    Transitions::Transition transition_;
    QPointer<QVariantAnimation> animation_;
};
