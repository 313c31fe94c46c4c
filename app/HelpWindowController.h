#pragma once

#include <QStringList>
#include <QWidget>
#include <memory>

class QTextBrowser;

namespace Ui {
class HelpWindowController;
}

// Shows the user's guide, welcome.html: the copy beside the program when there
// is one (so it can be read and edited as a plain file), else the installed
// copy, else the copy built into the program. Button 31018 closes the window.
class HelpWindowController : public QWidget {
    Q_OBJECT
  public:
    // pageFolders: where to look for welcome.html, in order; empty means the
    // program's own folder, then the installed data folder.
    explicit HelpWindowController(const QStringList& pageFolders = {}, QWidget* parent = nullptr);
    ~HelpWindowController() override;

    void promptEvent(QObject* sender);
    QTextBrowser* webView() const;

  private:
    void loadWelcomePage(const QStringList& pageFolders);

    std::unique_ptr<Ui::HelpWindowController> ui_;
};
