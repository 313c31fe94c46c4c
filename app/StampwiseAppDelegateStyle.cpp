// The stamp's font and colour, chosen in non-modal dialogs.
#include <QLabel>

#include "app/ColourChooser.h"
#include "app/FontChooser.h"
#include "app/StampwiseAppDelegate.h"

using namespace ControlRegistry;

namespace {
// Face, size and collection: the font choices the stamp keeps.
constexpr int kFontModes = 1 | 2 | 4;
}  // namespace

void StampwiseAppDelegate::openFontPanel() {
    if (!fontChooser_) {
        fontChooser_ = std::make_unique<FontChooser>(window_);
        connect(fontChooser_.get(), &FontChooser::fontChanged, this,
                &StampwiseAppDelegate::changeFont);
    }
    fontChooser_->open(state_.style.aFont);
}

int StampwiseAppDelegate::validModesForFontPanel() const {
    return kFontModes;
}

void StampwiseAppDelegate::changeFont(const QFont& chosen) {
    // Only face and size carry over; underline and strike-out are not stamp choices.
    QFont font = chosen;
    font.setUnderline(false);
    font.setStrikeOut(false);
    changeDefaultFont(font);
}

void StampwiseAppDelegate::changeDefaultFont(const QFont& selected) {
    state_.style.aFont = selected;
    state_.style.hasFont = true;
    QObject* field = getGUIObject(Tag::kLabelTextField, nullptr);
    if (auto* label = qobject_cast<QLabel*>(field)) {
        label->setFont(selected);
    }
    getStandardFontSize(field);
    defaultSaveAppSetting();
    redrawAll(QString());
}

void StampwiseAppDelegate::openColorPanel() {
    if (!colourChooser_) {
        colourChooser_ = std::make_unique<ColourChooser>(window_);
        connect(colourChooser_.get(), &ColourChooser::colourChanged, this,
                &StampwiseAppDelegate::colorUpdate);
    }
    colourChooser_->open(state_.style.aColor);
}

void StampwiseAppDelegate::colorUpdate(const QColor& colour) {
    state_.style.aColor = colour;
    if (auto* label = qobject_cast<QLabel*>(getGUIObject(Tag::kLabelTextField, nullptr))) {
        QPalette palette = label->palette();
        palette.setColor(QPalette::WindowText, colour);
        label->setPalette(palette);
    }
    if (aQNSDragView_) {
        aQNSDragView_->repaint();
    }
    defaultSaveAppSetting();
}
