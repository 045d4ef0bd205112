#pragma once

#include <QByteArray>
#include <QString>

#include <memory>

namespace netcommon {

class HttpDownload;

// What HttpDownload does, behind an interface because it lies in the media module. GUI thread.
class PictureDownload {
public:
    PictureDownload() = default;
    virtual ~PictureDownload() = default; // ends the current request
    PictureDownload(const PictureDownload &) = delete;
    PictureDownload &operator=(const PictureDownload &) = delete;
    virtual void setFolder(const QString &path) = 0;
    // The result comes as the owner's signal, after this has returned.
    virtual void request(const QByteArray &url) = 0;
};

// `owner` outlives the result and is the parent of what the transfer needs.
std::unique_ptr<PictureDownload> makePictureDownload(HttpDownload *owner);

} // namespace netcommon
