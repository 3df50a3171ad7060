#include "forms/BitRow.h"

#include "forms/Entry.h"

#include <QGridLayout>
#include <QLineEdit>
#include <QPainter>

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

} // namespace

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
        grid->addWidget(caption, 0, column, Qt::AlignHCenter | Qt::AlignBottom);
        auto* b = new QLineEdit(this);
        b->setObjectName(QStringLiteral("%1(%2)").arg(name).arg(bit));
        b->setReadOnly(true);
        b->setFocusPolicy(Qt::NoFocus);
        b->setAlignment(Qt::AlignCenter);
        b->setFont(font);
        b->setFixedWidth(QFontMetrics(font).horizontalAdvance(QLatin1Char('0')) + 12);
        grid->addWidget(b, 1, column);
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
