#pragma once

#include <functional>
#include <QByteArray>
#include <QHash>
#include <QJsonObject>
#include <QList>
#include <QTcpServer>
#include <QTcpSocket>

// A station service whose answers the test scripts, valid or not. Serves from the event loop of its thread.
class WsTestServer : public QObject {
    Q_OBJECT

public:
    struct Seen {
        QString function;
        QByteArray token; // empty: none was sent
        QJsonObject body;
        QByteArray head;
        int connection = 0; // counted from 1
    };
    struct Reply {
        QByteArray bytes;   // as sent over the connection; empty: no answer
        bool isCut = false; // the connection is closed after them
        int dripMs = 0;     // not 0: one byte comes, and then the others with such pauses
    };
    using Script = std::function<Reply(const Seen &)>;

    // With a socket factory the server speaks what that socket speaks (TLS).
    explicit WsTestServer(std::function<QTcpSocket *(qintptr)> makeSocket = {});
    QByteArray address(const char *scheme = "http") const;
    quint16 close();           // returns the port; open connections stay
    bool listen(quint16 port); // again

    // Answers for one function: the given ones in turn, the last one from then on. Without any: code 0, empty data.
    void answer(const QString &function, const QList<Reply> &replies);
    void answer(const QString &function, const QJsonObject &data);
    void answer(const QString &function, int code);
    void setScript(Script script) { m_script = std::move(script); } // for every function

    static Reply http(const QByteArray &body, int status = 200, const QByteArray &moreHead = {});
    static Reply code(int code);
    static Reply data(const QJsonObject &data);

    QList<Seen> seen;
    QStringList functions() const;

private:
    class Listener;
    void serve(QTcpSocket *socket);
    Reply replyTo(const Seen &request);

    Listener *m_listener;
    int m_connections = 0;
    QHash<QString, QList<Reply>> m_answers;
    Script m_script;
};
