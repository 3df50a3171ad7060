#include "forms/Lamp.h"

#include <QColor>

namespace forms {

Lamp::Lamp(const QString& name, QWidget* parent) : QPushButton(parent) {
    setObjectName(name);
    setFocusPolicy(Qt::NoFocus);
    setMinimumWidth(60);
}

void Lamp::set(int32_t colourValue, const QString& caption) {
    colour_ = colourValue;
    const QColor c(colourValue & 0xFF, (colourValue >> 8) & 0xFF, (colourValue >> 16) & 0xFF);
    setStyleSheet(QStringLiteral("QPushButton { background-color: %1; color: white;"
                                 " font-weight: bold; border: 1px solid #303030; padding: 4px; }")
                      .arg(c.name()));
    setText(caption);
}

} // namespace forms

namespace forms {

void showAlarms(QWidget* panel, int32_t reply) {
    for (const qz::AlarmLampRow& row : qz::kAlarmLamps) {
        auto* lamp = panel->findChild<Lamp*>(QStringLiteral("%1(%2)").arg(QLatin1String(row.lamp)).arg(row.member));
        if (!lamp) continue;
        const qz::LampState state = qz::alarmLamp(reply, row);
        lamp->set(state.colour, QString::fromLatin1(state.caption));
    }
}

} // namespace forms
