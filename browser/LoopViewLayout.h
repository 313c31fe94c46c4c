#pragma once

#include "browser/ViewLayout.h"

// Upright cards on a figure of eight.
class LoopViewLayout : public ViewLayout {
  public:
    void layoutSubviews(std::span<LayoutSlide> slides,
                        std::optional<BrowserLayout::Rect> view) const override {
        arrange(slides, view, BrowserLayout::loop);
    }
};
