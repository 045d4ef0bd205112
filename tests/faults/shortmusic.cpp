#include "shortmusic.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>

#include <memory>
#include <sndfile.h>
#include <vector>

namespace faults {

namespace {

struct CloseSound {
    void operator()(SNDFILE *file) const { ::sf_close(file); }
};
using Sound = std::unique_ptr<SNDFILE, CloseSound>;

bool shortenTrack(const QString &from, const QString &to, int seconds)
{
    SF_INFO info{};
    const Sound whole(::sf_open(QFile::encodeName(from).constData(), SFM_READ, &info));
    if (!whole)
        return false;
    std::vector<short> samples(size_t(info.samplerate) * size_t(info.channels) * size_t(seconds));
    const sf_count_t frames = ::sf_readf_short(whole.get(), samples.data(), sf_count_t(info.samplerate) * seconds);
    SF_INFO made{0, info.samplerate, info.channels, info.format, 0, 0};
    const QString part = to + ".part";
    {
        const Sound copy(::sf_open(QFile::encodeName(part).constData(), SFM_WRITE, &made));
        if (!copy)
            return false;
        for (int tag = SF_STR_FIRST; tag <= SF_STR_LAST; ++tag)
            if (const char *text = ::sf_get_string(whole.get(), tag))
                ::sf_set_string(copy.get(), tag, text);
        if (::sf_writef_short(copy.get(), samples.data(), frames) != frames)
            return false;
    }
    return QFile::rename(part, to);
}

} // namespace

bool shortenMusic(const QString &from, const QString &to, int seconds)
{
    const QDir source(from);
    QDirIterator found(from, QDir::Files, QDirIterator::Subdirectories);
    while (found.hasNext()) {
        const QString file = found.next();
        const QString copy = QDir(to).filePath(source.relativeFilePath(file));
        if (QFile::exists(copy))
            continue;
        const bool isTrack = file.contains("/music/") && file.endsWith(".flac");
        if (!QDir().mkpath(QFileInfo(copy).path()) ||
            !(isTrack ? shortenTrack(file, copy, seconds) : QFile::copy(file, copy)))
            return false;
    }
    return true;
}

} // namespace faults
