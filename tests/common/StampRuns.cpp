#include "common/StampRuns.h"

#include <QFile>
#include <algorithm>

#include "stamp/StampRun.h"
#include "stamp/TextMetrics.h"

namespace StampRuns {

StampJob job(const QStringList& photos, const QString& out, QPointF share, bool margin) {
    StampJob job;
    job.photos = photos;
    job.selectChannel = 2;
    job.customText = QStringLiteral("Stamp 2014");
    job.font = QFont(QStringLiteral("DejaVu Sans"));
    job.font.setPointSize(20);
    job.color = Qt::black;
    job.margin = margin;
    job.outputFolder = out;
    job.labelTextSize = TextMetrics::measureText(job.customText, job.font);
    const StampGeometry::StampArea area = StampGeometry::outputArea(400, 300, margin);
    const float w = 100;
    const float h = 20;
    job.snapshot = StampGeometry::backupPositionAndSize(
        area, area.miniX + static_cast<float>(share.x()) * (area.maxX - area.miniX - w),
        area.miniY + static_cast<float>(share.y()) * (area.maxY - area.miniY - h), w, h);
    return job;
}

QList<StampOutcome> run(const StampJob& job, int jobs) {
    QList<StampOutcome> outcomes;
    StampRun(job).run(jobs, [&](const StampOutcome& outcome) { outcomes << outcome; });
    std::sort(outcomes.begin(), outcomes.end(),
              [](const StampOutcome& a, const StampOutcome& b) { return a.index < b.index; });
    return outcomes;
}

PhotoRecipe whitePhoto(QSize size, int dpi) {
    PhotoRecipe recipe;
    recipe.size = size;
    recipe.colour = Qt::white;
    recipe.dpi = dpi;
    recipe.dateTimeOriginal = QStringLiteral("2014:03:05 13:34:56");
    return recipe;
}

QByteArray fileBytes(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

}  // namespace StampRuns
