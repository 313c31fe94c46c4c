#include "platform/AlertPanel.h"

#include "platform/ButtonTitles.h"

bool AlertPanel::confirm(const QString& title, const QString& message) {
    return run({title, message, {}, {ButtonTitles::kOk, ButtonTitles::kCancel}}) == 0;
}

void AlertPanel::inform(const QString& title, const QString& message, const QString& button,
                        const QString& informativeText) {
    run({title, message, informativeText, {button}});
}
