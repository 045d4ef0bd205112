#include "menuserver.h"

#include <QCoreApplication>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSocketNotifier>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <sys/signalfd.h>
#include <unistd.h>

namespace menusystem {

namespace menu = netcommon::menu;
using Action = RadioWatch::Action;

namespace {

constexpr int answerLimitSeconds = 8;

void say(const QString &text)
{
    std::fprintf(stderr, "velmora-menu: %s\n", qPrintable(text));
}

} // namespace

MenuServer::Peer::~Peer()
{
    notifier.reset();
    if (descriptor >= 0)
        ::close(descriptor);
}

MenuServer::MenuServer(const Arguments &arguments)
    : m_arguments(arguments)
{
    m_clock.start();
    connect(&m_process, &QProcess::finished, this, &MenuServer::finished);
    connect(&m_process, &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart)
            finished();
    });
    connect(&m_tick, &QTimer::timeout, this, &MenuServer::tick);
}

MenuServer::~MenuServer()
{
    m_process.disconnect(this);
    if (m_listener >= 0) {
        ::close(m_listener);
        QFile::remove(m_socket);
    }
    if (m_signals >= 0)
        ::close(m_signals);
}

bool MenuServer::start(const QString &socket, double scale, QString *reason)
{
    m_socket = socket;
    m_listener = menu::listenAt(QFile::encodeName(socket), reason);
    if (m_listener < 0)
        return false;
    m_listenNotifier = std::make_unique<QSocketNotifier>(m_listener, QSocketNotifier::Read);
    connect(m_listenNotifier.get(), &QSocketNotifier::activated, this, &MenuServer::acceptPeers);

    sigset_t caught;
    ::sigemptyset(&caught);
    ::sigaddset(&caught, SIGINT);
    ::sigaddset(&caught, SIGTERM);
    m_signals = ::signalfd(-1, &caught, SFD_CLOEXEC | SFD_NONBLOCK);
    m_signalNotifier = std::make_unique<QSocketNotifier>(m_signals, QSocketNotifier::Read);
    connect(m_signalNotifier.get(), &QSocketNotifier::activated, this, &MenuServer::readSignal);

    say(QStringLiteral("listening at %1, scale %2").arg(socket).arg(scale));
    m_watch.emplace(m_clock.elapsed(), 1000 * m_arguments.hangSeconds, 1000 * m_arguments.insistSeconds);
    m_tick.start(500);
    m_process.startRadio(m_arguments.program, socket, scale, m_arguments.isWindowed);
    return true;
}

void MenuServer::acceptPeers()
{
    const int descriptor = menu::acceptPeer(m_listener);
    if (descriptor < 0)
        return;
    const int number = ++m_lastPeer;
    Peer &peer = m_peers[number];
    peer.descriptor = descriptor;
    peer.notifier = std::make_unique<QSocketNotifier>(descriptor, QSocketNotifier::Read);
    connect(peer.notifier.get(), &QSocketNotifier::activated, this, [this, number] { readPeer(number); });
}

void MenuServer::readPeer(int number)
{
    const auto peer = m_peers.find(number);
    if (peer == m_peers.end())
        return;
    menu::Packet packet;
    switch (menu::receive(peer->second.descriptor, packet)) {
    case menu::Received::Nothing:
        return;
    case menu::Received::Closed:
        // Queued, because this runs inside the notifier that is deleted.
        peer->second.notifier->setEnabled(false);
        QMetaObject::invokeMethod(
            this, [this, number] { dropPeer(number); }, Qt::QueuedConnection);
        return;
    case menu::Received::Packet:
        break;
    }
    if (menu::typeOf(packet.message) == menu::MessageType::Hello && !m_radio) {
        m_radio = number;
        m_hasRadioConnected = true;
        if (m_isEndOrdered)
            sendToRadio(menu::MessageType::Exit); // ordered before the radio could hear it
    }
    if (m_radio == number)
        handleRadio(packet);
    else if (menu::typeOf(packet.message) != menu::MessageType::Hello)
        handleCommand(number, packet);
}

void MenuServer::dropPeer(int number)
{
    m_peers.erase(number);
    if (m_radio != number)
        return;
    m_radio.reset();
    giveUpWaiting(-1);
}

void MenuServer::handleRadio(const menu::Packet &packet)
{
    const qint64 now = m_clock.elapsed();
    switch (menu::typeOf(packet.message)) {
    case menu::MessageType::Hello:
    case menu::MessageType::Answer:
        m_watch->answered(now);
        answered(packet);
        break;
    case menu::MessageType::ExitRequest:
        // Always granted on this device: the answer is the order to exit.
        sendToRadio(menu::MessageType::Exit);
        m_watch->ending(now);
        break;
    case menu::MessageType::ExitResponse:
        m_isEnding = true;
        m_watch->ending(now);
        break;
    case menu::MessageType::Exited:
        m_isExitSaid = true;
        m_watch->ending(now);
        break;
    default:
        break;
    }
}

void MenuServer::answered(const menu::Packet &packet)
{
    const auto waiting = m_waiting.find(menu::field(packet.message, menu::idOffset));
    if (menu::typeOf(packet.message) != menu::MessageType::Answer || waiting == m_waiting.end())
        return;
    answer(waiting->second.peer, waiting->second.id,
           menu::AnswerValue(menu::field(packet.message, menu::valueOffset)) == menu::AnswerValue::Done, packet.text);
    m_waiting.erase(waiting);
}

void MenuServer::answer(int number, std::uint32_t id, bool done, const QByteArray &text)
{
    if (const auto peer = m_peers.find(number); peer != m_peers.end())
        menu::send(peer->second.descriptor,
                   menu::makeMessage(menu::MessageType::Answer, id,
                                     std::uint32_t(done ? menu::AnswerValue::Done : menu::AnswerValue::Failed)),
                   text);
}

// The status of a radio that does not answer.
QByteArray MenuServer::silentStatus() const
{
    const bool runs = m_process.state() != QProcess::NotRunning;
    return QJsonDocument(QJsonObject{{QStringLiteral("running"), runs},
                                     {QStringLiteral("answering"), false},
                                     {QStringLiteral("ending"), m_isEnding},
                                     {QStringLiteral("pid"), m_process.processId()}})
        .toJson(QJsonDocument::Compact);
}

void MenuServer::handleCommand(int number, const menu::Packet &packet)
{
    const auto &message = packet.message;
    const std::uint32_t id = menu::field(message, menu::idOffset);
    const menu::MessageType type = menu::typeOf(message);
    switch (type) {
    case menu::MessageType::Exit:
        askToEnd();
        answer(number, id, true);
        break;
    case menu::MessageType::ScreenSaver:
    case menu::MessageType::Network:
    case menu::MessageType::Key:
    case menu::MessageType::Text:
    case menu::MessageType::Status:
    case menu::MessageType::Screenshot: {
        const std::uint32_t ours = ++m_lastId;
        if (!m_isEnding && sendToRadio(type, ours, menu::field(message, menu::valueOffset),
                                       menu::field(message, menu::flagOffset), packet.text))
            m_waiting[ours] = {number, id, type, m_clock.elapsed()};
        else if (type == menu::MessageType::Status)
            answer(number, id, true, silentStatus());
        else
            answer(number, id, false, m_isEnding ? "the radio is ending" : "the radio is not there yet");
        break;
    }
    default:
        answer(number, id, false, "the menu system does not know this request");
    }
}

void MenuServer::giveUpWaiting(qint64 longerThanMs)
{
    for (auto waiting = m_waiting.begin(); waiting != m_waiting.end();) {
        if (m_clock.elapsed() - waiting->second.since <= longerThanMs) {
            ++waiting;
            continue;
        }
        const bool isStatus = waiting->second.type == menu::MessageType::Status;
        answer(waiting->second.peer, waiting->second.id, isStatus,
               isStatus ? silentStatus() : QByteArray("the radio does not answer"));
        waiting = m_waiting.erase(waiting);
    }
}

void MenuServer::askToEnd()
{
    m_isEndOrdered = true;
    m_watch->ending(m_clock.elapsed());
    // A radio that is still starting gets the order as soon as it connects; one whose connection is gone cannot be
    // asked.
    if (!sendToRadio(menu::MessageType::Exit) && m_hasRadioConnected)
        m_watch->insist(m_clock.elapsed());
}

void MenuServer::readSignal()
{
    signalfd_siginfo info;
    while (::read(m_signals, &info, sizeof info) == ssize_t(sizeof info)) {
        if (m_isAskedBySignal) {
            m_watch->insist(m_clock.elapsed()); // a second signal: no more waiting
            continue;
        }
        m_isAskedBySignal = true;
        say(QStringLiteral("asking the radio to exit"));
        askToEnd();
    }
}

void MenuServer::tick()
{
    giveUpWaiting(1000 * std::min(answerLimitSeconds, m_arguments.hangSeconds));
    if (m_process.state() == QProcess::NotRunning)
        return;
    switch (m_watch->step(m_clock.elapsed())) {
    case Action::Nothing:
        break;
    case Action::Ping:
        sendToRadio(menu::MessageType::Ping);
        break;
    case Action::ReportHang:
        say(QStringLiteral("the radio (process %1) has not answered for %2 seconds")
                .arg(m_process.processId())
                .arg(m_arguments.hangSeconds));
        break;
    case Action::ReportStuckExit:
        say(QStringLiteral("the radio (process %1) does not end: insisting").arg(m_process.processId()));
        break;
    case Action::Terminate:
        m_process.terminate();
        break;
    case Action::Kill:
        m_process.kill();
        break;
    }
}

bool MenuServer::sendToRadio(menu::MessageType type, std::uint32_t id, std::uint32_t value, std::uint32_t flag,
                             const QByteArray &text)
{
    const auto radio = m_radio ? m_peers.find(*m_radio) : m_peers.end();
    return radio != m_peers.end() &&
           menu::send(radio->second.descriptor, menu::makeMessage(type, id, value, flag), text);
}

void MenuServer::finished()
{
    // Its last messages may still be in the socket.
    while (m_radio && !m_isExitSaid) {
        menu::Packet packet;
        if (menu::receive(m_peers.at(*m_radio).descriptor, packet) != menu::Received::Packet)
            break;
        handleRadio(packet);
    }
    giveUpWaiting(-1);
    if (m_process.error() == QProcess::FailedToStart)
        say(QStringLiteral("%1 could not be started: %2").arg(m_arguments.program.first(), m_process.errorString()));
    else if (m_process.exitStatus() == QProcess::CrashExit)
        say(QStringLiteral("the radio was ended by signal %1").arg(m_process.exitCode()));
    else
        say(QStringLiteral("the radio has ended%1, exit code %2")
                .arg(m_isExitSaid ? QString() : QStringLiteral(" without a word"))
                .arg(m_process.exitCode()));
    QCoreApplication::exit(m_process.resultCode());
}

} // namespace menusystem
