#pragma once

#include <QColor>
#include <QFont>
#include <QSizeF>
#include <QString>
#include <QStringList>

#include "stamp/StampGeometry.h"
#include "stamp/StampOptions.h"

// Everything a stamp run needs, copied from the window or the command line so
// the run never reads their state while it works.
struct StampJob {
    QStringList photos;        // ticked photos' full paths, in catalog order
    qint64 selectChannel = 0;  // 0 photo's own date, 1 file date, 2 customText
    qint64 gDateType = 0;
    qint64 gTimeType = 0;
    QString customText;
    QFont font;
    QColor color;
    // Label and stamp area at the last placement (preview points, y-up).
    StampGeometry::Snapshot snapshot;
    // The model photo's date text measured in font, in points (fw, fh).
    QSizeF labelTextSize;
    bool margin = false;
    QString outputFolder;
    StampOptions options;
    // Reads headers and dates only: nothing is decoded, drawn or written, and
    // "written" in an outcome means "would be written".
    bool dryRun = false;
};

// What became of one photo.
struct StampOutcome {
    qsizetype index = 0;  // into StampJob::photos
    QString source;       // full path
    QString output;       // the output path (written or not)
    bool written = false;
    QString reason;  // why not written, or why written without a date, for people
    QString note;    // what a written photo lacks, for people (e.g. metadata left out)
    QString text;    // the date text drawn (empty: written without a stamp)
};
