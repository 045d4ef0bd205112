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
    std::vector<html::Option> links = {{"/activate", "Activate a radio"}, {"/account", "Your account"}};
    if (!account && maySignUp(visit))
        links.push_back({"/sign-up", "Make an account"});
    if (isOwner(visit))
        links.push_back({"/house", "This service"});
    links.push_back({"/help", "Help"});
    show(visit, "Your radio",
         html::heading("The radio for your television") +
             html::paragraph("Your stations play music that learns from your thumbs. Does your television show a code? "
                             "Then activate it here.") +
             html::menu("Where to go", links) +
             (account ? html::paragraph("You are signed in as " + account->userName + ".") : std::string()));
}

void WebPages::showHelp(Visit &visit)
{
    show(visit, "Help",
         html::heading("Help") + html::subheading("A new radio") +
             html::list({"Choose \"Activate Velmora\" on the television, and go on until it shows a code.",
                         "Open the page \"Activate a radio\" on your telephone and type the code.",
                         "Sign in or make an account, and allow the radio.",
                         "Choose \"Continue\" on the television: the music begins."}) +
             html::link("/activate", "Activate a radio") +
             html::paragraph("Does the telephone not find the page? It must be in the same network as the radio, for "
                             "example in the same Wi-Fi.") +
             html::subheading("The keys of the remote control") +
             html::fact("Arrows", "move from one thing to the next") +
             html::fact("Select", "chooses, plays or pauses") + html::fact("Back", "leaves a list, a menu or a page") +
             html::fact("Green", "thumbs up: more like this") + html::fact("Red", "thumbs down: never again here") +
             html::fact("House", "volume, sleep timer, network and other settings") +
             html::fact("Page keys", "move by a page in a list") +
             html::paragraph("While you type, red shows symbols and digits, and green capital letters.") +
             html::subheading("A forgotten password") + html::paragraph("A mail brings a link that sets a new one.") +
             html::link("/forgot", "Forgotten your password?") + html::subheading("A radio that is gone") +
             html::paragraph("Remove it on the page of your account. It stops at once.") +
             html::link("/account", "Your account") + html::subheading("Your own music") +
             html::paragraph("The owner of this service names the folders in its configuration file, under [library]: "
                             "music = /path/to/music. New files play by themselves after a few minutes. The page \"The "
                             "music\" shows its owner what does not play, and why."));
}

} // namespace velmora::server
