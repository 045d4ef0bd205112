// velmora-listener ACCOUNT-FILE SECONDS [STATION THUMBS-FILE]: listens as a radio does, through the client library, and
// says what it noticed. It logs in with the account of the file (e-mail and password, a line each), plays the tracks of
// one station, the first or the one of this number, one after the other at playing speed, and continues a cut stream
// where it ended. Each track is left after some seconds, so that there are many requests. THUMBS-FILE gets a line for
// each thumb that the service acknowledged: station token, public id of the track, and the Unix time before it was
// sent. The service's address is in VELMORA_WS_SERVER, as for a radio.
#include "velmora_ws.h"

#include <curl/curl.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <future>
#include <iomanip>
#include <iostream>
#include <memory>
#include <sstream>
#include <string>
#include <sys/socket.h>
#include <thread>
#include <tuple>
#include <utility>

namespace {

using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

constexpr auto listenedTo = 8s;     // of each track
constexpr double speed = 96 * 1024; // bytes a second: of the demo catalogue's FLAC files
constexpr double noticed = 1.0;     // seconds of waiting that a person notices where no music is buffered
constexpr double buffered = 5.0;    // seconds of music that a radio has ahead

const Clock::time_point begin = Clock::now();

double since(Clock::time_point time)
{
    return std::chrono::duration<double>(Clock::now() - time).count();
}

// One line, with the time since the start; numbers have no exponent and at most `digits` digits after the point.
template <int digits, typename... Parts>
void say(const Parts &...parts)
{
    std::ostringstream line;
    line << std::fixed << std::setprecision(1) << std::setw(6) << since(begin) << " s  " << std::setprecision(digits);
    (line << ... << parts) << '\n';
    std::cout << line.str() << std::flush;
}

// A completed request; gives its handle back.
class Reply {
public:
    Reply() = default;
    ~Reply()
    {
        if (m_handle != 0)
            velmora_ws_release_handle(m_handle);
    }
    Reply(const Reply &) = delete;
    Reply &operator=(const Reply &) = delete;

    template <typename T>
    const T *record() const
    {
        return static_cast<const T *>(reinterpret_cast<const VLM_WS_REQUEST_T *>(m_handle)->reply);
    }

    VLM_WS_EXT_ERRCODE_T code = VLM_WS_ERR_OK;

private:
    friend class Listener;
    HANDLE_T m_handle = 0;
};

class Listener {
public:
    struct Total {
        int requests = 0;
        int failures = 0;
        int tracks = 0;
        int breaks = 0;            // streams that were cut and continued
        int losses = 0;            // tracks that could not be continued
        double longestWait = 0;    // for an answer
        double longestSilence = 0; // between two pieces of a stream
    };
    Total total;

    // The same request is sent again after a login where the library asks for that.
    template <typename Request>
    void ask(const char *name, Reply *reply, Request request)
    {
        const auto start = Clock::now();
        askOnce(reply, request);
        if (reply->code == VLM_WS_ERR_INVALID_AUTH_TOKEN) {
            logIn();
            askOnce(reply, request);
        }
        const double waited = since(start);
        ++total.requests;
        total.longestWait = std::max(total.longestWait, waited);
        if (reply->code != VLM_WS_ERR_OK) {
            ++total.failures;
            say<0>(name, " failed with code ", static_cast<int>(reply->code));
        } else if (waited > noticed) {
            say<1>(name, " took ", waited, " s");
        }
    }

    bool begin(const std::string &account)
    {
        std::ifstream file(account);
        std::getline(file, m_name);
        std::getline(file, m_password);
        return logIn() == VLM_WS_ERR_OK;
    }

    // As many bytes of the address as are played in `listenedTo`.
    void play(const std::string &address)
    {
        ++total.tracks;
        m_taken = 0;
        m_length = -1;
        const auto start = Clock::now();
        m_lastPiece = start;
        while (since(start) < std::chrono::duration<double>(listenedTo).count() && m_taken != m_length) {
            if (stream(address, start))
                return;
            if (m_isRefused || since(m_lastPiece) > 60) {
                ++total.losses;
                say<0>("a track was lost");
                return;
            }
            ++total.breaks;
            std::this_thread::sleep_for(250ms);
        }
    }

private:
    template <typename Request>
    void askOnce(Reply *reply, Request request)
    {
        std::promise<std::pair<HANDLE_T, VLM_WS_EXT_ERRCODE_T>> done;
        const auto callback = [](HANDLE_T handle, VLM_WS_EXT_ERRCODE_T result, VOID *tag) {
            static_cast<decltype(done) *>(tag)->set_value({handle, result});
        };
        if (reply->m_handle != 0)
            velmora_ws_release_handle(std::exchange(reply->m_handle, 0));
        HANDLE_T handle = 0;
        reply->code = request(callback, &done, &handle);
        if (reply->code == VLM_WS_ERR_OK)
            std::tie(reply->m_handle, reply->code) = done.get_future().get();
    }

    VLM_WS_EXT_ERRCODE_T logIn()
    {
        char address[7] = {};
        velmora_ws_utility_get_mac(address, sizeof address);
        Reply reply;
        askOnce(&reply, [](auto callback, VOID *tag, HANDLE_T *handle) {
            return velmora_ws_partnerLogin(nullptr, nullptr, nullptr, 1, callback, tag, handle);
        });
        if (reply.code == VLM_WS_ERR_OK) {
            askOnce(&reply, [&](auto callback, VOID *tag, HANDLE_T *handle) {
                return velmora_ws_userLogin("user", m_password.c_str(), m_name.c_str(), address, callback, tag, handle);
            });
        }
        if (reply.code != VLM_WS_ERR_OK)
            say<0>("the login failed with code ", static_cast<int>(reply.code));
        return reply.code;
    }

    // False: the stream ended before its time.
    bool stream(const std::string &address, Clock::time_point start)
    {
        const std::unique_ptr<CURL, decltype(&curl_easy_cleanup)> curl(curl_easy_init(), &curl_easy_cleanup);
        m_end = start + listenedTo;
        m_isRefused = false;
        curl_easy_setopt(curl.get(), CURLOPT_URL, address.c_str());
        curl_easy_setopt(curl.get(), CURLOPT_FOLLOWLOCATION, 1L);
        curl_easy_setopt(curl.get(), CURLOPT_FAILONERROR, 1L);
        curl_easy_setopt(curl.get(), CURLOPT_NOPROXY, "*");
        curl_easy_setopt(curl.get(), CURLOPT_CONNECTTIMEOUT_MS, 2000L);
        curl_easy_setopt(curl.get(), CURLOPT_LOW_SPEED_LIMIT, 1L);
        curl_easy_setopt(curl.get(), CURLOPT_LOW_SPEED_TIME, 10L);
        curl_easy_setopt(curl.get(), CURLOPT_SOCKOPTFUNCTION, keepLittle);
        curl_easy_setopt(curl.get(), CURLOPT_RESUME_FROM_LARGE, m_taken);
        curl_easy_setopt(curl.get(), CURLOPT_WRITEDATA, this);
        curl_easy_setopt(curl.get(), CURLOPT_WRITEFUNCTION, takePiece);
        const CURLcode result = curl_easy_perform(curl.get());
        long status = 0;
        curl_easy_getinfo(curl.get(), CURLINFO_RESPONSE_CODE, &status);
        m_isRefused = status >= 400 && status < 500;
        return result == CURLE_OK || Clock::now() >= m_end;
    }

    // What has not been played stays with the sender, so that a break is noticed.
    static int keepLittle(void *, curl_socket_t socket, curlsocktype)
    {
        const int bytes = 32 * 1024;
        return ::setsockopt(socket, SOL_SOCKET, SO_RCVBUF, &bytes, sizeof bytes) == 0 ? CURL_SOCKOPT_OK
                                                                                      : CURL_SOCKOPT_ERROR;
    }

    static size_t takePiece(char *, size_t size, size_t count, void *self)
    {
        auto &listener = *static_cast<Listener *>(self);
        const double silent = since(listener.m_lastPiece);
        listener.total.longestSilence = std::max(listener.total.longestSilence, silent);
        if (silent > buffered)
            say<1>("the music stopped: no data for ", silent, " s");
        std::this_thread::sleep_for(std::chrono::duration<double>(static_cast<double>(size * count) / speed));
        listener.m_lastPiece = Clock::now();
        listener.m_taken += static_cast<curl_off_t>(size * count);
        return Clock::now() < listener.m_end ? size * count : 0;
    }

    std::string m_name;
    std::string m_password;
    curl_off_t m_taken = 0; // bytes of the track
    curl_off_t m_length = -1;
    bool m_isRefused = false;
    Clock::time_point m_lastPiece;
    Clock::time_point m_end;
};

// The track's public id: the name of the file in its address.
std::string publicIdOf(const std::string &address)
{
    const size_t end = std::min(address.find('?'), address.size());
    const size_t file = address.rfind('/', end) + 1;
    return address.substr(file, std::min(address.find('.', file), end) - file);
}

// Listens for so long to the station of this number. False when there was nothing to listen to.
bool listen(Listener &listener, double seconds, int number, std::ofstream &thumbs)
{
    Reply stations;
    listener.ask("getStationList", &stations, [](auto callback, VOID *tag, HANDLE_T *handle) {
        return velmora_ws_getStationList(0, nullptr, nullptr, callback, tag, handle);
    });
    if (stations.code != VLM_WS_ERR_OK || stations.record<VLM_WS_STATION_LIST_T>()->count <= number)
        return false;
    const std::string station = stations.record<VLM_WS_STATION_LIST_T>()->stations[number].stationToken;
    while (since(begin) < seconds) {
        Reply playlist;
        listener.ask("getPlaylist", &playlist, [&](auto callback, VOID *tag, HANDLE_T *handle) {
            return velmora_ws_getPlaylist(station.c_str(), 0, callback, tag, handle);
        });
        if (playlist.code != VLM_WS_ERR_OK) {
            std::this_thread::sleep_for(1s);
            continue;
        }
        const auto *list = playlist.record<VLM_WS_PLAYLIST_T>();
        for (int i = 0; i < list->count && since(begin) < seconds; ++i) {
            if (list->entries[i].isTrack == 0)
                continue;
            const VLM_TRACK_MAP_T &track = *list->entries[i].map.p_trackMap;
            Reply noted;
            listener.ask("trackEvent", &noted, [&](auto callback, VOID *tag, HANDLE_T *handle) {
                return velmora_ws_trackEvent(track.trackToken, "start", 0, callback, tag, handle);
            });
            listener.play(track.audioUrl);
            const std::time_t sent = std::time(nullptr);
            Reply liked;
            listener.ask("addFeedback", &liked, [&](auto callback, VOID *tag, HANDLE_T *handle) {
                return velmora_ws_addFeedback(1, track.trackToken, callback, tag, handle);
            });
            if (liked.code == VLM_WS_ERR_OK)
                thumbs << station << ' ' << publicIdOf(track.audioUrl) << ' ' << sent << std::endl;
        }
    }
    return true;
}

} // namespace

int main(int argc, char *argv[])
{
    if (argc != 3 && argc != 5) {
        std::fputs("usage: velmora-listener ACCOUNT-FILE SECONDS [STATION THUMBS-FILE]\n", stderr);
        return 2;
    }
    std::ofstream thumbs;
    if (argc == 5)
        thumbs.open(argv[4]);
    if (argc == 5 && !thumbs) {
        std::fprintf(stderr, "velmora-listener: cannot write to %s\n", argv[4]);
        return 1;
    }
    if (velmora_ws_init() != VLM_WS_ERR_OK) {
        std::fputs("velmora-listener: the client library does not start\n", stderr);
        return 1;
    }
    Listener listener;
    const bool hasListened =
        listener.begin(argv[1]) && listen(listener, std::atof(argv[2]), argc == 5 ? std::atoi(argv[3]) : 0, thumbs);
    velmora_ws_uninit();
    const Listener::Total &total = listener.total;
    say<2>(total.requests, " requests, ", total.failures, " failed, the longest took ", total.longestWait, " s; ",
           total.tracks, " tracks, ", total.breaks, " streams continued, ", total.losses, " lost, at most ",
           total.longestSilence, " s without data");
    return hasListened && total.failures == 0 && total.losses == 0 ? 0 : 1;
}
