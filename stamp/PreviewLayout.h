#pragma once

#include <QtGlobal>

#include "stamp/StampGeometry.h"

// Where the model photo, its stamp area and the date label go in the preview.
// Pure arithmetic over y-up points in 32-bit floats; the controller reads the
// frames, calls these and sets the frames.
namespace PreviewLayout {

// The split view's divider stays between these coordinates.
inline constexpr double kMinDivider = 240.0;
inline constexpr double kMaxDivider = 600.0;
// The browser's cell pitch, in both directions.
inline constexpr double kCellPitch = 131.0;

struct Size {
    float width = 0;
    float height = 0;
};

// The photo of pixel size original fitted into the preview, never enlarged: a
// photo that fits is shown at one point per pixel.
Size fitPhoto(Size original, Size preview);

// The rectangle the label must stay in: the shown photo centred in the
// preview, or its centred 0.83 x 0.95 part with the margin on.
StampGeometry::StampArea stampArea(Size preview, Size shown, bool margin);

// The label's frame origin pulled back inside the area. The lower bound is
// tested first; a coordinate that is not a number goes to the lower edge.
StampGeometry::TPosition clampIntoArea(const StampGeometry::StampArea& area,
                                       StampGeometry::TPosition origin, Size label);

// The label's box: the date text's size in points scaled by the preview's scale
// (shown size against the photo's size in points).
Size labelSize(Size text, Size shown, Size photoPoints);

// The five preset places 0 to 4: top left, top right, centre, bottom left,
// bottom right.
StampGeometry::TPosition presetOrigin(int place, const StampGeometry::StampArea& area, Size label);

// A label at fractions fx, fy (0 to 1) of its free travel, from the bottom left.
StampGeometry::TPosition fractionOrigin(double fx, double fy, const StampGeometry::StampArea& area,
                                        Size label);

// Height of the browser that holds count cards in its width, at least the
// visible height minus 2. A browser narrower than one cell counts as one column.
double browserHeight(double browserWidth, qsizetype count, double visibleHeight);

// Height of the browser after a removal: whole rows of the cards left, at least
// the visible height.
double heightAfterRemoval(double browserWidth, qsizetype count, double visibleHeight);

// Whether removing `removed` cards rebuilds every card: more than a row's worth
// moves so many that dropping them one by one costs more.
bool rebuildsAfterRemoval(qsizetype removed, double browserWidth);

// The divider position the split view may take for a proposed one.
double constrainDivider(double proposed);

}  // namespace PreviewLayout
