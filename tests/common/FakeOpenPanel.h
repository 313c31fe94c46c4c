#pragma once

#include <QList>
#include <deque>
#include <optional>

#include "platform/OpenPanel.h"

// Records every request and answers from a script (cancel when the script is empty).
class FakeOpenPanel : public OpenPanel {
  public:
    std::optional<QStringList> run(const OpenPanelRequest& request) override;

    void answerNext(const QStringList& paths) { script_.push_back({false, paths}); }
    void cancelNext() { script_.push_back({true, {}}); }

    QList<OpenPanelRequest> requests;

  private:
    struct Answer {
        bool cancelled;
        QStringList paths;
    };
    std::deque<Answer> script_;
};
