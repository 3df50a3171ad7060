#pragma once
// The controls a panel reaches on another panel by a fixed name. Each such reference stands
// here once, so that a test can walk them all. The twins stand in the control table of
// registers/FieldOps, and the remote control's controls in its own command table.

#include "forms/Navigator.h"

namespace forms::ref {

inline constexpr ControlRef kConsoleWord{Form::frmMAINQZ7740, "Text1"};
inline constexpr ControlRef kConsoleFinX1{Form::frmMAINQZ7740, "txtFINx1"};
inline constexpr ControlRef kConsoleFinM{Form::frmMAINQZ7740, "txtFINM"};
inline constexpr ControlRef kConsoleFinC{Form::frmMAINQZ7740, "txtFINC"};
inline constexpr ControlRef kConsoleOffset{Form::frmMAINQZ7740, "OFFSETx1", 0};
inline constexpr ControlRef kConsoleTabs{Form::frmMAINQZ7740, "QZ7740"};
inline constexpr ControlRef kCompensationTabs{Form::frmCompensation, "SSTab1"};

// The VREF group, on each panel that shows it: the "Other" box and the three options.
inline constexpr Form kReferencePanels[] = {Form::frmMain, Form::frmMAINQZ7740, Form::frmMeasure};
constexpr ControlRef referenceBox(Form panel) { return {panel, "txtVREF"}; }
constexpr ControlRef referenceOption(Form panel, int index) { return {panel, "optRef", index}; }

inline constexpr ControlRef kFixed[] = {kConsoleWord,  kConsoleFinX1, kConsoleFinM,     kConsoleFinC,
                                        kConsoleOffset, kConsoleTabs, kCompensationTabs};

} // namespace forms::ref
