#include "bench/crowd.h"

#include <algorithm>
#include <boost/asio/post.hpp>
#include <nlohmann/json.hpp>

namespace bench {

using nlohmann::json;
using SteadyClock = std::chrono::steady_clock;
using namespace std::chrono_literals;

namespace {

constexpr auto trackTime = 210s;
constexpr auto askAhead = 750ms;  // before the last sample
constexpr auto startTime = 300ms; // of the radio's program
constexpr auto listInterval = 3600s;
constexpr int tracksPerThumb = 10;
constexpr std::chrono::milliseconds healthPauses[] = {1s, 2s, 5s, 10s, 15s}; // a fifth shorter or longer
constexpr int internal = 5000, tooMany = 5004;
constexpr size_t lateShare = 16; // of the loop's turns, so many are looked at

const char *functionOf(Crowd::Kind kind)
{
    switch (kind) {
    case Crowd::Kind::PartnerLogin:
        return "partnerLogin";
    case Crowd::Kind::UserLogin:
        return "userLogin";
    case Crowd::Kind::StationList:
        return "getStationList";
    case Crowd::Kind::Playlist:
        return "getPlaylist";
    case Crowd::Kind::Event:
        return "trackEvent";
    case Crowd::Kind::Thumb:
        return "addFeedback";
    case Crowd::Kind::Health:
        return "";
    }
    return "";
}

bool isChange(Crowd::Kind kind)
{
    return kind == Crowd::Kind::Event || kind == Crowd::Kind::Thumb;
}

} // namespace

struct Crowd::Job {
    Kind kind = Kind::Health;
    Time asked;
    std::string body, key;
    std::string track; // of a thumb
    velmora::ws::Retry retry;
    std::optional<Time> retryDue;
    int attempts = 0;
};

struct Crowd::Radio {
    struct Track {
        std::string token, id;
    };

    TownRadio home;
    std::string partnerToken, userToken;
    std::deque<Job> jobs; // in the order in which they were asked; the one under way is not among them
    std::optional<Job> sent;
    bool hasAnswered = false; // the service, in this life
    uint32_t life = 0;
    size_t healthAsked = 0;
    std::vector<Track> tracks;
    std::vector<Track> next;  // a list that has come before the last track's end
    size_t playing = 0;       // of `tracks`
    bool isListening = false; // has had a list
    std::optional<Time> silentSince;
};

Crowd::Crowd(boost::asio::io_context &io, Balancer &balancer, std::vector<TownRadio> radios, double speed)
    : m_balancer(balancer)
    , m_timer(io)
    , m_speed(speed)
    , m_begin(SteadyClock::now())
    , m_radios(radios.size())
{
    for (size_t i = 0; i < radios.size(); ++i)
        m_radios[i].home = std::move(radios[i]);
}

Crowd::~Crowd() = default;

Crowd::Time Crowd::now() const
{
    return m_begin + std::chrono::duration_cast<SteadyClock::duration>((SteadyClock::now() - m_begin) * m_speed);
}

void Crowd::start(size_t atOnce)
{
    for (; m_switchedOn < std::min(atOnce, m_radios.size()); ++m_switchedOn)
        switchOn(m_radios[m_switchedOn]);
    wait();
}

void Crowd::begin()
{
    m_hasBegun = true;
    for (Radio &radio : m_radios) {
        if (radio.isListening)
            begin(radio);
    }
}

// Somewhere in its list, as radios that have played for long.
void Crowd::begin(Radio &radio)
{
    radio.playing = m_random() % radio.tracks.size();
    const Time end = now() + std::chrono::milliseconds(m_random() % std::chrono::milliseconds(trackTime).count());
    at(end, radio, What::TrackEnd);
    if (radio.playing + 1 == radio.tracks.size())
        at(end - askAhead, radio, What::Ask);
    at(now() + std::chrono::seconds(m_random() % listInterval.count()), radio, What::List);
}

void Crowd::wait()
{
    m_timer.expires_after(1ms); // also the shortest turn
    m_timer.async_wait([this](const boost::system::error_code &cancelled) {
        if (cancelled)
            return;
        for (size_t turn = 0; !m_due.empty() && m_due.top().at <= now(); ++turn) {
            const Due due = m_due.top();
            m_due.pop();
            if (turn % lateShare == 0)
                m_figures.lateMs.push_back(std::chrono::duration<double, std::milli>(now() - due.at).count() / m_speed);
            if (m_radios[due.radio].life == due.life)
                act(due);
        }
        wait();
    });
}

void Crowd::at(Time time, Radio &radio, What what)
{
    m_due.push({time, static_cast<uint32_t>(&radio - m_radios.data()), what, radio.life});
}

void Crowd::act(const Due &due)
{
    Radio &radio = m_radios[due.radio];
    switch (due.what) {
    case What::Retry:
        sendNext(radio);
        break;
    case What::Ask:
        add(radio, Kind::Playlist);
        break;
    case What::TrackEnd:
        endTrack(radio);
        break;
    case What::Thumb:
        add(radio, Kind::Thumb);
        break;
    case What::List:
        add(radio, Kind::StationList);
        at(due.at + listInterval, radio, What::List);
        break;
    case What::Start:
        switchOn(radio);
        break;
    case What::Health:
        add(radio, Kind::Health);
        break;
    }
}

void Crowd::switchOn(Radio &radio)
{
    add(radio, Kind::PartnerLogin);
}

std::string Crowd::bodyOf(const Radio &radio, Kind kind) const
{
    switch (kind) {
    case Kind::PartnerLogin:
        return json{{"deviceKey", radio.home.deviceKey}, {"deviceModel", "crowd"}}.dump();
    case Kind::UserLogin:
        return json{{"loginType", "deviceId"}, {"deviceId", radio.home.deviceId}}.dump();
    case Kind::Playlist:
        return json{{"stationToken", radio.home.station}}.dump();
    case Kind::Thumb:
        return json{{"trackToken", radio.tracks[radio.playing].token}, {"isPositive", true}}.dump();
    default:
        return "{}";
    }
}

void Crowd::add(Radio &radio, Kind kind)
{
    Job job;
    job.kind = kind;
    job.asked = now();
    job.body = bodyOf(radio, kind);
    if (kind == Kind::Thumb)
        job.track = radio.tracks[radio.playing].id;
    radio.jobs.push_back(std::move(job));
    sendNext(radio);
}

// One at a time. Requests of one kind are sent in their order, and changes in theirs; others pass one that waits to be
// repeated.
void Crowd::sendNext(Radio &radio)
{
    if (radio.sent)
        return;
    const Time time = now();
    for (auto job = radio.jobs.begin(); job != radio.jobs.end(); ++job) {
        const bool isBehind = std::any_of(radio.jobs.begin(), job, [&](const Job &other) {
            return other.retryDue && (other.kind == job->kind || (isChange(other.kind) && isChange(job->kind)));
        });
        if (isBehind || (job->retryDue && *job->retryDue > time))
            continue;
        radio.sent = std::move(*job);
        radio.jobs.erase(job);
        break;
    }
    if (!radio.sent)
        return;
    Job &job = *radio.sent;
    if (job.retryDue)
        --m_unanswered;
    job.retryDue.reset();
    job.retry.begin({}, !radio.hasAnswered, time);
    ++job.attempts;
    if (isChange(job.kind) && job.key.empty()) {
        char digits[33];
        std::snprintf(digits, sizeof digits, "%08x%08x%08x%08x", unsigned(m_random()), unsigned(m_random()),
                      unsigned(m_random()), unsigned(m_random()));
        job.key = digits;
    }
    const bool isPartners = job.kind == Kind::UserLogin;
    m_balancer.send({functionOf(job.kind), job.body, isPartners ? radio.partnerToken : radio.userToken, job.key,
                     radio.home.address},
                    [this, &radio, life = radio.life, begin = SteadyClock::now()](Balancer::Answer answer) {
                        answered(radio, life, std::move(answer), begin);
                    });
}

void Crowd::answered(Radio &radio, uint32_t life, Balancer::Answer answer, SteadyClock::time_point sent)
{
    if (radio.life != life || !radio.sent)
        return;
    Job job = std::move(*radio.sent);
    radio.sent.reset();
    const double milliseconds = std::chrono::duration<double, std::milli>(SteadyClock::now() - sent).count();
    if (job.kind == Kind::Health) {
        const bool isHealthy = answer.status == 200;
        const size_t pause = std::min(radio.healthAsked++, std::size(healthPauses) - 1);
        const double spread = 0.8 + 0.4 * double(m_random()) / double(std::mt19937::max());
        at(now() + (isHealthy ? startTime
                              : std::chrono::duration_cast<SteadyClock::duration>(healthPauses[pause] * spread)),
           radio, isHealthy ? What::Start : What::Health);
        if (isHealthy)
            --m_unanswered; // for its health
        return;
    }
    const json reply = answer.status == 0 ? json() : json::parse(answer.body, nullptr, false);
    const int code = reply.is_object() ? reply.value("code", -1) : -1;
    const bool isGateway = code == -1 && answer.status >= 502 && answer.status <= 504;
    if (answer.status == 0 || code == internal || code == tooMany || isGateway) {
        ++m_figures.refused[answer.isRefused       ? "nobody listens"
                            : answer.status == 0   ? "cut off, or nothing in twenty seconds"
                            : answer.status == 503 ? "status 503, code " + std::to_string(code)
                                                   : "code " + std::to_string(code)];
        const int told = code == tooMany && reply.contains("data") ? reply["data"].value("retryAfter", 0) : 0;
        repeatOrGiveUp(radio, std::move(job), std::max(told, answer.retryAfter));
    } else {
        radio.hasAnswered = true;
        ++m_figures.answers;
        if (code == 0) {
            done(radio, job, answer, milliseconds);
        } else {
            ++m_figures.errors[std::string(functionOf(job.kind)) + ": status " + std::to_string(answer.status) +
                               ", code " + std::to_string(code)];
            giveUp(radio, job);
        }
    }
    sendNext(radio);
}

void Crowd::repeatOrGiveUp(Radio &radio, Job job, int retryAfter)
{
    const double chance = double(m_random()) / double(std::mt19937::max());
    job.retryDue = job.retry.failed(now(), std::chrono::seconds(retryAfter), chance);
    if (!job.retryDue) {
        giveUp(radio, job);
        return;
    }
    ++m_unanswered;
    at(*job.retryDue, radio, What::Retry);
    // In its old place: what was asked earlier is in front.
    const auto place =
        std::find_if(radio.jobs.begin(), radio.jobs.end(), [&](const Job &other) { return other.asked > job.asked; });
    radio.jobs.insert(place, std::move(job));
}

void Crowd::giveUp(Radio &radio, const Job &job)
{
    if (job.kind == Kind::Event) {
        ++m_figures.eventsLost;
        return;
    }
    if (job.kind == Kind::Thumb) {
        ++m_figures.thumbsRefused;
        return;
    }
    // The radio ends, and a page asks for the service's health.
    m_figures.gaveUp.push_back(now());
    for (const Job &other : radio.jobs) {
        m_unanswered -= other.retryDue ? 1 : 0;
        m_figures.eventsLost += other.kind == Kind::Event ? 1 : 0;
        m_figures.thumbsRefused += other.kind == Kind::Thumb ? 1 : 0;
    }
    ++radio.life;
    radio.jobs.clear();
    radio.hasAnswered = false;
    radio.healthAsked = 0;
    ++m_unanswered; // for its health
    if (radio.isListening)
        fallSilent(radio);
    at(now(), radio, What::Health);
}

void Crowd::done(Radio &radio, const Job &job, const Balancer::Answer &answer, double milliseconds)
{
    const auto data = [&] { return json::parse(answer.body).at("data"); };
    switch (job.kind) {
    case Kind::PartnerLogin:
        radio.partnerToken = data().at("partnerToken");
        add(radio, Kind::UserLogin);
        break;
    case Kind::UserLogin:
        radio.userToken = data().at("userToken");
        add(radio, Kind::StationList);
        if (radio.isListening)
            at(now() + std::chrono::seconds(m_random() % listInterval.count()), radio, What::List);
        add(radio, Kind::Playlist);
        break;
    case Kind::Playlist:
        m_figures.lists.push_back({job.asked, now(), milliseconds, job.attempts});
        take(radio, answer.body);
        break;
    case Kind::Thumb:
        m_figures.thumbs.push_back({radio.home.account, job.track});
        break;
    default:
        break;
    }
}

void Crowd::take(Radio &radio, const std::string &body)
{
    radio.next.clear();
    const json reply = json::parse(body);
    for (const json &entry : reply.at("data").at("entries")) {
        if (!entry.contains("track"))
            continue;
        const std::string address = entry["track"].at("audioUrl");
        const size_t begin = address.find("/audio/") + 7;
        radio.next.push_back(
            {entry["track"].at("trackToken"), address.substr(begin, address.find('.', begin) - begin)});
    }
    if (radio.isListening && !radio.silentSince)
        return; // until the last track ends
    radio.tracks = std::exchange(radio.next, {});
    if (radio.isListening) {
        play(radio, 0);
        return;
    }
    radio.isListening = true;
    ++m_listening;
    if (m_hasBegun)
        begin(radio);
    if (m_switchedOn < m_radios.size())
        switchOn(m_radios[m_switchedOn++]);
}

void Crowd::play(Radio &radio, size_t track)
{
    const Time time = now();
    if (radio.silentSince) {
        m_figures.silences.emplace_back(*radio.silentSince,
                                        std::chrono::duration<double>(time - *radio.silentSince).count());
        radio.silentSince.reset();
        --m_silent;
    }
    m_figures.begun.push_back(time);
    radio.playing = track;
    Job job;
    job.kind = Kind::Event;
    job.asked = time;
    job.body = json{{"trackToken", radio.tracks[track].token}, {"eventType", "start"}}.dump();
    radio.jobs.push_back(std::move(job));
    at(time + trackTime, radio, What::TrackEnd);
    if (track + 1 == radio.tracks.size())
        at(time + trackTime - askAhead, radio, What::Ask);
    if (m_random() % tracksPerThumb == 0)
        at(time + std::chrono::seconds(m_random() % trackTime.count()), radio, What::Thumb);
    sendNext(radio);
}

void Crowd::endTrack(Radio &radio)
{
    Job job;
    job.kind = Kind::Event;
    job.asked = now();
    job.body =
        json{{"trackToken", radio.tracks[radio.playing].token}, {"eventType", "end"}, {"seconds", trackTime.count()}}
            .dump();
    radio.jobs.push_back(std::move(job));
    sendNext(radio);
    if (radio.playing + 1 < radio.tracks.size()) {
        play(radio, radio.playing + 1);
    } else if (!radio.next.empty()) {
        radio.tracks = std::exchange(radio.next, {});
        play(radio, 0);
    } else {
        fallSilent(radio);
    }
}

void Crowd::fallSilent(Radio &radio)
{
    if (radio.silentSince)
        return;
    radio.silentSince = now();
    ++m_silent;
}

} // namespace bench
