#pragma once

#include <QString>

// Every reader asks this before it opens a path. Opening a named pipe blocks
// until something writes into it, and a socket or a device is no photo, so
// anything but a regular file (symbolic links followed) counts as unreadable
// without being opened.
namespace RegularFile {

bool exists(const QString& path);

}  // namespace RegularFile
