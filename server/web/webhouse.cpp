// The owner's page: who may sign up, invitations, advertisements, storage, backups, the log.
#include "server/library/libraryconfig.h"
#include "server/store/datafolder.h"
#include "server/web/html.h"
#include "server/web/webpages.h"

#include <charconv>

namespace velmora::server {

namespace {

constexpr int mostCountedFiles = 200'000; // of one folder: the page must not take for ever

std::string sizeText(uintmax_t bytes)
{
    constexpr uintmax_t megabyte = 1'000'000;
    if (bytes < megabyte)
        return say("less than 1 MB");
    return say("{1} MB", sayNumber(static_cast<int64_t>(bytes / megabyte)));
}

uintmax_t sizeOf(const std::filesystem::path &path)
{
    std::error_code error;
    if (std::filesystem::is_regular_file(path, error))
        return std::filesystem::file_size(path, error);
    uintmax_t bytes = 0;
    int files = 0;
    for (std::filesystem::recursive_directory_iterator entry(path, error), end;
         !error && entry != end && files < mostCountedFiles; entry.increment(error), ++files) {
        std::error_code gone;
        if (entry->is_regular_file(gone) && !entry->is_symlink(gone))
            bytes += entry->file_size(gone);
    }
    return bytes;
}

constexpr const char *ruleNames[] = {"house", "invited", "nobody"}; // by SignUpRule

} // namespace

void WebPages::addHouse(http::Router &router)
{
    const auto page = [this](Handler handler) {
        return [this, handler](const http::Request &request) { return visit(request, handler); };
    };
    // It counts files, which may take a while.
    router.get("/house", page(&WebPages::showHouse), http::Lane::Files);
    router.post("/house/sign-ups", mostFormBytes, page(&WebPages::takeSignUpRule), http::Lane::Files);
    router.post("/house/invite", mostFormBytes, page(&WebPages::takeInvite), http::Lane::Files);
    router.post("/house/invitation", mostFormBytes, page(&WebPages::takeInvitation), http::Lane::Files);
    router.post("/house/ads", mostFormBytes, page(&WebPages::takeAds), http::Lane::Files);
}

std::string WebPages::storageText()
{
    const std::filesystem::path &folder = m_service.dataDirectory();
    std::string text = html::fact(say("Folder"), printable(folder.native()));
    struct Part {
        const char *name;
        std::string label;
    };
    for (const Part &part :
         {Part{DataFolder::databaseName, say("Accounts")}, Part{"covers", say("Covers")},
          Part{"transcodes", say("Transcodes")}, Part{"demo", say("Demo")}, Part{"outbox", say("Mails")}}) {
        std::error_code error;
        if (std::filesystem::exists(folder / part.name, error))
            text += html::fact(part.label, sizeText(sizeOf(folder / part.name)));
    }
    std::error_code error;
    const std::filesystem::space_info space = std::filesystem::space(folder, error);
    if (!error)
        text += html::fact(say("Free"), sizeText(space.available));
    return text;
}

void WebPages::housePage(Visit &visit, const HouseForms &forms, int status)
{
    if (refuseOthers(visit, false))
        return;
    HouseRules &house = m_service.house;
    const std::string rule = ruleNames[static_cast<size_t>(house.signUpRule())];
    std::string body = html::heading(say("This service")) + html::done(forms.said);
    if (!forms.link.empty())
        body +=
            html::paragraph(say("Send this link to your guest, and to nobody else. It is shown only now, and makes one "
                                "account within seven days.")) +
            html::link(forms.link, forms.link);
    body +=
        html::menu(say("This service"), {{"/library", say("The music")}, {"/library/mails", say("Waiting mails")}}) +
        html::subheading(say("New accounts")) +
        html::form("/house/sign-ups", visit.csrf,
                   html::choice("rule", say("Who may make an account?"),
                                {{"house", say("Anyone in the house, and who has an invitation")},
                                 {"invited", say("Only who has an invitation")},
                                 {"nobody", say("Nobody")}},
                                rule) +
                       html::button(say("Save"))) +
        html::subheading(say("Invitations"));
    for (const Invitation &invitation : house.invitations())
        body += html::form(
            "/house/invitation", visit.csrf,
            html::fact(say("For"), invitation.guest.empty() ? say("a guest without a name") : invitation.guest) +
                html::fact(say("Until"), sayTime(invitation.expiresAt)) + html::hidden("invitation", invitation.id) +
                html::plainButton(say("End the invitation"), {}, {}));
    if (house.signUpRule() == SignUpRule::Nobody)
        body += html::paragraph(say("Invitations open nothing while nobody may make an account."));
    body += html::form("/house/invite", visit.csrf,
                       html::field({.name = "guest",
                                    .label = say("Who is invited"),
                                    .type = "text",
                                    .value = forms.guest,
                                    .autocomplete = "off",
                                    .hint = say("A name, so that you know the link again. It may be empty."),
                                    .isOptional = true,
                                    .inputMode = {},
                                    .problem = forms.guestWrong,
                                    .form = "invite"}) +
                           html::button(say("Make a link"))) +
            html::subheading(say("Advertisements")) +
            html::form("/house/ads", visit.csrf,
                       html::choice("lists", say("How many follow your own music?"),
                                    {{"0", say("None")},
                                     {"4", say("One in 16 pieces")},
                                     {"3", say("One in 12 pieces")},
                                     {"2", say("One in 8 pieces")},
                                     {"1", say("One in 4 pieces")}},
                                    std::to_string(house.listsPerAd())) +
                           html::button(say("Save"))) +
            html::paragraph(say("Advertisements come with the demo catalogue, which keeps its own.")) +
            html::subheading(say("Storage")) + storageText() + html::subheading(say("Backups")) +
            html::paragraph(
                say("This command copies everything but the music into one file, also while the service runs:")) +
            html::code("velmora-server backup FILE --data " + printable(m_service.dataDirectory().native())) +
            html::paragraph(
                say("The same with restore in place of backup goes back to it; stop the service before that.")) +
            html::subheading(say("The latest of the log"));
    const std::vector<std::string> log = m_about.log ? m_about.log() : std::vector<std::string>();
    body += log.empty() ? html::paragraph(say("Nothing yet.")) : html::list(log);
    body += html::subheading(say("About")) + html::fact(say("Version"), m_about.version) +
            html::fact(say("Address"), m_service.addresses.base());
    if (!m_about.fingerprint.empty())
        body += html::fact(say("Certificate"), m_about.fingerprint);
    show(visit, say("This service"), body + html::link("/account", say("Your account")), status);
}

void WebPages::showHouse(Visit &visit)
{
    housePage(visit, {});
}

void WebPages::takeSignUpRule(Visit &visit)
{
    if (refuseOthers(visit, false))
        return;
    const std::string rule = visit.value("rule");
    for (const SignUpRule known : {SignUpRule::House, SignUpRule::Invited, SignUpRule::Nobody}) {
        if (rule == ruleNames[static_cast<size_t>(known)]) {
            m_service.house.setSignUpRule(known);
            housePage(visit, {.said = say("It was saved.")});
            return;
        }
    }
    housePage(visit, {}, 422);
}

void WebPages::takeInvite(Visit &visit)
{
    if (refuseOthers(visit, false))
        return;
    const std::string guest = visit.value("guest");
    const std::optional<std::string> token = m_service.house.invite(guest);
    if (!token) {
        housePage(
            visit,
            {.guestWrong = say("A name has 40 letters at most, and there are 50 invitations at most."), .guest = guest},
            422);
        return;
    }
    housePage(visit, {.said = say("The invitation was made."),
                      .link = m_service.addresses.base() + "/sign-up?invitation=" + *token});
}

void WebPages::takeInvitation(Visit &visit)
{
    if (refuseOthers(visit, false))
        return;
    m_service.house.endInvitation(visit.value("invitation"));
    housePage(visit, {.said = say("The invitation was ended.")});
}

void WebPages::takeAds(Visit &visit)
{
    if (refuseOthers(visit, false))
        return;
    const std::string typed = visit.value("lists");
    int lists = -1;
    std::from_chars(typed.data(), typed.data() + typed.size(), lists);
    if (lists < 0 || lists > HouseRules::mostListsPerAd) {
        housePage(visit, {}, 422);
        return;
    }
    m_service.house.setListsPerAd(lists);
    housePage(visit, {.said = say("It was saved.")});
}

} // namespace velmora::server
