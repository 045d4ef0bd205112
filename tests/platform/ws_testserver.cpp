#include "ws_testserver.h"

#include <memory>
#include <QJsonDocument>

class WsTestServer::Listener : public QTcpServer {
public:
    Listener(WsTestServer *server, std::function<QTcpSocket *(qintptr)> makeSocket)
        : QTcpServer(server)
        , m_server(server)
        , m_makeSocket(std::move(makeSocket))
    {
    }

protected:
    void incomingConnection(qintptr descriptor) override
    {
        QTcpSocket *socket = nullptr;
        if (m_makeSocket) {
            socket = m_makeSocket(descriptor);
        } else {
            socket = new QTcpSocket;
            socket->setSocketDescriptor(descriptor);
        }
        socket->setParent(this);
        m_server->serve(socket);
    }

private:
    WsTestServer *m_server;
    std::function<QTcpSocket *(qintptr)> m_makeSocket;
};

WsTestServer::WsTestServer(std::function<QTcpSocket *(qintptr)> makeSocket)
    : m_listener(new Listener(this, std::move(makeSocket)))
{
    if (!m_listener->listen(QHostAddress::LocalHost))
        qFatal("no port on the loopback device");
}

QByteArray WsTestServer::address(const char *scheme) const
{
    return QByteArray(scheme) + "://127.0.0.1:" + QByteArray::number(m_listener->serverPort());
}

quint16 WsTestServer::close()
{
    const quint16 port = m_listener->serverPort();
    m_listener->close();
    return port;
}

bool WsTestServer::listen(quint16 port)
{
    return m_listener->listen(QHostAddress::LocalHost, port);
}

void WsTestServer::answer(const QString &function, const QList<Reply> &replies)
{
    m_answers[function] = replies;
}

void WsTestServer::answer(const QString &function, const QJsonObject &object)
{
    answer(function, QList<Reply>{data(object)});
}

void WsTestServer::answer(const QString &function, int result)
{
    answer(function, QList<Reply>{code(result)});
}

WsTestServer::Reply WsTestServer::http(const QByteArray &body, int status, const QByteArray &moreHead)
{
    return {"HTTP/1.1 " + QByteArray::number(status) +
            " Said\r\nContent-Type: application/json; charset=utf-8\r\nContent-Length: " +
            QByteArray::number(body.size()) + "\r\n" + moreHead + "\r\n" + body};
}

WsTestServer::Reply WsTestServer::code(int code)
{
    return http("{\"code\":" + QByteArray::number(code) + ",\"message\":\"as told\"}");
}

WsTestServer::Reply WsTestServer::data(const QJsonObject &data)
{
    return http(QJsonDocument(QJsonObject{{"code", 0}, {"data", data}}).toJson(QJsonDocument::Compact));
}

QStringList WsTestServer::functions() const
{
    QStringList names;
    for (const Seen &request : seen)
        names += request.function;
    return names;
}

WsTestServer::Reply WsTestServer::replyTo(const Seen &request)
{
    if (m_script)
        return m_script(request);
    const auto answers = m_answers.find(request.function);
    if (answers == m_answers.end() || answers->isEmpty())
        return data({});
    return answers->size() > 1 ? answers->takeFirst() : answers->first();
}

void WsTestServer::serve(QTcpSocket *socket)
{
    const int connection = ++m_connections;
    const auto buffer = std::make_shared<QByteArray>();
    connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
    connect(socket, &QTcpSocket::readyRead, this, [this, socket, buffer, connection] {
        buffer->append(socket->readAll());
        for (;;) {
            const qsizetype headEnd = buffer->indexOf("\r\n\r\n");
            if (headEnd < 0)
                return;
            Seen request;
            request.head = buffer->left(headEnd);
            request.connection = connection;
            qsizetype length = 0;
            for (const QByteArray &rawLine : request.head.split('\n')) {
                const QByteArray line = rawLine.trimmed();
                if (line.toLower().startsWith("content-length:"))
                    length = line.mid(15).trimmed().toInt();
                if (line.startsWith("Authorization: Bearer "))
                    request.token = line.mid(22);
            }
            if (buffer->size() < headEnd + 4 + length)
                return;
            const QByteArray firstLine = request.head.left(request.head.indexOf("\r\n"));
            const QByteArray path = firstLine.split(' ').value(1);
            request.function = QString::fromLatin1(path.startsWith("/v1/") ? path.mid(4) : path);
            request.body = QJsonDocument::fromJson(buffer->mid(headEnd + 4, length)).object();
            buffer->remove(0, headEnd + 4 + length);
            seen += request;
            const Reply reply = replyTo(request);
            if (reply.dripMs > 0) {
                auto *const drip = new QTimer(socket);
                connect(drip, &QTimer::timeout, socket, [socket, bytes = reply.bytes]() mutable {
                    socket->write(bytes.left(1));
                    bytes.remove(0, 1);
                });
                drip->start(reply.dripMs);
                return;
            }
            socket->write(reply.bytes);
            if (reply.isCut) {
                socket->disconnectFromHost();
                return;
            }
        }
    });
}
