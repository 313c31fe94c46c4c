#pragma once

#include <QLabel>
#include <QPointer>
#include <QWidget>

// The draggable date label over the preview.
class QNSDragView : public QWidget {
    Q_OBJECT
public:
    explicit QNSDragView(QWidget* parent = nullptr);

    QLabel* atextfield() const { return atextfield_; }
    void setAtextfield(QLabel* field) { atextfield_ = field; }

    bool isPreview() const { return isPreview_; }
    bool getIsPreview() const { return isPreview_; }
    void setIsPreview(bool preview) { isPreview_ = preview; }

private:
    QPointer<QLabel> atextfield_;
    bool isPreview_ = false;
};
