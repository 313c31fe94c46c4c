#pragma once

#include <QLabel>
#include <QPointF>
#include <QPointer>
#include <QRectF>
#include <QWidget>

#include "stamp/StampOptions.h"

// The draggable date label over the preview. It follows the mouse, reports
// every step with "moveDateTime", wears a white dashed frame in edit mode and
// always gives its text field the largest font size that fits.
//
// Points passed in and out are in the parent's coordinates with y up (origin
// at the parent's lower-left corner).
class QNSDragView : public QWidget {
    Q_OBJECT
  public:
    explicit QNSDragView(QWidget* parent = nullptr);

    QLabel* atextfield() const { return atextfield_; }
    void setAtextfield(QLabel* field);

    // With an outline, shadow or box on, the text field shows the stamp as the
    // photo will get it: the stamp font's text with its decorations, scaled to
    // the field. All off, the field draws its text itself.
    void setLegibility(const StampOptions& options, const QFont& stampFont);

    bool isPreview() const { return isPreview_; }
    bool getIsPreview() const { return isPreview_; }
    void setIsPreview(bool preview) { isPreview_ = preview; }

    QPointF lastDragLocation() const { return lastDragLocation_; }
    void setLastDragLocation(QPointF location) { lastDragLocation_ = location; }
    float dashPhase() const { return dashPhase_; }
    void setDashPhase(float phase) { dashPhase_ = phase; }

    // The frame's lower-left corner in the parent, y-up.
    QPointF frameOrigin() const;

    // The mouse steps, with the pointer in the parent's y-up coordinates.
    void mouseDownAt(QPointF location);
    void mouseDraggedTo(QPointF location);

    // Gives the text field the frame (0, 0, W, H) and the largest font size
    // that fits, minus one; a text too large even at size 2 is hidden.
    void calcFontSizeToFitRect(const QRectF& rect);

    // The first size from 2 to 299 at which text in font's face is wider than
    // width or higher than height, 300 when none is. Sizes are in pixels.
    static int firstOverflowingSize(const QString& text, const QFont& font, float width,
                                    float height);
    // Width and height of text in font's face at the given pixel size.
    static QSizeF measure(const QString& text, QFont font, int size);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;

  private:
    void timerFiredQNSDragView();
    void paintLegibleText();
    QPointF toParentYUp(QPointF local) const;
    double parentHeight() const;

    QPointF lastDragLocation_;
    float dashPhase_ = 0.0f;
    QPointer<QLabel> atextfield_;
    bool isPreview_ = false;
    StampOptions legibility_;
    QFont stampFont_;
};
