// The model photo: choosing it, its date text by channel, and measuring that
// text in the stamp font.
#include <QFutureWatcher>
#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QScreen>
#include <QtConcurrent/QtConcurrentRun>
#include <algorithm>

#include "app/StampwiseAppDelegate.h"
#include "catalog/ImageSource.h"
#include "catalog/Orientation.h"
#include "datetext/PhotoDate.h"
#include "stamp/TextMetrics.h"

using namespace ControlRegistry;

namespace {
// The preview never needs more pixels than the screen has.
int previewMaxSide() {
    const QScreen* screen = QGuiApplication::primaryScreen();
    if (screen == nullptr) {
        return 2560;
    }
    const QSize size = screen->size() * screen->devicePixelRatio();
    return std::max({size.width(), size.height(), 1024});
}
}  // namespace

void StampwiseAppDelegate::processSelectImageMouseDown(const Notification& notification) {
    displayImageFileName(notification.object.toString());
}

void StampwiseAppDelegate::displayImageFileName(const QString& path) {
    ModelPhoto& model = state_.model;
    model.hasImage = true;
    model.selectImageFile = path;
    // One source for the date, the sizes and the header: the file is probed once.
    ImageSource source(path);
    readModelPhotoDate(source);
    if (model.selectChannel == 1) {
        reWriteDataTimeFromChannel(1);
    } else if (model.selectChannel != 0) {
        reWriteDataTimeFromChannel(2);
    }
    const int turn = state_.options.upright ? source.orientation() : Orientation::kNormal;
    const QSize pixels =
        source.isReadable() ? Orientation::uprightSize(source.maxPageSize(), turn) : QSize();
    model.imageOriginalWidth = static_cast<float>(pixels.width());
    model.imageOriginalHeight = static_cast<float>(pixels.height());
    requestPreview(path);
    if (aQNSDragView_) {
        aQNSDragView_->show();
    }
    setLabelText(model.dateTimeString);
    if (state_.placement.isFirstTime == 0) {
        processSelectImageHighlight(Notification{});
        state_.placement.isFirstTime = 1;
    }
    QObject* field = getGUIObject(Tag::kLabelTextField, nullptr);
    if (auto* label = qobject_cast<QLabel*>(field)) {
        label->setFont(state_.style.aFont);
    }
    getStandardFontSize(field);
    defaultSaveAppSetting();
    redrawAll(QString());
}

// The size in points, and the photo's own date with the file date as fallback.
void StampwiseAppDelegate::readModelPhotoDate(ImageSource& source) {
    const int turn = state_.options.upright ? source.orientation() : Orientation::kNormal;
    const QSizeF points =
        source.isReadable() ? Orientation::uprightSize(source.pointSize(), turn) : QSizeF();
    state_.model.imageWidth = static_cast<float>(points.width());
    state_.model.imageHeight = static_cast<float>(points.height());
    const StampOptions& options = state_.options;
    const PhotoDate::Result rule = PhotoDate::photoDateText(
        source.dateTimeOriginal(), source.dateTimeDigitized(),
        PhotoDate::fileModificationDate(source.path()), state_.style.gDateType,
        state_.style.gTimeType, {options.names ? source.path() : QString(), options.shiftSeconds});
    state_.model.aDate = rule.date;
    state_.model.aDateHasTime = rule.hasTime;
    state_.model.dateTimeString = rule.dateTimeString;
}

// Decodes a screen-sized copy off the main thread; only the latest request shows.
void StampwiseAppDelegate::requestPreview(const QString& path) {
    const quint64 request = ++previewRequest_;
    const QSizeF shownSize(static_cast<double>(state_.model.imageOriginalWidth),
                           static_cast<double>(state_.model.imageOriginalHeight));
    auto* watcher = new QFutureWatcher<QImage>(this);
    connect(watcher, &QFutureWatcher<QImage>::finished, this, [this, watcher, request, shownSize] {
        watcher->deleteLater();
        if (request != previewRequest_ || !state_.model.hasImage || !slideshowView_) {
            return;
        }
        // The photo is shown at its pixel size in points, the size the
        // stamp area is fitted from, whatever its stated resolution.
        slideshowView_->transitionToImage(watcher->result(), shownSize);
        if (aQNSDragView_) {
            aQNSDragView_->raise();
        }
        emit previewShown();
    });
    const int maxSide = previewMaxSide();
    const bool upright = state_.options.upright;
    watcher->setFuture(QtConcurrent::run([path, maxSide, upright] {
        ImageSource source(path);
        QImage image = source.reducedImage(maxSide);
        return upright ? Orientation::upright(std::move(image), source.orientation()) : image;
    }));
}

void StampwiseAppDelegate::reWriteDataTimeFromChannel(qint64 channel) {
    ModelPhoto& model = state_.model;
    if (channel == 1) {
        model.dateTimeString =
            PhotoDate::fileDateText(PhotoDate::fileModificationDate(model.selectImageFile),
                                    state_.style.gDateType, state_.style.gTimeType,
                                    state_.options.shiftSeconds)
                .dateTimeString;
    } else if (channel == 0) {
        // Read afresh: the file may have changed since it was chosen.
        ImageSource source(model.selectImageFile);
        readModelPhotoDate(source);
    } else {
        auto* field = qobject_cast<QLineEdit*>(getGUIObject(Tag::kCustomTextField, nullptr));
        model.dateTimeString = field != nullptr ? field->text() : QString();
    }
    setLabelText(model.dateTimeString);
    getStandardFontSize(getGUIObject(Tag::kLabelTextField, nullptr));
    redrawAll(QString());
}

void StampwiseAppDelegate::reWriteDataTime() {
    state_.model.dateTimeString =
        PhotoDate::writtenDate(state_.model.aDate, state_.model.aDateHasTime,
                               state_.style.gDateType, state_.style.gTimeType);
    setLabelText(state_.model.dateTimeString);
    getStandardFontSize(getGUIObject(Tag::kLabelTextField, nullptr));
    redrawAll(QString());
}

void StampwiseAppDelegate::controlTextDidChange() {
    reWriteDataTimeFromChannel(2);
}

void StampwiseAppDelegate::setLabelText(const std::optional<QString>& text) {
    if (aQNSDragView_ && aQNSDragView_->atextfield() && text) {
        aQNSDragView_->atextfield()->setText(*text);
    }
}

namespace {
QString textOf(QObject* control) {
    if (auto* label = qobject_cast<QLabel*>(control)) {
        return label->text();
    }
    if (auto* edit = qobject_cast<QLineEdit*>(control)) {
        return edit->text();
    }
    return {};
}
}  // namespace

void StampwiseAppDelegate::getStandardFontSize(QObject* textControl) {
    const QSizeF size = getOutputStandardFontSize(textControl);
    state_.style.standardFontWidth = static_cast<float>(size.width());
    state_.style.standardFontHeight = static_cast<float>(size.height());
}

// Measured in the stamp font at 72 dpi, whatever size the label shows it at, with
// the room the legibility options take.
QSizeF StampwiseAppDelegate::getOutputStandardFontSize(QObject* textControl) const {
    return TextMetrics::measureStamp(textOf(textControl), state_.style.aFont, state_.options);
}

void StampwiseAppDelegate::backupPositionAndSize(float x, float y, float w, float h) {
    state_.placement.snapshot =
        StampGeometry::backupPositionAndSize(state_.placement.stampArea, x, y, w, h);
}

StampGeometry::TPosition StampwiseAppDelegate::calculateOutputPosition(float width, float height) {
    const QSizeF text = getOutputStandardFontSize(getGUIObject(Tag::kLabelTextField, nullptr));
    state_.placement.stampArea = StampGeometry::outputArea(width, height, marginIsOn());
    return StampGeometry::calculateOutputPosition(
        state_.placement.snapshot, state_.placement.stampArea, static_cast<float>(text.width()),
        static_cast<float>(text.height()));
}
