#pragma once

#include <QColor>
#include <QDateTime>
#include <QFont>
#include <QString>
#include <optional>

#include "stamp/StampGeometry.h"
#include "stamp/StampOptions.h"

// What the application controller knows, grouped by topic. Plain values only:
// the controller's files read and write them, widgets never see them.

// How the date text is written and drawn.
struct StampStyle {
    qint64 gDateType = 0;  // 0 to 3, the date layout
    qint64 gTimeType = 0;  // 0 no time, 1 24-hour, 2 12-hour with AM/PM
    QFont aFont;
    bool hasFont = false;  // aFont was set by a settings load, so a later load may keep it
    QColor aColor;
    // The date text measured in aFont at its real size.
    float standardFontWidth = 0;
    float standardFontHeight = 0;
};

// The photo last clicked in the browser, and where its date comes from.
struct ModelPhoto {
    QString selectImageFile;   // full path; empty until one is chosen
    bool hasImage = false;     // it is shown in the preview
    qint64 selectChannel = 0;  // 0 the photo's own date, 1 the file's date, 2 typed text
    // Size in points (by the stated resolution) and in pixels.
    float imageWidth = 0;
    float imageHeight = 0;
    float imageOriginalWidth = 0;
    float imageOriginalHeight = 0;
    std::optional<QDateTime> aDate;
    bool aDateHasTime = true;  // false for a date-only file name: written without a time
    std::optional<QString> dateTimeString;  // its date text in the chosen layout
};

// The label's frame in the preview: lower-left corner and size, y-up points.
struct LabelFrame {
    float x = 0;
    float y = 0;
    float width = 0;
    float height = 0;
};

// Where the label sits. All values y-up, in preview points.
struct LabelPlacement {
    // 0 no model photo yet, 1 shown but label not placed, 2 placed (a run needs 2).
    qint64 isFirstTime = 0;
    // Kept in floats: the widget's own geometry is whole points.
    LabelFrame frame;
    StampGeometry::StampArea stampArea;  // miniX, miniY, maxX, maxY
    StampGeometry::Snapshot snapshot;    // bakIMG_* and bakTIME_* at the last placement
};

// The catalog as the window shows it.
struct CatalogView {
    qint64 totalAmount = 0;          // photos at the last count
    qint64 totalSelectedAmount = 0;  // ticked ones among them
    QString sortKey;
    bool sortsAscending = false;
    bool isLoadDirectory = false;  // a folder scan is under way
    bool isSafety = false;         // read from a first-run store; nothing consults it
};

struct ControllerState {
    StampStyle style;
    ModelPhoto model;
    LabelPlacement placement;
    CatalogView catalog;
    StampOptions options;
};
