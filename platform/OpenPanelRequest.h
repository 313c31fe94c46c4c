#pragma once

// What an open panel may choose.
struct OpenPanelRequest {
    bool canChooseFiles = true;
    bool canChooseDirectories = false;
    bool allowsMultipleSelection = false;
};
