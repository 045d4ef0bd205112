// The threads that listen: covers first, then sound.
#include "server/library/library.h"

#include "server/accounts/secrets.h"
#include "server/library/openedfile.h"
#include "server/library/playrules.h"
#include "server/library/storagefault.h"

#include <algorithm>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace velmora::server {

namespace {

using SteadyClock = std::chrono::steady_clock;

constexpr size_t filesAtOnce = 8;
constexpr size_t albumsAtOnce = 16;

// Pictures beside the music, the likeliest first.
std::vector<std::filesystem::path> picturesIn(const std::filesystem::path &folder)
{
    std::multimap<int, std::filesystem::path> found;
    std::error_code error;
    for (auto entry = std::filesystem::directory_iterator(folder, error);
         !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
        if (const int rank = FolderWalk::coverRank(entry->path().filename().native()); rank != 0)
            found.emplace(rank, entry->path());
    }
    std::vector<std::filesystem::path> pictures;
    pictures.reserve(found.size());
    for (auto &[rank, path] : found)
        pictures.push_back(std::move(path));
    return pictures;
}

// Whole or not at all.
bool writeWhole(const std::filesystem::path &file, const std::string &bytes)
{
    const std::filesystem::path beside = file.native() + ".new";
    bool isWritten = false;
    {
        const OpenedFile opened{::open(beside.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NOFOLLOW, 0600)};
        isWritten = opened.value >= 0 &&
                    ::write(opened.value, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size()) &&
                    ::fdatasync(opened.value) == 0;
    }
    if (isWritten && ::rename(beside.c_str(), file.c_str()) == 0)
        return true;
    ::unlink(beside.c_str());
    return false;
}

} // namespace

void Library::listenLoop(int number)
{
    std::optional<media::MediaWorker> worker;
    std::optional<media::MediaWorker> formats;
    const auto endWorkers = [&] {
        {
            const std::lock_guard guard(m_mutex);
            m_workers.erase(&*worker);
            m_workers.erase(&*formats);
        }
        worker.reset();
        formats.reset();
    };
    while (!m_isStopping) {
        {
            std::unique_lock guard(m_mutex);
            if (number >= m_listening) {
                if (worker) {
                    guard.unlock();
                    endWorkers();
                    continue;
                }
                m_wake.wait(guard, [&] { return m_isStopping || number < m_listening; });
                continue;
            }
            if (!worker) {
                m_workers.insert(&worker.emplace(m_settings.workerProgram));
                m_workers.insert(&formats.emplace(m_settings.formatsProgram));
            }
        }
        bool isBusy = false;
        try {
            const bool isPaused = [&] {
                const std::lock_guard guard(m_mutex);
                return m_status.isPaused;
            }();
            if (isPaused) {
                // Nothing.
            } else if (const std::optional<LibraryStore::AlbumToPicture> album = nextAlbum()) {
                isBusy = true;
                picture(*worker, *album);
                const std::lock_guard guard(m_mutex);
                m_albumsInWork.erase(album->id);
            } else if (const std::optional<ToAnalyse> file = nextToAnalyse()) {
                isBusy = true;
                listen(*worker, *formats, *file);
                const std::lock_guard guard(m_mutex);
                m_inWork.erase(file->fileId);
            }
        } catch (const std::exception &error) {
            m_settings.say(std::string("music: listening waits, because ") + error.what());
            std::unique_lock guard(m_mutex);
            m_files.clear();
            m_albums.clear();
            m_inWork.clear();
            m_albumsInWork.clear();
            m_wake.wait_for(guard, m_settings.storePause, [&] { return m_isStopping.load(); });
        }
        if (!isBusy) {
            std::unique_lock guard(m_mutex);
            if (!m_isStopping)
                m_wake.wait_for(guard, m_settings.tick);
        }
    }
    if (worker)
        endWorkers();
}

bool Library::isAway(const std::filesystem::path &root)
{
    const std::vector<Root> roots = m_store.roots();
    return std::none_of(roots.begin(), roots.end(),
                        [&](const Root &known) { return known.path == root && known.isPresent; });
}

std::optional<LibraryStore::AlbumToPicture> Library::nextAlbum()
{
    const auto take = [this]() -> std::optional<LibraryStore::AlbumToPicture> {
        while (!m_albums.empty()) {
            LibraryStore::AlbumToPicture album = std::move(m_albums.front());
            m_albums.pop_front();
            if (m_albumsInWork.insert(album.id).second)
                return album;
        }
        return std::nullopt;
    };
    {
        const std::lock_guard guard(m_mutex);
        if (auto album = take())
            return album;
    }
    // The store is asked without our mutex: its lock may be held for a while.
    std::vector<LibraryStore::AlbumToPicture> more = m_store.albumsWithoutCover(albumsAtOnce);
    const std::lock_guard guard(m_mutex);
    if (m_albums.empty())
        m_albums.assign(std::make_move_iterator(more.begin()), std::make_move_iterator(more.end()));
    return take();
}

std::optional<ToAnalyse> Library::nextToAnalyse()
{
    const auto take = [this]() -> std::optional<ToAnalyse> {
        while (!m_files.empty()) {
            ToAnalyse file = std::move(m_files.front());
            m_files.pop_front();
            const auto skipped = m_skipped.find(file.fileId);
            if ((skipped == m_skipped.end() || skipped->second != file.stamp) && m_inWork.insert(file.fileId).second)
                return file;
        }
        return std::nullopt;
    };
    {
        const std::lock_guard guard(m_mutex);
        if (!m_status.isAnalysed)
            return std::nullopt;
        if (auto file = take())
            return file;
    }
    std::vector<ToAnalyse> more = m_store.nextToAnalyse(filesAtOnce, randomBelow(1u << 30));
    const std::lock_guard guard(m_mutex);
    if (m_files.empty())
        m_files.assign(std::make_move_iterator(more.begin()), std::make_move_iterator(more.end()));
    return take();
}

void Library::listen(media::MediaWorker &worker, media::MediaWorker &formats, const ToAnalyse &file)
{
    FileStamp stamp;
    const OpenedFile opened{openRegular(AT_FDCWD, (file.root / file.path).native(), &stamp)};
    if (opened.value < 0 || stamp != file.stamp) {
        const std::lock_guard guard(m_mutex);
        m_skipped[file.fileId] = file.stamp; // the next scan says what became of it
        return;
    }
    media::MediaAnalysis analysis;
    std::string problem;
    media::Outcome outcome{};
    const auto begin = SteadyClock::now();
    for (int attempt = 0; attempt < 2; ++attempt) {
        outcome = (file.needsTranscoding ? formats : worker).analyse(opened.value, file.seconds, &analysis, &problem);
        if ((outcome != media::Outcome::Crashed && outcome != media::Outcome::TooSlow) || m_isStopping)
            break;
        // Its folder stopped answering: a further call into it may not return. It is read again once that is back.
        if (isAway(file.root))
            return;
    }
    if (m_isStopping && outcome != media::Outcome::Done)
        return;
    if (outcome != media::Outcome::Done && isStorageFailing(opened.value)) {
        const std::lock_guard guard(m_mutex);
        m_skipped[file.fileId] = file.stamp;
        return;
    }
    switch (outcome) {
    case media::Outcome::Done: {
        const char *leftOut = analysis.seconds < shortestSeconds ? leftout::shortPiece
                              : analysis.isSpeechLike            ? leftout::speech
                                                                 : "";
        m_store.putAnalysis(file, analysis, leftOut);
        const std::lock_guard guard(m_mutex);
        m_musicHeard += analysis.seconds;
        m_timeListened += std::chrono::duration<double>(SteadyClock::now() - begin).count();
        break;
    }
    case media::Outcome::NoWorker:
        throw std::runtime_error(problem);
    case media::Outcome::Refused:
    case media::Outcome::NoRoom:
        m_store.putAnalysisFailure(file, leftout::damaged, problem);
        break;
    case media::Outcome::Crashed:
        m_store.putAnalysisFailure(file, leftout::crash, problem);
        break;
    case media::Outcome::TooSlow:
        m_store.putAnalysisFailure(file, leftout::slow, problem);
        break;
    }
}

std::string Library::coverOf(media::MediaWorker &worker, const std::filesystem::path &music)
{
    std::vector<std::pair<media::Operation, std::filesystem::path>> sources = {{media::Operation::Picture, music}};
    for (const std::filesystem::path &beside : picturesIn(music.parent_path()))
        sources.emplace_back(media::Operation::Cover, beside);
    for (const auto &[operation, path] : sources) {
        FileStamp stamp;
        const OpenedFile opened{openRegular(AT_FDCWD, path.native(), &stamp)};
        std::string jpeg;
        std::string problem;
        if (opened.value < 0)
            continue;
        const media::Outcome outcome = worker.readPicture(operation, opened.value, &jpeg, &problem);
        if (outcome == media::Outcome::NoWorker)
            throw std::runtime_error(problem);
        if (outcome == media::Outcome::Done)
            return jpeg;
        if (m_isStopping)
            break;
    }
    return {};
}

std::filesystem::path Library::writeCover(const std::string &name, const std::string &jpeg)
{
    if (jpeg.empty())
        return {};
    std::filesystem::path cover = m_settings.dataDirectory / "covers" / (name + ".jpg");
    if (!writeWhole(cover, jpeg))
        throw std::runtime_error("cannot write " + cover.string());
    return cover;
}

void Library::picture(media::MediaWorker &worker, const LibraryStore::AlbumToPicture &album)
{
    const std::string jpeg = coverOf(worker, album.root / album.path);
    if (!m_isStopping)
        m_store.setCover(album.id, writeCover(album.publicId, jpeg));
}

} // namespace velmora::server
