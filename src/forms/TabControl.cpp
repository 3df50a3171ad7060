#include "forms/TabControl.h"

#include <QGridLayout>
#include <QPushButton>
#include <QStackedWidget>
#include <QVBoxLayout>

namespace forms {

TabControl::TabControl(const QString& name, int tabsPerRow, QWidget* parent)
    : QWidget(parent), tabsPerRow_(tabsPerRow) {
    setObjectName(name);
    auto* v = new QVBoxLayout(this);
    v->setContentsMargins(0, 0, 0, 0);
    v->setSpacing(0);
    strip_ = new QGridLayout;
    strip_->setSpacing(0);
    v->addLayout(strip_);
    stack_ = new QStackedWidget(this);
    stack_->setFrameShape(QFrame::StyledPanel);
    v->addWidget(stack_, 1);
}

int TabControl::addTab(QWidget* page, const QString& caption) {
    const int i = count();
    auto* b = new QPushButton(caption, this);
    b->setObjectName(QStringLiteral("%1.tab(%2)").arg(objectName()).arg(i));
    b->setCheckable(true);
    b->setFocusPolicy(Qt::TabFocus);
    b->setStyleSheet(QStringLiteral(
        "QPushButton { padding: 4px 10px; border: 1px solid palette(mid);"
        " border-bottom: none; background: palette(button); }"
        "QPushButton:checked { background: palette(base); font-weight: bold; }"));
    // The chosen tab's caption is bold: leave room for it.
    QFont bold = b->font();
    bold.setBold(true);
    b->setMinimumWidth(QFontMetrics(bold).horizontalAdvance(caption) + 28);
    strip_->addWidget(b, i / tabsPerRow_, i % tabsPerRow_);
    connect(b, &QPushButton::clicked, this, [this, i] { setCurrentIndex(i); });
    tabs_.push_back(b);
    stack_->addWidget(page);
    if (current_ < 0) {
        current_ = 0;
        b->setChecked(true);
    }
    return i;
}

QWidget* TabControl::page(int i) const { return stack_->widget(i); }

void TabControl::setCurrentIndex(int i) {
    if (i < 0 || i >= count()) return;
    for (int k = 0; k < count(); ++k) tabs_[static_cast<size_t>(k)]->setChecked(k == i);
    if (i == current_) return;
    const int previous = current_;
    current_ = i;
    stack_->setCurrentIndex(i);
    if (handler_) handler_(previous);
}

} // namespace forms
