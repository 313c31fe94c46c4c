#include "stamp/SlideshowView.h"

#include <QPalette>

SlideshowView::SlideshowView(QWidget* parent) : QWidget(parent) {
    QPalette pal = palette();
    pal.setColor(QPalette::Window, Qt::black);
    setPalette(pal);
    setAutoFillBackground(true);
}
