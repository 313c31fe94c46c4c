#include "preview/SlideshowView.h"

#include <QCoreApplication>
#include <QFile>
#include <QPainter>
#include <QResizeEvent>

#include "preview/Lanczos.h"

// The built-in copies of the resource images live in a static library, whose
// resource registration the linker would otherwise drop.
static void initPreviewResources() {
    Q_INIT_RESOURCE(preview);
}

namespace {
constexpr float kCurlAngle = -0.7853982f;          // -pi/4 as a 32-bit float
constexpr quint32 kBoundsDependentStyles = 0x7B0;  // styles 4, 5, 7, 8, 9, 10
}  // namespace

SlideshowView::SlideshowView(QWidget* parent) : QWidget(parent) {
    setAttribute(Qt::WA_OpaquePaintEvent);
    updateSubviewsTransition();
    static const bool registered = (initPreviewResources(), true);
    Q_UNUSED(registered);
    inputShadingImage_ = loadResourceImage("restrictedshine", "tiff");
    inputMaskImage_ = loadResourceImage("transitionmask", "jpg");
}

QImage SlideshowView::loadResourceImage(const QString& name, const QString& type) {
    const QString file = name + "." + type;
    for (const QString& path :
         {QCoreApplication::applicationDirPath() + "/" + file, ":/preview/" + file}) {
        QFile in(path);
        if (!in.open(QIODevice::ReadOnly)) {
            continue;
        }
        QImage image = QImage::fromData(in.readAll());
        if (!image.isNull()) {
            return image;
        }
    }
    return {};
}

void SlideshowView::updateSubviewsTransition() {
    const QRectF b(0, 0, width(), height());
    const QPointF centre(b.x() + b.width() * 0.5, b.y() + b.height() * 0.5);
    Transitions::Transition t;
    t.kind = Transitions::kindForStyle(transitionStyle_);
    t.inputs = Transitions::defaultInputs(t.kind);
    switch (t.kind) {
        case Transitions::Kind::CopyMachine:
            t.inputs.extent = b;
            break;
        case Transitions::Kind::DisintegrateWithMask:
            if (!inputMaskImage_.isNull()) {
                // Stretch the mask over exactly the bounds.
                const float sx = static_cast<float>(b.width() / inputMaskImage_.width());
                const float sy = static_cast<float>(b.height() / inputMaskImage_.height());
                const float aspect = sx / sy;
                const QSize target(qRound(inputMaskImage_.width() * sy * aspect),
                                   qRound(inputMaskImage_.height() * sy));
                t.inputs.maskImage = Lanczos::scaled(
                    inputMaskImage_.convertToFormat(QImage::Format_Grayscale8), target);
            }
            break;
        case Transitions::Kind::Flash:
            t.inputs.center = centre;
            t.inputs.extent = b;
            break;
        case Transitions::Kind::Mod:
            t.inputs.center = centre;
            break;
        case Transitions::Kind::PageCurl:
            t.inputs.angle = kCurlAngle;
            t.inputs.shadingImage = inputShadingImage_;
            t.inputs.backsideImage = inputShadingImage_;
            t.inputs.extent = b;
            break;
        case Transitions::Kind::Ripple:
            t.inputs.center = centre;
            t.inputs.extent = b;
            t.inputs.shadingImage = inputShadingImage_;
            break;
        default:
            break;
    }
    t.duration = 0.1;
    transition_ = t;
    ++transitionBuildCount_;
}

void SlideshowView::setTransitionStyle(qint32 style) {
    if (style == transitionStyle_) {
        return;
    }
    transitionStyle_ = style;
    updateSubviewsTransition();
}

bool SlideshowView::isTransitionRunning() const {
    const QList<SlideshowImageView*> views =
        findChildren<SlideshowImageView*>(Qt::FindDirectChildrenOnly);
    return std::any_of(views.begin(), views.end(),
                       [](const SlideshowImageView* v) { return v->isTransitioning(); });
}

void SlideshowView::transitionToImage(const QImage& image, QSizeF pointSize) {
    image_ = image;
    pointSize_ = pointSize.isEmpty() ? image.deviceIndependentSize() : pointSize;
    if (autoCyclesTransitionStyle_) {
        setTransitionStyle(
            static_cast<qint32>((static_cast<quint32>(transitionStyle_) + 1u) % 12u));
    }
    SlideshowImageView* next = nullptr;
    if (!image.isNull()) {
        next = new SlideshowImageView(this);
        next->setGeometry(rect());
        next->setImage(image, pointSize_);
        QImage from;
        if (currentImageView_) {
            from = currentImageView_->currentFrame();
            currentImageView_->stopTransition();
            // The new view takes the old one's place among the subviews.
            next->stackUnder(currentImageView_);
            currentImageView_->hide();
            currentImageView_->deleteLater();
        } else {
            from = SlideshowImageView::fittedFrame(QImage(), size());
            next->raise();
        }
        next->show();
        next->playTransition(transition_, from);
    } else if (currentImageView_) {
        currentImageView_->playRemoval(transition_);
    }
    currentImageView_ = next;
    if (next) {
        next->setHidden(false);
    }
}

void SlideshowView::clearImage() {
    if (currentImageView_) {
        currentImageView_->stopTransition();
        currentImageView_->setHidden(true);
    }
}

void SlideshowView::setFrameSize(const QSize& size) {
    resize(size);
    frameSizeChanged();
}

void SlideshowView::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    if (size() != handledSize_) {
        frameSizeChanged();
    }
}

void SlideshowView::frameSizeChanged() {
    handledSize_ = size();
    // The photo follows the view's size in both directions.
    const QList<SlideshowImageView*> views =
        findChildren<SlideshowImageView*>(Qt::FindDirectChildrenOnly);
    for (SlideshowImageView* view : views) {
        view->setGeometry(rect());
    }
    slideshowWidth_ = currentImageView_ ? static_cast<float>(currentImageView_->width()) : 0.0f;
    slideshowHeight_ = currentImageView_ ? static_cast<float>(currentImageView_->height()) : 0.0f;
    if (image_.isNull()) {
        return;
    }
    imageWidth_ = static_cast<float>(pointSize_.width());
    imageHeight_ = static_cast<float>(pointSize_.height());
    if (transitionStyle_ <= 10 && transitionStyle_ >= 0 &&
        (kBoundsDependentStyles >> transitionStyle_) & 1u) {
        updateSubviewsTransition();
    }
}

void SlideshowView::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    painter.fillRect(event->rect(), Qt::black);
}
