#pragma once

#include <QTabWidget>

// A tab widget that carries a control tag like every other tagged control;
// the tag is a real property, so the tag search of ControlTag finds it.
class QNSTabView : public QTabWidget {
    Q_OBJECT
    Q_PROPERTY(qint64 tag READ getTag WRITE setTag)
  public:
    explicit QNSTabView(QWidget* parent = nullptr) : QTabWidget(parent) {}

    qint64 getTag() const { return tag_; }
    void setTag(qint64 tag) { tag_ = tag; }

  private:
    qint64 tag_ = 0;
};
