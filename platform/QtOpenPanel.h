#pragma once

#include <QPointer>
#include <QWidget>

#include "platform/OpenPanel.h"

class QtOpenPanel : public OpenPanel {
  public:
    explicit QtOpenPanel(QWidget* parent = nullptr) : parent_(parent) {}
    void setParent(QWidget* parent) { parent_ = parent; }
    std::optional<QStringList> run(const OpenPanelRequest& request) override;

  private:
    QPointer<QWidget> parent_;
};
