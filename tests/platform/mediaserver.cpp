#include "mediaserver.h"

#include <QFile>
#include <QHostAddress>
#include <QTcpServer>
#include <QTcpSocket>
#include <QtEndian>
#include <QTimer>

#include <cmath>

#include <sys/socket.h>

namespace {

constexpr char askedProperty[] = "asked"; // property of a socket on which a request came
constexpr int paceMs = 20;
// Most bytes in the socket, so that the server notices a client that stops reading.
constexpr qint64 inFlight = 64 * 1024;

void reset(QTcpSocket *socket)
{
    const linger now{1, 0};
    ::setsockopt(int(socket->socketDescriptor()), SOL_SOCKET, SO_LINGER, &now, sizeof now);
    socket->abort();
}

// One request and its answer; dies with its socket.
class Connection : public QObject {
public:
    Connection(QTcpSocket *socket, std::function<MediaFile(const MediaRequest &, qint64 *cutAt)> take)
        : QObject(socket)
        , m_socket(socket)
        , m_take(std::move(take))
    {
        connect(socket, &QTcpSocket::readyRead, this, [this] { read(); });
        connect(socket, &QTcpSocket::bytesWritten, this, [this] { send(); });
        connect(&m_pace, &QTimer::timeout, this, [this] { send(); });
        connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
    }

private:
    void read()
    {
        m_head += m_socket->readAll();
        const qsizetype end = m_head.indexOf("\r\n\r\n");
        if (m_isAnswered || end < 0)
            return;
        m_isAnswered = true;
        m_socket->setProperty(askedProperty, true);
        QList<QByteArray> lines = m_head.left(end).split('\n');
        MediaRequest request;
        request.path = lines.takeFirst().split(' ').value(1);
        for (const QByteArray &line : lines) {
            const qsizetype colon = line.indexOf(':');
            request.headers[line.left(colon).trimmed().toLower()] = line.mid(colon + 1).trimmed();
        }
        m_file = m_take(request, &m_cutAt);
        if (!m_file.silent)
            answer(request.headers.value("range"));
    }

    void answer(const QByteArray &range)
    {
        const qint64 size = m_file.body.size();
        int status = m_file.status;
        if (status == 200 && m_file.ranges && range.startsWith("bytes=")) {
            m_at = range.mid(6, range.indexOf('-') - 6).toLongLong();
            status = m_at < size ? 206 : 416;
        }
        QByteArray head = "HTTP/1.1 " + QByteArray::number(status) +
                          " Test\r\nConnection: close\r\nContent-Type: " + m_file.type + "\r\n" + m_file.headers;
        if (m_file.ranges)
            head += "Accept-Ranges: bytes\r\n";
        if (!m_file.location.isEmpty())
            head += "Location: " + m_file.location + "\r\n";
        if (!m_file.etag.isEmpty())
            head += "ETag: " + m_file.etag + "\r\n";
        if (status == 206)
            head += "Content-Range: bytes " + QByteArray::number(m_at) + '-' + QByteArray::number(size - 1) + '/' +
                    QByteArray::number(size) + "\r\n";
        if (status == 416)
            m_at = size;
        if (m_file.length == MediaFile::Length::Announced)
            head += "Content-Length: " + QByteArray::number(size - m_at + m_file.announcedExtra) + "\r\n";
        else if (m_file.length == MediaFile::Length::Chunked)
            head += "Transfer-Encoding: chunked\r\n";
        m_socket->write(head + "\r\n");
        m_isSending = true;
        if (m_file.bytesPerSecond > 0)
            m_pace.start(paceMs);
        m_clock.start();
        m_from = m_at;
        send();
    }

    void send()
    {
        if (!m_isSending)
            return;
        const qint64 size = m_file.body.size();
        const qint64 stop = m_cutAt >= 0 ? qMin(m_cutAt, size) : size;
        qint64 allowed = inFlight - m_socket->bytesToWrite();
        if (m_file.bytesPerSecond > 0)
            allowed = qMin(allowed, m_from + m_clock.elapsed() * m_file.bytesPerSecond / 1000 - m_at);
        const qint64 count = qMin(allowed, stop - m_at);
        if (count > 0) {
            const QByteArray bytes = m_file.body.mid(m_at, count);
            m_at += count;
            m_socket->write(m_file.length == MediaFile::Length::Chunked
                                ? QByteArray::number(count, 16) + "\r\n" + bytes + "\r\n"
                                : bytes);
        }
        if (m_at < stop || m_socket->bytesToWrite() > 0)
            return; // called again when bytes have left
        m_isSending = false;
        m_pace.stop();
        if (m_cutAt < 0) {
            if (m_file.length == MediaFile::Length::Chunked)
                m_socket->write("0\r\n\r\n");
            m_socket->disconnectFromHost();
        } else if (m_file.cut == MediaFile::Cut::Reset) {
            // A reset would discard what the kernel still holds; the client must receive all of it.
            QTimer::singleShot(paceMs, this, [this] { reset(m_socket); });
        } else if (m_file.cut == MediaFile::Cut::Close) {
            m_socket->disconnectFromHost();
        }
    }

    QTcpSocket *const m_socket;
    const std::function<MediaFile(const MediaRequest &, qint64 *)> m_take;
    QByteArray m_head;
    bool m_isAnswered = false;
    bool m_isSending = false;
    MediaFile m_file;
    qint64 m_cutAt = -1;
    qint64 m_at = 0;
    qint64 m_from = 0;
    QTimer m_pace;
    QElapsedTimer m_clock;
};

} // namespace

class MediaServer::Listener : public QTcpServer {
public:
    Listener()
    {
        connect(this, &QTcpServer::newConnection, this, [this] {
            while (QTcpSocket *const socket = nextPendingConnection())
                new Connection(socket, [this](const MediaRequest &request, qint64 *cutAt) {
                    const QMutexLocker lock(&mutex);
                    const MediaFile file = files.value(request.path, MediaFile{.body = "nothing", .status = 404});
                    *cutAt = file.cutAt.value(served[request.path]++, -1);
                    requests.append(request);
                    return file;
                });
        });
    }
    void dropAll()
    {
        for (auto *const socket : findChildren<QTcpSocket *>()) {
            reset(socket);
            delete socket;
        }
    }

    mutable QMutex mutex;
    QMap<QByteArray, MediaFile> files;
    QMap<QByteArray, int> served;
    QList<MediaRequest> requests;
    quint16 port = 0;
};

MediaServer::MediaServer()
    : m_listener(new Listener)
{
    m_listener->moveToThread(&m_thread);
    m_thread.start();
    up();
}

MediaServer::~MediaServer()
{
    down();
    m_thread.quit();
    m_thread.wait();
}

void MediaServer::down()
{
    QMetaObject::invokeMethod(
        m_listener.get(),
        [this] {
            m_listener->close();
            m_listener->dropAll();
        },
        Qt::BlockingQueuedConnection);
}

void MediaServer::up()
{
    QMetaObject::invokeMethod(
        m_listener.get(),
        [this] {
            if (!m_listener->listen(QHostAddress::LocalHost, m_listener->port))
                qFatal("MediaServer: %s", qUtf8Printable(m_listener->errorString()));
            m_listener->port = m_listener->serverPort();
        },
        Qt::BlockingQueuedConnection);
}

QByteArray MediaServer::url(const QByteArray &path) const
{
    return "http://127.0.0.1:" + QByteArray::number(m_listener->port) + path;
}

void MediaServer::serve(const QByteArray &path, const MediaFile &file)
{
    const QMutexLocker lock(&m_listener->mutex);
    m_listener->files[path] = file;
    m_listener->served.remove(path);
}

QList<MediaRequest> MediaServer::requests(const QByteArray &path) const
{
    const QMutexLocker lock(&m_listener->mutex);
    QList<MediaRequest> found;
    for (const MediaRequest &request : m_listener->requests)
        if (request.path == path)
            found.append(request);
    return found;
}

int MediaServer::openConnections() const
{
    int count = 0;
    QMetaObject::invokeMethod(
        m_listener.get(),
        [&] {
            for (const auto *const socket : m_listener->findChildren<QTcpSocket *>())
                count += socket->property(askedProperty).toBool();
        },
        Qt::BlockingQueuedConnection);
    return count;
}

QByteArray MediaServer::refusedUrl()
{
    QTcpServer once; // its port is free again afterwards
    once.listen(QHostAddress::LocalHost);
    return "http://127.0.0.1:" + QByteArray::number(once.serverPort()) + "/refused";
}

QByteArray mediasample::wav(int ms)
{
    const quint32 count = quint32(ms) * 8;
    QByteArray bytes("RIFF....WAVEfmt ................data....");
    bytes.resize(wavHeader);
    uchar *const at = reinterpret_cast<uchar *>(bytes.data());
    qToLittleEndian<quint32>(36 + count, at + 4);
    qToLittleEndian<quint32>(16, at + 16);
    qToLittleEndian<quint16>(1, at + 20); // PCM
    qToLittleEndian<quint16>(1, at + 22); // mono
    qToLittleEndian<quint32>(8000, at + 24);
    qToLittleEndian<quint32>(8000, at + 28);
    qToLittleEndian<quint16>(1, at + 32);
    qToLittleEndian<quint16>(8, at + 34);
    memcpy(at + 36, "data", 4);
    qToLittleEndian<quint32>(count, at + 40);
    for (quint32 i = 0; i < count; ++i)
        bytes.append(char(128 + int(50 * std::sin(i * 0.17))));
    return bytes;
}

QByteArray mediasample::noise(qsizetype size)
{
    QByteArray bytes;
    for (quint32 i = 0, x = 7; i < quint32(size); ++i, x = x * 1664525 + 1013904223)
        bytes.append(char(x >> 24));
    return bytes;
}

QByteArray mediasample::file(const char *name)
{
    QFile file(qEnvironmentVariable("VELMORA_TEST_DATA", VELMORA_SOURCE_DIR "/tests/data") + "/audio/" + name);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("%s: %s", qUtf8Printable(file.fileName()), qUtf8Printable(file.errorString()));
    return file.readAll();
}
