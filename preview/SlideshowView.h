#pragma once

#include <QImage>
#include <QPointer>
#include <QWidget>

#include "preview/SlideshowImageView.h"
#include "preview/Transitions.h"

// The preview of the model photo: black, with the photo shrunk to fit and
// centred, changing from photo to photo with one of twelve transitions.
class SlideshowView : public QWidget {
    Q_OBJECT
  public:
    explicit SlideshowView(QWidget* parent = nullptr);

    float getSlideshowWidth() const { return slideshowWidth_; }
    float getSlideshowHeight() const { return slideshowHeight_; }
    float getImageWidth() const { return imageWidth_; }
    float getImageHeight() const { return imageHeight_; }
    void setSlideshowWidth(float width) { slideshowWidth_ = width; }
    void setSlideshowHeight(float height) { slideshowHeight_ = height; }
    void setImageWidth(float width) { imageWidth_ = width; }
    void setImageHeight(float height) { imageHeight_ = height; }
    float slideshowWidth() const { return slideshowWidth_; }
    float slideshowHeight() const { return slideshowHeight_; }
    float imageWidth() const { return imageWidth_; }
    float imageHeight() const { return imageHeight_; }

    // Shows the image with the installed transition; a null image removes the
    // current photo with it. pointSize is the photo's size in points when the
    // image is a reduced copy; empty means the image's own size.
    void transitionToImage(const QImage& image, QSizeF pointSize = {});
    // Hides the photo; the next transitionToImage replaces the hidden view.
    void clearImage();

    qint32 transitionStyle() const { return transitionStyle_; }
    void setTransitionStyle(qint32 style);
    bool autoCyclesTransitionStyle() const { return autoCyclesTransitionStyle_; }
    void setAutoCyclesTransitionStyle(bool cycles) { autoCyclesTransitionStyle_ = cycles; }

    // Resizes the view; the bounds-dependent transitions follow the new size.
    void setFrameSize(const QSize& size);
    // Builds the transition for the current style and bounds and installs it.
    void updateSubviewsTransition();

    const QImage& image() const { return image_; }
    SlideshowImageView* currentImageView() const { return currentImageView_; }
    const Transitions::Transition& transition() const { return transition_; }
    int transitionBuildCount() const { return transitionBuildCount_; }
    bool isTransitionRunning() const;

    const QImage& inputShadingImage() const { return inputShadingImage_; }
    const QImage& inputMaskImage() const { return inputMaskImage_; }
    void setInputShadingImage(const QImage& image) { inputShadingImage_ = image; }
    void setInputMaskImage(const QImage& image) { inputMaskImage_ = image; }

    // Reads an application resource: beside the executable first, then the
    // copy built into the program. Null when missing or unreadable.
    static QImage loadResourceImage(const QString& name, const QString& type);

  protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

  private:
    void frameSizeChanged();

    QImage image_;
    QSizeF pointSize_;
    QPointer<SlideshowImageView> currentImageView_;
    qint32 transitionStyle_ = 0;
    bool autoCyclesTransitionStyle_ = false;
    QImage inputShadingImage_;
    QImage inputMaskImage_;
    float slideshowWidth_ = 0.0f;
    float slideshowHeight_ = 0.0f;
    float imageWidth_ = 0.0f;
    float imageHeight_ = 0.0f;

    Transitions::Transition transition_;
    int transitionBuildCount_ = 0;
    QSize handledSize_;
};
