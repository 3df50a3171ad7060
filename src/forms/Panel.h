#pragma once
// A panel of the program: a window with a menu bar and a status bar that shows the link
// to the board and, while a client has the program, "REMOTE" with its address and the
// Local key. Its title says when the board is the virtual one.

#include "forms/Navigator.h"
#include "registers/Session.h"

#include <QMainWindow>

// The widgets the panels hold, declared once for their headers.
class QCheckBox;
class QComboBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;

namespace forms {

class BitRow;
class Lamp;
class ResultList;
class RunPass;
class StripChart;
class TabControl;

class Panel : public QMainWindow {
public:
    Panel(qz::Session& session, Navigator& navigator, Form form, const QString& title,
          QWidget* parent = nullptr);

    qz::Session& session;
    Navigator& nav;
    const Form form;

private:
    void showRemote();

    QLabel* remote_;
    QPushButton* local_;
    QPushButton* recording_;
    QLabel* link_;
    QPushButton* reconnect_;
};

} // namespace forms
