#pragma once

#include <QByteArray>
#include <QColor>
#include <QSize>
#include <QString>
#include <QTemporaryDir>
#include <optional>

// What a test photo carries besides its pixels.
struct PhotoRecipe {
    QSize size{320, 240};
    QColor colour = Qt::blue;
    int dpi = 72;
    std::optional<QString> dateTimeOriginal;   // "YYYY:MM:DD HH:MM:SS"
    std::optional<QString> dateTimeDigitized;  // as above
    QSize thumbnail;                           // none stored when invalid (JPEG only)
};

// A temporary folder of test files, removed with the object.
class Sandbox {
  public:
    QString path() const { return dir_.path(); }
    QString path(const QString& name) const { return dir_.filePath(name); }

    // Each gives the file's path, or an empty string when it could not be made.
    QString write(const QString& name, const QByteArray& bytes) const;
    QString touch(const QString& name) const { return write(name, "x"); }
    QString mkdir(const QString& name) const;
    // A named pipe (nothing ever writes into it).
    QString fifo(const QString& name) const;
    // A photo in the format its extension names (JPEG with EXIF fields through Exiv2).
    QString photo(const QString& name, const PhotoRecipe& recipe = {}) const;

  private:
    QTemporaryDir dir_;
};
