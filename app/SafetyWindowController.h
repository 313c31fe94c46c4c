#pragma once

#include <QWidget>
#include <memory>

namespace Ui {
class SafetyWindowController;
}

// A small window whose only command is closing (button 31018).
class SafetyWindowController : public QWidget {
    Q_OBJECT
  public:
    explicit SafetyWindowController(QWidget* parent = nullptr);
    ~SafetyWindowController() override;

    void promptEvent(QObject* sender);

  private:
    std::unique_ptr<Ui::SafetyWindowController> ui_;
};
