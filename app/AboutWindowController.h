#pragma once

#include <QWidget>
#include <memory>

namespace Ui {
class AboutWindowController;
}

// A small window whose only command is closing (button 31018).
class AboutWindowController : public QWidget {
    Q_OBJECT
  public:
    explicit AboutWindowController(QWidget* parent = nullptr);
    ~AboutWindowController() override;

    void promptEvent(QObject* sender);

  private:
    std::unique_ptr<Ui::AboutWindowController> ui_;
};
