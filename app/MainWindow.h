#pragma once

#include <QMainWindow>
#include <QStringList>
#include <functional>
#include <memory>

class QMimeData;

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

    // The local files and folders that data names, in its order; other URLs left out.
    static QStringList localPaths(const QMimeData* data);

  signals:
    // Local files and folders were dropped on the window.
    void pathsDropped(const QStringList& paths);

  protected:
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dropEvent(QDropEvent* event) override;

  private:
    std::unique_ptr<Ui::MainWindow> ui_;
    std::function<bool()> shouldClose_;
};
