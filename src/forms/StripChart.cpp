#include "forms/StripChart.h"

#include <QCategoryAxis>
#include <QChart>
#include <QGraphicsLineItem>
#include <QGraphicsRectItem>
#include <QKeyEvent>
#include <QLineSeries>
#include <QMouseEvent>

#include <algorithm>
#include <cmath>

namespace forms {

namespace {
constexpr int kHandleSize = 8;

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
    points_.clear();
    series_->clear();
    cursorPlaced_ = false;
    rescan();
    applyAxes();
}

void StripChart::addArray(std::span<const double> values) {
    points_.clear();
    points_.reserve(static_cast<qsizetype>(values.size()));
    double x = 1.0;
    for (const double v : values)
        points_.append(QPointF(x++, v));
    series_->replace(points_);
    rescan();
    applyAxes();
}

void StripChart::addPoint(double value) {
    const double x = points_.isEmpty() ? 1.0 : points_.back().x() + 1.0;
    points_.append(QPointF(x, value));
    series_->append(x, value);
    if (pointCount_ > 0 && points_.size() > pointCount_) {
        points_.removeFirst();
        series_->remove(0);
        rescan();
    } else if (points_.size() == 1) {
        dataMin_ = dataMax_ = value;
    } else {
        dataMin_ = std::min(dataMin_, value);
        dataMax_ = std::max(dataMax_, value);
    }
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
    xAxis_->setRange(xlo, xhi);
    yAxis_->setRange(ylo, yhi);
    placeTicks(xAxis_, xlo, xhi, 1.0);
    placeTicks(yAxis_, ylo, yhi, 0.0);
    placeCursor();
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

void StripChart::cursorFromView(const QPoint& p) {
    const QPointF inChart = chart()->mapFromScene(mapToScene(p));
    moveCursor(chart()->mapToValue(inChart, series_).x());
}

QPoint StripChart::viewPointOf(double x, double y) const {
    const QPointF inChart = chart()->mapToPosition(QPointF(x, y), series_);
    return mapFromScene(chart()->mapToScene(inChart));
}

void StripChart::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton && cursorMode_ != 0) {
        cursorFromView(event->position().toPoint());
        event->accept();
        return;
    }
    QChartView::mousePressEvent(event);
}

void StripChart::mouseMoveEvent(QMouseEvent* event) {
    if ((event->buttons() & Qt::LeftButton) && cursorMode_ != 0) {
        cursorFromView(event->position().toPoint());
        event->accept();
        return;
    }
    QChartView::mouseMoveEvent(event);
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

} // namespace forms
