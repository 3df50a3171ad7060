#include "forms/BitRow.h"

#include "forms/Entry.h"

#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>

#include <algorithm>

namespace forms {

namespace {

// A caption written upwards, so that long bit names fit over a one-digit box.
class UpCaption : public QWidget {
public:
    UpCaption(const QString& text, bool bold, QWidget* parent) : QWidget(parent), text_(text) {
        QFont f = font();
        f.setPointSizeF(f.pointSizeF() * 0.8);
        f.setBold(bold);
        setFont(f);
        const QFontMetrics fm(f);
        setFixedSize(fm.height() + 2, fm.horizontalAdvance(text_) + 6);
        setToolTip(text_);
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter p(this);
        p.translate(0, height());
        p.rotate(-90);
        p.drawText(QRect(3, 0, height() - 3, width()), Qt::AlignLeft | Qt::AlignVCenter, text_);
    }

private:
    QString text_;
};

// A field's caption over the bits it spans, with a bracket from its first bit to its last.
// A caption too wide for its span, even wrapped at its spaces, runs upwards instead. It is
// a label, so that a screen reader reads it with the row.
class GroupCaption : public QLabel {
public:
    GroupCaption(const QString& text, int spanWidth, QWidget* parent) : QLabel(text, parent) {
        QFont f = font();
        f.setPointSizeF(f.pointSizeF() * 0.8);
        f.setBold(true);
        setFont(f);
        const QFontMetrics fm(f);
        const QRect wrapped = fm.boundingRect(QRect(0, 0, spanWidth, 1000),
                                              Qt::AlignHCenter | Qt::TextWordWrap, text);
        upright_ = wrapped.width() <= spanWidth;
        const int textHeight = upright_ ? wrapped.height() : fm.horizontalAdvance(text) + 4;
        setMinimumSize(spanWidth, textHeight + kBracket);
        setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
        setFixedHeight(textHeight + kBracket);
        setToolTip(text);
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter p(this);
        const int base = height() - 2;
        p.drawLine(1, base, width() - 2, base);
        p.drawLine(1, base, 1, base - kBracket + 3);
        p.drawLine(width() - 2, base, width() - 2, base - kBracket + 3);
        const int textHeight = height() - kBracket;
        if (upright_) {
            p.drawText(QRect(0, 0, width(), textHeight), Qt::AlignHCenter | Qt::AlignBottom | Qt::TextWordWrap,
                       text());
        } else {
            p.translate(0, textHeight);
            p.rotate(-90);
            p.drawText(QRect(2, 0, textHeight - 2, width()), Qt::AlignLeft | Qt::AlignVCenter, text());
        }
    }

private:
    static constexpr int kBracket = 6;
    bool upright_ = true;
};

} // namespace

BitRow::BitRow(const QString& name, const qz::RowCaptions& captions,
               std::span<const qz::BitGroup> groups, QWidget* parent)
    : BitRow(name, captions, parent) {
    auto* grid = static_cast<QGridLayout*>(layout());
    for (const qz::BitGroup& g : groups) {
        // The span's width: its boxes' columns and the spacing between them.
        const int bits = g.high - g.low + 1;
        const int width = bits * columnWidth_ + (bits - 1) * grid->horizontalSpacing();
        auto* caption = new GroupCaption(QString::fromLatin1(g.caption), width, this);
        caption->setObjectName(QStringLiteral("%1Group(%2)").arg(name).arg(g.high));
        caption->setAccessibleName(caption->text());
        caption->setAccessibleDescription(QStringLiteral("bits %1 to %2").arg(g.high).arg(g.low));
        grid->addWidget(caption, 0, 23 - g.high, 1, bits, Qt::AlignBottom);
    }
}

BitRow::BitRow(const QString& name, const qz::RowCaptions& captions, QWidget* parent,
               uint32_t bold)
    : QWidget(parent) {
    setObjectName(name);
    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setHorizontalSpacing(1);
    grid->setVerticalSpacing(2);
    const QFont font = hexFont();
    for (int bit = 23; bit >= 0; --bit) {
        const int column = 23 - bit;
        auto* caption = new UpCaption(QString::fromStdString(captions[static_cast<size_t>(bit)]),
                                     (bold >> bit) & 1u, this);
        grid->addWidget(caption, 1, column, Qt::AlignHCenter | Qt::AlignBottom);
        auto* b = new QLineEdit(this);
        b->setObjectName(QStringLiteral("%1(%2)").arg(name).arg(bit));
        b->setReadOnly(true);
        b->setFocusPolicy(Qt::NoFocus);
        b->setAlignment(Qt::AlignCenter);
        b->setFont(font);
        b->setFixedWidth(QFontMetrics(font).horizontalAdvance(QLatin1Char('0')) + 12);
        grid->addWidget(b, 2, column);
        columnWidth_ = std::max({columnWidth_, b->width(), caption->width()});
        boxes_[static_cast<size_t>(bit)] = b;
    }
}

bool BitRow::mirror(int32_t& word, int32_t limit) {
    qz::BitDigits d{};
    if (!qz::DecToBin(word, limit, d)) return false;
    for (int k = 0; k < 24; ++k) setDigit(k, d[static_cast<size_t>(k)]);
    return true;
}

void BitRow::setDigit(int bit, char digit) { box(bit)->setText(QString(QLatin1Char(digit))); }

QString BitRow::digits() const {
    QString s;
    for (int k = 23; k >= 0; --k) s += box(k)->text();
    return s;
}

} // namespace forms
