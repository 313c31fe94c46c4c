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
    // pointSize is the photo's size in points, which may differ from the image's
    // own (a reduced copy of a large photo); empty means the image's own size.
    void setImage(const QImage& image, QSizeF pointSize = {});

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

    // The photo of pointSize (empty: the image's own) shrunk to fit `size`, never
    // enlarged, centred on black, as an RGB32 frame. It covers exactly the
    // rectangle PreviewLayout gives, so the label's stamp area lies on the photo.
    static QImage fittedFrame(const QImage& image, QSize size, QSizeF pointSize = {});
    static QEasingCurve easeInEaseOut();

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    void start(const Transitions::Transition& transition, const QImage& from, const QImage& to);

    QImage image_;
    QImage display_;      // the photo, at most screen-sized
    QSizeF pointSize_;    // the photo's size in points
    QImage scaledCache_;  // the photo fitted to the view's size
    QImage from_;
    QImage to_;
    QImage frame_;
    Transitions::Transition transition_;
    QPointer<QVariantAnimation> animation_;
};
