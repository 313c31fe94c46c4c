#pragma once

#include <QStringList>
#include <optional>

#include "platform/OpenPanelRequest.h"

// A modal file or folder chooser; tests replace it with FakeOpenPanel.
class OpenPanel {
  public:
    virtual ~OpenPanel() = default;
    // The chosen paths in the panel's order, or nullopt when the user cancels.
    virtual std::optional<QStringList> run(const OpenPanelRequest& request) = 0;
};
