#pragma once
// Which panels the program has, and how each is made and loaded.

#include "forms/Navigator.h"
#include "registers/Session.h"

namespace qz {

void registerPanels(forms::Navigator& nav, Session& session);

} // namespace qz
