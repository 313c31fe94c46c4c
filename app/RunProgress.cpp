#include "app/RunProgress.h"

#include <QFileInfo>
#include <QProgressDialog>

namespace {
// A run shorter than this ends before anything is shown.
constexpr int kShowAfterMs = 500;
}  // namespace

RunProgress::RunProgress(StampJob job, QWidget* window)
    : total_(job.photos.size()), run_(std::move(job)), window_(window) {}

RunProgress::~RunProgress() {
    run_.cancel();
    if (thread_.joinable()) {
        thread_.join();
    }
    delete dialog_;
}

QProgressDialog* RunProgress::dialog() const {
    return dialog_;
}

void RunProgress::start(int jobs) {
    dialog_ = new QProgressDialog(window_);
    dialog_->setWindowTitle(tr("Stamping"));
    dialog_->setWindowModality(Qt::WindowModal);
    dialog_->setMinimumDuration(kShowAfterMs);
    dialog_->setAutoClose(false);
    dialog_->setAutoReset(false);
    dialog_->setRange(0, static_cast<int>(total_));
    dialog_->setValue(0);
    dialog_->setLabelText(tr("Stamping %1 photos…").arg(total_));
    connect(dialog_, &QProgressDialog::canceled, this, &RunProgress::cancel);
    thread_ = std::thread([this, jobs] {
        run_.run(jobs, [this](const StampOutcome& outcome) {
            QMetaObject::invokeMethod(
                this, [this, outcome] { received(outcome); }, Qt::QueuedConnection);
        });
        // Queued after the last outcome, so it arrives after all of them.
        QMetaObject::invokeMethod(
            this, [this] { emit finished(); }, Qt::QueuedConnection);
    });
}

void RunProgress::cancel() {
    run_.cancel();
    if (dialog_) {
        dialog_->setLabelText(tr("Stopping after the photos in hand…"));
    }
}

void RunProgress::received(const StampOutcome& outcome) {
    outcomes_.append(outcome);
    if (dialog_ && !run_.cancelled()) {
        dialog_->setLabelText(tr("Photo %1 of %2\n%3")
                                  .arg(outcomes_.size())
                                  .arg(total_)
                                  .arg(QFileInfo(outcome.source).fileName()));
        dialog_->setValue(static_cast<int>(outcomes_.size()));
    }
}
