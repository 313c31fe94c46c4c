#include "preview/QNSDragView.h"

#include <QFontMetricsF>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QTimer>
#include <algorithm>
#include <cmath>

#include "platform/NotificationCenter.h"
#include "platform/NotificationNames.h"
#include "stamp/Legibility.h"
#include "stamp/StampPainter.h"
#include "stamp/TextMetrics.h"

namespace {
constexpr int kSmallestSize = 2;
constexpr int kLargestSize = 299;
constexpr int kReferenceSize = 100;
constexpr qreal kFrameWidth = 3.0;
constexpr qreal kDash = 10.0;
}  // namespace

QNSDragView::QNSDragView(QWidget* parent) : QWidget(parent) {
    // The dash pattern shifts once, a moment after creation.
    QTimer::singleShot(100, this, &QNSDragView::timerFiredQNSDragView);
}

void QNSDragView::setAtextfield(QLabel* field) {
    if (atextfield_) {
        atextfield_->removeEventFilter(this);
    }
    atextfield_ = field;
    if (field) {
        // Presses anywhere on the label start a drag.
        field->setAttribute(Qt::WA_TransparentForMouseEvents);
        field->installEventFilter(this);
    }
}

void QNSDragView::setLegibility(const StampOptions& options, const QFont& stampFont) {
    if (options == legibility_ && stampFont == stampFont_) {
        return;
    }
    legibility_ = options;
    stampFont_ = stampFont;
    if (atextfield_) {
        atextfield_->update();
    }
}

bool QNSDragView::eventFilter(QObject* watched, QEvent* event) {
    if (watched == atextfield_ && event->type() == QEvent::Paint && Legibility::any(legibility_)) {
        paintLegibleText();
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

// The whole stamp, as measured in points for the photo, stretched over the field
// the way the photo's points map onto the preview.
void QNSDragView::paintLegibleText() {
    const QString text = atextfield_->text();
    const QSizeF stamp = TextMetrics::measureStamp(text, stampFont_, legibility_);
    if (text.isEmpty() || stamp.isEmpty()) {
        return;
    }
    const Legibility::Margins room = Legibility::margins(stampFont_, legibility_);
    QPainter painter(atextfield_);
    painter.scale(atextfield_->width() / stamp.width(), atextfield_->height() / stamp.height());
    StampPainter::paintLegible(painter, text, stampFont_,
                               atextfield_->palette().color(QPalette::WindowText), legibility_,
                               QPointF(room.left, stamp.height() - room.bottom));
}

void QNSDragView::timerFiredQNSDragView() {
    dashPhase_ += -1.0f;
    update();
}

double QNSDragView::parentHeight() const {
    return parentWidget() ? parentWidget()->height() : 0.0;
}

QPointF QNSDragView::toParentYUp(QPointF local) const {
    const QPointF p = mapToParent(local);
    return {p.x(), parentHeight() - p.y()};
}

QPointF QNSDragView::frameOrigin() const {
    return {static_cast<double>(x()), parentHeight() - y() - height()};
}

void QNSDragView::mouseDownAt(QPointF location) {
    lastDragLocation_ = location;
}

void QNSDragView::mouseDraggedTo(QPointF location) {
    const QPointF f = frameOrigin();
    // Each step is truncated toward zero; its remainder is lost, because the
    // next step starts from the exact pointer position.
    const double nx = std::trunc(location.x() - lastDragLocation_.x() + f.x());
    const double ny = std::trunc(location.y() - lastDragLocation_.y() + f.y());
    move(static_cast<int>(nx), static_cast<int>(parentHeight() - ny - height()));
    lastDragLocation_ = location;
    NotificationCenter::defaultCenter().post(NotificationNames::kMoveDateTime);
}

void QNSDragView::mousePressEvent(QMouseEvent* event) {
    // A press in an inactive window arrives here as well, so the first click
    // already starts the drag.
    if (event->button() != Qt::LeftButton) {
        event->ignore();
        return;
    }
    mouseDownAt(toParentYUp(event->position()));
}

void QNSDragView::mouseMoveEvent(QMouseEvent* event) {
    if (!(event->buttons() & Qt::LeftButton)) {
        event->ignore();
        return;
    }
    mouseDraggedTo(toParentYUp(event->position()));
}

void QNSDragView::enterEvent(QEnterEvent* event) {
    QWidget::enterEvent(event);
    if (window()->isActiveWindow()) {
        setCursor(Qt::PointingHandCursor);
    }
}

void QNSDragView::leaveEvent(QEvent* event) {
    QWidget::leaveEvent(event);
    setCursor(Qt::ArrowCursor);
}

QSizeF QNSDragView::measure(const QString& text, QFont font, int size) {
    // Pixel sizes: one point of the stamp is one pixel, whatever the screen.
    font.setPixelSize(size);
    const QFontMetricsF metrics(font);
    return {metrics.horizontalAdvance(text), metrics.height()};
}

int QNSDragView::firstOverflowingSize(const QString& text, const QFont& font, float width,
                                      float height) {
    auto overflows = [&](int size) {
        const QSizeF m = measure(text, font, size);
        return m.width() > static_cast<double>(width) || m.height() > static_cast<double>(height);
    };
    if (overflows(kSmallestSize)) {
        return kSmallestSize;
    }
    // The measured size grows with the font size, so the first overflow can
    // be found from a proportional guess and checked at its neighbours,
    // instead of trying every size upwards.
    const QSizeF ref = measure(text, font, kReferenceSize);
    double guess = kLargestSize;
    if (ref.width() > 0) {
        guess = std::min(guess, kReferenceSize * static_cast<double>(width) / ref.width());
    }
    if (ref.height() > 0) {
        guess = std::min(guess, kReferenceSize * static_cast<double>(height) / ref.height());
    }
    int size = std::clamp(static_cast<int>(guess), kSmallestSize, kLargestSize);
    if (overflows(size)) {
        while (size - 1 > kSmallestSize && overflows(size - 1)) {
            --size;
        }
        return size;
    }
    ++size;
    while (size <= kLargestSize && !overflows(size)) {
        ++size;
    }
    return size;
}

void QNSDragView::calcFontSizeToFitRect(const QRectF& rect) {
    const float w = static_cast<float>(rect.width());
    const float h = static_cast<float>(rect.height());
    if (!atextfield_) {
        return;
    }
    const int size = firstOverflowingSize(atextfield_->text(), atextfield_->font(), w, h) - 2;
    const QRect frame = QRectF(0, 0, w, h).toRect();
    if (atextfield_->geometry() != frame) {
        atextfield_->setGeometry(frame);
    }
    // Size 0: nothing fits, so nothing is shown.
    atextfield_->setVisible(size > 0);
    if (size > 0 && atextfield_->font().pixelSize() != size) {
        QFont font = atextfield_->font();
        font.setPixelSize(size);
        atextfield_->setFont(font);
    }
}

void QNSDragView::paintEvent(QPaintEvent* /*event*/) {
    if (!isPreview_) {
        QPainter painter(this);
        // The edge cuts the line's inner half at 1.5 points: one full row and a half.
        painter.setRenderHint(QPainter::Antialiasing);
        QPen pen(Qt::white);
        pen.setWidthF(kFrameWidth);
        pen.setCapStyle(Qt::FlatCap);
        pen.setJoinStyle(Qt::MiterJoin);
        // Qt measures dashes and their offset in pen widths.
        const qreal dash = kDash / kFrameWidth;
        pen.setDashPattern({dash, dash, dash, dash, dash, dash});
        pen.setDashOffset(static_cast<qreal>(dashPhase_) / kFrameWidth);
        painter.setPen(pen);
        // Centred on the edge, so the inner half shows. Drawn from the
        // lower-left corner, counter-clockwise on screen as in y-up terms.
        const qreal w = width();
        const qreal h = height();
        QPainterPath path;
        path.moveTo(0, h);
        path.lineTo(w, h);
        path.lineTo(w, 0);
        path.lineTo(0, 0);
        path.closeSubpath();
        painter.drawPath(path);
    }
    // Every redraw covers the whole label, so the text fills all of it.
    calcFontSizeToFitRect(QRectF(rect()));
}
