#pragma once
// The remote control's client and the panels' remote and local state, tied together: a
// client's command puts the panels in remote with its address, its leaving hands them
// back; no line is served while an operator's box or dialog is open, and the kept ones are
// served once the last closes; "Disconnect client" on a panel drops the client.

namespace qz::remote {

class Server;

void attachPanels(Server& server);

} // namespace qz::remote
