#include "server/library/transcodes.h"

#include "server/accounts/secrets.h"
#include "server/catalogue/mediatypes.h"
#include "server/library/folderwalk.h"
#include "server/library/librarystore.h"
#include "server/library/openedfile.h"
#include "server/store/store.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

namespace velmora::server {

namespace {

using SteadyClock = std::chrono::steady_clock;
using namespace std::chrono_literals;

constexpr const char *format = ".1.flac"; // counts up when transcodes are made differently
constexpr size_t mostWanted = 64;
constexpr auto candidatesTime = 60s; // how often the tracks that may be spares are read
constexpr int pageRows = 1000;       // of the store, under its lock

// An upper bound for what a transcode takes: 16 bits of two channels at 48,000 Hz.
uint64_t estimatedBytes(double seconds)
{
    return static_cast<uint64_t>(std::clamp(seconds, 10.0, 3600.0)) * 192'000;
}

} // namespace

Transcodes::Transcodes(Store &store, Catalogue &catalogue)
    : m_store(store)
    , m_catalogue(catalogue)
{
}

Transcodes::~Transcodes()
{
    stop();
}

void Transcodes::start(TranscodeSettings settings)
{
    m_settings = std::move(settings);
    const std::lock_guard guard(m_mutex);
    if (m_mostBytes == 0)
        m_mostBytes = m_settings.mostBytes;
    m_isStopping = false;
    m_hasProgram = ::access(m_settings.program.c_str(), X_OK) == 0;
    if (m_hasProgram)
        m_thread = std::thread([this] { loop(); });
}

void Transcodes::stop()
{
    {
        const std::lock_guard guard(m_mutex);
        m_isStopping = true;
        if (m_worker)
            m_worker->interrupt();
    }
    m_wake.notify_all();
    if (m_thread.joinable())
        m_thread.join();
}

void Transcodes::setMostBytes(uint64_t bytes)
{
    const std::lock_guard guard(m_mutex);
    m_mostBytes = bytes;
    makeRoom(0);
}

std::shared_ptr<const Transcodes::Ids> Transcodes::ready()
{
    const std::lock_guard guard(m_mutex);
    return m_ready;
}

bool Transcodes::isHeldUp()
{
    const std::lock_guard guard(m_mutex);
    return !m_hasProgram || SteadyClock::now() < m_heldUpUntil;
}

void Transcodes::prepare(const std::vector<int64_t> &tracks)
{
    {
        const std::lock_guard guard(m_mutex);
        if (!m_hasProgram)
            return;
        // What was wanted last is wanted first: a listener may have skipped away from what was wanted before.
        for (auto track = tracks.rbegin(); track != tracks.rend(); ++track) {
            if (isPutOff(*track))
                continue;
            std::erase(m_wanted, *track);
            m_wanted.push_front(*track);
        }
        if (m_wanted.size() > mostWanted)
            m_wanted.resize(mostWanted);
    }
    m_wake.notify_all();
}

bool Transcodes::isPreparing()
{
    const std::lock_guard guard(m_mutex);
    return m_isBusy || (!m_wanted.empty() && SteadyClock::now() >= m_heldUpUntil);
}

bool Transcodes::hasFailed(int64_t track)
{
    const std::lock_guard guard(m_mutex);
    return isPutOff(track);
}

bool Transcodes::isPutOff(int64_t track)
{
    const auto found = m_putOff.find(track);
    if (found == m_putOff.end() || SteadyClock::now() < found->second)
        return found != m_putOff.end();
    m_putOff.erase(found);
    return false;
}

std::optional<std::filesystem::path> Transcodes::file(int64_t track)
{
    const std::optional<Source> source = sourceOf(track);
    if (!source)
        return std::nullopt;
    {
        const std::lock_guard guard(m_mutex);
        const auto entry = m_entries.find(track);
        if (entry != m_entries.end() && entry->second.name == source->name && touch(entry->second))
            return m_settings.directory / source->name;
    }
    prepare({track});
    return std::nullopt;
}

std::optional<Transcodes::Source> Transcodes::sourceOf(int64_t track)
{
    static const std::string query =
        "SELECT f.id, r.path, f.path, f.size, f.mtime_ns, COALESCE(t.seconds, 0), t.public_id FROM tracks t JOIN files "
        "f ON f.track_id = t.id JOIN roots r ON r.id = f.root_id WHERE t.id = ?1 AND NOT " +
        isPlayedByRadiosSql("t.audio_type") +
        " AND f.missing_since IS NULL AND f.left_out = '' AND r.is_present AND r.is_configured ORDER BY f.quality "
        "DESC, "
        "f.id LIMIT 1";
    const Store::Lock db = m_store.lock();
    Statement row = db->prepare(query);
    row.with(track);
    if (!row.step())
        return std::nullopt;
    Source source;
    source.fileId = row.integer(0);
    source.trackId = track;
    source.path = std::filesystem::path(row.blob(1)) / row.blob(2);
    source.size = row.integer(3);
    source.mtimeNs = row.integer(4);
    source.seconds = row.real(5);
    source.name = row.text(6) + "." + std::to_string(source.size) + "." + std::to_string(source.mtimeNs) + format;
    return source;
}

void Transcodes::changed()
{
    auto ids = std::make_shared<Ids>();
    for (const auto &[track, entry] : m_entries)
        ids->insert(track);
    m_ready = std::move(ids);
}

bool Transcodes::touch(Entry &entry)
{
    entry.lastUse = ++m_uses;
    // For the next start. The time of change stays: it tells listeners that the file is the same.
    const timespec times[2] = {{0, UTIME_NOW}, {0, UTIME_OMIT}};
    return ::utimensat(AT_FDCWD, (m_settings.directory / entry.name).c_str(), times, 0) == 0 || errno != ENOENT;
}

void Transcodes::takeOver()
{
    struct Found {
        timespec lastUse{};
        std::string name;
        uint64_t bytes = 0;
    };
    std::vector<Found> found;
    std::error_code error;
    for (auto entry = std::filesystem::directory_iterator(m_settings.directory, error);
         !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
        struct stat status {};
        const std::string name = entry->path().filename();
        if (name.ends_with(format) && ::lstat(entry->path().c_str(), &status) == 0 && S_ISREG(status.st_mode))
            found.push_back({status.st_atim, name, static_cast<uint64_t>(status.st_size)});
        else // it was being written when the service ended
            ::unlink(entry->path().c_str());
    }
    std::sort(found.begin(), found.end(), [](const Found &a, const Found &b) {
        return std::pair(a.lastUse.tv_sec, a.lastUse.tv_nsec) < std::pair(b.lastUse.tv_sec, b.lastUse.tv_nsec);
    });
    std::vector<std::string> orphans;
    for (const Found &file : found) {
        const std::optional<Track> track = m_catalogue.track(file.name.substr(0, file.name.find('.')));
        const std::lock_guard guard(m_mutex);
        if (track && track->needsTranscoding && !m_entries.contains(track->id)) {
            m_entries[track->id] = {file.name, file.bytes, ++m_uses};
            m_bytes += file.bytes;
        } else {
            orphans.push_back(file.name);
        }
    }
    for (const std::string &orphan : orphans)
        ::unlink((m_settings.directory / orphan).c_str());
    const std::lock_guard guard(m_mutex);
    changed();
    makeRoom(0);
}

void Transcodes::makeRoom(uint64_t bytes)
{
    bool isChanged = false;
    while (m_bytes + bytes > m_mostBytes && !m_entries.empty()) {
        const auto oldest = std::min_element(m_entries.begin(), m_entries.end(), [](const auto &a, const auto &b) {
            return a.second.lastUse < b.second.lastUse;
        });
        ::unlink((m_settings.directory / oldest->second.name).c_str());
        m_bytes -= oldest->second.bytes;
        m_entries.erase(oldest);
        isChanged = true;
    }
    if (isChanged)
        changed();
}

bool Transcodes::holdUp(const std::string &why)
{
    bool isNew = false;
    {
        const std::lock_guard guard(m_mutex);
        isNew = m_heldUpWhy != why;
        m_heldUpWhy = why;
        m_heldUpUntil = SteadyClock::now() + m_settings.pause;
    }
    if (isNew)
        m_settings.say("music: transcoding waits, because " + why + "; tracks that need it are left out meanwhile");
    return false;
}

void Transcodes::loop()
{
    {
        const std::lock_guard guard(m_mutex); // made here: a worker ends with the thread that started it
        m_worker = std::make_unique<media::MediaWorker>(m_settings.program, media::transcodingRole);
    }
    bool isTakenOver = false;
    for (;;) {
        try {
            if (!std::exchange(isTakenOver, true))
                takeOver();
            const std::optional<int64_t> track = next();
            if (!track)
                break;
            const std::optional<Source> source = sourceOf(*track);
            const bool isMade = source && transcode(*source);
            const std::lock_guard guard(m_mutex);
            if (!isMade && !m_isStopping)
                m_putOff[*track] = SteadyClock::now() + m_settings.pause;
        } catch (const std::exception &error) { // the store
            holdUp(error.what());
        }
        const std::lock_guard guard(m_mutex);
        m_isBusy = false;
    }
    const std::lock_guard guard(m_mutex);
    m_worker.reset();
}

std::optional<int64_t> Transcodes::next()
{
    for (;;) {
        bool mayHaveSpares = false;
        {
            std::unique_lock guard(m_mutex);
            if (m_isStopping)
                return std::nullopt;
            if (SteadyClock::now() < m_heldUpUntil) {
                m_wake.wait_until(guard, m_heldUpUntil, [this] { return m_isStopping; });
                continue;
            }
            if (!m_wanted.empty()) {
                const int64_t track = m_wanted.front();
                m_wanted.pop_front();
                m_isBusy = true;
                return track;
            }
            mayHaveSpares = m_entries.size() < m_settings.spare && m_bytes < m_mostBytes / 2;
        }
        if (mayHaveSpares) {
            if (const std::optional<int64_t> spare = nextSpare())
                return spare;
        }
        std::unique_lock guard(m_mutex);
        if (m_wanted.empty() && !m_isStopping)
            m_wake.wait_for(guard, 2s);
    }
}

std::optional<int64_t> Transcodes::nextSpare()
{
    const auto now = SteadyClock::now();
    if (m_candidatesRead == SteadyClock::time_point() || now - m_candidatesRead > candidatesTime ||
        (m_candidates.empty() && now - m_candidatesRead > 2s)) {
        m_candidatesRead = now;
        m_candidates.clear();
        int64_t last = 0;
        for (int rows = pageRows; rows == pageRows;) {
            const Store::Lock db = m_store.lock();
            Statement row = db->prepare("SELECT id, " + isPlayedByRadiosSql("audio_type") +
                                        " OR is_playable <> 1 OR kind <> 'music' FROM tracks WHERE id > ?1 ORDER BY id "
                                        "LIMIT ?2");
            row.with(last, int64_t(pageRows));
            for (rows = 0; row.step(); ++rows) {
                last = row.integer(0);
                if (row.integer(1) == 0)
                    m_candidates.push_back(last);
            }
        }
    }
    while (!m_candidates.empty()) {
        std::swap(m_candidates[randomBelow(static_cast<uint32_t>(m_candidates.size()))], m_candidates.back());
        const int64_t track = m_candidates.back();
        m_candidates.pop_back();
        const std::lock_guard guard(m_mutex);
        if (!m_entries.contains(track))
            return track;
    }
    return std::nullopt;
}

bool Transcodes::transcode(const Source &source)
{
    {
        const std::lock_guard guard(m_mutex);
        const auto entry = m_entries.find(source.trackId);
        if (entry != m_entries.end() && entry->second.name == source.name && touch(entry->second))
            return true;
        makeRoom(std::min(estimatedBytes(source.seconds), m_mostBytes));
    }
    FileStamp stamp;
    const OpenedFile from{openRegular(AT_FDCWD, source.path.native(), &stamp)};
    if (from.value < 0 || stamp.size != source.size || stamp.mtimeNs != source.mtimeNs)
        return false;                            // the next scan says what became of it
    ::mkdir(m_settings.directory.c_str(), 0700); // somebody may have removed it
    struct statvfs disk {};
    if (::statvfs(m_settings.directory.c_str(), &disk) != 0)
        return holdUp("the folder " + m_settings.directory.string() + " cannot be used: " + std::strerror(errno));
    if (disk.f_bavail * disk.f_frsize < m_settings.reserveBytes + estimatedBytes(source.seconds))
        return holdUp("the disk with " + m_settings.directory.string() + " is full");
    const std::filesystem::path part = m_settings.directory / (source.name + ".part");
    const bool isMade = write(source, from.value, part);
    if (!isMade)
        ::unlink(part.c_str());
    return isMade;
}

void Transcodes::leaveOut(const Source &source, const char *reason, const std::string &problem)
{
    const FileStamp stamp{source.size, source.mtimeNs, 0};
    m_settings.leaveOut({source.fileId, source.trackId, {}, {}, stamp, source.seconds, true}, reason, problem);
}

bool Transcodes::write(const Source &source, int from, const std::filesystem::path &part)
{
    const OpenedFile to{::open(part.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NOFOLLOW, 0600)};
    const auto cannotWrite = [&] {
        return holdUp("a file in " + m_settings.directory.string() + " cannot be written: " + std::strerror(errno));
    };
    if (to.value < 0)
        return cannotWrite();
    uint64_t mostBytes = 0;
    {
        const std::lock_guard guard(m_mutex);
        mostBytes = m_mostBytes;
    }
    uint64_t bytes = 0;
    std::string problem;
    media::Outcome outcome{};
    for (int attempt = 0; attempt < 2; ++attempt) {
        if (::ftruncate(to.value, 0) != 0)
            return cannotWrite();
        outcome = m_worker->transcode(from, to.value, source.seconds, mostBytes, &bytes, &problem);
        const std::lock_guard guard(m_mutex);
        if (m_isStopping)
            return false;
        if (outcome != media::Outcome::Crashed && outcome != media::Outcome::TooSlow)
            break;
    }
    struct stat written {};
    struct stat read {};
    switch (outcome) {
    case media::Outcome::Done:
        break;
    case media::Outcome::NoRoom:
        return holdUp("the disk with " + m_settings.directory.string() + " is full");
    case media::Outcome::NoWorker:
        return holdUp(problem);
    case media::Outcome::Refused:
        leaveOut(source, leftout::damaged, problem);
        return false;
    case media::Outcome::Crashed:
        leaveOut(source, leftout::crash, problem);
        return false;
    case media::Outcome::TooSlow:
        leaveOut(source, leftout::slow, problem);
        return false;
    }
    if (::fdatasync(to.value) != 0 || ::fstat(to.value, &written) != 0)
        return cannotWrite();
    if (written.st_size != static_cast<int64_t>(bytes)) {
        leaveOut(source, leftout::crash, "what was made of it is impossible");
        return false;
    }
    // It may have changed while it was read.
    if (::fstat(from, &read) != 0 || read.st_size != source.size ||
        int64_t(read.st_mtim.tv_sec) * 1'000'000'000 + read.st_mtim.tv_nsec != source.mtimeNs)
        return false;
    if (::rename(part.c_str(), (m_settings.directory / source.name).c_str()) != 0)
        return cannotWrite();
    const OpenedFile folder{::open(m_settings.directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)};
    ::fsync(folder.value);
    keep(source, bytes);
    return true;
}

void Transcodes::keep(const Source &source, uint64_t bytes)
{
    bool wasHeldUp = false;
    {
        const std::lock_guard guard(m_mutex);
        wasHeldUp = !m_heldUpWhy.empty();
        m_heldUpWhy.clear();
        m_heldUpUntil = {};
        const auto old = m_entries.find(source.trackId);
        if (old != m_entries.end()) { // of what the source was before
            ::unlink((m_settings.directory / old->second.name).c_str());
            m_bytes -= old->second.bytes;
            m_entries.erase(old);
        }
        makeRoom(bytes);
        m_entries[source.trackId] = {source.name, bytes, ++m_uses};
        m_bytes += bytes;
        changed();
    }
    if (wasHeldUp)
        m_settings.say("music: transcoding goes on");
}

} // namespace velmora::server
