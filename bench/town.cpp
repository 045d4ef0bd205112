#include "bench/town.h"

#include "server/library/halffloat.h"
#include "server/media/descriptorlayout.h"
#include "server/store/store.h"

#include <algorithm>
#include <fstream>
#include <stdexcept>

namespace bench {

using namespace velmora::server;

namespace {

constexpr size_t styleCount = 60;
constexpr size_t tracksOfArtist = 12;
constexpr size_t batch = 250; // accounts in a transaction: each takes locks of its own, which PostgreSQL bounds

std::string digits(size_t number, size_t count)
{
    std::string text = std::to_string(number);
    return text.insert(0, count - std::min(count, text.size()), '0');
}

} // namespace

std::string styleName(uint64_t number)
{
    return "style " + std::to_string(number % styleCount);
}

void fillCatalogue(StationService &service, size_t trackCount, std::mt19937 &random, Ads ads)
{
    std::vector<Track> tracks;
    for (size_t i = 0; i < trackCount; ++i) {
        const size_t artist = random() % std::max<size_t>(trackCount / tracksOfArtist, 8);
        Track track;
        track.publicId = "t" + std::to_string(i);
        track.song = "Song " + std::to_string(i);
        track.artist = "Artist " + std::to_string(artist);
        track.album = "Album " + std::to_string(artist * 3 + random() % 3);
        track.style = styleName(artist * artist);
        track.durationSeconds = 210;
        track.audioType = "audio/flac";
        track.isPlayable = true;
        track.isDemo = ads == Ads::One; // an advertisement follows it
        tracks.push_back(track);
        if (tracks.size() == 5000 || i + 1 == trackCount) {
            service.catalogue.put(tracks);
            tracks.clear();
        }
    }
    if (ads == Ads::One) {
        Ad ad;
        ad.publicId = "ad";
        ad.title = "Lamps";
        ad.audioType = "audio/flac";
        ad.isPlayable = true;
        service.catalogue.replaceAds({ad});
    }
    std::normal_distribution<float> number;
    const Store::Lock db = service.catalogueStore.lock();
    Transaction change(*db);
    for (size_t i = 1; i <= trackCount; ++i) {
        velmora::media::Descriptor descriptor;
        std::generate(descriptor.begin(), descriptor.end(), [&] { return number(random); });
        db->run("INSERT INTO descriptors (track_id, version, numbers) VALUES (?1, ?2, ?3)", static_cast<int64_t>(i),
                velmora::media::descriptorVersion, Blob{halves(descriptor)});
    }
    change.commit();
    service.catalogue.noteChange();
}

std::vector<TownRadio> makeTown(StationService &service, size_t count, SignedIn signedIn, std::mt19937 &random)
{
    const std::string passwordHash = service.hasher.hash("seven small lamps");
    const auto trackCount = static_cast<size_t>(service.catalogue.counts().playable);
    std::vector<TownRadio> radios(count);
    for (size_t first = 0; first < count; first += batch) {
        const Store::Lock db = service.store.lock();
        Transaction change(*db);
        for (size_t number = first; number < std::min(first + batch, count); ++number) {
            TownRadio &radio = radios[number];
            radio.deviceKey = "radio" + digits(number, 9) + std::string(28, 'k') + 'A'; // 32 bytes in base64url
            radio.deviceId = "02005E" + digits(number, 6) + "-0";
            radio.address = "10." + std::to_string(number >> 16) + '.' + std::to_string(number >> 8 & 255) + '.' +
                            std::to_string(number & 255);
            const std::string keyHash = tokenHash(radio.deviceKey);
            const uint64_t artist = 1 + random() % (trackCount / (2 * tracksOfArtist));
            const Music music = number % 2 == 0 ? Music{MusicKind::Style, styleName(artist * artist)}
                                                : Music{MusicKind::Artist, std::to_string(artist)};
            service.accounts.create("h" + std::to_string(number) + "@example.org", passwordHash, {}, &radio.account,
                                    [&](AccountId account) {
                                        Station station;
                                        service.stations.createTapestry(account);
                                        if (service.stations.create(account, music, &station) != StationResult::Done)
                                            throw std::runtime_error("no music for a station");
                                        radio.station = station.token;
                                    });
            service.devices.associate(radio.deviceId, keyHash, radio.account);
            if (signedIn == SignedIn::Yes)
                radio.userToken = service.sessions.openUser(radio.account, keyHash, radio.deviceId);
        }
        change.commit();
    }
    return radios;
}

DatabaseCosts databaseCosts(Store &store)
{
    DatabaseCosts costs;
    const Store::Lock db = store.lock();
    if (!db->isShared())
        return costs;
    Statement row = db->prepare("SELECT pid, CAST(pg_wal_lsn_diff(pg_current_wal_insert_lsn(), '0/0') AS BIGINT) FROM "
                                "pg_stat_activity WHERE backend_type = 'client backend'");
    while (row.step()) {
        double nanoseconds = 0;
        std::ifstream("/proc/" + std::to_string(row.integer(0)) + "/schedstat") >> nanoseconds;
        costs.seconds += nanoseconds / 1e9;
        costs.logBytes = double(row.integer(1));
    }
    return costs;
}

} // namespace bench
