#include "callerlimits.h"

namespace velmora::ws {

using namespace std::chrono_literals;

VLM_WS_EXT_ERRCODE_T RenewalLimit::refused(const Command &command, Token token)
{
    // The caller would drop these requests after its logins, unanswered.
    if (!VLM_WS_IS_SENT_AGAIN(command.id))
        return command.id == VLM_WS_MSGID_PARTNER_LOGIN ? VLM_WS_ERR_INVALID_AUTH_TOKEN_2 : loginCode();
    // The user login of a renewal: it must not take the place of the request that waits for it.
    if (command.id == VLM_WS_MSGID_USER_LOGIN && isRenewing() && m_isPartnerDone)
        return loginCode();
    int &renewals = token == Token::User ? m_userRenewals : m_partnerRenewals;
    if (renewals == maxRenewals) {
        renewals = 0;
        return loginCode();
    }
    ++renewals;
    m_waiting = token;
    m_isPartnerDone = false;
    return VLM_WS_ERR_INVALID_AUTH_TOKEN;
}

void RenewalLimit::accepted(Token token)
{
    if (token == Token::Partner)
        m_partnerRenewals = 0;
    if (token == Token::User)
        m_userRenewals = 0;
    if (token == m_waiting)
        m_waiting = Token::None;
}

void RenewalLimit::completed(const Command &command, VLM_WS_EXT_ERRCODE_T code)
{
    if (command.id == VLM_WS_MSGID_PARTNER_LOGIN) {
        m_lastLogin = code;
        m_isPartnerDone = true;
    }
    if (command.id == VLM_WS_MSGID_USER_LOGIN && code != VLM_WS_ERR_INVALID_AUTH_TOKEN) {
        m_lastLogin = code;
        m_waiting = Token::None;
    }
}

VLM_WS_EXT_ERRCODE_T RenewalLimit::loginCode() const
{
    return m_lastLogin == VLM_WS_ERR_OK ? VLM_WS_ERR_INVALID_AUTH_TOKEN_2 : m_lastLogin;
}

bool PlaylistLimit::allows(const std::string &station, Clock::time_point now)
{
    const auto played = m_playable > 0 ? m_playable * 3s : 10s;
    if (station != m_station || now - m_replied >= played)
        m_unplayed = 0;
    m_station = station;
    if (m_unplayed < maxPlaylists)
        return true;
    m_unplayed = 0;
    return false;
}

void PlaylistLimit::replied(const std::string &station, int playable, Clock::time_point now)
{
    if (station != m_station)
        return;
    ++m_unplayed;
    m_playable = playable;
    m_replied = now;
}

} // namespace velmora::ws
