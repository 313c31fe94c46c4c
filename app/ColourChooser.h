#pragma once

#include <QColor>
#include <QObject>
#include <QPointer>

#include <QColorDialog>
class QWidget;

// The stamp colour's chooser: a non-modal colour dialog with alpha, made on
// first use and kept, that reports every change at once.
class ColourChooser : public QObject {
    Q_OBJECT
  public:
    explicit ColourChooser(QWidget* window);
    ~ColourChooser() override;

    // Shows the dialog in front with current selected.
    void open(const QColor& current);
    QColorDialog* dialog() const { return dialog_; }

  signals:
    void colourChanged(const QColor& colour);

  private:
    QPointer<QWidget> window_;
    QPointer<QColorDialog> dialog_;
};
