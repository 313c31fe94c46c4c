#include "preview/SlideshowImageView.h"

#include <QGuiApplication>
#include <QPainter>
#include <QScreen>
#include <QtMath>
#include <algorithm>

#include "stamp/PreviewLayout.h"

SlideshowImageView::SlideshowImageView(QWidget* parent) : QWidget(parent) {
    // Clicks pass through to the preview and the label above it.
    setAttribute(Qt::WA_TransparentForMouseEvents);
}

void SlideshowImageView::setImage(const QImage& image, QSizeF pointSize) {
    image_ = image;
    pointSize_ = pointSize.isEmpty() ? image.deviceIndependentSize() : pointSize;
    scaledCache_ = QImage();
    // Resizing the preview refits the photo each time; a copy no larger than
    // the screen keeps that quick for multi-megapixel photos.
    display_ = image;
    const QScreen* screen = QGuiApplication::primaryScreen();
    const QSize limit = screen ? screen->size() * screen->devicePixelRatio() : QSize(2560, 1600);
    if (!image.isNull() && (image.width() > limit.width() || image.height() > limit.height())) {
        display_ = image.scaled(limit, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    }
    update();
}

QEasingCurve SlideshowImageView::easeInEaseOut() {
    QEasingCurve curve(QEasingCurve::BezierSpline);
    curve.addCubicBezierSegment(QPointF(0.42, 0.0), QPointF(0.58, 1.0), QPointF(1.0, 1.0));
    return curve;
}

QImage SlideshowImageView::fittedFrame(const QImage& image, QSize size, QSizeF pointSize) {
    QImage frame(size.expandedTo(QSize(1, 1)), QImage::Format_RGB32);
    frame.fill(Qt::black);
    if (image.isNull()) {
        return frame;
    }
    const QSizeF points = pointSize.isEmpty() ? image.deviceIndependentSize() : pointSize;
    const PreviewLayout::Size view{static_cast<float>(frame.width()),
                                   static_cast<float>(frame.height())};
    const PreviewLayout::Size shown = PreviewLayout::fitPhoto(
        {static_cast<float>(points.width()), static_cast<float>(points.height())}, view);
    const StampGeometry::StampArea area = PreviewLayout::stampArea(view, shown, false);
    // y-up area to Qt's y-down rectangle.
    const QRectF target(static_cast<double>(area.miniX),
                        static_cast<double>(view.height - area.maxY),
                        static_cast<double>(shown.width), static_cast<double>(shown.height));
    const QSize whole(std::max(1, qCeil(target.width())), std::max(1, qCeil(target.height())));
    const QImage shrunk = image.size() == whole ? image
                                                : image.scaled(whole, Qt::IgnoreAspectRatio,
                                                               Qt::SmoothTransformation);
    QPainter painter(&frame);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(target, shrunk);
    return frame;
}

QImage SlideshowImageView::currentFrame() const {
    if (isHidden()) {
        QImage black(size().expandedTo(QSize(1, 1)), QImage::Format_RGB32);
        black.fill(Qt::black);
        return black;
    }
    if (isTransitioning() && !frame_.isNull()) {
        return frame_.size() == size() ? frame_ : frame_.scaled(size());
    }
    return scaledCache_.size() == size() ? scaledCache_ : fittedFrame(display_, size(), pointSize_);
}

bool SlideshowImageView::isTransitioning() const {
    return animation_ && animation_->state() == QAbstractAnimation::Running;
}

void SlideshowImageView::stopTransition() {
    if (animation_) {
        animation_->stop();  // deletes itself when stopped
    }
    from_ = to_ = frame_ = QImage();
}

void SlideshowImageView::playTransition(const Transitions::Transition& transition,
                                        const QImage& from) {
    scaledCache_ = fittedFrame(display_, size(), pointSize_);
    start(transition, from, scaledCache_);
}

void SlideshowImageView::playRemoval(const Transitions::Transition& transition) {
    const QImage from = currentFrame();
    QImage black(from.size(), QImage::Format_RGB32);
    black.fill(Qt::black);
    start(transition, from, black);
    connect(animation_, &QAbstractAnimation::finished, this, &QObject::deleteLater);
}

void SlideshowImageView::start(const Transitions::Transition& transition, const QImage& from,
                               const QImage& to) {
    stopTransition();
    transition_ = transition;
    to_ = to;
    from_ = from.size() == to.size() ? from : from.scaled(to.size());
    frame_ = from_;
    auto* animation = new QVariantAnimation(this);
    animation->setDuration(static_cast<int>(transition.duration * 1000.0 + 0.5));
    animation->setEasingCurve(easeInEaseOut());
    animation->setStartValue(0.0);
    animation->setEndValue(1.0);
    connect(animation, &QVariantAnimation::valueChanged, this, [this](const QVariant& value) {
        frame_ = Transitions::render(transition_, from_, to_, value.toDouble());
        update();
    });
    connect(animation, &QAbstractAnimation::finished, this, [this] {
        from_ = to_ = frame_ = QImage();
        update();
    });
    animation_ = animation;
    animation->start(QAbstractAnimation::DeleteWhenStopped);
    update();
}

void SlideshowImageView::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    if (!frame_.isNull()) {
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        painter.drawImage(rect(), frame_);
        return;
    }
    if (image_.isNull()) {
        return;
    }
    if (scaledCache_.size() != size()) {
        scaledCache_ = fittedFrame(display_, size(), pointSize_);
    }
    painter.drawImage(0, 0, scaledCache_);
}
