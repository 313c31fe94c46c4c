#pragma once

#include <QFont>
#include <QObject>
#include <QPointer>

#include <QFontDialog>
class QWidget;

// The stamp font's chooser: a non-modal font dialog, made on first use and
// kept, that reports every change at once.
class FontChooser : public QObject {
    Q_OBJECT
  public:
    explicit FontChooser(QWidget* window);
    ~FontChooser() override;

    // Shows the dialog in front with current selected.
    void open(const QFont& current);
    QFontDialog* dialog() const { return dialog_; }

  signals:
    void fontChanged(const QFont& font);

  private:
    QPointer<QWidget> window_;
    QPointer<QFontDialog> dialog_;
};
