// The library page, for the owner alone: folders, how far it is, what was left out and why.
#include "server/library/library.h"
#include "server/web/html.h"
#include "server/web/webpages.h"

#include <array>
#include <charconv>

namespace velmora::server {

namespace {

constexpr int filesOnPage = 50;
constexpr size_t changesOnPage = 30;

struct ReasonWords {
    const char *reason;
    const char *title;
    const char *explanation;
};

// The heaviest first: what cannot be read before what was left out on purpose.
constexpr std::array reasonWords = {
    ReasonWords{leftout::crash, "Broke the reader",
                "The program that reads files broke down over them, twice. They are most likely damaged."},
    ReasonWords{leftout::slow, "Took too long to read", "They are damaged, or their disk is very slow."},
    ReasonWords{leftout::damaged, "Cannot be read",
                "No sound of a known kind was found, or the service may not open them."},
    ReasonWords{leftout::empty, "Empty", "Files of no bytes."},
    ReasonWords{leftout::kind, "Of a kind that radios do not play",
                "MP3, FLAC, Ogg Vorbis, Opus and WAV are played. Others need the program velmora-media-formats beside "
                "the service."},
    ReasonWords{leftout::speech, "Audio books and podcasts",
                "By their style, their folder or their sound; radios play music."},
    ReasonWords{leftout::longPiece, "Longer than 15 minutes", "Classical pieces may last 30."},
    ReasonWords{leftout::shortPiece, "Shorter than 20 seconds", "Jingles, gaps and sound effects."},
    ReasonWords{leftout::duplicate, "Another file of the same recording plays",
                "The better one: lossless, or with the higher bit rate."},
};

const ReasonWords *wordsFor(const std::string &reason)
{
    for (const ReasonWords &words : reasonWords) {
        if (reason == words.reason)
            return &words;
    }
    return nullptr;
}

std::string counted(int64_t count, const char *one, const char *many)
{
    return withCommas(count) + " " + (count == 1 ? one : many);
}

// Rounded up, so that it is done when it was said to be.
std::string durationText(double seconds)
{
    const auto minutes = static_cast<int64_t>(seconds / 60) + 1;
    if (minutes < 90)
        return counted(minutes, "minute", "minutes");
    const int64_t hours = minutes / 60 + 1;
    return hours < 48 ? counted(hours, "hour", "hours") : counted(hours / 24 + 1, "day", "days");
}

std::string progress(const LibraryStatus &status)
{
    std::string text = html::paragraph(counted(status.counts.playing, "track plays", "tracks play") + ", of " +
                                       counted(status.counts.files, "file", "files") + ".");
    if (!status.problem.empty())
        text += html::error("Nothing goes on at present: " + status.problem);
    if (!status.configProblem.empty())
        text += html::error("The configuration was not taken: " + status.configProblem);
    if (status.isPaused)
        text += html::paragraph("Paused.");
    else if (!status.scanning.empty())
        text += html::paragraph("Looking through " + printable(status.scanning.native()) + ": " +
                                counted(status.scannedFiles, "file", "files") + " so far, " +
                                counted(status.changed, "of them read", "of them read") + ".");
    if (!status.isAnalysed)
        text += html::paragraph("Listening to tracks is switched off: stations go by tags alone.");
    else if (status.counts.toAnalyse == 0)
        text += html::paragraph("Every track was listened to.");
    else
        text +=
            html::paragraph("Still to be listened to: " + counted(status.counts.toAnalyse, "track", "tracks") + ", " +
                            (status.secondsLeft ? "about " + durationText(*status.secondsLeft)
                                                : std::string("how long is not known yet")) +
                            ". Stations play meanwhile and become better.");
    return text;
}

std::string changes(const std::vector<LibraryChange> &recent)
{
    if (recent.empty())
        return {};
    std::string text = html::subheading("What changed lately");
    for (size_t i = 0; i < std::min<size_t>(recent.size(), changesOnPage); ++i) {
        const LibraryChange &change = recent[i];
        const char *what = change.kind == LibraryChange::Kind::New       ? "new"
                           : change.kind == LibraryChange::Kind::Changed ? "changed"
                           : change.kind == LibraryChange::Kind::Back    ? "back"
                                                                         : "gone";
        text += html::paragraph(html::timeText(change.at) + ", " + what + ": " + printable(change.file.native()));
    }
    return text;
}

std::string folders(const LibraryStatus &status)
{
    std::string text = html::subheading("Folders");
    if (status.roots.empty())
        text += html::paragraph("None. Name one in the configuration file, under [library]: music = /path/to/music");
    for (const Root &root : status.roots) {
        const std::string name = printable(root.path.native());
        if (root.isPresent)
            text +=
                html::paragraph(name + (root.scannedAt == 0 ? ": not looked through yet"
                                                            : ": looked through " + html::timeText(root.scannedAt)));
        else
            text += html::error(name + " is away" +
                                (root.awaySince == 0 ? "" : " since " + html::timeText(root.awaySince)) + ": " +
                                root.problem + ". Nothing of it is lost; it plays again when it is back.");
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
        show(visit, "The music",
             html::heading("The music") + html::paragraph("This service looks after no folders.") +
                 html::link("/account", "Your account"),
             404);
        return true;
    }
    if (visit.session.account == 0 || !m_service.accounts.find(visit.session.account))
        signInPage(visit, {}, {}, 403);
    else
        show(visit, "The music",
             html::heading("The music") + html::paragraph("Only the owner of this service sees this page.") +
                 html::link("/account", "Your account"),
             403);
    return true;
}

void WebPages::showLibrary(Visit &visit)
{
    if (refuseOthers(visit))
        return;
    const LibraryStatus status = m_service.library->status();
    std::string body = html::heading("The music") + progress(status) + folders(status);
    std::string reasons;
    for (const ReasonWords &words : reasonWords) {
        const auto found = status.counts.byReason.find(words.reason);
        if (found != status.counts.byReason.end())
            reasons += html::link(std::string("/library/left-out?reason=") + words.reason,
                                  std::string(words.title) + ": " + counted(found->second, "file", "files"));
    }
    if (!reasons.empty())
        body += html::subheading("What does not play") + reasons;
    if (status.counts.missing > 0)
        body += html::paragraph(counted(status.counts.missing, "file has", "files have") +
                                " gone from the folders. Thumbs and stations wait for them for 90 days.");
    body += changes(m_service.library->recentChanges());
    body += html::form("/library/pause", visit.csrf,
                       html::button(status.isPaused ? "Go on" : "Pause", "paused", status.isPaused ? "0" : "1")) +
            html::form("/library/rescan", visit.csrf,
                       html::button("Look through the folders now") +
                           html::paragraph("Files that failed are tried again.")) +
            html::link("/house", "This service") + html::link("/account", "Your account");
    show(visit, "The music", body);
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
        show(visit, "The music", html::heading("There is no such page") + html::link("/library", "The music"), 404);
        return;
    }
    const std::vector<LeftOutFile> files = m_service.library->store().leftOutFiles(reason, first, filesOnPage + 1);
    std::string body = html::heading(words->title) + html::paragraph(words->explanation);
    if (files.empty())
        body += html::paragraph("None.");
    for (size_t i = 0; i < std::min<size_t>(files.size(), filesOnPage); ++i) {
        const LeftOutFile &file = files[i];
        const std::string name = printable((file.root / file.path).native());
        body += html::paragraph(file.problem.empty() ? name : name + ": " + file.problem);
    }
    const std::string address = "/library/left-out?reason=" + reason + "&from=";
    if (first > 0)
        body += html::link(address + std::to_string(std::max<int64_t>(0, first - filesOnPage)), "Back");
    if (files.size() > filesOnPage)
        body += html::link(address + std::to_string(first + filesOnPage), "More");
    show(visit, words->title, body + html::link("/library", "The music"));
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
