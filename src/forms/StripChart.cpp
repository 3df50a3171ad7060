#include "forms/StripChart.h"

#include "forms/SaveData.h"

#include <QApplication>
#include <QCategoryAxis>
#include <QChart>
#include <QContextMenuEvent>
#include <QGraphicsLineItem>
#include <QGraphicsRectItem>
#include <QImage>
#include <QKeyEvent>
#include <QLineSeries>
#include <QMenu>
#include <QMouseEvent>
#include <QRubberBand>
#include <QTimer>

#include <algorithm>
#include <cmath>

namespace forms {

namespace {
constexpr int kHandleSize = 8;
// Points added one at a time are drawn this often at the most.
constexpr int kDrawEveryMs = 40;
// A trace with more points than four per column of this many draws each column's first,
// lowest, highest and last point.
constexpr int kColumns = 2048;
// A press this close to the cursor line takes the line along.
constexpr double kGrip = 5.0;
// A zoom rectangle narrower or lower than this is taken for a slip of the hand.
constexpr int kLeastZoom = 4;

// Ticks at round numbers, about six steps of 1, 2 or 5 times a power of ten, each labelled
// from its own multiple of the step so that no sum of steps shows as 6.9E-18.
void placeTicks(QCategoryAxis* axis, double lo, double hi, double least) {
    const double raw = (hi - lo) / 6.0;
    const double decade = std::pow(10.0, std::floor(std::log10(raw)));
    const double m = raw / decade;
    const double step = std::max((m < 1.5   ? 1.0
                                  : m < 3.0 ? 2.0
                                  : m < 7.0 ? 5.0
                                            : 10.0) *
                                     decade,
                                 least);
    const int decimals = std::max(0, static_cast<int>(-std::floor(std::log10(step) + 1e-9)));
    for (const QString& label : axis->categoriesLabels())
        axis->remove(label);
    axis->setStartValue(lo);
    for (double k = std::ceil(lo / step); k * step <= hi; ++k) {
        const double v = k * step + 0.0; // + 0.0: never a "-0"
        axis->append(QString::number(v, 'f', decimals), v);
    }
}
} // namespace

// The view takes the chart at once: a view made without one makes a chart of its own, which
// a later setChart lets go of unowned.
StripChart::StripChart(const QString& name, QWidget* parent) : QChartView(new QChart, parent) {
    setObjectName(name);
    QChart* c = chart();
    c->legend()->hide();
    c->setAnimationOptions(QChart::NoAnimation);
    c->setBackgroundRoundness(0);
    c->setMargins(QMargins(2, 6, 8, 2));
    series_ = new QLineSeries(c);
    c->addSeries(series_);
    xAxis_ = new QCategoryAxis(c);
    yAxis_ = new QCategoryAxis(c);
    for (QCategoryAxis* axis : {xAxis_, yAxis_})
        axis->setLabelsPosition(QCategoryAxis::AxisLabelsPositionOnValue);
    c->addAxis(xAxis_, Qt::AlignBottom);
    c->addAxis(yAxis_, Qt::AlignLeft);
    series_->attachAxis(xAxis_);
    series_->attachAxis(yAxis_);
    // Tens of thousands of points: a plain one-pixel line draws them fastest.
    setRenderHint(QPainter::Antialiasing, false);
    setFocusPolicy(Qt::ClickFocus);

    cursor_ = new QGraphicsLineItem(c);
    cursor_->setPen(QPen(QColor(200, 0, 0), 1));
    cursor_->setZValue(10);
    for (QGraphicsRectItem*& h : handles_) {
        h = new QGraphicsRectItem(c);
        h->setBrush(QColor(200, 0, 0));
        h->setPen(Qt::NoPen);
        h->setZValue(11);
    }
    connect(c, &QChart::plotAreaChanged, this, [this](const QRectF&) { placeCursor(); });
    drawSoon_ = new QTimer(this);
    drawSoon_->setSingleShot(true);
    drawSoon_->setInterval(kDrawEveryMs);
    connect(drawSoon_, &QTimer::timeout, this, [this] { flush(); });
    band_ = new QRubberBand(QRubberBand::Rectangle, viewport());
    setTraceColor(traceColor_);
    applyAxes();
}

void StripChart::setPointCount(int n) {
    pointCount_ = n;
}

void StripChart::setXAxisMin(double x) {
    xMin_ = x;
    applyAxes();
}

void StripChart::setXAxisMax(double x) {
    xMax_ = x;
    applyAxes();
}

void StripChart::setYAxisMin(double y) {
    yAxisMin_ = y;
    applyAxes();
}

void StripChart::setYAxisMax(double y) {
    yAxisMax_ = y;
    applyAxes();
}

void StripChart::setYScaleBottom(double y) {
    yScaleBottom_ = y;
    applyAxes();
}

void StripChart::setYScaleTop(double y) {
    yScaleTop_ = y;
    applyAxes();
}

void StripChart::setTraceColor(int bgr) {
    traceColor_ = bgr;
    QPen pen(QColor(bgr & 0xFF, (bgr >> 8) & 0xFF, (bgr >> 16) & 0xFF));
    pen.setWidth(1);
    series_->setPen(pen);
}

void StripChart::setCursorMode(int mode) {
    cursorMode_ = mode;
    placeCursor();
}

void StripChart::setHandleStyle(int style) {
    handleStyle_ = style;
    placeCursor();
}

void StripChart::clearChart() {
    drawSoon_->stop();
    points_.clear();
    zooms_.clear();
    cursorPlaced_ = false;
    rescan();
    applyAxes();
}

void StripChart::addArray(std::span<const double> values) {
    drawSoon_->stop();
    points_.clear();
    points_.reserve(static_cast<qsizetype>(values.size()));
    double x = 1.0;
    for (const double v : values)
        points_.append(QPointF(x++, v));
    rescan();
    applyAxes();
}

void StripChart::addPoint(double value) {
    const double x = points_.isEmpty() ? 1.0 : points_.back().x() + 1.0;
    points_.append(QPointF(x, value));
    if (pointCount_ > 0 && points_.size() > pointCount_) points_.removeFirst();
    if (!drawSoon_->isActive()) drawSoon_->start();
}

void StripChart::flush() {
    drawSoon_->stop();
    rescan();
    applyAxes();
}

void StripChart::rescan() {
    dataMin_ = dataMax_ = 0.0;
    if (points_.isEmpty()) return;
    const auto [lo, hi] =
        std::minmax_element(points_.cbegin(), points_.cend(),
                            [](const QPointF& a, const QPointF& b) { return a.y() < b.y(); });
    dataMin_ = lo->y();
    dataMax_ = hi->y();
}

void StripChart::applyAxes() {
    double xlo = xMin_, xhi = xMax_;
    double ylo = std::min(yAxisMin_, yScaleBottom_), yhi = std::max(yAxisMax_, yScaleTop_);
    if (!points_.isEmpty()) {
        xlo = std::min(xlo, points_.front().x());
        xhi = std::max(xhi, points_.back().x());
        ylo = std::min(ylo, dataMin_);
        yhi = std::max(yhi, dataMax_);
    }
    if (!(xhi > xlo)) xhi = xlo + 1.0;
    if (!(yhi > ylo)) {
        // One level only: a band around it, so that the trace stands in the middle.
        const double pad = ylo == 0.0 ? 1.0 : std::fabs(ylo) * 0.001;
        ylo -= pad;
        yhi += pad;
    }
    if (!zooms_.empty()) {
        const QRectF& z = zooms_.back();
        xlo = z.left();
        xhi = z.right();
        ylo = z.top();
        yhi = z.bottom();
    }
    shown_ = QRectF(QPointF(xlo, ylo), QPointF(xhi, yhi));
    xAxis_->setRange(xlo, xhi);
    yAxis_->setRange(ylo, yhi);
    placeTicks(xAxis_, xlo, xhi, zooms_.empty() ? 1.0 : 0.0);
    placeTicks(yAxis_, ylo, yhi, 0.0);
    draw();
    placeCursor();
}

void StripChart::draw() {
    // The points within the shown range of x, and one beyond at each side so that the
    // line runs on to the edge; x rises from point to point.
    const auto byX = [](const QPointF& p, double x) { return p.x() < x; };
    const auto first = std::lower_bound(points_.cbegin(), points_.cend(), shown_.left(), byX);
    const auto last = std::lower_bound(first, points_.cend(), shown_.right(), byX);
    const qsizetype from = std::max<qsizetype>(0, first - points_.cbegin() - 1);
    const qsizetype to = std::min<qsizetype>(points_.size(), last - points_.cbegin() + 1);
    const qsizetype count = to - from;
    const qsizetype columns = std::max<qsizetype>(kColumns, qRound(chart()->plotArea().width()));
    if (count <= 4 * columns) {
        series_->replace(from == 0 && to == points_.size() ? points_ : points_.mid(from, count));
        return;
    }
    QList<QPointF> drawn;
    drawn.reserve(4 * columns);
    for (qsizetype c = 0; c < columns; ++c) {
        const auto begin = points_.cbegin() + from + count * c / columns;
        const auto end = points_.cbegin() + from + count * (c + 1) / columns;
        const auto [lo, hi] = std::minmax_element(
            begin, end, [](const QPointF& a, const QPointF& b) { return a.y() < b.y(); });
        drawn.append(*begin);
        // The lowest and the highest in the order they come.
        drawn.append(lo < hi ? *lo : *hi);
        drawn.append(lo < hi ? *hi : *lo);
        drawn.append(*(end - 1));
    }
    series_->replace(drawn);
}

QRectF StripChart::shownRange() const {
    return shown_;
}

void StripChart::zoomTo(double x0, double y0, double x1, double y1) {
    zooms_.push_back(QRectF(QPointF(std::min(x0, x1), std::min(y0, y1)),
                            QPointF(std::max(x0, x1), std::max(y0, y1))));
    applyAxes();
}

void StripChart::zoomBack() {
    if (zooms_.empty()) return;
    zooms_.pop_back();
    applyAxes();
}

bool StripChart::savePicture(const QString& path) {
    const QImage picture = grab().toImage();
    return writeWhole(path, [&picture](QIODevice& file) { return picture.save(&file, "PNG"); });
}

void StripChart::savePictureAs() {
    const QString path = chooseSaveFile(this, QStringLiteral("Save as PNG"),
                                        objectName() + QStringLiteral(".png"),
                                        QStringLiteral("PNG pictures (*.png)"));
    if (!path.isEmpty()) savePicture(path);
}

bool StripChart::cursorShown() const {
    return cursorMode_ != 0 && cursorPlaced_ && !points_.isEmpty();
}

void StripChart::moveCursor(double x) {
    if (cursorMode_ == 0 || points_.isEmpty()) return;
    cursorX_ = x;
    cursorPlaced_ = true;
    placeCursor();
    if (moved_) moved_(x);
}

void StripChart::placeCursor() {
    const QRectF plot = chart()->plotArea();
    const double px = chart()->mapToPosition(QPointF(cursorX_, yAxis_->min()), series_).x();
    const bool shown = cursorShown() && px >= plot.left() - 0.5 && px <= plot.right() + 0.5;
    cursor_->setVisible(shown);
    for (QGraphicsRectItem* h : handles_)
        h->setVisible(shown && handleStyle_ == 3);
    if (!shown) return;
    cursor_->setLine(px, plot.top(), px, plot.bottom());
    handles_[0]->setRect(px - kHandleSize / 2.0, plot.top(), kHandleSize, kHandleSize);
    handles_[1]->setRect(px - kHandleSize / 2.0, plot.bottom() - kHandleSize, kHandleSize,
                         kHandleSize);
}

QPointF StripChart::valueAt(const QPoint& viewPoint) const {
    return chart()->mapToValue(chart()->mapFromScene(mapToScene(viewPoint)), series_);
}

void StripChart::cursorFromView(const QPoint& p) {
    moveCursor(valueAt(p).x());
}

QPoint StripChart::viewPointOf(double x, double y) const {
    const QPointF inChart = chart()->mapToPosition(QPointF(x, y), series_);
    return mapFromScene(chart()->mapToScene(inChart));
}

void StripChart::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) return QChartView::mousePressEvent(event);
    pressAt_ = event->position().toPoint();
    const bool atLine =
        cursorShown() && std::fabs(pressAt_.x() - viewPointOf(cursorX_, shown_.top()).x()) <= kGrip;
    drag_ = atLine ? Drag::Cursor : Drag::Press;
    event->accept();
}

void StripChart::mouseMoveEvent(QMouseEvent* event) {
    if (!(event->buttons() & Qt::LeftButton) || drag_ == Drag::None)
        return QChartView::mouseMoveEvent(event);
    const QPoint at = event->position().toPoint();
    if (drag_ == Drag::Cursor) {
        cursorFromView(at);
    } else if (drag_ == Drag::Zoom ||
               (at - pressAt_).manhattanLength() >= QApplication::startDragDistance()) {
        drag_ = Drag::Zoom;
        band_->setGeometry(QRect(pressAt_, at).normalized());
        band_->show();
    }
    event->accept();
}

void StripChart::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || drag_ == Drag::None)
        return QChartView::mouseReleaseEvent(event);
    const QPoint at = event->position().toPoint();
    if (drag_ == Drag::Press) {
        beforeClick_ = {cursorPlaced_, cursorX_};
        cursorFromView(pressAt_);
    } else if (drag_ == Drag::Zoom) {
        band_->hide();
        const QRect r = QRect(pressAt_, at).normalized();
        if (r.width() >= kLeastZoom && r.height() >= kLeastZoom) {
            const QPointF a = valueAt(r.topLeft()), b = valueAt(r.bottomRight());
            zoomTo(a.x(), a.y(), b.x(), b.y());
        }
    }
    drag_ = Drag::None;
    event->accept();
}

void StripChart::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) return QChartView::mouseDoubleClickEvent(event);
    // The release that follows places nothing, and the cursor goes back to where it stood
    // before the double click's first click.
    drag_ = Drag::None;
    if (beforeClick_.placed) {
        moveCursor(beforeClick_.x);
    } else {
        cursorPlaced_ = false;
        placeCursor();
    }
    zoomBack();
    event->accept();
}

void StripChart::keyPressEvent(QKeyEvent* event) {
    // The arrow keys step the cursor from point to point.
    const int step = event->key() == Qt::Key_Left ? -1 : event->key() == Qt::Key_Right ? 1 : 0;
    if (step != 0 && cursorShown()) {
        moveCursor(std::round(cursorX_) + step);
        return;
    }
    QChartView::keyPressEvent(event);
}

void StripChart::contextMenuEvent(QContextMenuEvent* event) {
    QMenu menu(this);
    QAction* save = menu.addAction(QStringLiteral("Save as PNG..."));
    save->setObjectName(QStringLiteral("savePng"));
    QAction* whole = menu.addAction(QStringLiteral("Whole Chart"));
    whole->setObjectName(QStringLiteral("zoomAll"));
    whole->setEnabled(zoomed());
    QAction* chosen = menu.exec(event->globalPos());
    if (chosen == save) {
        savePictureAs();
    } else if (chosen == whole) {
        zooms_.clear();
        applyAxes();
    }
}

} // namespace forms
