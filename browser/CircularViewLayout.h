#pragma once

#include "browser/ViewLayout.h"

// Cards on a circle, each turned to face outwards.
class CircularViewLayout : public ViewLayout {
  public:
    void layoutSubviews(std::span<LayoutSlide> slides,
                        std::optional<BrowserLayout::Rect> view) const override {
        arrange(slides, view, BrowserLayout::circular);
    }
};
