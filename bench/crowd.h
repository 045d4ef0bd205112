#pragma once

#include "bench/balancer.h"
#include "bench/town.h"
#include "platform/ws/retry.h"

#include <atomic>
#include <boost/asio/steady_timer.hpp>
#include <map>
#include <queue>

namespace bench {

// Many listening radios on one event loop. Each signs in by its device key, asks for its stations and a list of tracks,
// reports the beginning and the end of each track, and gives a thumb in ten tracks; it asks for the next list when the
// last track ends. A request that fails for a passing reason is repeated as the radio's library does it; a radio that
// has waited for too long ends, asks the service's health, and starts anew. Media are not fetched.
//
// The radios' time may run faster or slower than the clock's. One thread, that of the loop, but what is said otherwise.
class Crowd {
public:
    using Time = velmora::ws::Clock::time_point; // of the radios
    enum class Kind { PartnerLogin, UserLogin, StationList, Playlist, Event, Thumb, Health };

    struct List {
        Time asked, answered;
        double milliseconds; // of the clock, of the attempt that was answered
        int attempts;
    };
    struct Thumb {
        int64_t account;
        std::string track; // its public id
    };
    struct Figures {
        std::vector<List> lists;
        std::vector<Thumb> thumbs;                     // acknowledged
        std::map<std::string, int> refused;            // attempts that will be repeated, by reason
        std::map<std::string, int> errors;             // answers that repeating does not help
        std::vector<std::pair<Time, double>> silences; // began, seconds of the radios: those that have ended
        std::vector<Time> gaveUp;                      // radios that ended
        std::vector<Time> begun;                       // tracks
        int answers = 0;
        int eventsLost = 0, thumbsRefused = 0;
        std::vector<double> lateMs; // the loop itself, of the clock
    };

    // `speed`: seconds of the radios in one of the clock's.
    Crowd(boost::asio::io_context &io, Balancer &balancer, std::vector<TownRadio> radios, double speed);
    ~Crowd();

    // Switches all of them on, so many at a time. They sign in and get their first list.
    void start(size_t atOnce);
    // They listen from now on.
    void begin();

    // Any thread:
    size_t listening() const { return m_listening; } // radios that have had their first list
    size_t silent() const { return m_silent; }       // of them: without music now
    // Requests that wait to be repeated, and radios that wait for the service's health.
    size_t unanswered() const { return m_unanswered; }
    Time now() const;

    const Figures &figures() const { return m_figures; } // once the loop has ended

private:
    struct Radio;
    struct Job;
    enum class What { Retry, Ask, TrackEnd, Thumb, List, Start, Health };
    struct Due {
        Time at;
        uint32_t radio;
        What what;
        uint32_t life; // of the radio: what was meant for an earlier one is dropped
        bool operator>(const Due &other) const { return at > other.at; }
    };

    void begin(Radio &radio);
    void wait();
    void act(const Due &due);
    void at(Time time, Radio &radio, What what);
    void switchOn(Radio &radio);
    void add(Radio &radio, Kind kind);
    void sendNext(Radio &radio);
    void answered(Radio &radio, uint32_t life, Balancer::Answer answer, std::chrono::steady_clock::time_point sent);
    void done(Radio &radio, const Job &job, const Balancer::Answer &answer, double milliseconds);
    void repeatOrGiveUp(Radio &radio, Job job, int retryAfter);
    void giveUp(Radio &radio, const Job &job);
    void take(Radio &radio, const std::string &body);
    void play(Radio &radio, size_t track);
    void endTrack(Radio &radio);
    void fallSilent(Radio &radio);
    std::string bodyOf(const Radio &radio, Kind kind) const;

    Balancer &m_balancer;
    boost::asio::steady_timer m_timer;
    const double m_speed;
    const Time m_begin;
    std::vector<Radio> m_radios;
    std::priority_queue<Due, std::vector<Due>, std::greater<>> m_due;
    size_t m_switchedOn = 0;
    bool m_hasBegun = false;
    std::mt19937 m_random{5};
    Figures m_figures;
    std::atomic<size_t> m_listening = 0, m_silent = 0, m_unanswered = 0;
};

} // namespace bench
