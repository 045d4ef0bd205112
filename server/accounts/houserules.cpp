#include "server/accounts/houserules.h"

#include "server/catalogue/textfolding.h"
#include "server/store/store.h"

#include <algorithm>
#include <charconv>

namespace velmora::server {

namespace {

constexpr const char *ownerSetting = "owner";
constexpr const char *ruleSetting = "sign-ups";
constexpr const char *adsSetting = "lists per ad";

int64_t numberIn(const std::string &text)
{
    int64_t number = 0;
    std::from_chars(text.data(), text.data() + text.size(), number);
    return number;
}

} // namespace

HouseRules::HouseRules(Store &store, Clock clock)
    : m_store(store)
    , m_clock(std::move(clock))
{
}

AccountId HouseRules::owner()
{
    const Store::Lock db = m_store.lock();
    Statement row = db->prepare("SELECT COALESCE((SELECT id FROM accounts WHERE id = ?1 AND is_active = 1), "
                                "(SELECT MIN(id) FROM accounts WHERE is_active = 1), 0)");
    row.with(numberIn(m_store.setting(ownerSetting)));
    return row.step() ? row.integer(0) : 0;
}

void HouseRules::setOwner(AccountId account)
{
    m_store.setSetting(ownerSetting, std::to_string(account));
}

SignUpRule HouseRules::signUpRule()
{
    const std::string rule = m_store.setting(ruleSetting);
    return rule == "nobody" ? SignUpRule::Nobody : rule == "invited" ? SignUpRule::Invited : SignUpRule::House;
}

void HouseRules::setSignUpRule(SignUpRule rule)
{
    m_store.setSetting(ruleSetting, rule == SignUpRule::Nobody    ? "nobody"
                                    : rule == SignUpRule::Invited ? "invited"
                                                                  : "house");
}

bool HouseRules::isOpen()
{
    return signUpRule() == SignUpRule::House || owner() == 0;
}

bool HouseRules::maySignUp(bool isInHouse)
{
    return owner() == 0 || (isInHouse && signUpRule() == SignUpRule::House);
}

std::optional<std::string> HouseRules::invite(const std::string &guest)
{
    const bool hasControls =
        std::any_of(guest.begin(), guest.end(), [](unsigned char c) { return c < ' ' || c == 0x7f; });
    if (!isUtf8(guest) || characterCount(guest) > longestGuest || hasControls)
        return std::nullopt;
    std::string token = randomToken();
    const Store::Lock db = m_store.lock();
    Transaction change(*db, NameLock{"invitations"});
    db->run("DELETE FROM invitations WHERE expires_at <= ?1", m_clock());
    db->run("INSERT INTO invitations (token_hash, guest, expires_at) SELECT ?1, ?2, ?3 WHERE (SELECT COUNT(*) FROM "
            "invitations) < ?4",
            tokenHash(token), guest, m_clock() + invitationSeconds, mostInvitations);
    if (db->changes() == 0)
        return std::nullopt;
    change.commit();
    return token;
}

std::vector<Invitation> HouseRules::invitations()
{
    std::vector<Invitation> found;
    const Store::Lock db = m_store.lock();
    Statement row = db->prepare(
        "SELECT token_hash, guest, expires_at FROM invitations WHERE expires_at > ?1 ORDER BY expires_at DESC");
    row.with(m_clock());
    while (row.step())
        found.push_back({row.text(0), row.text(1), row.integer(2)});
    return found;
}

bool HouseRules::isInvited(const std::string &tokenHash)
{
    const Store::Lock db = m_store.lock();
    Statement row = db->prepare("SELECT 1 FROM invitations WHERE token_hash = ?1 AND expires_at > ?2");
    row.with(tokenHash, m_clock());
    return signUpRule() != SignUpRule::Nobody && row.step();
}

bool HouseRules::takeInvitation(const std::string &tokenHash)
{
    if (signUpRule() == SignUpRule::Nobody)
        return false;
    const Store::Lock db = m_store.lock();
    db->run("DELETE FROM invitations WHERE token_hash = ?1 AND expires_at > ?2", tokenHash, m_clock());
    return db->changes() > 0;
}

void HouseRules::endInvitation(const std::string &id)
{
    m_store.lock()->run("DELETE FROM invitations WHERE token_hash = ?1", id);
}

int HouseRules::listsPerAd()
{
    return static_cast<int>(std::clamp<int64_t>(numberIn(m_store.setting(adsSetting)), 0, mostListsPerAd));
}

void HouseRules::setListsPerAd(int lists)
{
    m_store.setSetting(adsSetting, std::to_string(std::clamp(lists, 0, mostListsPerAd)));
}

} // namespace velmora::server
