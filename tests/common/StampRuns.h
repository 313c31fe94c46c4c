#pragma once

#include <QList>
#include <QPointF>
#include <QString>
#include <QStringList>

#include "common/Sandbox.h"
#include "stamp/StampJob.h"

// Stamp jobs for tests and a way to run one and keep what it reports.
namespace StampRuns {

// Stamps the photos into out with the text "Stamp 2014" in black 20-point DejaVu
// Sans, the label at `share` of its free travel (0,0 bottom-left, 1,1 top-right)
// in a 400 x 300 preview, within the margin when margin is on.
StampJob job(const QStringList& photos, const QString& out, QPointF share = {0, 0},
             bool margin = false);

// Every outcome of the run, in the order of the job's photos.
QList<StampOutcome> run(const StampJob& job, int jobs = 1);

// A white photo taken on 5 March 2014 at 13:34:56.
PhotoRecipe whitePhoto(QSize size, int dpi = 72);
// The file's bytes, empty when it cannot be read.
QByteArray fileBytes(const QString& path);

}  // namespace StampRuns
