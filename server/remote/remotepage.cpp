// The telephone's side: the page, what it shows, and the presses.
#include "server/api/mediafiles.h"
#include "server/remote/remote.h"
#include "server/remote/remotemarkup.h"
#include "server/web/html.h"

#include <algorithm>
#include <charconv>

namespace velmora::server {

namespace {

constexpr std::chrono::milliseconds pageWait{1000}; // for the first report, or for what a press has changed

bool isFromScript(const http::Request &request)
{
    return request.header("Accept") == "application/json";
}

// Whether a browser says that a page of another origin made it send this. The form's token stands for the rest.
bool isFromElsewhere(const http::Request &request, const std::string &base)
{
    const auto site = request.header("Sec-Fetch-Site");
    if (!site.empty() && site != "same-origin")
        return true;
    const std::string origin(request.header("Origin"));
    if (origin.empty())
        return false;
    const std::string host = origin.substr(std::min(origin.find("://"), origin.size() - 1) + 1);
    return host != "//" + std::string(request.header("Host")) && origin != base;
}

void tell(http::Response &response, int status, const std::string &body)
{
    response.status = status;
    response.setHeader("Cache-Control", "no-store");
    response.setHeader("X-Content-Type-Options", "nosniff");
    response.setContent(body, "application/json; charset=utf-8");
}

std::string problemJson(const char *problem)
{
    return std::string("{\"problem\":\"") + problem + "\"}";
}

} // namespace

std::vector<Remote::Radio> Remote::radiosOf(AccountId account)
{
    std::vector<Radio> radios;
    for (Device &device : m_service.devices.ofAccount(account)) {
        Radio radio;
        for (const std::string &key : m_service.devices.keysOf(account, device.deviceId)) {
            const bool isConnected = m_hub.isConnected(key);
            if (radio.key.empty() || isConnected) {
                radio.key = key;
                radio.isConnected = isConnected;
            }
        }
        radio.device = std::move(device);
        radios.push_back(std::move(radio));
    }
    // A radio that is being set up: it was allowed with the code that it shows.
    for (const auto &[digits, key] : m_service.devices.grantsOf(account))
        radios.push_back({{digits, account, 0, say("New radio")}, key, m_hub.isConnected(key)});
    return radios;
}

// The one that is asked for; without a name the first one that is there.
std::optional<Remote::Radio> Remote::radioOf(const Visitor &visitor)
{
    if (visitor.account == 0)
        return std::nullopt;
    const std::string wanted = visitor.request.parameter("radio");
    const std::vector<Radio> radios = radiosOf(visitor.account);
    auto found = std::find_if(radios.begin(), radios.end(), [&](const Radio &radio) {
        return wanted.empty() ? radio.isConnected : radio.device.deviceId == wanted;
    });
    if (found == radios.end() && wanted.empty())
        found = radios.begin();
    return found == radios.end() ? std::nullopt : std::optional(*found);
}

bool Remote::isAllowed(Visitor &visitor, const std::optional<Radio> &radio)
{
    if (visitor.account != 0 && radio)
        return true;
    const int status = visitor.account == 0 ? 401 : 404;
    if (isFromScript(visitor.request))
        tell(visitor.response, status, problemJson(visitor.account == 0 ? "signed-out" : "no-radio"));
    else if (visitor.account == 0)
        m_pages.put(visitor.response, say("Remote control"),
                    html::heading(say("Remote control")) +
                        html::paragraph(say("Sign in with the account that the radio is linked with.")) +
                        html::nextStep("/account", say("Sign in")),
                    visitor.request.method == "GET" ? 200 : status, &visitor.request);
    else
        m_pages.put(
            visitor.response, say("Remote control"),
            html::heading(say("Remote control")) +
                html::paragraph(say("This account has no such radio. A radio that is new shows a code: enter it, and "
                                    "this telephone is its remote control.")) +
                html::nextStep("/activate", say("Enter the code of a radio")) +
                html::link("/account", say("Your account")),
            visitor.request.parameter("radio").empty() ? 200 : status, &visitor.request);
    return false;
}

void Remote::showPage(Visitor &visitor)
{
    const std::optional<Radio> radio = radioOf(visitor);
    if (!isAllowed(visitor, radio))
        return;
    RemoteHub::View view = m_hub.lookNow(radio->key);
    const std::string after = visitor.request.parameter("after");
    const bool isStale = after.empty() ? view.state.empty() : view.revision == after;
    if (view.isConnected && isStale && !visitor.request.isWaitOver) {
        const auto wait = std::make_shared<http::Wait>();
        if (auto now = m_hub.look(radio->key, visitor.session, view.revision, wait)) {
            view = std::move(*now);
        } else {
            visitor.response = http::Response::answeredAfter(wait, pageWait);
            return;
        }
    }
    remotepage::Content content;
    content.name = radio->name();
    content.deviceId = radio->device.deviceId;
    content.csrf = visitor.csrf;
    content.revision = view.revision;
    content.isConnected = view.isConnected;
    content.state = radioStateOf(view.state).value_or(RadioState());
    content.cover = coverAddress(visitor, content.state.cover);
    if (visitor.request.parameter("problem") == "away")
        content.problem = say("The radio did not get that: it is not connected at the moment.");
    else if (!visitor.request.parameter("problem").empty())
        content.problem = say("The radio did not get that. Please try again.");
    for (const Radio &other : radiosOf(visitor.account))
        content.others.emplace_back(other.device.deviceId, other.name());
    m_pages.put(visitor.response, say("Remote control"), remotepage::body(content), 200, &visitor.request);
    visitor.response.setHeader("Content-Security-Policy",
                               "default-src 'none'; style-src 'self'; img-src 'self'; script-src 'self'; connect-src "
                               "'self'; form-action 'self'; base-uri 'none'; frame-ancestors 'none'");
    visitor.response.setHeader("Referrer-Policy", "same-origin"); // a press says where it comes from
}

void Remote::tellState(Visitor &visitor)
{
    const std::optional<Radio> radio = radioOf(visitor);
    if (visitor.account == 0 || !radio) {
        tell(visitor.response, visitor.account == 0 ? 401 : 404,
             problemJson(visitor.account == 0 ? "signed-out" : "no-radio"));
        return;
    }
    std::optional<RemoteHub::View> view;
    if (visitor.request.isWaitOver) {
        view = m_hub.lookNow(radio->key);
    } else {
        const auto wait = std::make_shared<http::Wait>();
        view = m_hub.look(radio->key, visitor.session, visitor.request.parameter("after"), wait);
        if (!view) {
            visitor.response = http::Response::answeredAfter(wait, m_hub.lookWait());
            return;
        }
    }
    const auto state = radioStateOf(view->state);
    tell(visitor.response, 200,
         "{\"revision\":\"" + view->revision + "\",\"connected\":" + (view->isConnected ? "true" : "false") +
             ",\"age\":" + std::to_string(view->age.count()) +
             ",\"state\":" + (state ? jsonOf(*state, coverAddress(visitor, state->cover)) : "null") + "}");
}

void Remote::press(Visitor &visitor)
{
    const std::optional<Radio> radio = radioOf(visitor);
    if (!isAllowed(visitor, radio))
        return;
    const bool isScript = isFromScript(visitor.request);
    const auto problem = [&](int status, const char *word) {
        if (isScript)
            tell(visitor.response, status, problemJson(word));
        else
            visitor.response = http::Response::redirect("/remote?radio=" + radio->device.deviceId + "&problem=" + word);
    };
    if (isFromElsewhere(visitor.request, m_service.addresses.base())) {
        tell(visitor.response, 403, problemJson("elsewhere"));
        return;
    }
    const auto order = orderOf([&](const char *name) { return visitor.request.parameter(name); });
    if (!order) {
        problem(422, "unknown");
        return;
    }
    if (const auto seconds = m_presses.refuse(std::to_string(visitor.account), m_service.clock())) {
        visitor.response.setHeader("Retry-After", std::to_string(*seconds));
        problem(429, "many");
        return;
    }
    uint64_t count = 0;
    const std::string number = visitor.request.parameter("count");
    std::from_chars(number.data(), number.data() + number.size(), count);
    std::string page = visitor.request.parameter("page");
    if (!page.empty())
        page = tokenHash(visitor.session + page);
    const std::string revision = m_hub.lookNow(radio->key).revision;
    switch (m_hub.give(radio->key, *order, page, count)) {
    case RemoteHub::Given::Away:
        problem(409, "away");
        return;
    case RemoteHub::Given::TooMany:
        problem(429, "many");
        return;
    case RemoteHub::Given::Repeated: // its first arrival has acted
    case RemoteHub::Given::Done:
        break;
    }
    if (isScript)
        tell(visitor.response, 200, "{}");
    else
        visitor.response = http::Response::redirect("/remote?radio=" + radio->device.deviceId + "&after=" + revision);
}

// Of a picture of this service, for this account; relative, because the browser may know the service by another name.
std::string Remote::coverAddress(const Visitor &visitor, const std::string &file) const
{
    if (file.empty() || !publicIdOf(file))
        return {};
    return m_service.addresses.path(MediaKind::Picture, file, visitor.account);
}

} // namespace velmora::server
