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
// A transparent margin around the card in its cached pixmap: drawn turned
// with smooth pixmap filtering, the card's edges then blend into the margin,
// which looks antialiased without the view's far slower antialiased blits.
constexpr qreal kMargin = 1;
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
    // Unseen until its first layout pass places it and fades it in; until
    // then it would sit in the top-left corner, drawn on every turn of a load.
    setOpacity(0);
}

SlideCarrierView::~SlideCarrierView() = default;

QSizeF SlideCarrierView::cardSize() {
    return cardForm().size;
}

QRectF SlideCarrierView::checkBoxRect() {
    return cardForm().checkBox;
}

QRectF SlideCarrierView::boundingRect() const {
    return cardRect().adjusted(-kMargin, -kMargin, kMargin, kMargin);
}

QRectF SlideCarrierView::cardRect() {
    return QRectF(QPointF(0, 0), cardSize());
}

void SlideCarrierView::setImage(const QImage& image) {
    // Shared with the asset, not copied: the face holds the picture as shown.
    thumbnail_ = image;
    faceChanged();
    // Drawn as the picture arrives, so that the costly scaling is spread over
    // a scan's arrivals rather than gathered into one layout pass.
    if (scene() && !scene()->views().isEmpty()) {
        prepareFace(scene()->views().first()->viewport());
    }
}

void SlideCarrierView::setChecked(bool checked) {
    if (checked_ != checked) {
        checked_ = checked;
        faceChanged();
    }
}

void SlideCarrierView::setTexts(const QString& kind, const QString& dimensions) {
    kind_ = kind;
    dimensions_ = dimensions;
    // Elided once here rather than on every drawing of the card.
    const CardForm& form = cardForm();
    const QFontMetricsF metrics(form.textFont);
    kindShown_ = metrics.elidedText(kind_, Qt::ElideRight, form.kind.width());
    dimensionsShown_ = metrics.elidedText(dimensions_, Qt::ElideRight, form.dimensions.width());
    faceChanged();
}

void SlideCarrierView::faceChanged() {
    faceDirty_ = true;
    redraw();
}

void SlideCarrierView::redraw() {
    update();
    emit looksChanged();
}

void SlideCarrierView::prepareFace(QWidget* widget) {
    if (!faceDirty_) {
        return;
    }
    faceDirty_ = false;
    const QRectF bounds = boundingRect();
    if (face_.isNull()) {
        face_ = QPixmap(bounds.size().toSize());
    }
    face_.fill(Qt::transparent);
    QPainter painter(&face_);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform |
                           QPainter::TextAntialiasing);
    painter.translate(-bounds.topLeft());
    paintCard(&painter, widget);
}

void SlideCarrierView::paint(QPainter* painter, const QStyleOptionGraphicsItem*, QWidget* widget) {
    prepareFace(widget);
    painter->drawPixmap(boundingRect().topLeft(), face_);
    if (!current_ && (effectOpacity_ <= 0 || effect_.isNull())) {
        return;
    }
    // One card at a time wears these; the view itself draws without antialiasing.
    painter->setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    if (current_) {
        painter->setPen(QPen(QColor(48, 140, 198), 3));
        painter->setBrush(Qt::NoBrush);
        painter->drawRoundedRect(cardRect().adjusted(1.5, 1.5, -1.5, -1.5), 8, 8);
    }
    if (effectOpacity_ > 0 && !effect_.isNull()) {
        painter->setOpacity(effectOpacity_);
        painter->drawImage(cardRect(), effect_);
        painter->setOpacity(1);
    }
}

void SlideCarrierView::paintCard(QPainter* painter, QWidget* widget) const {
    const CardForm& form = cardForm();
    const QRectF bounds = cardRect();
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
        // Scaled apart: the painter's own smooth scaling is slow on these formats.
        painter->drawImage(
            picture.topLeft(),
            thumbnail_.convertToFormat(QImage::Format_RGB32)
                .scaled(picture.size().toSize(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
        painter->setOpacity(1);
    }

    painter->drawPixmap(form.checkBox.topLeft(), checkBoxPixmap(checked_, widget));

    painter->setFont(form.textFont);
    painter->setPen(Qt::black);
    painter->drawText(form.kind, Qt::AlignLeft | Qt::AlignVCenter, kindShown_);
    painter->drawText(form.dimensions, Qt::AlignLeft | Qt::AlignVCenter, dimensionsShown_);
}

QPixmap SlideCarrierView::checkBoxPixmap(bool checked, QWidget* widget) {
    // The style draws the tick box for one card at a time several times slower
    // than copying it, and cards coming into sight are drawn in crowds.
    struct Drawn {
        QStyle* style = nullptr;
        qint64 palette = 0;
        QString font;
        QPixmap box[2];
    };
    static Drawn drawn;
    QStyle* style = widget ? widget->style() : QApplication::style();
    const QPalette palette = widget ? widget->palette() : QApplication::palette();
    const QFont font = widget ? widget->font() : QApplication::font();
    if (drawn.style != style || drawn.palette != palette.cacheKey() || drawn.font != font.key()) {
        drawn = Drawn{style, palette.cacheKey(), font.key(), {}};
    }
    QPixmap& pixmap = drawn.box[checked ? 1 : 0];
    if (pixmap.isNull()) {
        const CardForm& form = cardForm();
        pixmap = QPixmap(form.checkBox.size().toSize());
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
        QStyleOptionButton box;
        box.rect = pixmap.rect();
        box.text = form.checkTitle;
        box.state = QStyle::State_Enabled | (checked ? QStyle::State_On : QStyle::State_Off);
        box.palette = palette;
        box.fontMetrics = QFontMetrics(font);
        painter.setFont(font);
        style->drawControl(QStyle::CE_CheckBox, &box, &painter, widget);
    }
    return pixmap;
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
    // The last step lands exactly: a card a hair off whole pixels is resampled,
    // one a hair short of opaque is blended.
    setPos(linear < 1.0 ? fromPos_ + (targetPos_ - fromPos_) * t : targetPos_);
    if (fromRotation_ != targetRotation_) {
        setRotation(linear < 1.0 ? fromRotation_ + (targetRotation_ - fromRotation_) * t
                                 : targetRotation_);
    }
    if (fromOpacity_ != 1) {
        setOpacity(linear < 1.0 ? fromOpacity_ + (1 - fromOpacity_) * t : 1.0);
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
            redraw();
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
    if (!highlightSound_) {
        highlightSound_ = ClickSound::shared();
    }
    highlightSound_->play();
    redraw();
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
        redraw();
    }
}

void SlideCarrierView::mouseReleaseEvent(QGraphicsSceneMouseEvent* event) {
    if (!checkBoxRect().contains(event->buttonDownPos(Qt::LeftButton))) {
        doHighlightEffect(false);
    }
    event->accept();
}
