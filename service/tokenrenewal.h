#pragma once

// The token renewal: what follows from a completion, given the request that waits for a new token.
namespace tokenrenewal {

enum class Action {
    Emit,              // the completion goes to the screens
    StartPartnerLogin, // the token has expired: the request waits, log in again
    StartDeviceLogin,  // the partner login is through, the user login is missing
    Resend,            // the login is through: send the waiting request again
    Drop,              // the login is through, but the waiting request is not one that is sent again
    ReportInactive     // the account is no longer active: the waiting request ends with that
};

struct Situation {
    int cmd = -1;                    // of the completion
    int code = 0;                    // its result
    int pendingCmd = -1;             // of the request that waits, -1 when none does
    bool isPartnerTokenOnly = false; // that request needs no user login
};

Action decide(const Situation &situation);

} // namespace tokenrenewal
