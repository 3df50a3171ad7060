#include "forms/Build.h"

#include "forms/Controls.h"
#include "forms/Entry.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>

namespace forms {

QPushButton* makeButton(const QString& name, const QString& caption, QWidget* parent) {
    auto* b = new QPushButton(caption, parent);
    b->setObjectName(name);
    b->setAutoDefault(false);
    return b;
}

QCheckBox* makeCheck(const QString& name, const QString& caption, bool checked, QWidget* parent) {
    auto* c = new QCheckBox(caption, parent);
    c->setObjectName(name);
    c->setChecked(checked);
    return c;
}

QRadioButton* makeOption(const QString& name, const QString& caption, QWidget* parent) {
    auto* o = new QRadioButton(caption, parent);
    o->setObjectName(name);
    return o;
}

QComboBox* makeList(const QString& name, std::initializer_list<const char*> items,
                    const QString& startText, QWidget* parent) {
    auto* c = new QComboBox(parent);
    c->setObjectName(name);
    for (const char* item : items) c->addItem(QString::fromUtf8(item));
    c->setPlaceholderText(startText);
    // The start text reads as the list's own text, not as a greyed hint.
    QPalette pal = c->palette();
    pal.setColor(QPalette::PlaceholderText, pal.color(QPalette::Text));
    c->setPalette(pal);
    c->setCurrentIndex(-1);
    c->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    ignoreWheel(c);
    return c;
}

QLabel* makeLabel(const QString& name, const QString& caption, QWidget* parent) {
    auto* l = new QLabel(caption, parent);
    l->setObjectName(name);
    return l;
}

QLabel* makeStatus(const QString& name, const QString& caption, QWidget* parent) {
    QLabel* l = makeLabel(name, caption, parent);
    l->setFrameShape(QFrame::Panel);
    l->setFrameShadow(QFrame::Sunken);
    l->setMinimumWidth(300);
    return l;
}

QLineEdit* makeHexBox(const QString& name, const QString& text, int chars, QWidget* parent) {
    auto* e = new QLineEdit(text, parent);
    e->setObjectName(name);
    e->setFont(hexFont());
    e->setFixedWidth(QFontMetrics(e->font()).horizontalAdvance(QString(chars, QLatin1Char('0'))) + 16);
    return e;
}

QGroupBox* makeFrame(const QString& title, QWidget* parent) { return new QGroupBox(title, parent); }

} // namespace forms
