#include "menuserver.h"

#include "reports.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRandomGenerator>
#include <QSocketNotifier>

#include <algorithm>
#include <climits>
#include <csignal>
#include <cstdio>
#include <malloc.h>
#include <poll.h>
#include <sys/signalfd.h>
#include <sys/wait.h>
#include <unistd.h>

namespace menusystem {

namespace menu = netcommon::menu;
using Action = RadioWatch::Action;

namespace {

constexpr int answerLimitSeconds = 8;
constexpr int trimAfterMs = 5000;
constexpr std::uint32_t pingId = 0; // commands have ids from 1

void say(const QString &text)
{
    std::fprintf(stderr, "velmora-menu: %s\n", qPrintable(text));
}

// By SIGSTOP. A debugger's stop does not count. The state is only looked at, QProcess still waits for the end.
bool isStopped(pid_t pid)
{
    siginfo_t info{};
    return ::waitid(P_PID, id_t(pid), &info, WSTOPPED | WNOHANG | WNOWAIT) == 0 && info.si_pid == pid;
}

// Drops what nobody reads: a reader that hangs must not stop the supervisor.
void passOn(const QByteArray &output)
{
    for (qsizetype from = 0; from < output.size();) {
        pollfd out{STDOUT_FILENO, POLLOUT, 0};
        if (::poll(&out, 1, 0) <= 0 || !(out.revents & POLLOUT))
            return;
        const ssize_t written = ::write(STDOUT_FILENO, output.constData() + from,
                                        size_t(std::min<qsizetype>(output.size() - from, PIPE_BUF)));
        if (written <= 0)
            return;
        from += written;
    }
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
    , m_supervisor(arguments.isKiosk)
{
    m_clock.start();
    m_pause.setSingleShot(true);
    connect(&m_pause, &QTimer::timeout, this, [this] { begin({}); });
    connect(&m_process, &QProcess::readyReadStandardOutput, this, &MenuServer::readOutput);
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
    m_scale = scale;
    m_tick.start(500);
    begin(m_arguments.isSupervisor && QFileInfo(m_arguments.home).isExecutable() && !isServiceKnown()
              ? std::optional(Page::Service)
              : std::nullopt);
    return true;
}

// Starts the radio, or a page in its place.
void MenuServer::begin(std::optional<Page> page)
{
    if (m_run.peer)
        m_peers.erase(*m_run.peer); // its connection outlived its process
    m_run = Run();
    m_run.page = page;
    m_run.startedAt = m_clock.elapsed();
    m_watch.emplace(m_run.startedAt, RadioWatch::Limits{1000 * m_arguments.hangSeconds,
                                                        1000 * m_arguments.insistSeconds, m_arguments.isSupervisor});
    QStringList home{m_arguments.home, QStringLiteral("--page"),
                     QString::fromLatin1(nameOf(page.value_or(Page::Home)))};
    if (m_arguments.isKiosk)
        home += QStringLiteral("--kiosk");
    m_process.startRadio(page ? home : m_arguments.program, m_socket, m_scale, m_arguments.isWindowed);
    m_output.begin(m_process.processId());
    if (!page)
        m_phones.startFor(m_socket);
}

void MenuServer::readOutput()
{
    m_process.setReadChannel(QProcess::StandardOutput);
    while (m_process.bytesAvailable() > 0) {
        const QByteArray output = m_process.read(4096);
        passOn(output);
        m_output.read(output);
    }
    if (!m_arguments.isSupervisor || m_output.crash().isEmpty() || m_watch->isGivenUp())
        return;
    m_run.problem = QStringLiteral("crashed: ") + QString::fromLatin1(m_output.crash());
    m_watch->parked(m_clock.elapsed());
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
    if (menu::typeOf(packet.message) == menu::MessageType::Hello && !m_run.peer) {
        m_run.peer = number;
        m_run.hasConnected = true;
        if (!m_run.helloAt)
            m_run.helloAt = m_clock.elapsed();
        if (m_isEndOrdered)
            sendToRadio(menu::MessageType::Exit); // ordered before the radio could hear it
    }
    if (m_run.peer == number)
        handleRadio(packet);
    else if (menu::typeOf(packet.message) != menu::MessageType::Hello)
        handleCommand(number, packet);
}

void MenuServer::dropPeer(int number)
{
    m_peers.erase(number);
    if (m_run.peer != number)
        return;
    m_run.peer.reset();
    giveUpWaiting(-1);
}

void MenuServer::handleRadio(const menu::Packet &packet)
{
    const qint64 now = m_clock.elapsed();
    switch (menu::typeOf(packet.message)) {
    case menu::MessageType::Hello:
        m_watch->answered(now);
        break;
    case menu::MessageType::Answer:
        m_watch->answered(now);
        if (menu::field(packet.message, menu::idOffset) == pingId)
            readFlags(menu::field(packet.message, menu::flagOffset));
        else
            answered(packet);
        break;
    case menu::MessageType::ExitRequest:
        // Always granted on this device: the answer is the order to exit.
        m_run.isWished = menu::field(packet.message, menu::flagOffset) != 0;
        sendToRadio(menu::MessageType::Exit);
        m_watch->ending(now);
        break;
    case menu::MessageType::ExitResponse:
        m_run.isEnding = true;
        m_watch->ending(now);
        break;
    case menu::MessageType::Exited:
        m_run.isExitSaid = true;
        m_watch->ending(now);
        break;
    case menu::MessageType::HouseKey:
        if (m_arguments.isSupervisor && !m_run.page && QFileInfo(m_arguments.home).isExecutable())
            orderEnd(Ending::House);
        break;
    default:
        break;
    }
}

void MenuServer::readFlags(std::uint32_t flags)
{
    using Box = RadioWatch::Box;
    m_run.hasPlayed = m_run.hasPlayed || (flags & menu::playsFlag);
    Box box = Box::None;
    if (flags & menu::lastBoxFlag)
        box = Box::Last;
    else if ((flags & menu::noticeFlag) && m_run.hasPlayed)
        box = Box::Notice;
    m_watch->shows(m_clock.elapsed(), box);
}

void MenuServer::answered(const menu::Packet &packet)
{
    const auto waiting = m_waiting.find(menu::field(packet.message, menu::idOffset));
    if (waiting == m_waiting.end())
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
                                     {QStringLiteral("ending"), m_run.isEnding},
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
    case menu::MessageType::Volume:
    case menu::MessageType::Sleep:
    case menu::MessageType::Station:
    case menu::MessageType::Field:
    case menu::MessageType::Shown:
    case menu::MessageType::Screenshot: {
        const std::uint32_t ours = ++m_lastId;
        if (!m_run.isEnding && sendToRadio(type, ours, menu::field(message, menu::valueOffset),
                                           menu::field(message, menu::flagOffset), packet.text))
            m_waiting[ours] = {number, id, type, m_clock.elapsed()};
        else if (type == menu::MessageType::Status)
            answer(number, id, true, silentStatus());
        else
            answer(number, id, false, m_run.isEnding ? "the radio is ending" : "the radio is not there yet");
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

// Everything ends: the radio, or the page in its place.
void MenuServer::askToEnd()
{
    m_isEndOrdered = true;
    if (m_process.state() == QProcess::NotRunning)
        quit(m_result);
    else
        orderEnd(Ending::Wish);
}

void MenuServer::orderEnd(Ending ending)
{
    m_run.ordered = ending;
    m_watch->ending(m_clock.elapsed());
    // A radio that is still starting gets the order as soon as it connects; one whose connection is gone cannot be
    // asked.
    if (!sendToRadio(menu::MessageType::Exit) && m_run.hasConnected)
        m_watch->insist(m_clock.elapsed());
}

void MenuServer::readSignal()
{
    signalfd_siginfo info;
    while (::read(m_signals, &info, sizeof info) == ssize_t(sizeof info)) {
        if (m_isAskedBySignal) {
            if (m_watch)
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
    const qint64 now = m_clock.elapsed();
    // What the start took is not needed again while the radio plays, which is for hours.
    if (!m_run.isTrimmed && now - m_run.startedAt >= trimAfterMs)
        m_run.isTrimmed = ::malloc_trim(0) >= 0;
    const auto pid = pid_t(m_process.processId());
    if (m_arguments.isSupervisor && isStopped(pid))
        m_watch->stopped(now);
    switch (m_watch->step(now)) {
    case Action::Nothing:
        break;
    case Action::Ping:
        sendToRadio(menu::MessageType::Ping, pingId);
        break;
    case Action::ReportHang:
        say(QStringLiteral("the radio (process %1) has not answered for %2 seconds")
                .arg(pid)
                .arg(m_arguments.hangSeconds));
        break;
    case Action::Abort:
        m_run.problem = isStopped(pid) ? QStringLiteral("was stopped by a signal") : QStringLiteral("did not answer");
        // The crash reporter's dump says where it hangs. A stopped process cannot write it before it goes on.
        ::kill(pid, SIGABRT);
        ::kill(pid, SIGCONT);
        break;
    case Action::LeaveBox:
        say(QStringLiteral("nobody closes the radio's message: asking it to exit"));
        orderEnd(Ending::Fault);
        break;
    case Action::ReportStuckExit:
        say(QStringLiteral("the radio (process %1) does not end: insisting").arg(pid));
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
    const auto radio = m_run.peer ? m_peers.find(*m_run.peer) : m_peers.end();
    return radio != m_peers.end() &&
           menu::send(radio->second.descriptor, menu::makeMessage(type, id, value, flag), text);
}

void MenuServer::finished()
{
    // Its last messages may still be in the socket.
    while (m_run.peer && !m_run.isExitSaid) {
        menu::Packet packet;
        if (menu::receive(m_peers.at(*m_run.peer).descriptor, packet) != menu::Received::Packet)
            break;
        handleRadio(packet);
    }
    readOutput();
    giveUpWaiting(-1);
    const QString name = m_run.page ? QStringLiteral("the page") : QStringLiteral("the radio");
    if (m_process.error() == QProcess::FailedToStart)
        say(QStringLiteral("%1 could not be started: %2").arg(m_process.program(), m_process.errorString()));
    else if (m_process.exitStatus() == QProcess::CrashExit)
        say(QStringLiteral("%1 was ended by signal %2").arg(name).arg(m_process.exitCode()));
    else
        say(QStringLiteral("%1 has ended%2, exit code %3")
                .arg(name, m_run.isExitSaid ? QString() : QStringLiteral(" without a word"))
                .arg(m_process.exitCode()));
    if (!m_run.page)
        m_result = m_process.resultCode();
    if (!m_arguments.isSupervisor)
        quit(m_result);
    else
        carryOut(afterEnd());
}

Ending MenuServer::endingOfRadio() const
{
    if (m_process.error() == QProcess::FailedToStart)
        return Ending::NotStarted;
    if (m_isEndOrdered)
        return Ending::Wish;
    if (m_run.ordered)
        return *m_run.ordered;
    // The exit notice comes last: without it an error's exit code means that the radio gave up on its way.
    const bool isOrderly =
        m_process.exitStatus() == QProcess::NormalExit && (m_run.isExitSaid || m_process.exitCode() == 0);
    if (m_run.isWished)
        return Ending::Wish;
    return isOrderly ? Ending::Fault : Ending::Crash;
}

Next MenuServer::afterEnd()
{
    const qint64 now = m_clock.elapsed();
    if (m_run.page) {
        const bool isAnswer = m_process.error() != QProcess::FailedToStart && !m_watch->isGivenUp() &&
                              m_process.exitStatus() == QProcess::NormalExit;
        if (m_isEndOrdered)
            return {Next::Kind::Quit};
        return m_supervisor.pageEnded(*m_run.page, isAnswer ? std::optional(m_process.exitCode()) : std::nullopt,
                                      now - m_run.helloAt.value_or(m_run.startedAt));
    }
    const Ending ending = endingOfRadio();
    if (ending == Ending::Crash)
        keepReport();
    // An order ends more than this run: also where a person who leaves the radio comes to Home.
    if (m_isEndOrdered)
        return {Next::Kind::Quit};
    return m_supervisor.radioEnded(ending, m_run.hasPlayed, now - m_run.startedAt, now);
}

void MenuServer::keepReport() const
{
    QString problem = m_run.problem;
    if (problem.isEmpty())
        problem = m_process.exitStatus() == QProcess::CrashExit
                      ? QStringLiteral("was ended by signal %1").arg(m_process.exitCode())
                      : QStringLiteral("ended with exit code %1 and without its exit notice").arg(m_process.exitCode());
    const QDateTime when = QDateTime::currentDateTime();
    const QString head = QStringLiteral("%1: the radio %2 after %3 seconds. The end of its output:\n\n")
                             .arg(when.toString(Qt::ISODate), problem)
                             .arg((m_clock.elapsed() - m_run.startedAt) / 1000);
    QString reason;
    const QString file = reports::keep(reports::usualFolder(qEnvironmentVariable("XDG_STATE_HOME"), QDir::homePath()),
                                       when, head.toUtf8() + reports::withoutSecrets(m_output.tail()), &reason);
    say(file.isEmpty() ? QStringLiteral("no report could be kept: ") + reason : QStringLiteral("report: ") + file);
}

// Queued, because this runs inside a signal of the process that starts the next program.
void MenuServer::carryOut(const Next &next)
{
    const auto later = [this](std::optional<Page> page) {
        QMetaObject::invokeMethod(
            this, [this, page] { m_isEndOrdered ? quit(m_result) : begin(page); }, Qt::QueuedConnection);
    };
    switch (next.kind) {
    case Next::Kind::Radio:
        later({});
        break;
    case Next::Kind::Page:
        later(next.page);
        break;
    case Next::Kind::Pause: {
        // Spread, so that radios that lost one service together do not all come back at once.
        const int ms = next.pauseMs * (90 + QRandomGenerator::global()->bounded(21)) / 100;
        say(QStringLiteral("the page does not work: the radio starts again in %1 seconds").arg(ms / 1000.0));
        m_pause.start(ms);
        break;
    }
    case Next::Kind::Restart:
        runSystemctl("reboot");
        break;
    case Next::Kind::SwitchOff:
        runSystemctl("poweroff");
        break;
    case Next::Kind::Quit:
        quit(m_result);
        break;
    }
}

void MenuServer::runSystemctl(const char *verb)
{
    const int code = QProcess::execute(QStringLiteral("systemctl"), {QString::fromLatin1(verb)});
    if (code == 0) {
        quit(0);
        return;
    }
    say(QStringLiteral("systemctl %1 failed with %2").arg(QLatin1String(verb)).arg(code));
    carryOut({Next::Kind::Page, Page::Home});
}

void MenuServer::quit(int code)
{
    m_pause.stop();
    QCoreApplication::exit(code);
}

} // namespace menusystem
