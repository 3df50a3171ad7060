#include "forms/Build.h"

#include "forms/Controls.h"
#include "forms/Entry.h"
#include "registers/FieldOps.h"
#include "registers/HexText.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

namespace forms {

namespace {

// Opens a list from a press on its text box.
class PopupOnPress : public QObject {
public:
    explicit PopupOnPress(QComboBox* list) : QObject(list), list_(list) {}
    bool eventFilter(QObject*, QEvent* e) override {
        if (e->type() != QEvent::MouseButtonPress && e->type() != QEvent::MouseButtonDblClick)
            return false;
        if (list_->isEnabled()) list_->showPopup();
        return true;
    }

private:
    QComboBox* list_;
};

} // namespace

QPushButton* makeButton(const QString& name, const QString& caption, QWidget* parent) {
    auto* b = new QPushButton(caption, parent);
    b->setObjectName(name);
    b->setAutoDefault(false);
    return b;
}

QPushButton* makeLink(const QString& name, const QString& caption, QWidget* parent) {
    QPushButton* b = makeButton(name, caption, parent);
    b->setFlat(true);
    b->setCursor(Qt::PointingHandCursor);
    b->setStyleSheet(QStringLiteral("QPushButton { color: #1a4fa0; text-decoration: underline; border: none; }"));
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

void groupOptions(QWidget* owner, std::span<QRadioButton* const> options) {
    auto* group = new QButtonGroup(owner);
    group->setExclusive(true);
    for (QRadioButton* o : options)
        group->addButton(o);
}

QComboBox* makeList(const QString& name, std::initializer_list<const char*> items,
                    const QString& startText, QWidget* parent) {
    return makeList(name, itemsOf(items), startText, parent);
}

QComboBox* makeList(const QString& name, const QStringList& items, const QString& startText,
                    QWidget* parent) {
    auto* c = new QComboBox(parent);
    c->setObjectName(name);
    c->addItems(items);
    // The list's text box holds a text of its own until an item is chosen ("2.5mA" before
    // any of the range items is picked): that text is the list's current text. Nobody
    // types into it; a press on it opens the list as a press on the arrow does.
    c->setEditable(true);
    c->setInsertPolicy(QComboBox::NoInsert);
    c->setCompleter(nullptr);
    c->lineEdit()->setReadOnly(true);
    c->lineEdit()->installEventFilter(new PopupOnPress(c));
    c->setCurrentIndex(-1);
    c->setEditText(startText);
    c->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    // Wide enough for the start text as well as for the items.
    c->setMinimumContentsLength(static_cast<int>(startText.size()));
    ignoreWheel(c);
    return c;
}

QComboBox* makeFieldList(const char* name, const QString& startText, QWidget* parent) {
    return makeList(QString::fromLatin1(name), itemsOf(qz::listItems(name)), startText, parent);
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

QLineEdit* makeEntryBox(const qz::HexField& field, QWidget* parent, int k) {
    const QString name = k < 0 ? QString::fromLatin1(field.name) : member(field.name, k);
    QLineEdit* e = makeHexBox(name, QString::fromLatin1(field.startText), 4, parent);
    markAccepted(e);
    return e;
}

QLineEdit* makeOutBox(const QString& name, QWidget* parent, int chars) {
    QLineEdit* e = makeHexBox(name, QString(), chars, parent);
    e->setReadOnly(true);
    return e;
}

QLineEdit* makeNumberBox(const char* name, const char* text, QWidget* parent, int width) {
    auto* e = new QLineEdit(QString::fromLatin1(text), parent);
    e->setObjectName(QString::fromLatin1(name));
    e->setAlignment(Qt::AlignRight);
    e->setFixedWidth(width);
    if (!e->text().isEmpty()) markAccepted(e);
    return e;
}

QLineEdit* makeReadingBox(const char* name, QWidget* parent, int width) {
    QLineEdit* e = makeOutBox(QString::fromLatin1(name), parent);
    e->setAlignment(Qt::AlignRight);
    e->setFixedWidth(width);
    return e;
}

void addRow(QGridLayout* grid, int row, const char* caption, std::initializer_list<QWidget*> widgets,
            const char* unit) {
    QWidget* parent = grid->parentWidget();
    grid->addWidget(makeCaption(caption, parent), row, 0);
    int column = 1;
    for (QWidget* w : widgets)
        grid->addWidget(w, row, column++);
    if (unit) grid->addWidget(makeCaption(unit, parent), row, column);
}

QGroupBox* makeFrame(const QString& title, QWidget* parent) { return new QGroupBox(title, parent); }

QLineEdit* addCaptionedBox(QGridLayout* grid, int row, int column, const char* caption,
                           const QString& name, int chars) {
    QWidget* parent = grid->parentWidget();
    grid->addWidget(makeCaption(caption, parent), row, column);
    QLineEdit* box = makeOutBox(name, parent, chars);
    grid->addWidget(box, row + 1, column);
    return box;
}

QLabel* makeCaption(const char* text, QWidget* parent) {
    return new QLabel(QString::fromUtf8(text), parent);
}

QLabel* makeHead(const char* text, QWidget* parent) {
    QLabel* l = makeCaption(text, parent);
    QFont f = l->font();
    f.setBold(true);
    l->setFont(f);
    return l;
}

QLabel* makeNote(const char* text, QWidget* parent) {
    QLabel* l = makeCaption(text, parent);
    l->setWordWrap(true);
    return l;
}

QWidget* makePage(QWidget* parent, QVBoxLayout*& column) {
    auto* p = new QWidget(parent);
    column = new QVBoxLayout(p);
    return p;
}

QString hexText(int32_t n, int width) { return QString::fromStdString(qz::NumberToHex(n, width)); }

} // namespace forms
