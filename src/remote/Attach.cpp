#include "remote/Attach.h"

#include "forms/RemoteLocal.h"
#include "remote/Server.h"

namespace qz::remote {

void attachPanels(Server& server) {
    forms::RemoteLocal& state = forms::remoteLocal();
    server.onCommand = [&state](const QString& peer) { state.clientCommand(peer); };
    server.onClientGone = [&state] { state.clientGone(); };
    server.hold = [&state] { return state.operatorBusy(); };
    state.onOperatorFree = [&server] { server.resume(); };
    state.onDisconnectAsked = [&server] { server.disconnectClient(); };
    QObject::connect(&server, &QObject::destroyed, [&state] {
        state.onOperatorFree = nullptr;
        state.onDisconnectAsked = nullptr;
        state.clientGone();
    });
}

} // namespace qz::remote
