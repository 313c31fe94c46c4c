#include "stamp/QNSDragView.h"

QNSDragView::QNSDragView(QWidget* parent) : QWidget(parent) {}
