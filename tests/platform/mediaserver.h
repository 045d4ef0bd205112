#pragma once

#include <QByteArray>
#include <QList>
#include <QMap>
#include <QMutex>
#include <QThread>

#include <memory>

// What the server does with one path. The defaults are a well-behaved file.
struct MediaFile {
    QByteArray body = {};
    QByteArray type = "audio/mpeg"; // may lie
    int status = 200;
    QByteArray location = {}; // of a redirect
    QByteArray etag = {};
    QByteArray headers = {}; // more of them, each with its line's end
    enum class Length { Announced, Chunked, Unknown } length = Length::Announced;
    bool ranges = true;
    qint64 bytesPerSecond = 0; // 0: as fast as it is taken
    qint64 announcedExtra = 0; // added to the announced length: the file is shorter than it says
    bool silent = false;       // takes the request and never answers
    // One entry for each request, in order: the offset in the file at which its answer is cut; -1: not cut.
    QList<qint64> cutAt = {};
    enum class Cut { Reset, Close, Stall } cut = Cut::Reset; // Stall: the connection stays open and nothing more comes
};

struct MediaRequest {
    QByteArray path;
    QMap<QByteArray, QByteArray> headers; // names in lower case
};

// A web server on a loopback port of its own, in its own thread, for tests: throttles, stalls, cuts and lies per path.
// All members may be called from the test's thread.
class MediaServer {
public:
    MediaServer();
    ~MediaServer();

    QByteArray url(const QByteArray &path) const; // "http://127.0.0.1:PORT" + path
    void serve(const QByteArray &path, const MediaFile &file);
    QList<MediaRequest> requests(const QByteArray &path) const;
    // Open connections on which a request arrived. Clients may hold further idle ones.
    int openConnections() const;

    // As if the program had been killed: connections are reset, new ones refused, until up().
    void down();
    void up();

    // An address on which nobody listens.
    static QByteArray refusedUrl();

private:
    class Listener;
    QThread m_thread;
    std::unique_ptr<Listener> m_listener;
};

// Test material made here: a WAV of a quiet tone, 8 kHz, 8 bit, mono, so that 8 bytes are a millisecond.
namespace mediasample {
constexpr qint64 wavHeader = 44;
QByteArray wav(int ms);
// Bytes that are no known format, the same each time.
QByteArray noise(qsizetype size);
// A file of tests/data/audio.
QByteArray file(const char *name);
} // namespace mediasample
