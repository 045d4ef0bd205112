// The library page, for the owner alone: folders, how far it is, what was left out and why.
#include "server/library/library.h"
#include "server/web/html.h"
#include "server/web/webpages.h"

#include <array>
#include <charconv>

namespace velmora::server {

namespace {

// For a sentence. The marks keep a path in one piece where the sentence is written from right to left.
std::string pathText(const std::string &path)
{
    return InLanguage::current().isRightToLeft ? "\u2068" + printable(path) + "\u2069" : printable(path);
}

constexpr int filesOnPage = 50;
constexpr size_t changesOnPage = 30;

struct ReasonWords {
    const char *reason;
    const char *title;
    const char *explanation;
};

// The heaviest first: what cannot be read before what was left out on purpose.
constexpr std::array reasonWords = {
    ReasonWords{leftout::crash, mark("Broke the reader"),
                mark("The program that reads files broke down over them, twice. They are most likely damaged.")},
    ReasonWords{leftout::slow, mark("Took too long to read"), mark("They are damaged, or their disk is very slow.")},
    ReasonWords{leftout::damaged, mark("Cannot be read"),
                mark("No sound of a known kind was found, or the service may not open them.")},
    ReasonWords{leftout::empty, mark("Empty"), mark("Files of no bytes.")},
    ReasonWords{
        leftout::kind, mark("Of a kind that radios do not play"),
        mark("MP3, FLAC, Ogg Vorbis, Opus and WAV are played. Others need the program velmora-media-formats beside "
             "the service.")},
    ReasonWords{leftout::speech, mark("Audio books and podcasts"),
                mark("By their style, their folder or their sound; radios play music.")},
    ReasonWords{leftout::longPiece, mark("Longer than 15 minutes"), mark("Classical pieces may last 30.")},
    ReasonWords{leftout::shortPiece, mark("Shorter than 20 seconds"), mark("Jingles, gaps and sound effects.")},
    ReasonWords{leftout::duplicate, mark("Another file of the same recording plays"),
                mark("The better one: lossless, or with the higher bit rate.")},
};

const ReasonWords *wordsFor(const std::string &reason)
{
    for (const ReasonWords &words : reasonWords) {
        if (reason == words.reason)
            return &words;
    }
    return nullptr;
}

std::string files(int64_t count)
{
    return sayMany("{1} file", "{1} files", count);
}

// Rounded up, so that it is done when it was said to be.
std::string durationText(double seconds)
{
    const auto minutes = static_cast<int64_t>(seconds / 60) + 1;
    if (minutes < 90)
        return sayMany("{1} minute", "{1} minutes", minutes);
    const int64_t hours = minutes / 60 + 1;
    return hours < 48 ? sayMany("{1} hour", "{1} hours", hours) : sayMany("{1} day", "{1} days", hours / 24 + 1);
}

std::string progress(const LibraryStatus &status)
{
    std::string text =
        html::paragraph(say("{1}, of {2}.", sayMany("{1} track plays", "{1} tracks play", status.counts.playing),
                            files(status.counts.files)));
    if (!status.problem.empty())
        text += html::error(say("Nothing goes on at present: {1}", status.problem));
    if (!status.configProblem.empty())
        text += html::error(say("The configuration was not taken: {1}", status.configProblem));
    if (status.isPaused)
        text += html::paragraph(say("Paused."));
    else if (!status.scanning.empty())
        text += html::paragraph(say("Looking through {1}: {2} so far, {3} of them read.",
                                    pathText(status.scanning.native()), files(status.scannedFiles),
                                    sayNumber(status.changed)));
    if (!status.isAnalysed)
        text += html::paragraph(say("Listening to tracks is switched off: stations go by tags alone."));
    else if (status.counts.toAnalyse == 0)
        text += html::paragraph(say("Every track was listened to."));
    else
        text += html::paragraph(say("Still to be listened to: {1}, {2}. Stations play meanwhile and become better.",
                                    sayMany("{1} track", "{1} tracks", status.counts.toAnalyse),
                                    status.secondsLeft ? say("about {1}", durationText(*status.secondsLeft))
                                                       : say("how long is not known yet")));
    return text;
}

std::string changes(const std::vector<LibraryChange> &recent)
{
    if (recent.empty())
        return {};
    std::string text = html::subheading(say("What changed lately"));
    for (size_t i = 0; i < std::min<size_t>(recent.size(), changesOnPage); ++i) {
        const LibraryChange &change = recent[i];
        const char *what = change.kind == LibraryChange::Kind::New       ? mark("{1}, new: {2}")
                           : change.kind == LibraryChange::Kind::Changed ? mark("{1}, changed: {2}")
                           : change.kind == LibraryChange::Kind::Back    ? mark("{1}, back: {2}")
                                                                         : mark("{1}, gone: {2}");
        text += html::paragraph(say(what, sayTime(change.at), pathText(change.file.native())));
    }
    return text;
}

std::string folders(const LibraryStatus &status)
{
    std::string text = html::subheading(say("Folders"));
    if (status.roots.empty())
        text +=
            html::paragraph(say("None. Name one in the configuration file, under [library]: music = /path/to/music"));
    for (const Root &root : status.roots) {
        const std::string name = pathText(root.path.native());
        if (root.isPresent)
            text +=
                html::paragraph(root.scannedAt == 0 ? say("{1}: not looked through yet", name)
                                                    : say("{1}: looked through {2}", name, sayTime(root.scannedAt)));
        else
            text += html::error(
                root.awaySince == 0
                    ? say("{1} is away: {2}. Nothing of it is lost; it plays again when it is back.", name,
                          root.problem)
                    : say("{1} is away since {2}: {3}. Nothing of it is lost; it plays again when it is back.", name,
                          sayTime(root.awaySince), root.problem));
    }
    return text;
}

} // namespace

void WebPages::addLibrary(http::Router &router)
{
    const auto page = [this](Handler handler) {
        return [this, handler](const http::Request &request) { return visit(request, handler); };
    };
    router.get("/library", page(&WebPages::showLibrary));
    router.get("/library/left-out", page(&WebPages::showLeftOut));
    router.post("/library/pause", mostFormBytes, page(&WebPages::takePause));
    router.post("/library/rescan", mostFormBytes, page(&WebPages::takeRescan));
}

bool WebPages::isOwner(const Visit &visit)
{
    return visit.session.account != 0 && m_service.house.owner() == visit.session.account;
}

bool WebPages::refuseOthers(Visit &visit, bool needsMusic)
{
    if (isOwner(visit)) {
        if (!needsMusic || m_service.library)
            return false;
        show(visit, say("The music"),
             html::heading(say("The music")) + html::paragraph(say("This service looks after no folders.")) +
                 html::link("/account", say("Your account")),
             404);
        return true;
    }
    if (visit.session.account == 0 || !m_service.accounts.find(visit.session.account))
        signInPage(visit, {}, {}, 403);
    else
        show(visit, say("The music"),
             html::heading(say("The music")) + html::paragraph(say("Only the owner of this service sees this page.")) +
                 html::link("/account", say("Your account")),
             403);
    return true;
}

void WebPages::showLibrary(Visit &visit)
{
    if (refuseOthers(visit))
        return;
    const LibraryStatus status = m_service.library->status();
    std::string body = html::heading(say("The music")) + progress(status) + folders(status);
    std::string reasons;
    for (const ReasonWords &words : reasonWords) {
        const auto found = status.counts.byReason.find(words.reason);
        if (found != status.counts.byReason.end())
            reasons += html::link(std::string("/library/left-out?reason=") + words.reason,
                                  say(words.title) + ": " + files(found->second));
    }
    if (!reasons.empty())
        body += html::subheading(say("What does not play")) + reasons;
    if (status.counts.missing > 0)
        body += html::paragraph(
            sayMany("{1} file has gone from the folders. Thumbs and stations wait for it for 90 days.",
                    "{1} files have gone from the folders. Thumbs and stations wait for them for 90 days.",
                    status.counts.missing));
    body += changes(m_service.library->recentChanges());
    body +=
        html::form("/library/pause", visit.csrf,
                   html::button(status.isPaused ? say("Go on") : say("Pause"), "paused", status.isPaused ? "0" : "1")) +
        html::form("/library/rescan", visit.csrf,
                   html::button(say("Look through the folders now")) +
                       html::paragraph(say("Files that failed are tried again."))) +
        html::link("/house", say("This service")) + html::link("/account", say("Your account"));
    show(visit, say("The music"), body);
}

void WebPages::showLeftOut(Visit &visit)
{
    if (refuseOthers(visit))
        return;
    const std::string reason = visit.value("reason");
    const ReasonWords *words = wordsFor(reason);
    int64_t first = 0;
    const std::string from = visit.value("from");
    std::from_chars(from.data(), from.data() + from.size(), first);
    first = std::clamp<int64_t>(first, 0, 100'000'000);
    if (!words) {
        show(visit, say("The music"),
             html::heading(say("There is no such page")) + html::link("/library", say("The music")), 404);
        return;
    }
    const std::vector<LeftOutFile> files = m_service.library->store().leftOutFiles(reason, first, filesOnPage + 1);
    std::string body = html::heading(say(words->title)) + html::paragraph(say(words->explanation));
    if (files.empty())
        body += html::paragraph(say("None."));
    for (size_t i = 0; i < std::min<size_t>(files.size(), filesOnPage); ++i) {
        const LeftOutFile &file = files[i];
        const std::string name = pathText((file.root / file.path).native());
        body += html::paragraph(file.problem.empty() ? name : name + ": " + file.problem);
    }
    const std::string address = "/library/left-out?reason=" + reason + "&from=";
    if (first > 0)
        body += html::link(address + std::to_string(std::max<int64_t>(0, first - filesOnPage)), say("Back"));
    if (files.size() > filesOnPage)
        body += html::link(address + std::to_string(first + filesOnPage), say("More"));
    show(visit, say(words->title), body + html::link("/library", say("The music")));
}

void WebPages::takePause(Visit &visit)
{
    if (refuseOthers(visit))
        return;
    m_service.library->setPaused(visit.value("paused") == "1");
    redirect(visit, "/library");
}

void WebPages::takeRescan(Visit &visit)
{
    if (refuseOthers(visit))
        return;
    m_service.library->rescan();
    redirect(visit, "/library");
}

} // namespace velmora::server
