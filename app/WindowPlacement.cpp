#include "app/WindowPlacement.h"

QPointF WindowPlacement::centredOrigin(QSizeF screen, QSizeF frame) {
    const double sw = static_cast<double>(static_cast<long long>(screen.width()));
    const double sh = static_cast<double>(static_cast<long long>(screen.height()));
    return {(sw - frame.width()) * 0.5, (sh - frame.height()) * 0.5};
}
