#pragma once

#include <QString>
#include <QWidget>
#include <memory>

class QTextBrowser;

namespace Ui {
class HelpWindowController;
}

// Shows the user's guide, welcome.html: the copy beside the program when there
// is one (so it can be read and edited as a plain file), else the copy built
// into the program. Button 31018 closes the window.
class HelpWindowController : public QWidget {
    Q_OBJECT
  public:
    // pageFolder: where to look for welcome.html first; empty means the
    // program's own folder.
    explicit HelpWindowController(const QString& pageFolder = QString(), QWidget* parent = nullptr);
    ~HelpWindowController() override;

    void promptEvent(QObject* sender);
    QTextBrowser* webView() const;

  private:
    void loadWelcomePage(const QString& pageFolder);

    std::unique_ptr<Ui::HelpWindowController> ui_;
};
