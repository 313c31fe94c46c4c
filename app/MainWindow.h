#pragma once

#include <QMainWindow>
#include <functional>
#include <memory>

namespace Ui {
class MainWindow;
}

// The main window as laid out in MainWindow.ui; the controller does the rest.
class MainWindow : public QMainWindow {
    Q_OBJECT
  public:
    explicit MainWindow(QWidget* parent = nullptr);
    ~MainWindow() override;

    Ui::MainWindow& ui() { return *ui_; }

    // Asked before the window closes; false keeps it open.
    void setShouldClose(std::function<bool()> shouldClose) {
        shouldClose_ = std::move(shouldClose);
    }

  protected:
    void closeEvent(QCloseEvent* event) override;

  private:
    std::unique_ptr<Ui::MainWindow> ui_;
    std::function<bool()> shouldClose_;
};
