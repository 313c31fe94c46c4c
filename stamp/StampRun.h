#pragma once

#include <QImage>
#include <QString>
#include <atomic>
#include <functional>

#include "stamp/StampJob.h"

// Writes a stamped copy (BMP, or the photo's own format) of every photo of a job into its output
// folder, on several threads, one photo per worker at a time. The window's run and `stampwise
// stamp` both go through here.
class StampRun {
  public:
    explicit StampRun(StampJob job);

    // Checks made before anything is written. Empty when the run may go on; otherwise a
    // message naming the folder, e.g. when a ticked photo lives in the output folder (its
    // original would be replaced by the stamped copy). Identity by device+inode, so symlinks,
    // "..", a trailing slash or a differently cased spelling of the same folder are caught;
    // an existing output file that *is* (same inode) any of the photos is refused as well.
    QString refusal() const;

    // Stamps every photo on `jobs` workers (0 = every core), blocking until done or
    // cancelled. onOutcome is called once per photo, from worker threads, never two at
    // once; after cancel() the photos not yet begun are not reported. Writes nothing
    // when refusal() is not empty.
    void run(int jobs, const std::function<void(const StampOutcome&)>& onOutcome);

    // Any thread, also a signal handler; stops before the next photo, nothing half-written.
    void cancel() { cancelled_.store(true); }
    bool cancelled() const { return cancelled_.load(); }

    // Where photo i is written: the output folder joined with its file name.
    QString outputPath(qsizetype index) const;

    // A reason the run gives for a photo it could not stamp.
    static inline const QString kNotRegular =
        QStringLiteral("not a regular file (a pipe, socket, device or folder)");
    static inline const QString kUnreadable = QStringLiteral("cannot be read as an image");
    static inline const QString kIncomplete =
        QStringLiteral("incomplete: the file ends before the image does");

  private:
    StampOutcome stampOne(qsizetype index, QImage& buffer) const;

    const StampJob job_;
    QString folder_;  // the output folder without trailing slashes, "~" expanded
    std::atomic<bool> cancelled_{false};
    static_assert(std::atomic<bool>::is_always_lock_free);
};
