#include "worker.h"

#include "devicestate.h"
#include "handles.h"
#include "requestbody.h"

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <new>
#include <numeric>
#include <pthread.h>
#include <sodium.h>

namespace velmora::ws {

namespace {

// The other threads handle the signals of the process. A broken pipe is reported as an error of the transfer.
void blockSignals()
{
    sigset_t signals;
    sigfillset(&signals);
    for (const int fault : {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT, SIGTRAP, SIGSYS})
        sigdelset(&signals, fault);
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
}

Reply readAnswer(const Command &command, const Answer &answer, Arena &memory)
{
    Reply reply;
    switch (answer.end) {
    case Answer::End::Broken:
        reply.code = VLM_WS_ERR_ERROR_CURL_FAILURE;
        return reply;
    case Answer::End::TooLarge:
        reply.code = VLM_WS_ERR_REPLY_TOO_LARGE;
        return reply;
    case Answer::End::Complete:
        break;
    }
    try {
        return parseReply(command, answer.httpStatus, answer.body, memory);
    } catch (const std::bad_alloc &) {
        reply.code = VLM_WS_ERR_OUT_OF_MEMORY;
        return reply;
    }
}

bool isLogin(const Command &command)
{
    return command.id == VLM_WS_MSGID_PARTNER_LOGIN || command.id == VLM_WS_MSGID_USER_LOGIN;
}

// 32 hexadecimal digits that no other request has.
std::string requestKey()
{
    unsigned char bytes[16];
    randombytes_buf(bytes, sizeof bytes);
    char digits[2 * sizeof bytes + 1];
    return sodium_bin2hex(digits, sizeof digits, bytes, sizeof bytes);
}

// Whether the same request may succeed later.
bool mayPass(const Answer &answer, const Reply &reply)
{
    switch (reply.code) {
    case VLM_WS_ERR_ERROR_CURL_FAILURE:
        return answer.mayPass;
    case VLM_WS_ERR_INTERNAL:
    case VLM_WS_ERR_TOO_MANY_REQUESTS:
        return true;
    case VLM_WS_ERR_MALFORMED_REPLY: // a gateway's own page, while there is no service behind it
        return answer.httpStatus >= 502 && answer.httpStatus <= 504;
    default:
        return false;
    }
}

bool isPlayable(const VLM_PLAYLIST_ENTRY_T &entry)
{
    return !entry.isTrack || std::strcmp(entry.map.p_trackMap->audioUrl, velmora_ws_invalid_url) != 0;
}

// The announced length of what the listener could hear of a playlist, without ads.
std::chrono::seconds musicOf(const VLM_WS_PLAYLIST_T &playlist)
{
    return std::accumulate(playlist.entries, playlist.entries + playlist.count, std::chrono::seconds(0),
                           [](std::chrono::seconds sum, const VLM_PLAYLIST_ENTRY_T &entry) {
                               const bool isMusic = entry.isTrack && isPlayable(entry);
                               return sum + std::chrono::seconds(isMusic ? entry.map.p_trackMap->durationSeconds : 0);
                           });
}

} // namespace

Worker::Worker(const Config &config)
    : m_config(config)
    , m_transport(config)
{
    if (sodium_init() < 0)
        std::abort(); // a kernel without random numbers: no request key would be safe
}

void Worker::start()
{
    m_thread = std::thread([self = shared_from_this()] {
        pthread_setname_np(pthread_self(), "velmora-ws");
        blockSignals();
        self->loop();
    });
}

bool Worker::add(std::unique_ptr<Request> request, HANDLE_T *outHandle)
{
    std::lock_guard lock(m_mutex);
    if (m_isEnding)
        return false;
    const HANDLE_T handle = request->handle();
    m_incoming.push_back(request.get());
    try {
        Handles::instance().add(std::move(request));
    } catch (...) {
        m_incoming.pop_back();
        throw;
    }
    if (outHandle)
        *outHandle = handle;
    m_transport.wake();
    return true;
}

void Worker::end()
{
    m_isEnding = true;
    m_transport.wake();
    if (m_thread.get_id() == std::this_thread::get_id())
        m_thread.detach();
    else
        m_thread.join();
}

void Worker::loop()
{
    while (!m_isEnding) {
        accept();
        if (!m_transport.isBusy() && sendNext())
            continue;
        const auto answer = m_transport.run(m_transport.isBusy() ? std::nullopt : m_nextDue);
        if (answer && !m_isEnding)
            finish(*answer);
    }
    m_transport.stop();
    dropAll();
}

void Worker::accept()
{
    std::deque<Request *> incoming;
    {
        std::lock_guard lock(m_mutex);
        incoming.swap(m_incoming);
    }
    const auto now = Clock::now();
    for (Request *request : incoming) {
        Job job{};
        job.number = ++m_requests;
        job.handle = request->handle();
        job.request = request;
        job.command = findCommand(request->record.vlm_ws_CmdID);
        if (job.command->id == VLM_WS_MSGID_PARTNER_LOGIN)
            job.loginDue = m_loginPace.schedule(now);
        if (job.command->id == VLM_WS_MSGID_GET_PLAYLIST) {
            job.station = static_cast<VLM_WS_TEXT_FLAG_PARAMS_T *>(request->record.params)->text;
            job.isBeyondLimit = !m_playlistLimit.allows(job.station, now);
        }
        if (namesTrack(*job.command))
            m_playlistLimit.heard();
        if (job.command->isChange)
            job.key = requestKey();
        m_waiting.push_back(std::move(job));
    }
}

bool Worker::sendNext()
{
    const auto now = Clock::now();
    m_nextDue.reset();
    for (auto it = m_waiting.begin(); it != m_waiting.end(); ++it) {
        const auto due = dueTime(*it, now);
        if (!due)
            continue;
        if (*due <= now) {
            Job job = std::move(*it);
            m_waiting.erase(it);
            send(std::move(job), now);
            return true;
        }
        m_nextDue = m_nextDue ? std::min(*m_nextDue, *due) : *due;
    }
    return false;
}

std::optional<Clock::time_point> Worker::dueTime(Job &job, Clock::time_point now)
{
    if (isHeld(job, now) || isBehindRetry(job))
        return {};
    if (job.retryDue && *job.retryDue > now)
        return job.retryDue;
    if (job.command->id == VLM_WS_MSGID_PARTNER_LOGIN)
        return job.loginDue;
    if (mustRenew(job, now)) {
        if (!job.loginDue)
            job.loginDue = m_loginPace.schedule(now);
        return job.loginDue;
    }
    if (job.command->id == VLM_WS_MSGID_GET_PLAYLIST)
        return m_playlistPace.earliest(job.station, now);
    return now;
}

void Worker::send(Job job, Clock::time_point now)
{
    if (job.isBeyondLimit) {
        complete(job, VLM_WS_ERR_NOTHING_PLAYED, nullptr);
        return;
    }
    bool isStarted = false;
    job.retry.begin(m_config.retry, !m_hasAnswered, now);
    job.retryDue.reset();
    job.isRenewing = mustRenew(job, now);
    job.tokenSent = tokenFor(job);
    try {
        if (job.isRenewing) {
            VLM_WS_PARTNER_LOGIN_PARAMS_T params{};
            params.includeExtras = 1;
            const Command &login = *findCommand(VLM_WS_MSGID_PARTNER_LOGIN);
            isStarted = m_transport.start(login.function, {}, {}, requestBody(login, &params, deviceKey()),
                                          job.retry.attemptEnds(now));
        } else {
            static const SecretText none;
            const bool isPartnerLogin = job.command->id == VLM_WS_MSGID_PARTNER_LOGIN;
            const Session *open = session(job.tokenSent);
            isStarted = m_transport.start(
                job.command->function, open ? open->token : none, job.key,
                requestBody(*job.command, job.request->record.params, isPartnerLogin ? deviceKey() : none),
                job.retry.attemptEnds(now));
        }
    } catch (const std::bad_alloc &) {
        complete(job, VLM_WS_ERR_OUT_OF_MEMORY, nullptr);
        return;
    }
    if (isStarted)
        m_current = std::move(job);
    else
        complete(job, VLM_WS_ERR_ERROR_CURL_FAILURE, nullptr);
}

void Worker::finish(const Answer &answer)
{
    Job job = std::move(*m_current);
    m_current.reset();
    if (job.isRenewing) {
        finishRenewal(std::move(job), answer);
        return;
    }
    const auto now = Clock::now();
    Reply reply = readAnswer(*job.command, answer, job.request->memory);
    if (job.command->id == VLM_WS_MSGID_GET_PLAYLIST) {
        m_playlistPace.replied(job.station, now);
        if (reply.code == VLM_WS_ERR_OK) {
            const auto &playlist = *static_cast<const VLM_WS_PLAYLIST_T *>(reply.record);
            const auto playable = std::count_if(playlist.entries, playlist.entries + playlist.count, isPlayable);
            m_playlistLimit.replied(job.station, static_cast<int>(playable), musicOf(playlist), now);
        }
    }
    if (retries(job, answer, reply))
        return;
    if (!reply.token.empty()) {
        Session &opened = job.command->reply == ReplyShape::PartnerLogin ? m_partner : m_user;
        opened = {std::move(reply.token), now + std::chrono::seconds(reply.expiresIn)};
    }
    if (reply.code == VLM_WS_ERR_INVALID_AUTH_TOKEN) {
        if (Session *refused = session(job.tokenSent))
            refused->close();
        if (job.command->renewsPartner() && !job.hasRenewed) {
            putBack(std::move(job));
            return;
        }
        reply.code = m_renewalLimit.refused(*job.command, job.tokenSent);
    } else if (reply.code >= VLM_WS_ERR_OK) {
        m_renewalLimit.accepted(job.tokenSent);
    }
    complete(job, reply.code, reply.record);
}

void Worker::finishRenewal(Job job, const Answer &answer)
{
    Arena scratch;
    const Command &login = *findCommand(VLM_WS_MSGID_PARTNER_LOGIN);
    Reply reply = readAnswer(login, answer, scratch);
    if (retries(job, answer, reply))
        return;
    if (reply.code == VLM_WS_ERR_INVALID_AUTH_TOKEN)
        reply.code = m_renewalLimit.refused(login, Token::None);
    if (reply.code != VLM_WS_ERR_OK) {
        complete(job, reply.code, nullptr);
        return;
    }
    m_partner = {std::move(reply.token), Clock::now() + std::chrono::seconds(reply.expiresIn)};
    job.isRenewing = false;
    job.hasRenewed = true;
    putBack(std::move(job));
}

bool Worker::retries(Job &job, const Answer &answer, const Reply &reply)
{
    if (!mayPass(answer, reply)) {
        m_hasAnswered = m_hasAnswered || answer.end == Answer::End::Complete;
        return false;
    }
    const double chance = randombytes_uniform(1000) / 1000.0;
    job.retryDue = job.retry.failed(Clock::now(), std::max(reply.retryAfter, answer.retryAfter), chance);
    if (!job.retryDue)
        return false;
    job.isRenewing = false;
    putBack(std::move(job));
    return true;
}

void Worker::putBack(Job job)
{
    const auto later = std::find_if(m_waiting.begin(), m_waiting.end(),
                                    [&job](const Job &other) { return other.number > job.number; });
    m_waiting.insert(later, std::move(job));
}

void Worker::complete(const Job &job, VLM_WS_EXT_ERRCODE_T code, void *record)
{
    m_renewalLimit.completed(*job.command, code);
    Request &request = *job.request;
    if (m_isEnding) {
        Handles::instance().drop(job.handle);
        return;
    }
    request.record.reply = record;
    const VELMORA_WS_CALLBACK_T callback = request.callback;
    VOID *tag = request.tag;
    Handles::instance().markCompleted(job.handle);
    // From here on the receiver owns the record.
    if (callback)
        callback(job.handle, code, tag);
    else
        Handles::instance().release(job.handle);
}

void Worker::dropAll()
{
    std::lock_guard lock(m_mutex);
    for (const Request *request : m_incoming)
        Handles::instance().drop(request->handle());
    m_incoming.clear();
    for (const Job &job : m_waiting)
        Handles::instance().drop(job.handle);
    m_waiting.clear();
    if (m_current)
        Handles::instance().drop(m_current->handle);
    m_current.reset();
}

Token Worker::tokenFor(const Job &job) const
{
    // A request without a name asks about the user of the session.
    if (job.command->id == VLM_WS_MSGID_GET_USER_INFO && !m_user.token.empty() &&
        !static_cast<VLM_WS_GET_USER_INFO_PARAMS_T *>(job.request->record.params)->userName)
        return Token::User;
    return job.command->token;
}

Worker::Session *Worker::session(Token token)
{
    switch (token) {
    case Token::None:
        return nullptr;
    case Token::Partner:
        return &m_partner;
    case Token::User:
        return &m_user;
    }
    return nullptr;
}

bool Worker::mustRenew(const Job &job, Clock::time_point now) const
{
    return job.command->renewsPartner() && !job.hasRenewed && tokenFor(job) == Token::Partner && !m_partner.isOpen(now);
}

bool Worker::isHeld(const Job &job, Clock::time_point now) const
{
    const Token token = tokenFor(job);
    if (token == Token::None)
        return false;
    const bool isUserLogin = job.command->id == VLM_WS_MSGID_USER_LOGIN;
    const bool isOpen = (token == Token::User ? m_user : m_partner).isOpen(now);
    for (const Job &other : m_waiting) {
        if (other.handle == job.handle && isUserLogin)
            return false; // logins keep their order
        if (!isLogin(*other.command) || other.handle == job.handle)
            continue;
        const bool isPartnerLogin = other.command->id == VLM_WS_MSGID_PARTNER_LOGIN;
        if (isUserLogin ? isPartnerLogin : !isOpen || m_renewalLimit.isRenewing())
            return true;
    }
    return false;
}

// Requests of one kind are answered in their order, and changes are made in theirs.
bool Worker::isBehindRetry(const Job &job) const
{
    return std::any_of(m_waiting.begin(), m_waiting.end(), [&job](const Job &other) {
        const bool isOfKind = other.command == job.command || (other.command->isChange && job.command->isChange);
        return other.retryDue && other.number < job.number && isOfKind;
    });
}

const SecretText &Worker::deviceKey()
{
    if (m_deviceKey.empty())
        m_deviceKey = deviceState(m_config.stateDir).key;
    return m_deviceKey;
}

} // namespace velmora::ws
