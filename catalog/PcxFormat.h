#pragma once

// Makes QImageReader read PCX files everywhere in the process. Idempotent and
// thread-safe; it also runs by itself when the application object is made,
// as soon as anything of the catalog is linked in.
namespace PcxFormat {
void registerFormat();
}  // namespace PcxFormat
