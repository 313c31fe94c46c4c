#pragma once

#include <QCommandLineOption>
#include <QString>
#include <optional>

#include "stamp/StampOptions.h"

class QCommandLineParser;

// The stamp options as command-line flags, read alike by `stamp` and `info`:
// the saved choices unless --plain, with every flag given turned on.
class StampOptionFlags {
  public:
    // The format and legibility flags only matter to a run.
    explicit StampOptionFlags(bool runFlags);

    void addTo(QCommandLineParser& parser) const;
    // None when --shift cannot be read.
    std::optional<StampOptions> read(const QCommandLineParser& parser) const;

    static inline const QString kShiftUsage =
        QStringLiteral("--shift takes [+|-][Nd]HH:MM[:SS], like +01:00 or -1d00:30");

  private:
    bool runFlags_;
    QCommandLineOption upright_{QStringLiteral("upright")};
    QCommandLineOption keepFormat_{QStringLiteral("keep-format")};
    QCommandLineOption outline_{QStringLiteral("outline")};
    QCommandLineOption shadow_{QStringLiteral("shadow")};
    QCommandLineOption box_{QStringLiteral("box")};
    QCommandLineOption shift_{QStringLiteral("shift"), QString(), QStringLiteral("SHIFT")};
    QCommandLineOption names_{QStringLiteral("names")};
    QCommandLineOption plain_{QStringLiteral("plain")};
};
