#pragma once

#include "stamp/StampOptions.h"

#include <QJsonObject>
#include <QString>
#include <QStringList>
#include <QTextStream>

// `stampwise info [--date-type N] [--time-type N] [--json] PATH...`: what the
// catalog and the photo-date rule make of each photo, one line (or one JSON
// object) per photo, without opening a window.
class InfoCommand {
  public:
    static constexpr int kUsageError = 2;

    InfoCommand(QTextStream& out, QTextStream& err) : out_(out), err_(err) {}

    // arguments without the program name and the word "info"; returns the exit status.
    int run(const QStringList& arguments);

    // The record for one photo path, as the JSON output carries it.
    static QJsonObject describe(const QString& path, qint64 dateType, qint64 timeType,
                                const StampOptions& options = {});

    // The photo paths that PATH stands for: a folder's photo entries, or the
    // path itself; each filtered by the image file types.
    static QStringList expand(const QString& path);

  private:
    void printUsage(QTextStream& stream) const;

    QTextStream& out_;
    QTextStream& err_;
};
