#pragma once

#include <QGraphicsObject>
#include <QImage>
#include <QPixmap>
#include <QPointer>
#include <QString>
#include <memory>

class ClickSound;
class QEasingCurve;
class QVariantAnimation;

// One card in the browser's scene: the rounded card with the thumbnail, the
// tick box and the kind and size lines, placed and turned by the layouts.
// Drawn by hand rather than as embedded widgets, so that thousands of cards
// stay cheap to move and to paint; SlideTableNode.ui gives the places.
class SlideCarrierView : public QGraphicsObject {
    Q_OBJECT
  public:
    explicit SlideCarrierView(QGraphicsItem* parent = nullptr);
    ~SlideCarrierView() override;

    // The card's size from SlideTableNode.ui.
    static QSizeF cardSize();

    // The card and a thin transparent margin around it.
    QRectF boundingRect() const override;
    // The card alone, item coordinates.
    static QRectF cardRect();
    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* widget) override;

    void setImage(const QImage& image);
    bool hasImage() const { return !thumbnail_.isNull(); }
    bool isChecked() const { return checked_; }
    void setChecked(bool checked);
    void setTexts(const QString& kind, const QString& dimensions);
    QString kindText() const { return kind_; }
    QString dimensionsText() const { return dimensions_; }
    // The full path posted when the card is pressed.
    void setFullFilename(const QString& path) { fullFilename_ = path; }

    // The tick box's place on the card, item coordinates.
    static QRectF checkBoxRect();

    // Starts easing from where the card is now to pos and rotation (Qt
    // coordinates and turn); a card never placed jumps there and fades in.
    // False when the card is already there or already heading there.
    bool moveTo(QPointF pos, qreal rotation, qint64 nowMs, int durationMs);
    // Advances a move; false once the card has arrived.
    bool step(qint64 nowMs, const QEasingCurve& easing);
    QPointF targetPos() const { return targetPos_; }
    qreal targetRotation() const { return targetRotation_; }

    // On at once with a click sound, off fading over half a second.
    void doHighlightEffect(bool on);
    // How much of the click effect shows, 0 to 1.
    qreal highlightOpacity() const { return effectOpacity_; }
    // The card now shows another photo; its next press loads the sound again.
    void releaseHighlightSound();

    // Draws the card's face into its pixmap if something on it changed since;
    // the widget gives the tick box its style.
    void prepareFace(QWidget* widget);

    // What a click on the tick box does, and what a press on the picture does;
    // the keyboard does the same through these.
    void toggleCheckBox();
    void activate();
    // The card the keyboard is on wears a frame.
    bool isCurrent() const { return current_; }
    void setCurrent(bool current);

  signals:
    // The user clicked the tick box; checked is the box's new state.
    void checkBoxClicked(bool checked);
    // Something drawn on the card changed; a place or turn is the view's own doing.
    void looksChanged();

  protected:
    void mousePressEvent(QGraphicsSceneMouseEvent* event) override;
    void mouseReleaseEvent(QGraphicsSceneMouseEvent* event) override;

  private:
    void paintCard(QPainter* painter, QWidget* widget) const;
    void faceChanged();
    void redraw();
    // The tick box and its title as the widget's style draws them.
    static QPixmap checkBoxPixmap(bool checked, QWidget* widget);

    QImage thumbnail_;
    // The card as drawn, margin included: kept rather than left to a shared
    // cache, so that cards coming into sight in crowds are only copied.
    QPixmap face_;
    bool faceDirty_ = true;
    QString kind_;
    QString dimensions_;
    QString kindShown_;
    QString dimensionsShown_;
    QString fullFilename_;
    bool checked_ = true;
    bool current_ = false;

    bool placed_ = false;
    QPointF fromPos_;
    QPointF targetPos_;
    qreal fromRotation_ = 0;
    qreal targetRotation_ = 0;
    qreal fromOpacity_ = 1;
    qint64 moveStartMs_ = 0;
    int moveDurationMs_ = 0;
    bool moving_ = false;

    QImage effect_;
    qreal effectOpacity_ = 0;
    QPointer<QVariantAnimation> effectFade_;
    std::shared_ptr<ClickSound> highlightSound_;
};
