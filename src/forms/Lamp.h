#pragma once
// A button used as a lamp: its colour and caption change together, colour first.

#include "registers/AlarmStatus.h"

#include <QPushButton>

#include <cstdint>

namespace forms {

inline constexpr int32_t kLampGreen = qz::kGreen;
inline constexpr int32_t kLampRed = qz::kRed;

class Lamp : public QPushButton {
public:
    Lamp(const QString& name, QWidget* parent = nullptr);
    void set(int32_t colourValue, const QString& caption);
    int32_t colourValue() const { return colour_; }

private:
    int32_t colour_ = -1;
};

// Every alarm lamp of the panel shows the reply's bit; lamps the panel lacks are passed by.
void showAlarms(QWidget* panel, int32_t reply);

} // namespace forms
