// The thread that scans: folders, changes, tags.
#include "server/library/library.h"

#include "server/accounts/secrets.h"
#include "server/library/storagefault.h"
#include "server/store/store.h"

#include <algorithm>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace velmora::server {

namespace {

using SteadyClock = std::chrono::steady_clock;
using namespace std::chrono_literals;

constexpr int growingTracks = 50; // until so many are there, a first scan makes lists wait
constexpr auto batchTime = 300ms; // what was read is stored at least so often
constexpr auto reportTime = 5s;
constexpr size_t manyMissing = 50;
constexpr auto quietTime = 3s;                      // after the last change that was noticed
constexpr std::chrono::milliseconds burstTime{100}; // changes come in bursts
constexpr auto freshTime = 200ms;                   // during a scan, files written elsewhere are looked for so often
constexpr const char *storageProblem = "its disk or share does not give it";

struct Descriptor {
    int value = -1;
    ~Descriptor()
    {
        if (value >= 0)
            ::close(value);
    }
};

std::string withCommas(int64_t number)
{
    std::string text = std::to_string(number);
    for (auto at = static_cast<std::ptrdiff_t>(text.size()) - 3; at > 0; at -= 3)
        text.insert(static_cast<size_t>(at), ",");
    return text;
}

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

Library::Library(Store &store, Catalogue &catalogue, Clock clock, LibrarySettings settings)
    : m_store(store, catalogue, clock)
    , m_catalogue(catalogue)
    , m_clock(std::move(clock))
    , m_transcodes(store, catalogue)
    , m_settings(std::move(settings))
    , m_config(m_settings.config)
{
    m_status.isPaused = store.setting("library paused") == "1";
    // Until the first look, nobody knows that there is nothing to play.
    const bool mayHaveMusic =
        !m_config.folders.empty() || !m_settings.demoFolders.empty() || !m_settings.configFile.empty();
    m_catalogue.setGrowing("library", mayHaveMusic && !m_status.isPaused);
}

Library::~Library()
{
    stop();
}

void Library::start()
{
    const std::filesystem::path covers = m_settings.dataDirectory / "covers";
    ::mkdir(covers.c_str(), 0700);
    m_store.forgetOldAnalyses();
    m_hasFormats = ::access(m_settings.formatsProgram.c_str(), X_OK) == 0;
    m_store.setHasFormats(m_hasFormats);
    applyConfig();
    TranscodeSettings transcoding;
    transcoding.directory = m_settings.dataDirectory / "transcodes";
    transcoding.program = m_settings.formatsProgram;
    transcoding.pause = m_settings.storePause;
    transcoding.spare = m_settings.spareTranscodes;
    transcoding.reserveBytes = m_settings.reserveBytes;
    transcoding.say = m_settings.say;
    transcoding.leaveOut = [this](const ToAnalyse &file, const char *reason, const std::string &problem) {
        m_store.putAnalysisFailure(file, reason, problem);
    };
    m_transcodes.start(std::move(transcoding));
    m_scanner = std::thread([this] { scanLoop(); });
    m_watcher = std::thread([this] { watchRoots(); });
}

void Library::setListeners(int count)
{
    if (count == 0)
        count = std::max(1, static_cast<int>(std::thread::hardware_concurrency()) - 1);
    {
        const std::lock_guard guard(m_mutex);
        m_listening = count;
    }
    while (static_cast<int>(m_listeners.size()) < count) {
        const int number = static_cast<int>(m_listeners.size());
        m_listeners.emplace_back([this, number] { listenLoop(number); });
    }
    m_wake.notify_all();
}

void Library::stop()
{
    {
        const std::lock_guard guard(m_mutex);
        m_isStopping = true;
        for (media::MediaWorker *worker : m_workers)
            worker->interrupt();
    }
    m_wake.notify_all();
    m_changes.ring();
    m_watcherWake.notify_all();
    m_transcodes.stop();
    for (std::thread *thread : {&m_scanner, &m_watcher}) {
        if (thread->joinable())
            thread->join();
    }
    for (std::thread &listener : m_listeners)
        listener.join();
    m_listeners.clear();
}

LibraryStatus Library::status()
{
    const std::lock_guard guard(m_mutex);
    LibraryStatus status = m_status;
    if (m_musicHeard > 0 && m_timeListened > 1)
        status.secondsLeft =
            status.counts.secondsToAnalyse * (m_timeListened / m_musicHeard) / std::max(1, m_listening);
    return status;
}

std::vector<LibraryChange> Library::recentChanges()
{
    const std::lock_guard guard(m_mutex);
    return {m_recent.begin(), m_recent.end()};
}

void Library::remember(LibraryChange::Kind kind, const std::filesystem::path &file)
{
    const std::lock_guard guard(m_mutex);
    m_recent.push_front({m_clock(), kind, file});
    if (m_recent.size() > mostChanges)
        m_recent.pop_back();
}

void Library::setPaused(bool isPaused)
{
    m_store.keepPaused(isPaused);
    {
        const std::lock_guard guard(m_mutex);
        m_status.isPaused = isPaused;
    }
    m_wake.notify_all();
    m_changes.ring();
}

void Library::rescan()
{
    m_store.retryFailures();
    {
        const std::lock_guard guard(m_mutex);
        m_isRescanWanted = true;
    }
    m_wake.notify_all();
    m_changes.ring();
}

bool Library::isIdle()
{
    const std::lock_guard guard(m_mutex);
    return m_inWork.empty() && m_albumsInWork.empty() && m_files.empty() && m_albums.empty();
}

bool Library::waitUntilDone(std::chrono::milliseconds longest, int64_t rounds)
{
    const auto end = SteadyClock::now() + longest;
    while (SteadyClock::now() < end) {
        const bool isScanned = [&] {
            const std::lock_guard guard(m_mutex);
            return m_status.scans >= rounds && !m_isRound && !m_isRescanWanted;
        }();
        if (isScanned && isIdle()) {
            const LibraryCounts counts = m_store.counts();
            if ((counts.toAnalyse == 0 || !status().isAnalysed) && m_store.albumsWithoutCover(1).empty() && isIdle())
                return true;
        }
        std::this_thread::sleep_for(20ms);
    }
    return false;
}

void Library::applyConfig()
{
    if (m_settings.configFile.empty() && m_isConfigured)
        return;
    LibraryConfig config = m_settings.config;
    std::string wrong;
    if (!m_settings.configFile.empty()) {
        struct stat status {};
        const bool isThere = ::stat(m_settings.configFile.c_str(), &status) == 0;
        const std::string stamp =
            isThere ? std::to_string(status.st_size) + " " + std::to_string(status.st_mtim.tv_sec) + " " +
                          std::to_string(status.st_mtim.tv_nsec) + " " + std::to_string(status.st_ino)
                    : "none";
        if (stamp == m_configText)
            return;
        m_configText = stamp;
        auto read = readLibraryConfig(m_settings.configFile);
        if (const auto *problem = std::get_if<std::string>(&read)) {
            m_settings.say("music: " + *problem + "; the configuration stays as it was");
            wrong = *problem;
            const std::lock_guard guard(m_mutex);
            m_status.configProblem = wrong;
            if (m_isConfigured)
                return;
        } else {
            config = std::get<LibraryConfig>(read);
            config.folders.insert(config.folders.begin(), m_settings.config.folders.begin(),
                                  m_settings.config.folders.end());
            config.excluded.insert(config.excluded.end(), m_settings.config.excluded.begin(),
                                   m_settings.config.excluded.end());
        }
    }
    config.isAnalysed = m_settings.isAnalysed.value_or(config.isAnalysed);
    m_config = config;
    m_transcodes.setMostBytes(uint64_t(config.transcodeMegabytes) << 20);
    std::vector<std::pair<std::filesystem::path, std::string>> roots;
    for (const std::filesystem::path &folder : m_config.folders)
        roots.emplace_back(folder, "folder");
    for (const std::filesystem::path &folder : m_settings.demoFolders)
        roots.emplace_back(folder, "demo");
    m_store.setRoots(roots);
    for (const std::filesystem::path &folder : m_settings.demoFolders)
        m_store.adoptTracks(folder);
    const std::lock_guard guard(m_mutex);
    m_status.roots = m_store.roots();
    m_status.isAnalysed = m_config.isAnalysed;
    m_status.configProblem = wrong;
    m_isConfigured = true;
    m_isRescanWanted = true;
    m_wake.notify_all();
}

void Library::scanLoop()
{
    // Made here: a worker ends with the thread that started it.
    m_worker = std::make_unique<media::MediaWorker>(m_settings.workerProgram);
    if (m_hasFormats)
        m_formats = std::make_unique<media::MediaWorker>(m_settings.formatsProgram);
    {
        const std::lock_guard guard(m_mutex);
        m_workers.insert(m_worker.get());
        if (m_formats)
            m_workers.insert(m_formats.get());
    }
    auto looked = SteadyClock::time_point();
    auto reported = SteadyClock::now();
    bool wasBusy = true;
    while (!m_isStopping) {
        bool isRefused = false;
        try {
            applyConfig();
            setListeners(m_config.workers);
            noteChanges();
            bool isWanted = false;
            bool isPaused = false;
            {
                const std::lock_guard guard(m_mutex);
                isPaused = m_status.isPaused;
                isWanted = m_isRescanWanted;
                m_isRescanWanted = m_isRescanWanted && isPaused;
                m_isRound = isWanted && !isPaused;
            }
            if (isPaused)
                m_catalogue.setGrowing("library", false);
            else
                readFresh(0);
            const std::set<int64_t> due = isPaused ? std::set<int64_t>() : dueRoots(isWanted);
            if (!due.empty() || (isWanted && !isPaused)) {
                scanRound(due, isWanted);
                looked = SteadyClock::now();
            } else if (SteadyClock::now() - looked > m_settings.awayTick) {
                looked = SteadyClock::now();
                lookAtRoots({});
            }
            if (SteadyClock::now() - reported > reportTime) {
                reported = SteadyClock::now();
                refreshCounts();
                m_settings.looked();
                const bool isBusy = !isIdle();
                if (isBusy || wasBusy)
                    report(!isBusy);
                wasBusy = isBusy;
            }
            const std::lock_guard guard(m_mutex);
            m_status.problem.clear();
        } catch (const std::exception &error) {
            // A full disk, a database that another process holds: nothing of a batch is stored, and it goes on later.
            m_settings.say(std::string("music: waits, because ") + error.what());
            {
                const std::lock_guard guard(m_mutex);
                m_status.problem = error.what();
                m_status.scanning.clear();
                m_isRound = false;
            }
            m_rootStates.clear();
            isRefused = true;
        }
        if (!isRefused)
            m_changes.wait(m_settings.tick);
        std::unique_lock guard(m_mutex);
        const std::chrono::milliseconds pause = isRefused ? m_settings.storePause : burstTime;
        m_wake.wait_for(guard, pause, [this] { return m_isStopping || (m_isRescanWanted && !m_status.isPaused); });
    }
    m_catalogue.setGrowing("library", false);
    const std::lock_guard guard(m_mutex);
    m_workers.erase(m_worker.get());
    m_workers.erase(m_formats.get());
    m_worker.reset();
    m_formats.reset();
}

std::set<int64_t> Library::dueRoots(bool isAll)
{
    std::set<int64_t> due;
    std::set<int64_t> all;
    const auto now = SteadyClock::now();
    for (const Root &root : m_store.roots()) {
        const RootState &state = m_rootStates[root.id];
        all.insert(root.id);
        if (isAll || state.scanned == SteadyClock::time_point() ||
            now - state.scanned > std::chrono::minutes(m_config.rescanMinutesFor(root.path)) ||
            (state.changed && now - *state.changed > quietTime))
            due.insert(root.id);
    }
    std::erase_if(m_rootStates, [&](const auto &state) { return !all.contains(state.first); });
    m_changes.keepOnly(all);
    return due;
}

void Library::noteChanges()
{
    ChangeWatch::Changes changes = m_changes.take();
    m_fresh.merge(changes.files);
    for (auto &[root, state] : m_rootStates) {
        if (changes.isIncomplete || changes.roots.contains(root))
            state.changed = SteadyClock::now();
    }
}

void Library::refreshCounts()
{
    LibraryCounts counts = m_store.counts();
    std::vector<Root> roots = m_store.roots();
    const std::lock_guard guard(m_mutex);
    m_status.counts = std::move(counts);
    m_status.roots = std::move(roots);
}

void Library::report(bool isLast)
{
    const LibraryStatus status = this->status();
    if (status.roots.empty())
        return; // nothing to say without own music
    const LibraryCounts &counts = status.counts;
    int64_t problems = 0;
    for (const char *reason : {leftout::damaged, leftout::crash, leftout::slow, leftout::empty, leftout::kind}) {
        const auto found = counts.byReason.find(reason);
        problems += found == counts.byReason.end() ? 0 : found->second;
    }
    m_settings.say("music: " + withCommas(counts.files) + " files, " + withCommas(counts.playing) +
                   " of them play; listened to " + withCommas(counts.analysed) + "; " + withCommas(problems) +
                   " problems" + (isLast && counts.toAnalyse == 0 ? "; done" : ""));
}

bool Library::lookAtRoots(const std::set<int64_t> &due)
{
    bool isWhole = true;
    for (const Root &root : m_store.roots()) {
        if (m_isStopping)
            return false;
        RootProbe::Answer answer = m_probe.look(root.path);
        const Descriptor folder{answer.folder};
        const std::string name = printable(root.path.native());
        if (answer.folder >= 0 && answer.isEmpty && m_store.hasFiles(root.id))
            answer.problem = "it is empty, though music was in it: perhaps its disk is not mounted";
        if (!answer.problem.empty()) {
            if (root.isPresent || root.problem != answer.problem) {
                m_settings.say("music: " + name + " is away: " + answer.problem);
                m_store.setPresent(root, false, answer.problem);
            }
            continue;
        }
        const bool wasAway = !root.isPresent;
        if (wasAway) {
            if (root.awaySince != 0)
                m_settings.say("music: " + name + " is back");
            m_store.setPresent(root, true, {});
        }
        if (due.contains(root.id) || wasAway)
            isWhole = scanRoot(root, answer.folder) && isWhole;
    }
    refreshCounts();
    return isWhole;
}

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
        const Descriptor folder{m_probe.look(root.path).folder};
        if (folder.value < 0 || !root.isPresent)
            continue; // it is looked through when it is back
        const FolderWalk walk(m_config.excluded);
        std::vector<ReadFile> batch;
        const auto store = [&] {
            m_store.put(root.id, batch, isGone);
            batch.clear();
            m_wake.notify_all();
        };
        for (const std::string &path : paths) {
            FoundFile found{path, {}};
            const Descriptor file{openRegular(folder.value, path, &found.stamp)};
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
            batch.push_back(readFile(folder.value, found, known ? &*known : nullptr));
            // Somebody waits for the first music, and sees its cover.
            if (batch.back().hasTags && m_catalogue.isGrowing())
                batch.back().picture = writeCover("of-" + randomToken(9), coverOf(*m_worker, root.path / path));
            if (batch.size() == LibraryStore::mostInBatch)
                store();
        }
        if (!batch.empty())
            store();
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
                batch.push_back(readFile(folder, file, old));
                if (batch.size() >= LibraryStore::mostInBatch || SteadyClock::now() - stored > batchTime)
                    store();
                const std::lock_guard guard(m_mutex);
                ++m_status.changed;
            }
            if (found != known.end())
                known.erase(found);
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

ReadFile Library::readFile(int folder, const FoundFile &found, const KnownFile *known)
{
    ReadFile read;
    read.path = found.path;
    read.stamp = found.stamp;
    read.knownId = known ? known->id : 0;
    if (found.stamp.size == 0) {
        read.leftOut = leftout::empty;
        return read;
    }
    // The stamp is the one from before reading: a file that changed meanwhile is read again.
    FileStamp stamp;
    errno = 0;
    const Descriptor file{openRegular(folder, found.path, &stamp)};
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
            outcome = worker.readTags(file.value, &read.tags, &read.problem);
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

void Library::watchRoots()
{
    RootProbe probe;
    while (!m_isStopping) {
        try {
            for (const Root &root : m_store.roots()) {
                const RootProbe::Answer answer = probe.look(root.path);
                const Descriptor folder{answer.folder};
                if (answer.isSilent && root.isPresent && !m_isStopping) {
                    m_settings.say("music: " + printable(root.path.native()) + " is away: " + answer.problem);
                    m_store.setPresent(root, false, answer.problem);
                }
            }
        } catch (const std::exception &error) {
            m_settings.say(std::string("music: folders are not watched, because ") + error.what());
        }
        std::unique_lock guard(m_mutex);
        m_watcherWake.wait_for(guard, m_settings.awayTick / 3, [this] { return m_isStopping.load(); });
    }
}

} // namespace velmora::server
