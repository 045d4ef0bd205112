// The first page and the help.
#include "server/web/html.h"
#include "server/web/webpages.h"

namespace velmora::server {

void WebPages::addFront(http::Router &router)
{
    const auto page = [this](Handler handler) {
        return [this, handler](const http::Request &request) { return visit(request, handler); };
    };
    router.get("/", page(&WebPages::showFront));
    router.get("/help", page(&WebPages::showHelp));
}

void WebPages::showFront(Visit &visit)
{
    const auto account = visit.session.account != 0 ? m_service.accounts.find(visit.session.account) : std::nullopt;
    std::vector<html::Option> links;
    if (account)
        links.push_back({"/remote", say("Remote control")});
    links.push_back({"/account", say("Your account")});
    if (!account && maySignUp(visit))
        links.push_back({"/sign-up", say("Make an account")});
    if (isOwner(visit))
        links.push_back({"/house", say("This service")});
    links.push_back({"/help", say("Help")});
    show(visit, say("Your radio"),
         html::heading(say("The radio for your television")) +
             html::paragraph(
                 say("Your stations play music that learns from your thumbs. Does your television show a code? "
                     "Then activate it here.")) +
             html::nextStep("/activate", say("Activate a radio")) + html::menu(say("Where to go"), links) +
             (account ? html::paragraph(say("You are signed in as {1}.", account->userName)) : std::string()));
}

void WebPages::showHelp(Visit &visit)
{
    show(visit, say("Help"),
         html::heading(say("Help")) + html::subheading(say("A new radio")) +
             html::list({say("Choose \"Activate Velmora\" on the television, and go on until it shows a code."),
                         say("Open the page \"Activate a radio\" on your telephone and type the code."),
                         say("Sign in or make an account, and allow the radio."),
                         say("Choose \"Continue\" on the television: the music begins.")}) +
             html::link("/activate", say("Activate a radio")) +
             html::paragraph(
                 say("Does the telephone not find the page? It must be in the same network as the radio, for "
                     "example in the same Wi-Fi.")) +
             html::subheading(say("The keys of the remote control")) +
             html::fact(say("Arrows"), say("move from one thing to the next")) +
             html::fact(say("Select"), say("chooses, plays or pauses")) +
             html::fact(say("Back"), say("leaves a list, a menu or a page")) +
             html::fact(say("Green"), say("thumbs up: more like this")) +
             html::fact(say("Red"), say("thumbs down: never again here")) +
             html::fact(say("House"), say("volume, sleep timer, network and other settings")) +
             html::fact(say("Page keys"), say("move by a page in a list")) +
             html::paragraph(say("While you type, red shows symbols and digits, and green capital letters.")) +
             html::subheading(say("A forgotten password")) +
             html::paragraph(say("A mail brings a link that sets a new one.")) +
             html::link("/forgot", say("Forgotten your password?")) + html::subheading(say("A radio that is gone")) +
             html::paragraph(say("Remove it on the page of your account. It stops at once.")) +
             html::link("/account", say("Your account")) + html::subheading(say("Your own music")) +
             html::paragraph(
                 say("The owner of this service names the folders in its configuration file, under [library]: "
                     "music = /path/to/music. New files play by themselves after a few minutes. The page \"The "
                     "music\" shows its owner what does not play, and why.")));
}

} // namespace velmora::server
