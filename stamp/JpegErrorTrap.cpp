#include "stamp/JpegErrorTrap.h"

#include <cstddef>
// After jpeglib.h, which it needs.
#include <jerror.h>

namespace {

JpegErrorTrap& trapOf(j_common_ptr info) {
    // The manager is the trap's first member, so its address is the trap's.
    return *reinterpret_cast<JpegErrorTrap*>(info->err);
}

[[noreturn]] void jumpBack(j_common_ptr info) {
    std::longjmp(trapOf(info).jump, 1);
}

void countWarning(j_common_ptr info, int level) {
    if (level < 0) {
        JpegErrorTrap& trap = trapOf(info);
        ++trap.warnings;
        if (info->err->msg_code == JWRN_JPEG_EOF) {
            trap.cutShort = true;
        }
    }
}

void stayQuiet(j_common_ptr) {}

}  // namespace

jpeg_error_mgr* JpegErrorTrap::attach() {
    static_assert(offsetof(JpegErrorTrap, manager) == 0);
    jpeg_std_error(&manager);
    manager.error_exit = jumpBack;
    manager.emit_message = countWarning;
    manager.output_message = stayQuiet;
    warnings = 0;
    cutShort = false;
    return &manager;
}

QString JpegErrorTrap::messageOf(j_common_ptr info) {
    char text[JMSG_LENGTH_MAX] = {};
    info->err->format_message(info, text);
    return QString::fromLocal8Bit(text);
}
