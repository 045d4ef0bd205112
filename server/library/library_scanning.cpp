// Scanning a folder: what is there, what changed, what the tags say.
#include "server/library/library.h"

#include "server/accounts/secrets.h"
#include "server/library/openedfile.h"
#include "server/library/storagefault.h"

#include <algorithm>
#include <fcntl.h>
#include <sys/stat.h>
#include <utility>

namespace velmora::server {

namespace {

using SteadyClock = std::chrono::steady_clock;
using namespace std::chrono_literals;

constexpr int growingTracks = 50; // until so many are there, a first scan makes lists wait
constexpr auto batchTime = 300ms; // what was read is stored at least so often
constexpr auto freshTime = 200ms; // during a scan, files written elsewhere are looked for so often
constexpr size_t manyMissing = 50;
constexpr size_t mostGuessesRead = 24; // of a folder: together they tell the character set
constexpr const char *storageProblem = "its disk or share does not give it";

// Whether the file that had this stamp is at this place no longer.
bool isGone(const Root &root, const std::string &path, const FileStamp &stamp)
{
    struct stat status {};
    if (::stat((root.path / path).c_str(), &status) != 0)
        return errno == ENOENT || errno == ENOTDIR;
    return status.st_size != stamp.size ||
           int64_t(status.st_mtim.tv_sec) * 1'000'000'000 + status.st_mtim.tv_nsec != stamp.mtimeNs;
}

} // namespace

bool Library::scanRound(const std::set<int64_t> &due, bool isAll)
{
    {
        const std::lock_guard guard(m_mutex);
        m_isRound = true;
        m_status.changed = 0;
        m_status.vanished = 0;
        m_skipped.clear();
    }
    const std::vector<Root> roots = m_store.roots();
    m_catalogue.setGrowing(
        "library", std::any_of(roots.begin(), roots.end(), [](const Root &root) { return root.scannedAt == 0; }));
    for (const int64_t root : due)
        m_rootStates[root].changed.reset();
    const bool isWhole = lookAtRoots(due);
    m_catalogue.setGrowing("library", false);
    if (isWhole) {
        for (const int64_t root : due)
            m_rootStates[root].scanned = SteadyClock::now();
        m_store.dropOldMissing();
        report(false);
    }
    const std::lock_guard guard(m_mutex);
    m_status.scanning.clear();
    m_status.scans += isWhole && isAll;
    m_isRound = false;
    m_wake.notify_all();
    return isWhole;
}

void Library::readFresh(int64_t exceptRoot)
{
    if (m_fresh.empty())
        return;
    for (const Root &root : m_store.roots()) {
        const auto begin = m_fresh.lower_bound({root.id, {}});
        const auto end = m_fresh.lower_bound({root.id + 1, {}});
        if (root.id == exceptRoot || begin == end)
            continue;
        std::vector<std::string> paths;
        std::transform(begin, end, std::back_inserter(paths), [](const auto &file) { return file.second; });
        m_fresh.erase(begin, end);
        const OpenedFile folder{m_probe.look(root.path).folder};
        if (folder.value < 0 || !root.isPresent)
            continue; // it is looked through when it is back
        const FolderWalk walk(m_config.excluded);
        std::vector<ReadFile> batch;
        std::filesystem::path enteredFolder = "/"; // none yet
        std::set<std::filesystem::path> guessedFolders;
        const auto store = [&] {
            m_store.put(root.id, batch, isGone);
            batch.clear();
            m_wake.notify_all();
        };
        for (const std::string &path : paths) {
            FoundFile found{path, {}};
            const OpenedFile file{openRegular(folder.value, path, &found.stamp)};
            if (m_isStopping)
                return;
            if (file.value < 0 || !walk.takes(folder.value, path))
                continue;
            const std::optional<KnownFile> known = m_store.file(root.id, path);
            const bool isKnown = known && known->stamp == found.stamp && known->workerVersion == media::workerVersion;
            if (isKnown && known->isMissing) {
                m_store.setMissing({known->id}, false);
                remember(LibraryChange::Kind::Back, root.path / path);
            }
            if (isKnown)
                continue;
            remember(known ? LibraryChange::Kind::Changed : LibraryChange::Kind::New, root.path / path);
            const std::filesystem::path parent = std::filesystem::path(path).parent_path();
            if (std::exchange(enteredFolder, parent) != parent)
                ++m_folderNumber;
            batch.push_back(readFile(folder.value, found, known ? known->id : 0));
            if (batch.back().tags.isGuess)
                guessedFolders.insert(parent);
            // Somebody waits for the first music, and sees its cover.
            if (batch.back().hasTags && m_catalogue.isGrowing())
                batch.back().picture = writeCover("of-" + randomToken(9), coverOf(*m_worker, root.path / path));
            if (batch.size() == LibraryStore::mostInBatch)
                store();
        }
        if (!batch.empty())
            store();
        for (const std::filesystem::path &guessed : guessedFolders) {
            ++m_folderNumber;
            const std::vector<FoundFile> files = walk.filesOf(folder.value, guessed);
            readGuesses(root, folder.value, files); // so that each is heard before one is judged
            batch = readGuesses(root, folder.value, files);
            store();
        }
    }
    std::erase_if(m_fresh, [&](const auto &file) { return file.first != exceptRoot; });
}

bool Library::scanRoot(const Root &root, int folder)
{
    {
        const std::lock_guard guard(m_mutex);
        m_status.scanning = root.path;
        m_status.scannedFiles = 0;
    }
    std::unordered_map<std::string, KnownFile> known = m_store.files(root.id);
    const size_t knownFiles = known.size();
    std::unordered_map<std::string, FileStamp> covers = m_store.coverFiles(root.id);
    std::vector<ReadFile> batch;
    std::vector<int64_t> foundAgain;
    auto stored = SteadyClock::now();
    auto looked = stored;
    int made = 0;
    const auto store = [&] {
        made += m_store.put(root.id, batch, isGone);
        if (made >= growingTracks)
            m_catalogue.setGrowing("library", false);
        batch.clear();
        stored = SteadyClock::now();
        m_wake.notify_all(); // there is something to listen to
    };
    const auto take = [&](std::vector<FoundFile> files) {
        ++m_folderNumber;
        std::vector<FoundFile> guesses;
        for (const FoundFile &file : files) {
            if (m_isStopping)
                return false;
            if (file.isCover) {
                const auto old = covers.find(file.path);
                if (old == covers.end() || !(old->second == file.stamp))
                    m_store.noteCoverFile(root.id, file.path, file.stamp);
                if (old != covers.end())
                    covers.erase(old);
                continue;
            }
            const auto found = known.find(file.path);
            const KnownFile *old = found == known.end() ? nullptr : &found->second;
            const bool isKnown = old && old->stamp == file.stamp && old->workerVersion == media::workerVersion;
            if (isKnown && old->isMissing) {
                foundAgain.push_back(old->id);
                remember(LibraryChange::Kind::Back, root.path / file.path);
            }
            if (!isKnown) {
                remember(old ? LibraryChange::Kind::Changed : LibraryChange::Kind::New, root.path / file.path);
                batch.push_back(readFile(folder, file, old ? old->id : 0));
                if (batch.back().tags.isGuess && guesses.size() < mostGuessesRead)
                    guesses.push_back(file);
                if (batch.size() >= LibraryStore::mostInBatch || SteadyClock::now() - stored > batchTime)
                    store();
                const std::lock_guard guard(m_mutex);
                ++m_status.changed;
            }
            if (found != known.end())
                known.erase(found);
        }
        if (!guesses.empty()) {
            store();
            batch = readGuesses(root, folder, guesses);
            store();
        }
        if (SteadyClock::now() - looked > freshTime) {
            noteChanges();
            readFresh(root.id);
            looked = SteadyClock::now();
        }
        const std::lock_guard guard(m_mutex);
        m_status.scannedFiles += static_cast<int64_t>(files.size());
        return !m_status.isPaused;
    };
    const auto enter = [&](int opened, const std::string &path) { m_changes.watch(root.id, opened, path); };
    const WalkResult walked = FolderWalk(m_config.excluded).walk(folder, take, enter);
    if (!batch.empty())
        store();
    m_store.setMissing(foundAgain, false);
    if (walked.isStopped)
        return false;
    // What was not seen is gone, unless the folder that it was in could not be listed.
    const auto isUnread = [&](const std::string &place) {
        return std::any_of(walked.unread.begin(), walked.unread.end(), [&](const std::string &unread) {
            return unread.empty() || place == unread || place.starts_with(unread + "/");
        });
    };
    std::vector<int64_t> missing;
    for (const auto &[path, file] : known) {
        if (!file.isMissing && !isUnread(path)) {
            missing.push_back(file.id);
            remember(LibraryChange::Kind::Gone, root.path / path);
        }
    }
    // So many at once may be a mistake, or a part of the folder that lies on a disk that is away.
    const bool areMany = missing.size() > manyMissing && missing.size() * 5 > knownFiles;
    if (areMany)
        m_settings.say("music: " + withCommas(static_cast<int64_t>(missing.size())) + " files have gone from " +
                       printable(root.path.native()) + " at once; what was said of them is kept");
    m_store.setMissing(missing, true, areMany);
    for (const auto &[path, stamp] : covers) {
        if (!isUnread(path))
            m_store.noteCoverFile(root.id, path, std::nullopt);
    }
    m_store.setScanned(root.id);
    for (const std::string &unread : walked.unread)
        m_settings.say("music: cannot list " + printable((root.path / unread).native()));
    const std::lock_guard guard(m_mutex);
    m_status.vanished += static_cast<int64_t>(missing.size());
    return true;
}

std::vector<ReadFile> Library::readGuesses(const Root &root, int folder, const std::vector<FoundFile> &files)
{
    std::vector<ReadFile> guesses;
    for (const FoundFile &file : files) {
        if (file.isCover || guesses.size() == mostGuessesRead)
            continue;
        const std::optional<KnownFile> known = m_store.file(root.id, file.path);
        ReadFile read = readFile(folder, file, known ? known->id : 0);
        if (read.tags.isGuess)
            guesses.push_back(std::move(read));
    }
    return guesses;
}

ReadFile Library::readFile(int folder, const FoundFile &found, int64_t knownId)
{
    ReadFile read;
    read.path = found.path;
    read.stamp = found.stamp;
    read.knownId = knownId;
    if (found.stamp.size == 0) {
        read.leftOut = leftout::empty;
        return read;
    }
    // The stamp is the one from before reading: a file that changed meanwhile is read again.
    FileStamp stamp;
    errno = 0;
    const OpenedFile file{openRegular(folder, found.path, &stamp)};
    if (file.value < 0) {
        // Without a stamp, so that the next scan tries again: rights may be given, a disk may be back.
        read.stamp = {};
        read.leftOut = leftout::damaged;
        read.problem = isStorageFault(errno) ? storageProblem : "the service may not open it";
        return read;
    }
    media::Outcome outcome{};
    const auto readTags = [&](media::MediaWorker &worker) {
        for (int attempt = 0; attempt < 2; ++attempt) {
            outcome = worker.readTags(file.value, &read.tags, &read.problem, m_folderNumber);
            if ((outcome != media::Outcome::Crashed && outcome != media::Outcome::TooSlow) || m_isStopping)
                break;
        }
    };
    readTags(*m_worker);
    if (outcome == media::Outcome::Refused && m_formats)
        readTags(*m_formats);
    switch (outcome) {
    case media::Outcome::Done:
        read.problem.clear(); // the first worker's
        read.hasTags = true;
        read.facts = factsOf(read.tags, found.path, [this](const std::string &name) { return m_store.isArtist(name); });
        break;
    case media::Outcome::NoWorker:
        throw std::runtime_error(read.problem);
    case media::Outcome::Refused:
    case media::Outcome::NoRoom:
        read.leftOut = leftout::damaged;
        break;
    case media::Outcome::Crashed:
        if (m_isStopping)
            throw std::runtime_error("it is ending");
        read.leftOut = leftout::crash;
        break;
    case media::Outcome::TooSlow:
        read.leftOut = leftout::slow;
        break;
    }
    if (!read.leftOut.empty() && isStorageFailing(file.value)) {
        read.stamp = {};
        read.problem = storageProblem;
    }
    return read;
}

} // namespace velmora::server
