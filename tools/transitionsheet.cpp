// Renders every preview transition between two photos at progress 0, 0.25,
// 0.5, 0.75 and 1, one PNG strip per style, for looking at them side by side,
// and the thumbnails' pointillize effect.
// Usage: transitionsheet [photoA photoB] [output folder]
#include <QApplication>
#include <QDir>
#include <QImageReader>
#include <QPainter>
#include <QTextStream>
#include <algorithm>
#include <functional>

#include "preview/Pointillize.h"
#include "preview/SlideshowImageView.h"
#include "preview/SlideshowView.h"
#include "preview/Transitions.h"

namespace {

QImage generated(bool second) {
    QImage image(800, 600, QImage::Format_RGB32);
    QPainter p(&image);
    QLinearGradient g(0, 0, 800, 600);
    g.setColorAt(0, second ? QColor(20, 90, 200) : QColor(230, 120, 20));
    g.setColorAt(1, second ? QColor(150, 230, 120) : QColor(90, 20, 80));
    p.fillRect(image.rect(), g);
    p.setPen(QPen(Qt::white, 6));
    for (int i = 0; i < 10; ++i) {
        p.drawEllipse(QPoint(second ? 200 : 600, 300), 30 * i, 25 * i);
    }
    return image;
}

QImage load(const QString& path) {
    QImageReader reader(path);
    reader.setAutoTransform(true);
    return reader.read();
}

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    QStringList args = QApplication::arguments().mid(1);
    QString outDir = QString::fromUtf8(STAMPWISE_SHEET_DIR);
    if (args.size() == 1 || args.size() == 3) {
        outDir = args.takeLast();
    }
    QImage a;
    QImage b;
    if (args.size() == 2) {
        a = load(args[0]);
        b = load(args[1]);
    } else {
        // The two largest real photos, so the frames are not mostly black.
        QList<QPair<qint64, QString>> found;
        for (const char* sub : {"cameras", "other"}) {
            const QDir dir(QString::fromUtf8(STAMPWISE_PHOTOS_DIR) + "/" + QLatin1String(sub));
            for (const QString& f : dir.entryList({"*.jpg", "*.JPG"}, QDir::Files)) {
                const QSize s = QImageReader(dir.filePath(f)).size();
                found.append({qint64(s.width()) * s.height(), dir.filePath(f)});
            }
        }
        std::sort(found.begin(), found.end(), std::greater<>());
        if (found.size() >= 2) {
            a = load(found.at(0).second);
            b = load(found.at(1).second);
        }
    }
    if (a.isNull() || b.isNull()) {
        a = generated(false);
        b = generated(true);
    }
    QDir().mkpath(outDir);

    constexpr int kW = 600;
    constexpr int kH = 420;
    constexpr double kMoments[] = {0.0, 0.25, 0.5, 0.75, 1.0};
    SlideshowView view;
    view.setFrameSize(QSize(kW, kH));
    const QImage from = SlideshowImageView::fittedFrame(a, view.size());
    const QImage to = SlideshowImageView::fittedFrame(b, view.size());
    for (qint32 style = 0; style < 12; ++style) {
        view.setTransitionStyle(style);
        QImage sheet(5 * kW + 4 * 8, kH, QImage::Format_RGB32);
        sheet.fill(QColor(60, 60, 60));
        QPainter p(&sheet);
        for (int i = 0; i < 5; ++i) {
            p.drawImage(i * (kW + 8), 0,
                        Transitions::render(view.transition(), from, to, kMoments[i]));
        }
        p.end();
        const QString path =
            QDir(outDir).filePath(QString("style%1.png").arg(style, 2, 10, QChar('0')));
        if (!sheet.save(path)) {
            QTextStream(stderr) << "cannot write " << path << "\n";
            return 1;
        }
        QTextStream(stdout) << path << "\n";
    }
    // The thumbnails' click effect, beside the photo it was made from.
    const QImage thumb = from.scaled(300, 210, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    QImage pair(2 * thumb.width() + 8, thumb.height(), QImage::Format_RGB32);
    pair.fill(QColor(60, 60, 60));
    QPainter p(&pair);
    p.drawImage(0, 0, thumb);
    p.drawImage(thumb.width() + 8, 0, Pointillize::render(thumb, 4.0f));
    p.end();
    const QString path = QDir(outDir).filePath("pointillize.png");
    if (!pair.save(path)) {
        QTextStream(stderr) << "cannot write " << path << "\n";
        return 1;
    }
    QTextStream(stdout) << path << "\n";
    return 0;
}
