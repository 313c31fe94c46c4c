#pragma once

#include <QColor>
#include <QStringList>
#include <QTextStream>
#include <optional>

#include "stamp/StampJob.h"

// `stampwise stamp [options] PATH... --output DIR`: the window's stamp run
// without a window. The label is sized and placed on the model photo as the
// window would place it on a preview of the photo's own pixel size, and the
// same engine writes the photos.
class StampCommand {
  public:
    static constexpr int kSomeSkipped = 1;
    static constexpr int kUsageError = 2;

    // progress: show a progress line on err (for a terminal).
    StampCommand(QTextStream& out, QTextStream& err, bool progress = false)
        : out_(out), err_(err), progress_(progress) {}

    // arguments without the program name and the word "stamp"; returns the exit status:
    // 0 when every photo was written, 1 when some were not, 2 for usage errors.
    int run(const QStringList& arguments);

    // "#RRGGBB" or "#RRGGBBAA"; none for anything else.
    static std::optional<QColor> parseColor(const QString& text);

  private:
    void printUsage(QTextStream& stream) const;
    int usageError(const QString& message);
    int stamp(const StampJob& job, int jobs, const QStringList& leftOut);

    QTextStream& out_;
    QTextStream& err_;
    const bool progress_;
};
