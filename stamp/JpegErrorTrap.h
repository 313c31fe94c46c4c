#pragma once

#include <QString>
#include <csetjmp>
#include <cstdio>
// jpeglib.h needs size_t and FILE declared first.
#include <jpeglib.h>

// libjpeg's error handler for code that decodes or encodes in memory: an
// error jumps back to the caller's setjmp instead of ending the program, and
// warnings (corrupt data, a file cut short) are counted instead of printed.
//
//   JpegErrorTrap trap;
//   jpeg_decompress_struct info{};
//   info.err = trap.attach();
//   if (setjmp(trap.jump) != 0) { jpeg_destroy_decompress(&info); return failure; }
//   jpeg_create_decompress(&info);
struct JpegErrorTrap {
    jpeg_error_mgr manager{};
    std::jmp_buf jump{};
    int warnings = 0;
    bool cutShort = false;  // the data ended before the image did

    jpeg_error_mgr* attach();
    // The last error's or warning's text, for people.
    static QString messageOf(j_common_ptr info);
};
