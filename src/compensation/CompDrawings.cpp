#include "compensation/CompDrawings.h"

#include "forms/Build.h"
#include "registers/Compensation.h"

#include <QAbstractButton>
#include <QPainter>
#include <QPainterPath>

#include <cmath>

namespace {

// The drawing's grid, in pixels. The output rail runs along the top; the Cc branches hang
// from it to a ground rail; the CF ladder hangs from its right bus, each row a capacitor
// and a switch to a ground bus on the left.
constexpr int kWidth = 660;
constexpr int kHeight = 444;
constexpr int kRailY = 62;
constexpr int kAmpLeft = 44, kAmpTop = 26, kAmpBottom = 98, kAmpOut = 120;
constexpr int kArrowX = 568;
constexpr int kCcX[4] = {170, 260, 350, 440};
constexpr int kCcSwitchTop = 78, kCcSwitchBottom = 110;
constexpr int kCcPlateTop = 130, kCcPlateBottom = 138;
constexpr int kGroundRailY = 172;
constexpr int kBusRight = 520, kBusLeft = 200;
constexpr int kRow0 = 226, kRowStep = 32;
constexpr int kCfSwitchA = 428, kCfSwitchB = 464;
constexpr int kCfPlateLeft = 336, kCfPlateRight = 344;
constexpr int kOptionX = 536;

constexpr int rowY(int k) {
    return kRow0 + kRowStep * k;
}

const QColor kInk(0x20, 0x20, 0x20);
const QColor kPaper(Qt::white);

// White paper, dark ink, for the drawing and the controls placed on it.
void paper(QWidget* w) {
    QPalette pal = w->palette();
    pal.setColor(QPalette::Window, kPaper);
    pal.setColor(QPalette::WindowText, kInk);
    pal.setColor(QPalette::Text, kInk);
    pal.setColor(QPalette::Base, kPaper);
    w->setPalette(pal);
    w->setAutoFillBackground(true);
}

void frame(QPainter& p, const QWidget* w) {
    p.setPen(QPen(w->palette().color(QPalette::Mid), 1));
    p.drawRect(w->rect().adjusted(0, 0, -1, -1));
    p.setPen(QPen(kInk, 1.4, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
}

// One drawing of a switch: its two terminals and the blade, closed across them or open
// at an angle from the first. Horizontal switches pivot on the left, vertical ones on top.
class SwitchGlyph : public QWidget {
public:
    static constexpr int kSpan = 36; // terminal to terminal
    static constexpr int kMargin = 6;

    SwitchGlyph(const QString& name, bool closed, bool vertical, QWidget* parent)
        : QWidget(parent), closed_(closed), vertical_(vertical) {
        setObjectName(name);
        setAttribute(Qt::WA_TransparentForMouseEvents);
        if (vertical_)
            setFixedSize(30, kSpan + 2 * kMargin);
        else
            setFixedSize(kSpan + 2 * kMargin, 24);
    }
    // Where the pivot terminal sits within the drawing.
    QPoint pivot() const { return vertical_ ? QPoint(8, kMargin) : QPoint(kMargin, 16); }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter p(this);
        p.setRenderHint(QPainter::Antialiasing);
        const QPointF a = pivot();
        const QPointF b = vertical_ ? a + QPointF(0, kSpan) : a + QPointF(kSpan, 0);
        QPointF end = b;
        if (!closed_) {
            const double angle = 28.0 * 3.14159265358979 / 180.0;
            const double r = kSpan * 0.92;
            end = vertical_ ? a + QPointF(r * std::sin(angle), r * std::cos(angle))
                            : a + QPointF(r * std::cos(angle), -r * std::sin(angle));
        }
        p.setPen(QPen(kInk, 1.8, Qt::SolidLine, Qt::RoundCap));
        p.drawLine(a, end);
        p.setPen(QPen(kInk, 1.2));
        p.setBrush(kPaper);
        p.drawEllipse(a, 2.6, 2.6);
        p.drawEllipse(b, 2.6, 2.6);
    }

private:
    bool closed_;
    bool vertical_;
};

void dot(QPainter& p, int x, int y) {
    p.save();
    p.setPen(Qt::NoPen);
    p.setBrush(kInk);
    p.drawEllipse(QPointF(x, y), 2.8, 2.8);
    p.restore();
}

// Three bars under a stem that starts at (x, y).
void ground(QPainter& p, int x, int y) {
    p.drawLine(x, y, x, y + 8);
    for (int i = 0; i < 3; ++i) {
        const int half = 12 - 4 * i;
        p.drawLine(x - half, y + 8 + 5 * i, x + half, y + 8 + 5 * i);
    }
}

// The two plates of a capacitor, across a vertical wire (horizontal plates) or across a
// horizontal one (vertical plates).
void plates(QPainter& p, bool acrossVertical, int c, int from, int to, int half) {
    p.save();
    p.setPen(QPen(kInk, 2.4, Qt::SolidLine, Qt::FlatCap));
    if (acrossVertical) {
        p.drawLine(c - half, from, c + half, from);
        p.drawLine(c - half, to, c + half, to);
    } else {
        p.drawLine(from, c - half, from, c + half);
        p.drawLine(to, c - half, to, c + half);
    }
    p.restore();
}

} // namespace

CompNetwork::CompNetwork(QWidget* parent) : QWidget(parent) {
    setObjectName(QStringLiteral("picNetwork"));
    setFixedSize(kWidth, kHeight);
    paper(this);

    for (int k = 0; k < qz::kCfSwitches; ++k) {
        Switch& s = cf_[static_cast<size_t>(k)];
        s.closed = new SwitchGlyph(forms::member("SWclosed", k), true, false, this);
        s.open = new SwitchGlyph(forms::member("SWopen", k), false, false, this);
        for (QWidget* w : {s.closed, s.open})
            w->move(kCfSwitchA - SwitchGlyph::kMargin, rowY(k) - 16);
    }
    const char* names[3][2] = {{"cc1ON", "Cc1off"}, {"cc2on", "cc2off"}, {"cc3on", "cc3off"}};
    for (int i = 0; i < 3; ++i) {
        Switch& s = cc_[static_cast<size_t>(i)];
        s.closed = new SwitchGlyph(QString::fromLatin1(names[i][0]), true, true, this);
        s.open = new SwitchGlyph(QString::fromLatin1(names[i][1]), false, true, this);
        for (QWidget* w : {s.closed, s.open})
            w->move(kCcX[i + 1] - 8, kCcSwitchTop - SwitchGlyph::kMargin);
    }
    // As the panel comes up: switch 0 closed, the others and the Cc switches open.
    closeCf(0);
    for (int i = 1; i <= 3; ++i)
        setCc(i, false);
}

QSize CompNetwork::sizeHint() const {
    return {kWidth, kHeight};
}

void CompNetwork::show(const Switch& s, bool closed) {
    s.closed->setVisible(closed);
    s.open->setVisible(!closed);
}

void CompNetwork::closeCf(int k) {
    for (const Switch& s : cf_)
        show(s, false);
    if (k >= 0 && k < qz::kCfSwitches) show(cf_[static_cast<size_t>(k)], true);
}

void CompNetwork::setCc(int i, bool closed) {
    if (i >= 1 && i <= 3) show(cc_[static_cast<size_t>(i - 1)], closed);
}

void CompNetwork::placeOption(int row, QAbstractButton* option) {
    option->setParent(this);
    option->adjustSize();
    option->move(kOptionX, rowY(row) - option->height() / 2);
}

void CompNetwork::placeCheck(int i, QAbstractButton* check) {
    check->setParent(this);
    check->adjustSize();
    check->move(kCcX[i] + 44, kCcPlateBottom - 4 - check->height() / 2);
}

void CompNetwork::paintEvent(QPaintEvent*) {
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    frame(p, this);
    const QFontMetrics fm(font());

    // The gm stage and its inputs.
    QPainterPath amp;
    amp.moveTo(kAmpLeft, kAmpTop);
    amp.lineTo(kAmpLeft, kAmpBottom);
    amp.lineTo(kAmpOut, kRailY);
    amp.closeSubpath();
    p.drawPath(amp);
    for (int y : {kRailY - 20, kRailY + 20}) {
        p.drawLine(22, y, kAmpLeft, y);
        p.save();
        p.setBrush(kPaper);
        p.drawEllipse(QPointF(22, y), 2.6, 2.6);
        p.restore();
    }
    p.drawText(kAmpLeft + 5, kRailY - 20 + fm.ascent() / 2 - 1, QStringLiteral("+"));
    p.drawText(kAmpLeft + 5, kRailY + 20 + fm.ascent() / 2 - 1, QStringLiteral("\u2212"));
    p.drawText(kAmpLeft + 20, kRailY + fm.ascent() / 2 - 1, QStringLiteral("gm"));

    // The output rail to the DUT.
    p.drawLine(kAmpOut, kRailY, kArrowX, kRailY);
    QPainterPath arrow;
    arrow.moveTo(kArrowX, kRailY - 5);
    arrow.lineTo(kArrowX + 12, kRailY);
    arrow.lineTo(kArrowX, kRailY + 5);
    arrow.closeSubpath();
    p.fillPath(arrow, kInk);
    QFont bold = font();
    bold.setBold(true);
    p.setFont(bold);
    p.drawText(kArrowX + 18, kRailY + fm.ascent() / 2 - 1, QStringLiteral("To DUT"));
    p.setFont(font());

    // Cc0 fixed, Cc1..Cc3 each through its switch, all to the ground rail.
    for (int i = 0; i < 4; ++i) {
        const int x = kCcX[i];
        dot(p, x, kRailY);
        if (i == 0) {
            p.drawLine(x, kRailY, x, kCcPlateTop);
        } else {
            p.drawLine(x, kRailY, x, kCcSwitchTop);
            p.drawLine(x, kCcSwitchBottom, x, kCcPlateTop);
        }
        plates(p, true, x, kCcPlateTop, kCcPlateBottom, 12);
        p.drawLine(x, kCcPlateBottom, x, kGroundRailY);
        const QString label =
            i == 0 ? QStringLiteral("Cc0") : QString::fromLatin1(qz::kCcSwitches[i - 1].text);
        p.drawText(x + 16, kCcPlateBottom + fm.ascent() / 2 - 4, label);
    }
    p.drawLine(kCcX[0], kGroundRailY, kCcX[3], kGroundRailY);
    const int groundX = (kCcX[1] + kCcX[2]) / 2;
    for (int x : {kCcX[1], kCcX[2], groundX})
        dot(p, x, kGroundRailY);
    ground(p, groundX, kGroundRailY);

    // The CF ladder: the right bus from the output, one row a switch and a capacitor.
    const int lastRow = qz::kCfSwitches - 1;
    dot(p, kBusRight, kRailY);
    p.drawLine(kBusRight, kRailY, kBusRight, rowY(lastRow));
    p.drawLine(kBusLeft, rowY(0), kBusLeft, rowY(lastRow));
    ground(p, kBusLeft, rowY(lastRow));
    for (int k = 0; k < qz::kCfSwitches; ++k) {
        const int y = rowY(k);
        if (k < lastRow) dot(p, kBusRight, y);
        if (k > 0) dot(p, kBusLeft, y);
        p.drawLine(kBusRight, y, kCfSwitchB, y);
        p.drawLine(kCfSwitchA, y, kCfPlateRight, y);
        plates(p, false, y, kCfPlateLeft, kCfPlateRight, 10);
        p.drawLine(kCfPlateLeft, y, kBusLeft, y);
        const QString label = QString::fromLatin1(qz::kCfRows[k].text);
        p.drawText(kCfPlateLeft - 8 - fm.horizontalAdvance(label), y - 5, label);
    }
}

CompLoad::CompLoad(QWidget* parent) : QWidget(parent) {
    setObjectName(QStringLiteral("Image1"));
    setFixedSize(sizeHint());
    paper(this);
}

QSize CompLoad::sizeHint() const {
    return {340, 186};
}

void CompLoad::paintEvent(QPaintEvent*) {
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    frame(p, this);
    const QFontMetrics fm(font());
    constexpr int x = 190, top = 40, resTop = 66, resBottom = 112, capTop = 130, capBottom = 138;

    // The chip's output to the DUT.
    p.drawText(16, top - 10, QStringLiteral("QZ7740 output"));
    p.drawLine(28, top, x, top);
    p.drawLine(x, top, x, resTop);
    p.save();
    p.setBrush(kPaper);
    p.drawEllipse(QPointF(28, top), 2.6, 2.6);
    p.restore();

    // ESR, a zigzag of six strokes, then CR to ground.
    QPainterPath zigzag;
    zigzag.moveTo(x, resTop);
    const double step = (resBottom - resTop) / 6.0;
    for (int i = 0; i < 6; ++i)
        zigzag.lineTo(x + (i % 2 ? -7 : 7), resTop + step * (i + 0.5));
    zigzag.lineTo(x, resBottom);
    p.drawPath(zigzag);
    p.drawLine(x, resBottom, x, capTop);
    plates(p, true, x, capTop, capBottom, 14);
    p.drawLine(x, capBottom, x, 156);
    ground(p, x, 156);
    p.drawText(x + 18, (resTop + resBottom) / 2 + fm.ascent() / 2 - 1,
               QStringLiteral("ESR (m\u03A9)"));
    p.drawText(x + 22, (capTop + capBottom) / 2 + fm.ascent() / 2 - 1, QStringLiteral("CR (load)"));

    // The DUT's own parts, boxed.
    p.save();
    p.setPen(QPen(kInk, 1, Qt::DashLine));
    p.setBrush(Qt::NoBrush);
    p.drawRect(QRect(x - 40, top + 14, 150, 94));
    p.restore();
    QFont bold = font();
    bold.setBold(true);
    p.setFont(bold);
    p.drawText(x - 36, top + 14 + fm.ascent() + 2, QStringLiteral("DUT"));
}
