#pragma once
// Small builders for named controls: every control carries its name as its objectName.

#include <QString>

#include <initializer_list>

class QCheckBox;
class QComboBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;
class QWidget;

namespace forms {

QPushButton* makeButton(const QString& name, const QString& caption, QWidget* parent);
QCheckBox* makeCheck(const QString& name, const QString& caption, bool checked, QWidget* parent);
QRadioButton* makeOption(const QString& name, const QString& caption, QWidget* parent);
// A list with its items; startText shows while no item is chosen.
QComboBox* makeList(const QString& name, std::initializer_list<const char*> items,
                    const QString& startText, QWidget* parent);
QLabel* makeLabel(const QString& name, const QString& caption, QWidget* parent);
// A label drawn as a sunken box, for status texts.
QLabel* makeStatus(const QString& name, const QString& caption, QWidget* parent);
// An entry box for hexadecimal codes: fixed-width font, wide enough for chars digits.
QLineEdit* makeHexBox(const QString& name, const QString& text, int chars, QWidget* parent);
QGroupBox* makeFrame(const QString& title, QWidget* parent);

// "name(k)", the name of a member of a control array.
inline QString member(const char* name, int k) {
    return QStringLiteral("%1(%2)").arg(QString::fromLatin1(name)).arg(k);
}

} // namespace forms
