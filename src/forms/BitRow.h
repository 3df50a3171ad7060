#pragma once
// A register word as 24 one-digit boxes, bit 23 at the left, each box named
// "<row>(k)" for bit k, with the bit's caption over it, and over those the captions of the
// word's fields, each across the bits it spans. The boxes start empty.

#include "registers/BitLabels.h"
#include "registers/BitMirror.h"

#include <QWidget>

#include <array>
#include <span>

class QLineEdit;

namespace forms {

class BitRow : public QWidget {
public:
    // Captions of the bits set in bold stand out in bold, for active-low bits.
    BitRow(const QString& name, const qz::RowCaptions& captions, QWidget* parent = nullptr,
           uint32_t bold = 0);
    // With the field captions of the word: each a label named "<row>Group(high)".
    BitRow(const QString& name, const qz::RowCaptions& captions,
           std::span<const qz::BitGroup> groups, QWidget* parent);

    // The mirror: when the word lies within limit, shows its low 24 bits and leaves the
    // word halved down as the mirror does; otherwise the row stays as it was.
    bool mirror(int32_t& word, int32_t limit);
    bool mirror(int32_t& word, const qz::MirrorRow& row) { return mirror(word, row.limit); }

    void setDigit(int bit, char digit);
    QLineEdit* box(int bit) const { return boxes_[static_cast<size_t>(bit)]; }
    // The digits, bit 23 first.
    QString digits() const;

private:
    std::array<QLineEdit*, 24> boxes_{};
    int columnWidth_ = 0; // the widest box or bit caption
};

} // namespace forms
