#pragma once

#include <QPointer>
#include <QWidget>

#include "platform/AlertPanel.h"

// Alerts as application-modal message boxes.
class QtAlertPanel : public AlertPanel {
  public:
    explicit QtAlertPanel(QWidget* parent = nullptr) : parent_(parent) {}
    void setParent(QWidget* parent) { parent_ = parent; }
    int run(const AlertRequest& request) override;

  private:
    QPointer<QWidget> parent_;
};
