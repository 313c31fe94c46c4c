#pragma once

// Maps the date label's place in the preview onto any photo, in proportion, so a
// label in a corner stays in that corner and a centred one stays centred. All
// values are y-up (origin bottom-left) and 32-bit floats, like the worked numbers.
namespace StampGeometry {

// Inner part kept by the margin: a centred 0.83 of the width, 0.95 of the height.
inline constexpr double kMarginWidthShare = 0.83;
inline constexpr double kMarginHeightShare = 0.95;

// Left, bottom, right and top edge of the rectangle the stamp must stay in.
struct StampArea {
    float miniX = 0;
    float miniY = 0;
    float maxX = 0;
    float maxY = 0;
};

// The stamp area (bakIMG_*) and the label's rectangle (bakTIME_*) at the moment
// the label was last placed.
struct Snapshot {
    StampArea image;
    StampArea label;
};

// Bottom-left corner of the stamp text.
struct TPosition {
    float x = 0;
    float y = 0;
};

// Pairs the label's new frame with the area it was placed in.
Snapshot backupPositionAndSize(const StampArea& area, float x, float y, float w, float h);

// The whole W x H photo, or its centred inner part when margin is on.
StampArea outputArea(float W, float H, bool margin);

// Where a box of newW x newH goes in newArea so that its offset within its free
// travel matches the snapshot label's offset within its own. An axis without
// free travel in the snapshot centres the box on that axis. Nothing is clamped:
// a box larger than its area runs over the edge.
TPosition proportionalPlace(const Snapshot& snapshot, const StampArea& newArea, float newW,
                            float newH);

// The stamp text's place on an output photo whose area is output, for a label
// text measuring fw x fh.
TPosition calculateOutputPosition(const Snapshot& snapshot, const StampArea& output, float fw,
                                  float fh);

}  // namespace StampGeometry
