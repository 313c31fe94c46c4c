#include "common/FakeOpenPanel.h"

std::optional<QStringList> FakeOpenPanel::run(const OpenPanelRequest& request) {
    requests.append(request);
    if (script_.empty()) {
        return std::nullopt;
    }
    const Answer answer = script_.front();
    script_.pop_front();
    if (answer.cancelled) {
        return std::nullopt;
    }
    return answer.paths;
}
