#pragma once

#include <QWidget>
#include <memory>

class MyProtocolDelegate;
class StampwiseAppDelegate;

namespace Ui {
class TypeWindowController;
}

// The window where the date layout (matrix 32400, 2 x 2) and the time layout
// (matrix 32401, 1 x 3) are chosen. Apply (31018) hands both to the controller,
// has the settings saved and the label rewritten; cancel (31011) only closes.
// The matrices keep whatever was picked last, applied or not.
class TypeWindowController : public QWidget {
    Q_OBJECT
  public:
    explicit TypeWindowController(QWidget* parent = nullptr);
    ~TypeWindowController() override;

    void promptEvent(QObject* sender);
    QObject* getGUIObject(qint64 tag, QObject* container);

    MyProtocolDelegate* myProtocolDelegate() const { return myProtocolDelegate_; }
    void setMyProtocolDelegate(MyProtocolDelegate* delegate) { myProtocolDelegate_ = delegate; }
    StampwiseAppDelegate* appDelegate() const { return appDelegate_; }
    void setAppDelegate(StampwiseAppDelegate* delegate) { appDelegate_ = delegate; }

  private:
    void apply();

    std::unique_ptr<Ui::TypeWindowController> ui_;
    MyProtocolDelegate* myProtocolDelegate_ = nullptr;  // not owned
    StampwiseAppDelegate* appDelegate_ = nullptr;       // not owned; it owns this window
};
