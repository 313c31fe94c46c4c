#pragma once

#include <QtGlobal>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "browser/BrowserLayout.h"

// One slide as a layout pass sees it: the browser fills in the frame size and
// reads back the placement to move and turn its item.
struct LayoutSlide {
    BrowserLayout::Size size;
    BrowserLayout::Placement placement;
};

// A layout pass over the browser's slides. Stateless: the browser makes a new
// one for every pass.
class ViewLayout {
  public:
    virtual ~ViewLayout() = default;

    // The layout for the browser's layout number: 0 circular, 1 loop,
    // 2 scatter, 3 wrapped; nullptr for any other, which places nothing.
    static std::unique_ptr<ViewLayout> viewLayout(qint32 layoutType);

    // Sets every slide's placement, slides in display order. Without a view
    // the bounds are all zero. This base places nothing.
    virtual void layoutSubviews(std::span<LayoutSlide> slides,
                                std::optional<BrowserLayout::Rect> view) const;

  protected:
    using Arrangement = std::vector<BrowserLayout::Placement> (*)(
        std::span<const BrowserLayout::Size>, BrowserLayout::Rect);
    static void arrange(std::span<LayoutSlide> slides, std::optional<BrowserLayout::Rect> view,
                        Arrangement arrangement);
};
