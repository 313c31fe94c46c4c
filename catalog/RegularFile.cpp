#include "catalog/RegularFile.h"

#include <sys/stat.h>
#include <QFile>

namespace RegularFile {

bool exists(const QString& path) {
    struct stat info {};
    return !path.isEmpty() && ::stat(QFile::encodeName(path).constData(), &info) == 0 &&
           S_ISREG(info.st_mode);
}

}  // namespace RegularFile
