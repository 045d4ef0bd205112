#include "service/tokenrenewal.h"

#include "service/wscommands.h"
#include "velmora_ws.h"

namespace tokenrenewal {

Action decide(const Situation &situation)
{
    const bool isPending = situation.pendingCmd >= 0;
    if (situation.code == VLM_WS_ERR_ACCOUNT_INACTIVE && isPending)
        return Action::ReportInactive;
    if (situation.code == VLM_WS_ERR_INVALID_AUTH_TOKEN)
        return Action::StartPartnerLogin;
    const bool isPartnerLogin = situation.cmd == VLM_WS_MSGID_PARTNER_LOGIN;
    if (!isPending || (!isPartnerLogin && situation.cmd != VLM_WS_MSGID_USER_LOGIN))
        return Action::Emit;
    // The results of the logins are not examined (deliberate): a failure shows in the request that is sent again.
    if (isPartnerLogin && !situation.isPartnerTokenOnly)
        return Action::StartDeviceLogin;
    return wscommands::isSentAgain(situation.pendingCmd) ? Action::Resend : Action::Drop;
}

} // namespace tokenrenewal
