#include "browser/SlideCarrierView.h"

#include <QApplication>
#include <QEasingCurve>
#include <QGraphicsScene>
#include <QGraphicsSceneMouseEvent>
#include <QGraphicsView>
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QStyle>
#include <QStyleOptionButton>
#include <QVariantAnimation>
#include <QWidget>
#include <algorithm>

#include "browser/ClickSound.h"
#include "platform/NotificationCenter.h"
#include "platform/NotificationNames.h"
#include "preview/Pointillize.h"
#include "ui_SlideTableNode.h"

namespace {

// The card's pieces as SlideTableNode.ui places them, read once.
struct CardForm {
    QSizeF size;
    QRectF image;
    QRectF checkBox;
    QString checkTitle;
    QRectF kind;
    QRectF dimensions;
    QFont textFont;
};

const CardForm& cardForm() {
    static const CardForm form = [] {
        QWidget card;
        Ui::SlideTableNode ui;
        ui.setupUi(&card);
        return CardForm{QSizeF(card.size()),
                        QRectF(ui.imageView->geometry()),
                        QRectF(ui.titleCheckBox->geometry()),
                        ui.titleCheckBox->text(),
                        QRectF(ui.kindTextField->geometry()),
                        QRectF(ui.dimensionsTextField->geometry()),
                        ui.kindTextField->font()};
    }();
    return form;
}

constexpr qreal kCornerRadius = 8;
constexpr qreal kImageAlpha = 0.8;
constexpr qreal kEffectRadius = 4.0;
constexpr int kEffectFadeMs = 500;

QColor white(float level, float alpha = 1.0f) {
    return QColor::fromRgbF(level, level, level, alpha);
}

}  // namespace

SlideCarrierView::SlideCarrierView(QGraphicsItem* parent) : QGraphicsObject(parent) {
    const QSizeF size = cardSize();
    setTransformOriginPoint(size.width() / 2, size.height() / 2);
    setAcceptedMouseButtons(Qt::LeftButton);
    // Drawn once into a pixmap that then moves and turns: cards in flight cross
    // the visible area in hundreds at a time.
    setCacheMode(QGraphicsItem::ItemCoordinateCache);
}

SlideCarrierView::~SlideCarrierView() = default;

QSizeF SlideCarrierView::cardSize() {
    return cardForm().size;
}

QRectF SlideCarrierView::checkBoxRect() {
    return cardForm().checkBox;
}

QRectF SlideCarrierView::boundingRect() const {
    return QRectF(QPointF(0, 0), cardSize());
}

void SlideCarrierView::setImage(const QImage& image) {
    // Kept at the size it is shown, not the size it came in.
    const QSize box = cardForm().image.size().toSize();
    thumbnail_ =
        image.isNull()
            ? QPixmap()
            : QPixmap::fromImage(image.scaled(box, Qt::KeepAspectRatio, Qt::SmoothTransformation));
    update();
}

void SlideCarrierView::setChecked(bool checked) {
    if (checked_ != checked) {
        checked_ = checked;
        update();
    }
}

void SlideCarrierView::setTexts(const QString& kind, const QString& dimensions) {
    kind_ = kind;
    dimensions_ = dimensions;
    update();
}

void SlideCarrierView::paint(QPainter* painter, const QStyleOptionGraphicsItem*, QWidget* widget) {
    paintCard(painter, widget);
    if (current_) {
        painter->setPen(QPen(QColor(48, 140, 198), 3));
        painter->setBrush(Qt::NoBrush);
        painter->drawRoundedRect(boundingRect().adjusted(1.5, 1.5, -1.5, -1.5), 8, 8);
    }
    if (effectOpacity_ > 0 && !effect_.isNull()) {
        painter->setOpacity(effectOpacity_);
        painter->drawImage(boundingRect(), effect_);
        painter->setOpacity(1);
    }
}

void SlideCarrierView::paintCard(QPainter* painter, QWidget* widget) const {
    const CardForm& form = cardForm();
    const QRectF bounds = boundingRect();
    QPainterPath card;
    card.addRoundedRect(bounds, kCornerRadius, kCornerRadius);
    // Mid grey at the bottom edge, white at the top.
    QLinearGradient gradient(bounds.bottomLeft(), bounds.topLeft());
    gradient.setColorAt(0, white(0.5f));
    gradient.setColorAt(1, white(1.0f));
    painter->fillPath(card, gradient);

    if (!thumbnail_.isNull()) {
        // The picture keeps its shape; the free bands either side go dark.
        const QRectF box = form.image;
        QSizeF shown = QSizeF(thumbnail_.size()).scaled(box.size(), Qt::KeepAspectRatio);
        const QRectF picture(box.center() - QPointF(shown.width() / 2, shown.height() / 2), shown);
        painter->setOpacity(kImageAlpha);
        const QColor band = white(0.0f, 0.8f);
        if (picture.width() < box.width()) {
            painter->fillRect(
                QRectF(box.left(), box.top(), picture.left() - box.left(), box.height()), band);
            painter->fillRect(
                QRectF(picture.right(), box.top(), box.right() - picture.right(), box.height()),
                band);
        } else if (picture.height() < box.height()) {
            painter->fillRect(QRectF(box.left(), box.top(), box.width(), picture.top() - box.top()),
                              band);
            painter->fillRect(
                QRectF(box.left(), picture.bottom(), box.width(), box.bottom() - picture.bottom()),
                band);
        }
        painter->drawPixmap(picture, thumbnail_, QRectF(thumbnail_.rect()));
        painter->setOpacity(1);
    }

    QStyleOptionButton box;
    box.rect = form.checkBox.toRect();
    box.text = form.checkTitle;
    box.state = QStyle::State_Enabled | (checked_ ? QStyle::State_On : QStyle::State_Off);
    if (widget) {
        box.palette = widget->palette();
        box.fontMetrics = widget->fontMetrics();
    }
    QStyle* style = widget ? widget->style() : QApplication::style();
    style->drawControl(QStyle::CE_CheckBox, &box, painter, widget);

    painter->setFont(form.textFont);
    painter->setPen(Qt::black);
    const QFontMetricsF metrics(form.textFont);
    painter->drawText(form.kind, Qt::AlignLeft | Qt::AlignVCenter,
                      metrics.elidedText(kind_, Qt::ElideRight, form.kind.width()));
    painter->drawText(form.dimensions, Qt::AlignLeft | Qt::AlignVCenter,
                      metrics.elidedText(dimensions_, Qt::ElideRight, form.dimensions.width()));
}

bool SlideCarrierView::moveTo(QPointF pos, qreal rotation, qint64 nowMs, int durationMs) {
    if (!placed_) {
        placed_ = true;
        setPos(pos);
        setRotation(rotation);
        setOpacity(0);
    } else if (pos == targetPos_ && rotation == targetRotation_) {
        return false;
    }
    fromPos_ = this->pos();
    fromRotation_ = this->rotation();
    fromOpacity_ = opacity();
    targetPos_ = pos;
    targetRotation_ = rotation;
    if (fromPos_ == pos && fromRotation_ == rotation && fromOpacity_ == 1) {
        moving_ = false;
        return false;
    }
    moveStartMs_ = nowMs;
    moveDurationMs_ = durationMs;
    moving_ = true;
    return true;
}

bool SlideCarrierView::step(qint64 nowMs, const QEasingCurve& easing) {
    if (!moving_) {
        return false;
    }
    const qreal linear = moveDurationMs_ > 0
                             ? std::clamp(qreal(nowMs - moveStartMs_) / moveDurationMs_, 0.0, 1.0)
                             : 1.0;
    const qreal t = easing.valueForProgress(linear);
    // Each setter costs a geometry change in the scene; skip the unchanged.
    setPos(fromPos_ + (targetPos_ - fromPos_) * t);
    if (fromRotation_ != targetRotation_) {
        setRotation(fromRotation_ + (targetRotation_ - fromRotation_) * t);
    }
    if (fromOpacity_ != 1) {
        setOpacity(fromOpacity_ + (1 - fromOpacity_) * t);
    }
    moving_ = linear < 1.0;
    return moving_;
}

void SlideCarrierView::doHighlightEffect(bool on) {
    if (effectFade_) {
        effectFade_->stop();
        delete effectFade_;
    }
    if (!on) {
        auto* fade = new QVariantAnimation(this);
        fade->setStartValue(effectOpacity_);
        fade->setEndValue(0.0);
        fade->setDuration(kEffectFadeMs);
        connect(fade, &QVariantAnimation::valueChanged, this, [this](const QVariant& value) {
            effectOpacity_ = value.toReal();
            update();
        });
        effectFade_ = fade;
        fade->start(QAbstractAnimation::DeleteWhenStopped);
        return;
    }
    QImage card(cardSize().toSize(), QImage::Format_ARGB32_Premultiplied);
    card.fill(Qt::transparent);
    {
        QPainter painter(&card);
        painter.setRenderHint(QPainter::Antialiasing);
        paintCard(&painter,
                  scene() && !scene()->views().isEmpty() ? scene()->views().first() : nullptr);
    }
    const QPointF centre(card.width() / 2.0, card.height() / 2.0);
    effect_ = Pointillize::render(card, kEffectRadius, centre);
    effectOpacity_ = 1;
    update();
    if (!highlightSound_) {
        highlightSound_ = ClickSound::shared();
    }
    highlightSound_->play();
    NotificationCenter::defaultCenter().post(NotificationNames::kSelectImageHighlight);
}

void SlideCarrierView::releaseHighlightSound() {
    highlightSound_.reset();
}

void SlideCarrierView::mousePressEvent(QGraphicsSceneMouseEvent* event) {
    if (checkBoxRect().contains(event->pos())) {
        toggleCheckBox();
    } else {
        activate();
    }
    event->accept();
}

void SlideCarrierView::toggleCheckBox() {
    setChecked(!checked_);
    emit checkBoxClicked(checked_);
}

void SlideCarrierView::activate() {
    doHighlightEffect(true);
    NotificationCenter::defaultCenter().post(NotificationNames::kSelectImageMouseDown,
                                             fullFilename_);
}

void SlideCarrierView::setCurrent(bool current) {
    if (current != current_) {
        current_ = current;
        update();
    }
}

void SlideCarrierView::mouseReleaseEvent(QGraphicsSceneMouseEvent* event) {
    if (!checkBoxRect().contains(event->buttonDownPos(Qt::LeftButton))) {
        doHighlightEffect(false);
    }
    event->accept();
}
