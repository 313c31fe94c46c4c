#pragma once

#include <QList>
#include <deque>

#include "platform/AlertPanel.h"

// Records every alert and answers from a script (default button when the script is empty).
class FakeAlertPanel : public AlertPanel {
  public:
    int run(const AlertRequest& request) override;

    void answerNext(int buttonIndex) { script_.push_back(buttonIndex); }
    void setDefaultAnswer(int buttonIndex) { defaultAnswer_ = buttonIndex; }

    QList<AlertRequest> shown;

  private:
    std::deque<int> script_;
    int defaultAnswer_ = 0;
};
