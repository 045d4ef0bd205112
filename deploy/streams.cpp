// velmora-streams ADDRESS ACCOUNT-FILE STREAMS SECONDS: how long playlists take, alone and beside so many streams at
// playing speed. Streams and playlists come from this one program; both pass whatever stands before the service.
#include <curl/curl.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <random>
#include <stdexcept>
#include <string>
#include <sys/socket.h>
#include <thread>
#include <vector>

namespace {

using nlohmann::json;
using Clock = std::chrono::steady_clock;
using Curl = std::unique_ptr<CURL, decltype(&curl_easy_cleanup)>;

constexpr double playlistsASecond = 20;
constexpr double bytesASecond = 16 * 1024; // 128 kbit/s
constexpr int startedAtOnce = 2;

size_t append(const char *bytes, size_t size, size_t count, void *text)
{
    static_cast<std::string *>(text)->append(bytes, size * count);
    return size * count;
}

// A radio takes no more than it plays: what has not been read stays with the sender.
int keepLittle(void *, curl_socket_t socket, curlsocktype)
{
    const int bytes = 32 * 1024;
    return ::setsockopt(socket, SOL_SOCKET, SO_RCVBUF, &bytes, sizeof bytes) == 0 ? CURL_SOCKOPT_OK
                                                                                  : CURL_SOCKOPT_ERROR;
}

std::string randomKey()
{
    std::random_device random;
    const char *letters = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-_";
    std::string key;
    for (int i = 0; i < 42; ++i)
        key += letters[random() % 64];
    return key + "A";
}

// One radio's connection for functions.
class Radio {
public:
    explicit Radio(std::string address)
        : m_address(std::move(address))
    {
    }

    json call(const std::string &function, const json &parameters)
    {
        const std::string url = m_address + "/v1/" + function;
        const std::string body = parameters.dump();
        const std::string authorization = "Authorization: Bearer " + m_token;
        std::string answer;
        curl_slist *headers = curl_slist_append(nullptr, authorization.c_str());
        curl_easy_setopt(m_curl.get(), CURLOPT_URL, url.c_str());
        curl_easy_setopt(m_curl.get(), CURLOPT_NOPROXY, "*");
        curl_easy_setopt(m_curl.get(), CURLOPT_HTTPHEADER, headers);
        curl_easy_setopt(m_curl.get(), CURLOPT_POSTFIELDSIZE, static_cast<long>(body.size()));
        curl_easy_setopt(m_curl.get(), CURLOPT_POSTFIELDS, body.c_str());
        curl_easy_setopt(m_curl.get(), CURLOPT_WRITEFUNCTION, append);
        curl_easy_setopt(m_curl.get(), CURLOPT_WRITEDATA, &answer);
        const CURLcode result = curl_easy_perform(m_curl.get());
        curl_slist_free_all(headers);
        if (result != CURLE_OK)
            throw std::runtime_error(function + ": " + curl_easy_strerror(result));
        json parsed = json::parse(answer);
        if (parsed.at("code") != 0)
            throw std::runtime_error(function + ": " + answer.substr(0, 200));
        return parsed.at("data");
    }

    void logIn(const std::string &accountFile)
    {
        std::ifstream file(accountFile);
        std::string name;
        std::string password;
        std::getline(file, name);
        std::getline(file, password);
        m_token = call("partnerLogin", {{"deviceKey", randomKey()}}).at("partnerToken");
        m_token =
            call("userLogin", {{"loginType", "user"}, {"userName", name}, {"password", password}}).at("userToken");
    }

private:
    const std::string m_address;
    std::string m_token;
    const Curl m_curl{curl_easy_init(), &curl_easy_cleanup};
};

// So many downloads at playing speed, for ever begun anew, in a thread of their own.
class Streams {
public:
    Streams(std::vector<std::string> addresses, int count)
        : m_addresses(std::move(addresses))
        , m_thread([this, count] { run(count); })
    {
    }
    ~Streams()
    {
        m_isEnding = true;
        m_thread.join();
    }
    Streams(const Streams &) = delete;
    Streams &operator=(const Streams &) = delete;

    int64_t bytes() const { return m_bytes; }
    int failures() const { return m_failures; }
    int count() const { return m_count; }

private:
    struct Stream {
        Streams *all = nullptr;
        Curl curl{curl_easy_init(), &curl_easy_cleanup};
        Clock::time_point begun;
        double taken = 0; // bytes
        bool isPaused = false;

        bool isAhead() const
        {
            return taken > bytesASecond * std::chrono::duration<double>(Clock::now() - begun).count();
        }
    };

    // libcurl's own limit of the speed reads a megabyte at a time.
    static size_t take(const char *, size_t size, size_t count, void *self)
    {
        auto &stream = *static_cast<Stream *>(self);
        if (stream.isAhead()) {
            stream.isPaused = true;
            return CURL_WRITEFUNC_PAUSE;
        }
        stream.taken += static_cast<double>(size * count);
        stream.all->m_bytes += static_cast<int64_t>(size * count);
        return size * count;
    }

    void run(int count)
    {
        const std::unique_ptr<CURLM, decltype(&curl_multi_cleanup)> multi(curl_multi_init(), &curl_multi_cleanup);
        std::vector<std::unique_ptr<Stream>> all;
        const auto begin = [&](Stream &stream) {
            stream.begun = Clock::now();
            stream.taken = 0;
            stream.isPaused = false;
            curl_multi_add_handle(multi.get(), stream.curl.get());
        };
        while (!m_isEnding) {
            // All at once would be more than the service lets wait for one address.
            for (int i = 0; i < startedAtOnce && static_cast<int>(all.size()) < count; ++i) {
                Stream &stream = *all.emplace_back(std::make_unique<Stream>());
                stream.all = this;
                CURL *easy = stream.curl.get();
                curl_easy_setopt(easy, CURLOPT_URL, m_addresses[all.size() % m_addresses.size()].c_str());
                curl_easy_setopt(easy, CURLOPT_NOPROXY, "*");
                curl_easy_setopt(easy, CURLOPT_FAILONERROR, 1L);
                curl_easy_setopt(easy, CURLOPT_SOCKOPTFUNCTION, keepLittle);
                curl_easy_setopt(easy, CURLOPT_PRIVATE, &stream);
                curl_easy_setopt(easy, CURLOPT_WRITEFUNCTION, &Streams::take);
                curl_easy_setopt(easy, CURLOPT_WRITEDATA, &stream);
                begin(stream);
            }
            m_count = static_cast<int>(all.size());
            for (const auto &stream : all) {
                if (stream->isPaused && !stream->isAhead()) {
                    stream->isPaused = false;
                    curl_easy_pause(stream->curl.get(), CURLPAUSE_CONT);
                }
            }
            int running = 0;
            curl_multi_perform(multi.get(), &running);
            int left = 0;
            while (const CURLMsg *message = curl_multi_info_read(multi.get(), &left)) {
                Stream *stream = nullptr;
                curl_easy_getinfo(message->easy_handle, CURLINFO_PRIVATE, &stream);
                if (message->data.result != CURLE_OK)
                    ++m_failures;
                curl_multi_remove_handle(multi.get(), message->easy_handle);
                begin(*stream);
            }
            curl_multi_poll(multi.get(), nullptr, 0, 50, nullptr);
        }
        for (const auto &stream : all)
            curl_multi_remove_handle(multi.get(), stream->curl.get());
    }

    const std::vector<std::string> m_addresses;
    std::atomic<bool> m_isEnding = false;
    std::atomic<int64_t> m_bytes = 0;
    std::atomic<int> m_failures = 0;
    std::atomic<int> m_count = 0; // that have begun
    std::thread m_thread;
};

// Asked for when they are due, so that a slow answer is not hidden by a slow caller.
void measure(Radio &radio, const std::string &station, double seconds, const char *what)
{
    std::vector<double> milliseconds;
    const auto begin = Clock::now();
    for (int i = 0; i < static_cast<int>(seconds * playlistsASecond); ++i) {
        const auto due =
            begin + std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(i / playlistsASecond));
        std::this_thread::sleep_until(due);
        radio.call("getPlaylist", {{"stationToken", station}});
        milliseconds.push_back(std::chrono::duration<double, std::milli>(Clock::now() - due).count());
    }
    std::sort(milliseconds.begin(), milliseconds.end());
    const auto at = [&](double share) {
        return milliseconds[static_cast<size_t>(share * static_cast<double>(milliseconds.size() - 1))];
    };
    std::printf("%s: %zu playlists, p50 %.1f ms, p99 %.1f ms, worst %.1f ms\n", what, milliseconds.size(), at(0.5),
                at(0.99), milliseconds.back());
    std::fflush(stdout);
}

void run(char *arguments[])
{
    const int count = std::atoi(arguments[3]);
    const double seconds = std::atof(arguments[4]);
    Radio radio(arguments[1]);
    radio.logIn(arguments[2]);
    const json stations = radio.call("getStationList", json::object()).at("stations");
    const std::string station = stations.at(0).at("stationToken");
    std::vector<std::string> addresses;
    for (int lists = 0; lists < 10; ++lists) {
        const json playlist = radio.call("getPlaylist", {{"stationToken", station}});
        for (const json &entry : playlist.at("entries")) {
            if (entry.contains("track") && entry["track"].at("audioUrl").is_string())
                addresses.push_back(entry["track"]["audioUrl"]);
        }
    }
    if (addresses.empty() || count < 1)
        throw std::runtime_error("there is nothing to play");
    measure(radio, station, seconds, "alone");
    Streams streams(addresses, count);
    while (streams.count() < count)
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    const int64_t before = streams.bytes();
    const auto begin = Clock::now();
    measure(radio, station, seconds, ("beside " + std::to_string(count) + " streams").c_str());
    const double took = std::chrono::duration<double>(Clock::now() - begin).count();
    std::printf("streams: %.1f Mbit/s in all, %d failed\n", 8e-6 * static_cast<double>(streams.bytes() - before) / took,
                streams.failures());
}

} // namespace

int main(int argc, char *argv[])
{
    if (argc != 5) {
        std::fputs("usage: velmora-streams ADDRESS ACCOUNT-FILE STREAMS SECONDS\n", stderr);
        return 2;
    }
    curl_global_init(CURL_GLOBAL_DEFAULT);
    try {
        run(argv);
    } catch (const std::exception &error) {
        std::fprintf(stderr, "velmora-streams: %s\n", error.what());
        return 1;
    }
    return 0;
}
