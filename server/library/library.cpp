// The library's threads, its configuration, and when a folder is scanned.
#include "server/library/library.h"

#include "server/library/openedfile.h"
#include "server/store/store.h"

#include <algorithm>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace velmora::server {

namespace {

using SteadyClock = std::chrono::steady_clock;
using namespace std::chrono_literals;

constexpr auto reportTime = 5s;
constexpr auto quietTime = 3s;                      // after the last change that was noticed
constexpr std::chrono::milliseconds burstTime{100}; // changes come in bursts

} // namespace

Library::Library(Store &store, Catalogue &catalogue, Clock clock, LibrarySettings settings)
    : m_store(store, catalogue, clock)
    , m_catalogue(catalogue)
    , m_clock(std::move(clock))
    , m_transcodes(store, catalogue)
    , m_settings(std::move(settings))
    , m_isAtRest(m_settings.isAtRest)
    , m_config(m_settings.config)
{
    m_status.isPaused = m_isAtRest || m_store.isPaused();
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
    m_hasFormats = ::access(m_settings.formatsProgram.c_str(), X_OK) == 0;
    if (m_isAtRest)
        refreshCounts();
    else
        prepareToScan();
    TranscodeSettings transcoding;
    transcoding.directory = m_settings.dataDirectory / "transcodes";
    transcoding.program = m_settings.formatsProgram;
    transcoding.pause = m_settings.storePause;
    transcoding.spare = m_isAtRest ? 0 : m_settings.spareTranscodes;
    transcoding.reserveBytes = m_settings.reserveBytes;
    transcoding.say = m_settings.say;
    transcoding.leaveOut = [this](const ToAnalyse &file, const char *reason, const std::string &problem) {
        if (!m_isAtRest)
            m_store.putAnalysisFailure(file, reason, problem);
    };
    m_transcodes.start(std::move(transcoding));
    if (!m_isAtRest)
        startThreads();
}

void Library::endRest()
{
    if (!m_isAtRest)
        return;
    {
        const std::lock_guard guard(m_mutex);
        m_status.isPaused = m_store.isPaused();
    }
    prepareToScan();
    m_isAtRest = false;
    startThreads();
}

void Library::prepareToScan()
{
    m_store.forgetOldAnalyses();
    m_store.setHasFormats(m_hasFormats);
    applyConfig();
}

void Library::startThreads()
{
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
                m_settings.looked();
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
        const OpenedFile folder{answer.folder};
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

void Library::watchRoots()
{
    RootProbe probe;
    while (!m_isStopping) {
        try {
            for (const Root &root : m_store.roots()) {
                const RootProbe::Answer answer = probe.look(root.path);
                const OpenedFile folder{answer.folder};
                if (answer.isSilent && root.isPresent && !m_isStopping) {
                    m_settings.say("music: " + printable(root.path.native()) + " is away: " + answer.problem);
                    m_store.setPresent(root, false, answer.problem);
                    // What waits may be of that folder, and would hold up who opens it.
                    const std::lock_guard guard(m_mutex);
                    m_files.clear();
                    m_albums.clear();
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
