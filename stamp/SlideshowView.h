#pragma once

#include <QWidget>

// The preview of the model photo.
class SlideshowView : public QWidget {
    Q_OBJECT
public:
    explicit SlideshowView(QWidget* parent = nullptr);
};
