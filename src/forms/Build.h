#pragma once
// Small builders for named controls: every control carries its name as its objectName.

#include "forms/Forms.h"
#include "levels/FieldTable.h"

#include <QString>
#include <QStringList>

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <span>
#include <string>

class QCheckBox;
class QComboBox;
class QGridLayout;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;
class QVBoxLayout;
class QWidget;

namespace forms {

QPushButton* makeButton(const QString& name, const QString& caption, QWidget* parent);
// A caption that acts when clicked, drawn as a link (the help frames' "?" and "Close X").
QPushButton* makeLink(const QString& name, const QString& caption, QWidget* parent);
QCheckBox* makeCheck(const QString& name, const QString& caption, bool checked, QWidget* parent);
QRadioButton* makeOption(const QString& name, const QString& caption, QWidget* parent);
// An option array whose members stand in several frames but choose one field of one word:
// choosing any member clears all the others, whichever frame they stand in.
void groupOptions(QWidget* owner, std::span<QRadioButton* const> options);
// A list with its items; startText shows while no item is chosen.
QComboBox* makeList(const QString& name, const QStringList& items, const QString& startText,
                    QWidget* parent);
QComboBox* makeList(const QString& name, std::initializer_list<const char*> items,
                    const QString& startText, QWidget* parent);
// A list of the control table whose items both panels show alike, swallowing keys where
// the operator may only choose with the mouse.
QComboBox* makeFieldList(const char* name, const QString& startText, QWidget* parent);
// The items of a list from a table of the program: each entry, or what proj makes of it.
template <typename Table, typename Proj = std::identity>
QStringList itemsOf(const Table& table, Proj proj = {}) {
    QStringList items;
    for (const auto& entry : table) items << QString::fromUtf8(std::invoke(proj, entry));
    return items;
}
QLabel* makeLabel(const QString& name, const QString& caption, QWidget* parent);
// A label drawn as a sunken box, for status texts.
QLabel* makeStatus(const QString& name, const QString& caption, QWidget* parent);
// An entry box for hexadecimal codes: fixed-width font, wide enough for chars digits.
QLineEdit* makeHexBox(const QString& name, const QString& text, int chars, QWidget* parent);
// The box of an entry field of the table, with its start text; a member of a control
// array when member is 0 or more.
QLineEdit* makeEntryBox(const qz::HexField& field, QWidget* parent, int member = -1);
// An entry box's look with no typing: it shows a code.
QLineEdit* makeOutBox(const QString& name, QWidget* parent, int chars = 8);
// A decimal entry box, right-aligned, of a fixed width in pixels.
QLineEdit* makeNumberBox(const char* name, const char* text, QWidget* parent, int width = 90);
// A box of a reading or result, right-aligned like the number boxes beside it.
QLineEdit* makeReadingBox(const char* name, QWidget* parent, int width = 90);
// One row of a grid: its caption, the widgets in the next columns, then the unit's
// caption where one is given.
void addRow(QGridLayout* grid, int row, const char* caption, std::initializer_list<QWidget*> widgets,
            const char* unit = nullptr);
QGroupBox* makeFrame(const QString& title, QWidget* parent);
// An output box under its caption, in one column of a grid (the WRITE and READ words).
QLineEdit* addCaptionedBox(QGridLayout* grid, int row, int column, const char* caption,
                           const QString& name, int chars = 8);

// Fixed texts of a panel: a caption, a bold heading, a note that wraps.
QLabel* makeCaption(const char* text, QWidget* parent);
QLabel* makeHead(const char* text, QWidget* parent);
QLabel* makeNote(const char* text, QWidget* parent);
// A page of a tab control, its controls in a column.
QWidget* makePage(QWidget* parent, QVBoxLayout*& column);

// Texts of the plain code as the panels show them.
inline QString qtext(const std::string& s) { return QString::fromStdString(s); }
// NumberToHex of n, width digits at the least.
QString hexText(int32_t n, int width);

} // namespace forms
