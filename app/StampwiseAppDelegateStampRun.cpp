// The stamp run from the window: its checks in order, the run on a thread of
// its own with progress, and the closing message.
#include <QAbstractButton>
#include <QFileInfo>
#include <QLineEdit>
#include <QProgressDialog>

#include "app/Messages.h"
#include "app/RunProgress.h"
#include "app/StampwiseAppDelegate.h"
#include "platform/AlertPanel.h"
#include "platform/ButtonTitles.h"
#include "stamp/ImageWriter.h"

using namespace ControlRegistry;

namespace {
// Skipped photos listed in the closing message; the rest are counted.
constexpr qsizetype kListedSkips = 12;

QString summary(const RunProgress& run) {
    QStringList skipped;
    QStringList notes;
    qsizetype written = 0;
    for (const StampOutcome& outcome : run.outcomes()) {
        if (outcome.written) {
            ++written;
            if (!outcome.note.isEmpty()) {
                notes.append(QStringLiteral("%1: %2").arg(QFileInfo(outcome.source).fileName(),
                                                          outcome.note));
            }
        } else {
            skipped.append(
                QStringLiteral("%1: %2").arg(QFileInfo(outcome.source).fileName(), outcome.reason));
        }
    }
    if (skipped.isEmpty() && notes.isEmpty() && !run.cancelled()) {
        return {};
    }
    QString text = QObject::tr("%1 of %2 photos written.").arg(written).arg(run.total());
    if (run.cancelled()) {
        text += QLatin1Char(' ') + QObject::tr("The run was cancelled.");
    }
    if (!skipped.isEmpty()) {
        text += QLatin1Char('\n') + QObject::tr("Skipped:") + QLatin1Char('\n');
        text += skipped.mid(0, kListedSkips).join(QLatin1Char('\n'));
        if (skipped.size() > kListedSkips) {
            text +=
                QLatin1Char('\n') + QObject::tr("and %1 more").arg(skipped.size() - kListedSkips);
        }
    }
    if (!notes.isEmpty()) {
        text += QLatin1Char('\n') + QObject::tr("Written with a note:") + QLatin1Char('\n');
        text += notes.mid(0, kListedSkips).join(QLatin1Char('\n'));
        if (notes.size() > kListedSkips) {
            text += QLatin1Char('\n') + QObject::tr("and %1 more").arg(notes.size() - kListedSkips);
        }
    }
    return text;
}
}  // namespace

void StampwiseAppDelegate::runIt() {
    if (run_) {
        return;  // one run at a time
    }
    const auto* field = qobject_cast<QLineEdit*>(getGUIObject(Tag::kOutputFolderField, nullptr));
    const QString folder = ImageWriter::expandTilde(field != nullptr ? field->text() : QString());
    const QFileInfo info(folder);
    if (folder.isEmpty() || !info.exists()) {
        alerts_.inform(QLatin1String(Messages::kWarningTitle),
                       QLatin1String(Messages::kNoOutputDirectory),
                       QLatin1String(ButtonTitles::kOk));
        return;
    }
    if (!info.isDir()) {
        return;
    }
    if (state_.placement.isFirstTime != 2) {
        alerts_.inform(QLatin1String(Messages::kWarningTitle),
                       QLatin1String(Messages::kSelectPicture), QLatin1String(ButtonTitles::kOk));
        return;
    }
    StampJob job;
    if (assetCollection_) {
        for (const AssetPtr& asset : assetCollection_->assets()) {
            if (asset->includedInSlideshow()) {
                job.photos.append(asset->fullFilename());
            }
        }
    }
    const StampStyle& style = state_.style;
    job.selectChannel = state_.model.selectChannel;
    job.gDateType = style.gDateType;
    job.gTimeType = style.gTimeType;
    const auto* custom = qobject_cast<QLineEdit*>(getGUIObject(Tag::kCustomTextField, nullptr));
    job.customText = custom != nullptr ? custom->text() : QString();
    job.font = style.aFont;
    job.color = style.aColor;
    job.snapshot = state_.placement.snapshot;
    job.labelTextSize = getOutputStandardFontSize(getGUIObject(Tag::kLabelTextField, nullptr));
    job.margin = marginIsOn();
    job.outputFolder = folder;
    job.options = state_.options;

    auto run = std::make_unique<RunProgress>(std::move(job), window_);
    const QString refusal = run->refusal();
    if (!refusal.isEmpty()) {
        alerts_.inform(QLatin1String(Messages::kWarningTitle), refusal,
                       QLatin1String(ButtonTitles::kOk));
        return;
    }
    connect(run.get(), &RunProgress::finished, this, &StampwiseAppDelegate::finishRun);
    run_ = std::move(run);
    run_->start();
}

void StampwiseAppDelegate::cancelRun() {
    if (run_) {
        run_->cancel();
    }
}

void StampwiseAppDelegate::finishRun() {
    // The run object sent the signal; it goes once the message is answered.
    std::unique_ptr<RunProgress> run = std::move(run_);
    // Gone before the message: a dialog still waiting for its half second
    // would otherwise appear over the message, at 100 %.
    delete run->dialog();
    alerts_.inform(QLatin1String(Messages::kReminderTitle), QLatin1String(Messages::kCompleted),
                   QLatin1String(ButtonTitles::kOk), summary(*run));
    run.release()->deleteLater();
    emit runFinished();
}
