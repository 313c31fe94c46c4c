#include "browser/ViewLayout.h"

#include "browser/CircularViewLayout.h"
#include "browser/LoopViewLayout.h"
#include "browser/ScatterViewLayout.h"
#include "browser/WrappedViewLayout.h"

std::unique_ptr<ViewLayout> ViewLayout::viewLayout(qint32 layoutType) {
    switch (layoutType) {
        case 0:
            return std::make_unique<CircularViewLayout>();
        case 1:
            return std::make_unique<LoopViewLayout>();
        case 2:
            return std::make_unique<ScatterViewLayout>();
        case 3:
            return std::make_unique<WrappedViewLayout>();
        default:
            return nullptr;
    }
}

void ViewLayout::layoutSubviews(std::span<LayoutSlide>, std::optional<BrowserLayout::Rect>) const {}

void ViewLayout::arrange(std::span<LayoutSlide> slides, std::optional<BrowserLayout::Rect> view,
                         Arrangement arrangement) {
    std::vector<BrowserLayout::Size> sizes;
    sizes.reserve(slides.size());
    for (const LayoutSlide& slide : slides) {
        sizes.push_back(slide.size);
    }
    const std::vector<BrowserLayout::Placement> placements =
        arrangement(sizes, view.value_or(BrowserLayout::Rect{}));
    for (std::size_t i = 0; i < slides.size(); ++i) {
        slides[i].placement = placements[i];
    }
}
