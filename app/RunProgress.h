#pragma once

#include <QList>
#include <QObject>
#include <QPointer>
#include <thread>

#include "stamp/StampJob.h"
#include "stamp/StampRun.h"

class QProgressDialog;
class QWidget;

// A stamp run on a thread of its own, its progress shown over the window: a
// dialog appears once the run has lasted half a second (photo n of m, the
// file name) with Cancel, and the window keeps answering meanwhile.
class RunProgress : public QObject {
    Q_OBJECT
  public:
    RunProgress(StampJob job, QWidget* window);
    // Cancels a run still going and waits for the photo in hand.
    ~RunProgress() override;

    // Empty when the run may start; otherwise why it may not.
    QString refusal() const { return run_.refusal(); }
    void start(int jobs = 0);
    void cancel();

    qsizetype total() const { return total_; }
    const QList<StampOutcome>& outcomes() const { return outcomes_; }
    bool cancelled() const { return run_.cancelled(); }
    QProgressDialog* dialog() const;

  signals:
    // On the main thread, once every photo has been reported or the run was cancelled.
    void finished();

  private:
    void received(const StampOutcome& outcome);

    qsizetype total_ = 0;
    StampRun run_;
    QPointer<QWidget> window_;
    QPointer<QProgressDialog> dialog_;
    QList<StampOutcome> outcomes_;
    std::thread thread_;
};
