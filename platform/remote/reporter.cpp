#include "reporter.h"

#include "menusocket.h"

#include <QJsonDocument>

#include <cmath>
#include <poll.h>
#include <unistd.h>

namespace remote {

namespace menu = netcommon::menu;
using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

namespace {

constexpr auto usualPause = 400ms;
constexpr auto quickPause = 40ms; // after a key
constexpr auto quickTime = 800ms;
constexpr auto failedPause = 2000ms;
constexpr int answerMs = 2000;
constexpr double mostDrift = 2; // seconds

const QString positionName = QStringLiteral("position");

} // namespace

bool isNews(const QJsonObject &before, const QJsonObject &now, double seconds)
{
    QJsonObject then = before;
    QJsonObject rest = now;
    const double was = then.take(positionName).toDouble();
    const double is = rest.take(positionName).toDouble();
    const bool plays = now[QStringLiteral("playback")] == QLatin1String("playing");
    return then != rest || std::abs(is - was - (plays ? seconds : 0)) > mostDrift;
}

Reporter::Reporter(const velmora::ws::Config &config, SessionToken &token, QByteArray menuSocket)
    : m_menuSocket(std::move(menuSocket))
    , m_token(token)
    , m_calls(config, 20s)
    , m_thread([this] { run(); })
{
}

Reporter::~Reporter()
{
    {
        const std::lock_guard guard(m_mutex);
        m_isEnding = true;
    }
    m_wake.notify_one();
    m_calls.stop();
    m_thread.join();
    if (m_menu >= 0)
        ::close(m_menu);
}

void Reporter::setWatched(bool isWatched, bool isWanted)
{
    {
        const std::lock_guard guard(m_mutex);
        m_isWatched = isWatched;
        m_isWanted = m_isWanted || isWanted;
    }
    m_wake.notify_one();
}

bool Reporter::isWatched() const
{
    const std::lock_guard guard(m_mutex);
    return m_isWatched;
}

void Reporter::lookSoon()
{
    {
        const std::lock_guard guard(m_mutex);
        m_quickUntil = Clock::now() + quickTime;
    }
    m_wake.notify_one();
}

void Reporter::run()
{
    while (sleep())
        look();
}

bool Reporter::sleep()
{
    std::unique_lock lock(m_mutex);
    const auto isOver = [this] { return m_isEnding || m_isWanted; };
    if (!m_isWatched && !m_isEnding) {
        m_wake.wait(lock, [this] { return m_isEnding || m_isWatched; });
        m_isWanted = true;
    } else if (Clock::now() < m_quickUntil) {
        m_wake.wait_for(lock, quickPause, isOver);
    } else {
        const auto quick = m_quickUntil;
        m_wake.wait_for(lock, usualPause, [&] { return isOver() || !m_isWatched || m_quickUntil != quick; });
    }
    return !m_isEnding;
}

void Reporter::look()
{
    const QJsonObject now = QJsonDocument::fromJson(askMenu()).object();
    bool isWanted = false;
    {
        const std::lock_guard guard(m_mutex);
        if (!m_isWatched)
            return;
        isWanted = m_isWanted;
    }
    const auto at = Clock::now();
    const double seconds = std::chrono::duration<double>(at - m_reportedAt).count();
    const velmora::ws::SecretText token = m_token.get();
    if (now.isEmpty() || token.empty()) {
        pause();
        return;
    }
    if (!isWanted && !isNews(m_reported, now, seconds))
        return;
    const QByteArray body = QJsonDocument(now).toJson(QJsonDocument::Compact);
    const ServiceAnswer answer =
        m_calls.call("remoteReport", token, velmora::ws::SecretText(body.constData(), size_t(body.size())));
    const bool isTaken = answer.kind == ServiceAnswer::Kind::Answered && answer.code == 0;
    {
        const std::lock_guard guard(m_mutex);
        m_isWanted = !isTaken;
        if (isTaken)
            m_isWatched = answer.data[QStringLiteral("isWatched")].toBool();
    }
    m_reported = now;
    m_reportedAt = at;
    if (!isTaken)
        pause();
}

// After what did not work, so that it is not tried again at once.
void Reporter::pause()
{
    std::unique_lock lock(m_mutex);
    m_wake.wait_for(lock, failedPause, [this] { return m_isEnding; });
}

// What the radio shows, as JSON; empty when it does not answer.
QByteArray Reporter::askMenu()
{
    QString reason;
    if (m_menu < 0)
        m_menu = menu::connectTo(m_menuSocket, &reason);
    if (m_menu >= 0 && menu::send(m_menu, menu::makeMessage(menu::MessageType::Shown))) {
        pollfd watched{m_menu, POLLIN, 0};
        menu::Packet answer;
        if (::poll(&watched, 1, answerMs) > 0 && menu::receive(m_menu, answer) == menu::Received::Packet) {
            const auto value = menu::AnswerValue(menu::field(answer.message, menu::valueOffset));
            return value == menu::AnswerValue::Done ? answer.text : QByteArray();
        }
    }
    if (m_menu >= 0)
        ::close(std::exchange(m_menu, -1)); // an answer that comes late belongs to no later question
    return {};
}

} // namespace remote
