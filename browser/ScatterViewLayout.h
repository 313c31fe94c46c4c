#pragma once

#include "browser/ViewLayout.h"

// Cards at random places with random small tilts.
class ScatterViewLayout : public ViewLayout {
  public:
    void layoutSubviews(std::span<LayoutSlide> slides,
                        std::optional<BrowserLayout::Rect> view) const override {
        arrange(slides, view,
                [](std::span<const BrowserLayout::Size> sizes, BrowserLayout::Rect bounds) {
                    return BrowserLayout::scatter(sizes, bounds);
                });
    }
};
