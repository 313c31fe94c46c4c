#include "common/FakeAlertPanel.h"

int FakeAlertPanel::run(const AlertRequest& request) {
    shown.append(request);
    if (script_.empty()) {
        return defaultAnswer_;
    }
    const int answer = script_.front();
    script_.pop_front();
    return answer;
}
