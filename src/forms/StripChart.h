#pragma once
// A strip chart over Qt Charts with the members the measurement and diagnostics panels use:
// one trace, drawn from a whole array at once or a point at a time; the trace's value
// axis and the chart's scale; and a cursor that the operator moves along the time axis
// with the mouse or the arrow keys, which reports its axis position. The operator zooms
// into a dragged rectangle and goes back a step with a double click; the context menu
// saves the chart as a PNG picture.
//
// Points stand at x = 1, 2, 3, ... from the last clear. The drawn axes take in the time
// axis and the value axis and scale as set, widened where need be so that no point of the
// trace falls outside the plot. Points added one at a time are drawn a few times a second,
// not one by one; a trace of tens of thousands of points draws the lowest and highest of
// each pixel column, which looks the same and costs a few thousand.

#include <QChartView>

#include <functional>
#include <span>
#include <vector>

class QCategoryAxis;
class QGraphicsLineItem;
class QGraphicsRectItem;
class QLineSeries;
class QRubberBand;
class QTimer;

namespace forms {

class StripChart : public QChartView {
  public:
    explicit StripChart(const QString& name, QWidget* parent = nullptr);

    // How many points AddPoint keeps: the oldest goes when one more comes.
    void setPointCount(int n);
    int pointCount() const { return pointCount_; }
    // The time axis.
    void setXAxisMin(double x);
    void setXAxisMax(double x);
    double xAxisMin() const { return xMin_; }
    double xAxisMax() const { return xMax_; }
    // The trace's value axis, and the chart's scale.
    void setYAxisMin(double y);
    void setYAxisMax(double y);
    void setYScaleBottom(double y);
    void setYScaleTop(double y);
    double yAxisMin() const { return yAxisMin_; }
    double yAxisMax() const { return yAxisMax_; }
    double yScaleBottom() const { return yScaleBottom_; }
    double yScaleTop() const { return yScaleTop_; }
    // The trace's colour as a blue-green-red number: 0xFF0000 is blue.
    void setTraceColor(int bgr);
    int traceColor() const { return traceColor_; }
    // 0: no cursor; 2: the cursor, once the chart holds points.
    void setCursorMode(int mode);
    int cursorMode() const { return cursorMode_; }
    // 0: a bare cursor line; 3: the line with handles at its ends.
    void setHandleStyle(int style);
    int handleStyle() const { return handleStyle_; }

    void clearChart();
    // The whole array as the trace, in one hand-over.
    void addArray(std::span<const double> values);
    // One point after the last; it is drawn with the others a few times a second.
    void addPoint(double value);
    // Draws at once the points added since the last drawing.
    void flush();
    int count() const { return static_cast<int>(points_.size()); }
    // Point k from the first, as drawn.
    QPointF pointAt(int k) const { return points_.at(k); }

    // Told the axis position of the cursor each time it moves.
    void onCursorMoved(std::function<void(double x)> handler) { moved_ = std::move(handler); }
    // Puts the cursor at axis position x, as the operator's drag there does; nothing while
    // the cursor mode is 0 or the chart is empty.
    void moveCursor(double x);
    bool cursorShown() const;
    double cursorPosition() const { return cursorX_; }
    // The point of the view over axis position (x, y): where a click puts the cursor there.
    QPoint viewPointOf(double x, double y) const;

    // The axes' ranges as drawn: the zoom's, or the whole trace's.
    QRectF shownRange() const;
    // Shows the rectangle of axis positions (x0, y0) to (x1, y1), as a dragged rectangle does.
    void zoomTo(double x0, double y0, double x1, double y1);
    // Back to the view before the last zoom, as a double click does.
    void zoomBack();
    bool zoomed() const { return !zooms_.empty(); }
    // "Save as PNG...": asks for a file and writes the chart's picture to it.
    void savePictureAs();
    bool savePicture(const QString& path);

  protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

  private:
    void applyAxes();
    void draw();
    void placeCursor();
    void rescan();
    void cursorFromView(const QPoint& p);
    QPointF valueAt(const QPoint& viewPoint) const;

    QLineSeries* series_;
    QCategoryAxis* xAxis_;
    QCategoryAxis* yAxis_;
    QGraphicsLineItem* cursor_;
    QGraphicsRectItem* handles_[2];
    QList<QPointF> points_;
    double dataMin_ = 0.0, dataMax_ = 0.0;
    int pointCount_ = 100;
    double xMin_ = 0.0, xMax_ = 100.0;
    double yAxisMin_ = 0.0, yAxisMax_ = 0.0, yScaleBottom_ = 0.0, yScaleTop_ = 0.0;
    int traceColor_ = 0x008000;
    int cursorMode_ = 0;
    int handleStyle_ = 0;
    double cursorX_ = 0.0;
    bool cursorPlaced_ = false;
    std::function<void(double)> moved_;

    QTimer* drawSoon_;
    std::vector<QRectF> zooms_; // axis ranges, the last one shown
    QRectF shown_;
    // A left press places the cursor on release, drags it when it was taken at the line,
    // or draws a zoom rectangle once the mouse has moved.
    enum class Drag { None, Press, Cursor, Zoom } drag_ = Drag::None;
    QPoint pressAt_;
    QRubberBand* band_;
    // Where the cursor stood before the last click placed it: the first click of a double
    // click is taken back.
    struct Placed {
        bool placed;
        double x;
    } beforeClick_{false, 0.0};
};

} // namespace forms
