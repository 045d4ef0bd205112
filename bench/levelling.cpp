// How equally loud the tracks of the demo catalogue reach the sink. The real service sends them with the gains that it
// has measured, the real playback plays them into a file, as fast as it can, and ffmpeg's EBU R 128 meter measures the
// files. Without levelling for comparison. Needs ffmpeg.
#include "bench/figures.h"
#include "bench/serviceprogram.h"

#include "netcommon/playback.h"
#include "netcommon/playbackthread.h"
#include "platform/netcommon/playback/playbackboard.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QTimer>

#include <algorithm>
#include <set>
#include <stdexcept>
#include <thread>

using namespace bench;
using nlohmann::json;
using velmora::server::HttpClient;

namespace {

constexpr size_t wantedTracks = 40;
constexpr int longestTrackMs = 120'000; // to play it unsynchronised

// Of a signed-in household: addresses of different tracks of all its stations.
std::set<std::string> audioAddresses(HttpClient &client, const std::filesystem::path &data)
{
    const std::string name = "household@example.org";
    const std::string partner =
        call(client, "partnerLogin", {{"deviceKey", std::string(42, 'A') + 'A'}}, "").at("partnerToken");
    const std::string user = call(client, "createUser",
                                  {{"userName", name},
                                   {"password", "seven small lamps"},
                                   {"birthYear", 1984},
                                   {"gender", "male"},
                                   {"zipCode", "04109"},
                                   {"countryCode", "DE"},
                                   {"emailOptIn", false},
                                   {"deviceId", "02005E000001-0"}},
                                  partner)
                                 .at("userToken");
    openSignUpLink(client, data, name);
    std::set<std::string> files;
    std::set<std::string> addresses;
    for (int round = 0; round < 8 && addresses.size() < wantedTracks; ++round) {
        for (const json &station : call(client, "getStationList", json::object(), user).at("stations")) {
            std::this_thread::sleep_for(std::chrono::milliseconds(200));
            const json list = call(client, "getPlaylist", {{"stationToken", station.at("stationToken")}}, user);
            for (const json &entry : list.at("entries")) {
                const json &track = entry.contains("track") ? entry["track"] : json::object();
                if (!track.contains("audioUrl") || !track["audioUrl"].is_string())
                    continue;
                const std::string address = track["audioUrl"];
                if (addresses.size() < wantedTracks && files.insert(address.substr(0, address.find('?'))).second)
                    addresses.insert(address);
            }
        }
    }
    return addresses;
}

// The service measures its tracks in the background.
void untilGainsAreKnown(HttpClient &client, const std::set<std::string> &addresses)
{
    const auto begin = std::chrono::steady_clock::now();
    for (const std::string &address : addresses) {
        for (;;) {
            client.send("HEAD " + address.substr(address.find("/media")) + " HTTP/1.1\r\nHost: radio\r\n\r\n");
            if (!client.receive(true).header("Velmora-Gain").empty())
                break;
            if (since(begin) > 600)
                throw std::runtime_error("the service has not measured its tracks");
            std::this_thread::sleep_for(std::chrono::seconds(1));
        }
    }
}

// Plays the track into the file: 16 bits, 44,100 Hz, two channels.
void play(netcommon::PlaybackThread &thread, const std::string &address)
{
    QEventLoop loop;
    bool isWhole = false;
    auto *const playback = netcommon::Playback::getInstance();
    QObject::connect(playback, &netcommon::Playback::signalGotoPlayNextSong, &loop, [&] {
        // Shortly before the last sample.
        QTimer *const over = new QTimer(&loop);
        QObject::connect(over, &QTimer::timeout, &loop, [&] {
            isWhole = playback->getPbcState() == PLAYBACK_STATE_STOPPED;
            if (isWhole)
                loop.quit();
        });
        over->start(10);
    });
    QObject::connect(playback, &netcommon::Playback::signalPlayResult, &loop, [&](int result) {
        if (result < 0)
            loop.quit();
    });
    QTimer::singleShot(longestTrackMs, &loop, &QEventLoop::quit);
    QByteArray text = QByteArray::fromStdString(address);
    thread.setType(PLAYBACK_TYPE_START);
    thread.setAudioUrl(text.data());
    loop.exec();
    if (!isWhole)
        throw std::runtime_error("a track was not played to its end");
}

// LUFS.
double loudnessOf(const QString &file)
{
    QProcess meter;
    meter.start(QStringLiteral("ffmpeg"),
                {QStringLiteral("-nostdin"), QStringLiteral("-f"), QStringLiteral("s16le"), QStringLiteral("-ar"),
                 QStringLiteral("44100"), QStringLiteral("-ac"), QStringLiteral("2"), QStringLiteral("-i"), file,
                 QStringLiteral("-af"), QStringLiteral("ebur128"), QStringLiteral("-f"), QStringLiteral("null"),
                 QStringLiteral("-")});
    if (!meter.waitForFinished(longestTrackMs))
        throw std::runtime_error("ffmpeg is needed");
    static const QRegularExpression integrated(QStringLiteral("I: +(-?[0-9.]+) LUFS"));
    const QString said = QString::fromUtf8(meter.readAllStandardError());
    const auto match = integrated.match(said, said.lastIndexOf(QStringLiteral("Integrated loudness")));
    if (!match.hasMatch())
        throw std::runtime_error("ffmpeg said: " + said.right(300).toStdString());
    return match.captured(1).toDouble();
}

std::vector<double> measure(const std::set<std::string> &addresses, bool isLevelled, const QString &file)
{
    netcommon::PlaybackBoard::instance().sound().isLevelled = isLevelled;
    std::vector<double> loudness;
    for (const std::string &address : addresses) {
        {
            netcommon::PlaybackThread thread;
            thread.start();
            play(thread, address);
        } // closes the file
        loudness.push_back(loudnessOf(file));
        std::fprintf(stderr, "%s %.1f LUFS\n", isLevelled ? "levelled" : "as it is", loudness.back());
    }
    return loudness;
}

double spread(const std::vector<double> &values)
{
    const auto [least, most] = std::minmax_element(values.begin(), values.end());
    return *most - *least;
}

void run()
{
    const ScratchFolder data;
    const QString file = QString::fromStdString(data.path / "heard.pcm");
    qputenv("VELMORA_AUDIO_SINK", "audioconvert ! audioresample ! audio/x-raw,format=S16LE,rate=44100,channels=2 ! "
                                  "filesink sync=false location=" +
                                      QFile::encodeName(file));
    Server server(data.path / "service");
    server.untilMusicIsMade();
    HttpClient client(server.port());
    const auto addresses = audioAddresses(client, data.path / "service");
    untilGainsAreKnown(client, addresses);
    const auto before = measure(addresses, false, file);
    const auto after = measure(addresses, true, file);
    figures::note("tracks of the demo catalogue", double(addresses.size()), "");
    figures::note("loudest against quietest, as they are", spread(before), " LU");
    figures::print("loudest against quietest, levelled", spread(after), " LU", 0.5);
    figures::note("their median, levelled", figures::median(after), " LUFS");
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    try {
        run();
    } catch (const std::exception &error) {
        std::fprintf(stderr, "bench-levelling: %s\n", error.what());
        return 1;
    }
    return 0;
}
