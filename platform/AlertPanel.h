#pragma once

#include "platform/AlertRequest.h"

// Shows modal alerts; tests replace it with FakeAlertPanel.
class AlertPanel {
  public:
    virtual ~AlertPanel() = default;
    // The index of the button chosen: 0 is the default button.
    virtual int run(const AlertRequest& request) = 0;

    // A confirmation with "Ok" and "Cancel"; true only for "Ok".
    bool confirm(const QString& title, const QString& message);
    // A message with the single button given.
    void inform(const QString& title, const QString& message, const QString& button,
                const QString& informativeText = {});
};
