#pragma once

#include <QList>
#include <optional>

#include "platform/AlertPanel.h"
#include "platform/OpenPanel.h"

// Records every alert; chooses the queued buttons in turn, then the default one.
struct FakeAlertPanel : AlertPanel {
    int run(const AlertRequest& request) override {
        shown.append(request);
        return answers.isEmpty() ? 0 : answers.takeFirst();
    }
    QList<AlertRequest> shown;
    QList<int> answers;
};

// Records every request; gives the queued answers in turn (nullopt cancels), then cancels.
struct FakeOpenPanel : OpenPanel {
    std::optional<QStringList> run(const OpenPanelRequest& request) override {
        requests.append(request);
        return answers.isEmpty() ? std::nullopt : answers.takeFirst();
    }
    QList<OpenPanelRequest> requests;
    QList<std::optional<QStringList>> answers;
};
