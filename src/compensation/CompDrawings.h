#pragma once
// The drawings of the compensation panel, as schematics in black on white.
//
// The compensation network: the gm stage driving the output to the DUT, the
// fixed Cc0 and the switched Cc1..Cc3 on it, and the ladder of CF0..CF5, one switch a row.
// Each switch has two drawings, closed and open, of which one is shown: SWclosed(k) and
// SWopen(k) for row k, cc1ON/Cc1off, cc2on/cc2off and cc3on/cc3off for the Cc switches.

#include <QWidget>

#include <array>

class QAbstractButton;

class CompNetwork : public QWidget {
public:
    explicit CompNetwork(QWidget* parent = nullptr);

    // Every CF switch open, then switch k closed; a k outside 0..5 leaves all open.
    void closeCf(int k);
    // Cc switch i (1..3) closed or open.
    void setCc(int i, bool closed);

    // Puts a control beside its part of the drawing: the option of row k (0..5, 6 for the
    // row of no switch) at the row's end, the check box of Cc i beside its label.
    void placeOption(int row, QAbstractButton* option);
    void placeCheck(int i, QAbstractButton* check);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent*) override;

private:
    struct Switch {
        QWidget* closed;
        QWidget* open;
    };
    static void show(const Switch& s, bool closed);

    std::array<Switch, 6> cf_{};
    std::array<Switch, 3> cc_{};
};

// The load that auto compensation is told about: the DUT's capacitance CR behind its ESR,
// on the chip's output. It shows what the two lists of register 1 describe.
class CompLoad : public QWidget {
public:
    explicit CompLoad(QWidget* parent = nullptr);
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent*) override;
};
