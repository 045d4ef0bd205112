#pragma once

#include "arguments.h"
#include "menusocket.h"
#include "outputreader.h"
#include "phonechannel.h"
#include "radioprocess.h"
#include "radiowatch.h"
#include "supervisor.h"

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

#include <map>
#include <memory>
#include <optional>

class QSocketNotifier;

namespace menusystem {

// The device's menu system while it runs a radio: starts it, answers it, watches it, and passes on what commands ask.
// When the radio has ended, the event loop ends with its result. A supervisor decides instead what follows: the radio
// again, or a page of velmora-home, which runs in the radio's place. One thread.
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

    // The process that has the screen, from its start to its end.
    struct Run {
        std::optional<Page> page;      // none: the radio
        std::optional<int> peer;       // key in m_peers, after its Hello
        std::optional<Ending> ordered; // what it was ordered to end for
        std::optional<qint64> helloAt;
        qint64 startedAt = 0;
        bool hasConnected = false; // at least once
        bool isEnding = false;     // it has said that it ends
        bool isExitSaid = false;   // its exit notice has arrived
        bool isWished = false;     // it asked for the exit that a person wishes
        bool hasPlayed = false;    // music was heard
        bool isTrimmed = false;    // memory that its start needed was given back
        QString problem;           // why it was given up
    };

    void begin(std::optional<Page> page);
    void carryOut(const Next &next);
    void quit(int code);
    void runSystemctl(const char *verb);
    Ending endingOfRadio() const;
    Next afterEnd();
    void keepReport() const;
    void readOutput();
    void acceptPeers();
    void readPeer(int number);
    void dropPeer(int number);
    void handleRadio(const netcommon::menu::Packet &packet);
    void handleCommand(int number, const netcommon::menu::Packet &packet);
    void answer(int number, std::uint32_t id, bool done, const QByteArray &text = {});
    void answered(const netcommon::menu::Packet &packet);
    void readFlags(std::uint32_t flags);
    QByteArray silentStatus() const;
    void giveUpWaiting(qint64 longerThanMs);
    void askToEnd();
    void orderEnd(Ending ending);
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
    Run m_run;
    OutputReader m_output; // of the run
    PhoneChannel m_phones;
    std::map<std::uint32_t, Waiting> m_waiting;
    std::uint32_t m_lastId = 0;
    QElapsedTimer m_clock;
    std::optional<RadioWatch> m_watch; // of the run
    Supervisor m_supervisor;
    double m_scale = 1;
    QTimer m_tick;
    QTimer m_pause;              // until the radio starts again, while no page can be shown
    int m_result = 0;            // of the last run of the radio
    bool m_isEndOrdered = false; // by a command or a signal: everything ends
    bool m_isAskedBySignal = false;
};

} // namespace menusystem
