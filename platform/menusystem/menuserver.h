#pragma once

#include "arguments.h"
#include "menusocket.h"
#include "radioprocess.h"
#include "radiowatch.h"

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

#include <map>
#include <memory>
#include <optional>

class QSocketNotifier;

namespace menusystem {

// The device's menu system while it runs a radio: starts it, answers it, watches it, and passes on what commands ask.
// Ends the event loop with the radio's result when that has ended. One thread.
class MenuServer : public QObject {
    Q_OBJECT
public:
    explicit MenuServer(const Arguments &arguments);
    ~MenuServer() override;

    // Listens and starts the radio; false, with a reason, when it cannot listen. SIGINT and SIGTERM must be blocked
    // in the process: they are read here.
    bool start(const QString &socket, double scale, QString *reason);

private:
    struct Peer {
        int descriptor;
        std::unique_ptr<QSocketNotifier> notifier;
        ~Peer();
    };
    // A command that waits for the radio's answer.
    struct Waiting {
        int peer; // key in m_peers, which may be gone
        std::uint32_t id;
        netcommon::menu::MessageType type;
        qint64 since;
    };

    void acceptPeers();
    void readPeer(int number);
    void dropPeer(int number);
    void handleRadio(const netcommon::menu::Packet &packet);
    void handleCommand(int number, const netcommon::menu::Packet &packet);
    void answer(int number, std::uint32_t id, bool done, const QByteArray &text = {});
    void answered(const netcommon::menu::Packet &packet);
    QByteArray silentStatus() const;
    void giveUpWaiting(qint64 longerThanMs);
    void askToEnd();
    void readSignal();
    void tick();
    void finished();
    bool sendToRadio(netcommon::menu::MessageType type, std::uint32_t id = 0, std::uint32_t value = 0,
                     std::uint32_t flag = 0, const QByteArray &text = {});

    const Arguments m_arguments;
    QString m_socket;
    int m_listener = -1;
    int m_signals = -1;
    std::unique_ptr<QSocketNotifier> m_listenNotifier;
    std::unique_ptr<QSocketNotifier> m_signalNotifier;
    RadioProcess m_process;
    std::map<int, Peer> m_peers;
    int m_lastPeer = 0;
    std::optional<int> m_radio; // key in m_peers, after its Hello
    std::map<std::uint32_t, Waiting> m_waiting;
    std::uint32_t m_lastId = 0;
    QElapsedTimer m_clock;
    std::optional<RadioWatch> m_watch; // from the radio's start
    QTimer m_tick;
    bool m_hasRadioConnected = false; // at least once
    bool m_isEndOrdered = false;      // by a command or a signal
    bool m_isEnding = false;          // the radio has said that it ends
    bool m_isAskedBySignal = false;
    bool m_isExitSaid = false; // the radio's exit notice has arrived
};

} // namespace menusystem
