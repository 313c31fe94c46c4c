#pragma once

#include <QMetaType>
#include <QtGlobal>

// Choices beyond the plain run, each off unless the user turns it on; the
// window and `stampwise stamp` fill them in the same way.
struct StampOptions {
    // Turn every photo by its orientation tag before anything else.
    bool upright = false;
    // Write the source's format with its metadata instead of BMP.
    bool keepFormat = false;
    // Legibility: a contrasting outline, a soft shadow, a translucent box.
    bool outline = false;
    bool shadow = false;
    bool box = false;
    // Added to every photo's date, in seconds.
    qint64 shiftSeconds = 0;
    // A photo without an EXIF date takes one from its file name before its file date.
    bool names = false;

    bool operator==(const StampOptions&) const = default;
};
Q_DECLARE_METATYPE(StampOptions)
