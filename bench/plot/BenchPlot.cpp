// Draws the README's figure from the CSV that bench/table.py writes: lines "panel,unit,series,x,y", one panel
// per distinct name, in order, x on a log scale. Usage: plot_figures DATA.csv OUT.png
#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <QMap>
#include <QPainter>
#include <QPainterPath>
#include <QTextStream>

#include <algorithm>
#include <cmath>

namespace {

struct Series {
    QString name;
    QList<QPointF> points;
};
struct Panel {
    QString title, unit;
    QList<Series> series;
};

void drawPanel(QPainter& p, const QRectF& box, const Panel& panel) {
    const QRectF plot = box.adjusted(70, 36, -20, -56);
    p.setPen(Qt::black);
    p.drawText(box.adjusted(0, 6, 0, 0), Qt::AlignHCenter | Qt::AlignTop, panel.title);
    double xmin = 1e300, xmax = -1e300, ymax = 0;
    for (const Series& s : panel.series)
        for (const QPointF& pt : s.points) {
            xmin = std::min(xmin, pt.x());
            xmax = std::max(xmax, pt.x());
            ymax = std::max(ymax, pt.y());
        }
    if (xmin > xmax || xmin <= 0)
        return;
    const double lx0 = std::log10(xmin), lx1 = std::max(std::log10(xmax), lx0 + 1);
    ymax = ymax > 0 ? ymax * 1.15 : 1;
    auto at = [&](QPointF v) {
        return QPointF(plot.left() + (std::log10(v.x()) - lx0) / (lx1 - lx0) * plot.width(),
                       plot.bottom() - v.y() / ymax * plot.height());
    };
    p.setPen(QColor(210, 210, 210));
    for (int i = 0; i <= 4; ++i) {
        const double y = plot.bottom() - plot.height() * i / 4;
        p.drawLine(QPointF(plot.left(), y), QPointF(plot.right(), y));
    }
    p.setPen(Qt::black);
    p.drawRect(plot);
    for (int i = 0; i <= 4; ++i) {
        const double y = plot.bottom() - plot.height() * i / 4;
        p.drawText(QRectF(box.left(), y - 8, 64, 16), Qt::AlignRight | Qt::AlignVCenter,
                   ymax >= 100 ? QString::number(qRound(ymax * i / 4)) : QString::number(ymax * i / 4, 'g', 3));
    }
    QList<double> xs;
    for (const Series& s : panel.series)
        for (const QPointF& pt : s.points)
            if (!xs.contains(pt.x()))
                xs << pt.x();
    for (double x : xs) {
        const QPointF a = at({x, 0});
        p.drawText(QRectF(a.x() - 40, plot.bottom() + 2, 80, 16), Qt::AlignHCenter, QString::number(x, 'f', 0));
    }
    p.drawText(QRectF(plot.left(), plot.bottom() + 18, plot.width(), 16), Qt::AlignHCenter, panel.unit);
    static const QColor colours[] = {QColor(0, 90, 200), QColor(220, 90, 0), QColor(0, 150, 60), QColor(150, 0, 150)};
    for (int i = 0; i < panel.series.size(); ++i) {
        const Series& s = panel.series[i];
        p.setPen(QPen(colours[i % 4], 2));
        QPainterPath path;
        for (int j = 0; j < s.points.size(); ++j) {
            const QPointF q = at(s.points[j]);
            j ? path.lineTo(q) : path.moveTo(q);
            p.drawEllipse(q, 3, 3);
        }
        p.drawPath(path);
        p.drawText(QRectF(plot.left() + 8, plot.top() + 4 + 16 * i, plot.width() - 16, 16), Qt::AlignLeft, s.name);
    }
}

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    if (argc != 3) {
        fprintf(stderr, "usage: plot_figures DATA.csv OUT.png\n");
        return 2;
    }
    QFile in(QString::fromLocal8Bit(argv[1]));
    if (!in.open(QIODevice::ReadOnly)) {
        fprintf(stderr, "plot_figures: cannot read %s\n", argv[1]);
        return 1;
    }
    QList<Panel> panels;
    QTextStream text(&in);
    while (!text.atEnd()) {
        const QStringList f = text.readLine().split(QLatin1Char(','));
        bool okx = false, oky = false;
        if (f.size() != 5)
            continue;
        const double x = f[3].toDouble(&okx), y = f[4].toDouble(&oky);
        if (!okx || !oky)
            continue;
        auto panel = std::find_if(panels.begin(), panels.end(), [&](const Panel& p) { return p.title == f[0]; });
        if (panel == panels.end()) {
            panels.append({f[0], f[1], {}});
            panel = panels.end() - 1;
        }
        auto series = std::find_if(panel->series.begin(), panel->series.end(), [&](const Series& s) { return s.name == f[2]; });
        if (series == panel->series.end()) {
            panel->series.append({f[2], {}});
            series = panel->series.end() - 1;
        }
        series->points.append({x, y});
    }
    const int columns = 2, rows = std::max<int>(1, (int(panels.size()) + 1) / 2);
    QImage img(1000, 330 * rows, QImage::Format_RGB32);
    img.fill(Qt::white);
    QPainter p(&img);
    p.setRenderHint(QPainter::Antialiasing);
    for (int i = 0; i < panels.size(); ++i)
        drawPanel(p, QRectF((i % columns) * 500, (i / columns) * 330, 500, 330), panels[i]);
    p.end();
    return img.save(QString::fromLocal8Bit(argv[2])) ? 0 : 1;
}
