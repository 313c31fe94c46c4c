#pragma once

#include "browser/ViewLayout.h"

// Upright cards in rows from the top left, like lines of text.
class WrappedViewLayout : public ViewLayout {
  public:
    void layoutSubviews(std::span<LayoutSlide> slides,
                        std::optional<BrowserLayout::Rect> view) const override {
        arrange(slides, view, BrowserLayout::wrapped);
    }
};
