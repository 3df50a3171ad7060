#pragma once
// A button used as a lamp: its colour and caption change together.

#include <QPushButton>

#include <cstdint>

namespace forms {

// Colour values with red in the lowest byte.
inline constexpr int32_t kLampGreen = 0x008000;
inline constexpr int32_t kLampRed = 0x0000FF;

class Lamp : public QPushButton {
public:
    Lamp(const QString& name, QWidget* parent = nullptr);
    void set(int32_t colourValue, const QString& caption);
    int32_t colourValue() const { return colour_; }

private:
    int32_t colour_ = -1;
};

} // namespace forms
