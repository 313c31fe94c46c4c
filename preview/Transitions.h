#pragma once

#include <QImage>
#include <QPointF>
#include <QRectF>
#include <QtGlobal>

// The preview's photo-to-photo transitions, each a pure function of the old
// frame, the new frame, the progress 0..1 and the transition's settings. Both
// frames have the view's size; geometry in the settings is y-up in view points.
namespace Transitions {

enum class Kind {
    Fade,
    MoveIn,
    Push,
    Reveal,
    CopyMachine,
    DisintegrateWithMask,
    Dissolve,
    Flash,
    Mod,
    PageCurl,
    Ripple,
    Swipe,
};

// The settings a transition reads. Not every kind reads every field; a null
// image means "no such input", which each kind handles without failing.
struct Inputs {
    QRectF extent{0, 0, 300, 300};
    QPointF center{150, 150};
    float angle = 0.0f;
    float radius = 0.0f;       // page curl: cylinder radius; mod: hole spacing
    float width = 0.0f;        // copy machine bar, ripple wave, swipe band
    float scale = 0.0f;        // ripple displacement
    float compression = 0.0f;  // mod: squashes holes across the angle
    QImage shadingImage;
    QImage backsideImage;
    QImage maskImage;  // grey, covering the view from its lower-left corner
};

struct Transition {
    Kind kind = Kind::Fade;
    Inputs inputs;
    double duration = 0.1;  // seconds
};

// Style numbers of the preview: 0..11, anything else plays as the ripple.
Kind kindForStyle(qint32 style);
// The kind's own default settings, before the preview sets its keys.
Inputs defaultInputs(Kind kind);

// One frame; progress 0 gives the old frame, 1 the new one. The frames are
// converted to RGB32 when needed and must have the same size.
QImage render(const Transition& transition, const QImage& from, const QImage& to, double progress);

}  // namespace Transitions
