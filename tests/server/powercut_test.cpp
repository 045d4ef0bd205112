// What the service has acknowledged survives a power cut: the real program runs with a recorder of what it writes and
// syncs; then disks are made as many cuts could have left them, and each is opened again.

#include "diskrecorder.h"
#include "server/demoaccount.h"
#include "serverfixture.h"
#include "serverprogram.h"

#include <cstring>
#include <fstream>
#include <list>
#include <random>

namespace velmora::server {
namespace {

namespace fs = std::filesystem;
using diskrecord::Call;

std::string contentOf(const fs::path &file)
{
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

// How much survives of what was not synced.
enum class Loss { All, Some, None };

// Files and names as a disk holds them: what was synced, and what came after it. No order holds between changes of
// different files; a write may arrive in part, sector by sector.
class Disk {
public:
    // The record is of `root`; what was there before it began is on the disk, and lies in `before` still.
    Disk(const fs::path &before, const fs::path &root)
        : m_root(root)
    {
        m_names[root] = ++m_last;
        m_folders.insert(root);
        for (const auto &entry : fs::recursive_directory_iterator(before)) {
            const fs::path path = root / entry.path().lexically_relative(before);
            m_names[path] = ++m_last;
            if (entry.is_directory())
                m_folders.insert(path);
            else
                m_files[m_last].durable = contentOf(entry.path());
        }
        m_durableNames = m_names;
    }

    // Carries out the calls of the record's first bytes; one that is not whole did not happen.
    void play(std::string_view record)
    {
        diskrecord::Header header;
        while (record.size() >= sizeof header) {
            std::memcpy(&header, record.data(), sizeof header);
            if (record.size() < sizeof header + header.size)
                return;
            apply(header, record.substr(sizeof header, header.size));
            record.remove_prefix(sizeof header + header.size);
        }
    }

    // Writes what a power cut leaves to a folder. The index of the database's log is never on a disk.
    void cut(const fs::path &to, Loss loss, std::mt19937 &random) const
    {
        Names names = m_durableNames;
        for (const NameChange &change : m_nameChanges) {
            if (survives(loss, random))
                carryOut(change, &names);
        }
        for (const auto &[name, file] : names) {
            const fs::path path = (to / name.lexically_relative(m_root)).lexically_normal();
            if (!names.contains(name.parent_path()) && name != m_root)
                continue; // its folder did not survive
            if (m_folders.contains(name))
                fs::create_directories(path);
            else if (!name.native().ends_with("-shm"))
                std::ofstream(path, std::ios::binary) << survivor(m_files.at(file), loss, random);
        }
    }

private:
    using Names = std::map<fs::path, int>; // to the number of a file
    struct Change {
        Call call{}; // Write or Truncate
        uint64_t offset = 0;
        std::string content;
    };
    struct File {
        std::string durable;
        std::vector<Change> changes; // since it was synced
    };
    struct NameChange {
        fs::path name;
        int file = 0; // 0: the name goes
    };

    static bool survives(Loss loss, std::mt19937 &random)
    {
        return loss == Loss::None || (loss == Loss::Some && random() % 2 == 0);
    }
    static void carryOut(const NameChange &change, Names *names)
    {
        if (change.file == 0)
            names->erase(change.name);
        else
            (*names)[change.name] = change.file;
    }
    static void carryOut(const Change &change, std::string *content, Loss loss, std::mt19937 &random)
    {
        if (change.call == Call::Truncate) {
            content->resize(change.offset);
            return;
        }
        constexpr size_t sector = 512;
        const bool isTorn = loss == Loss::Some && random() % 2 == 0;
        if (content->size() < change.offset + change.content.size())
            content->resize(change.offset + change.content.size());
        for (size_t at = 0; at < change.content.size(); at += sector) {
            if (!isTorn || random() % 2 == 0)
                content->replace(change.offset + at, std::min(sector, change.content.size() - at),
                                 change.content.substr(at, sector));
        }
    }
    static std::string survivor(const File &file, Loss loss, std::mt19937 &random)
    {
        std::string content = file.durable;
        for (const Change &change : file.changes) {
            if (survives(loss, random))
                carryOut(change, &content, loss, random);
        }
        return content;
    }
    void change(NameChange change)
    {
        carryOut(change, &m_names);
        m_nameChanges.push_back(std::move(change));
    }
    void sync(const fs::path &path)
    {
        if (m_folders.contains(path)) {
            std::erase_if(m_nameChanges, [&](const NameChange &change) {
                const bool isOfIt = change.name.parent_path() == path;
                if (isOfIt)
                    carryOut(change, &m_durableNames);
                return isOfIt;
            });
            return;
        }
        File &file = m_files.at(m_names.at(path));
        std::mt19937 unused;
        file.durable = survivor(file, Loss::None, unused);
        file.changes.clear();
    }
    void apply(const diskrecord::Header &header, std::string_view content)
    {
        const fs::path path(content.substr(0, content.find('\n')));
        const fs::path other(content.substr(std::min(content.size(), content.find('\n') + 1)));
        switch (header.call) {
        case Call::Begin:
            m_open.clear();
            break;
        case Call::Open:
            if (!m_names.contains(path)) {
                m_files[++m_last];
                change({path, m_last});
            }
            m_open[header.descriptor] = path;
            break;
        case Call::Close:
            m_open.erase(header.descriptor);
            break;
        case Call::Write:
        case Call::Truncate:
            m_files.at(m_names.at(m_open.at(header.descriptor)))
                .changes.push_back({header.call, header.offset, std::string(content)});
            break;
        case Call::Sync:
            sync(m_open.at(header.descriptor));
            break;
        case Call::Rename:
            change({other, m_names.at(path)});
            change({path, 0});
            break;
        case Call::Link:
            change({other, m_names.at(path)});
            break;
        case Call::Unlink:
            change({path, 0});
            break;
        case Call::MakeFolder:
            m_folders.insert(path);
            change({path, ++m_last});
            break;
        }
    }

    const fs::path m_root;
    int m_last = 0;
    std::map<int, File> m_files;
    std::set<fs::path> m_folders;
    Names m_names;        // as programs see them
    Names m_durableNames; // as they are on the disk
    std::vector<NameChange> m_nameChanges;
    std::map<int, fs::path> m_open; // by descriptor
};

// Something that the service has said is done: when, as the record's size at that time, and what proves it.
struct Acknowledged {
    uint64_t at = 0;
    std::string what;
    std::function<bool(StationService &)> isThere;
};

class PowerCutTest : public ServerTest {
protected:
    // What the program finds: nothing, or a service with a catalogue and a listener.
    void begin(bool isFresh)
    {
        fs::create_directory(m_root);
        if (!isFresh) {
            const std::string user = newListener();
            for (const char *style : {"folk", "rock", "swing"})
                addStation(user, style);
            m_dispatcher.reset();
            m_service.reset();
            fs::copy(m_directory.path() / "data", m_root / "data", fs::copy_options::recursive);
        }
        fs::copy(m_root, m_before, fs::copy_options::recursive);
    }
    // The program runs, and `use` makes requests; then it ends by this signal.
    void run(int signal, const std::function<void()> &use)
    {
        const char *options = std::getenv("ASAN_OPTIONS");
        ServerProgram server(
            {"--listen", "127.0.0.1:0", "--data", (m_root / "data").string(), "--no-demo", "--demo-account"},
            {"LD_PRELOAD=" VELMORA_DISK_RECORDER, "DISK_FOLDER=" + m_root.string(), "DISK_RECORD=" + m_record.string(),
             std::string("ASAN_OPTIONS=verify_asan_link_order=0:") + (options ? options : "")});
        m_port = server.port();
        ASSERT_NE(m_port, 0);
        use();
        server.signal(signal);
        server.exitCode();
    }
    void call(const std::string &function, const json &parameters, const std::string &token, json *data)
    {
        const HttpAnswer answer =
            httpPost(m_port, "/v1/" + function, parameters.dump(), {{"Authorization", "Bearer " + token}});
        const json body = json::parse(answer.body, nullptr, false);
        ASSERT_TRUE(body.is_object() && body.at("code") == 0) << function << ": " << answer.body;
        *data = body.value("data", json::object());
    }
    void acknowledge(const std::string &what, std::function<bool(StationService &)> isThere)
    {
        m_acknowledged.push_back({fs::file_size(m_record), what, std::move(isThere)});
    }
    // The listener signs in on a new radio, which asks for a code.
    void addRadio(int number)
    {
        const std::string digits = "AAAAAAAAAAA" + std::to_string(number);
        const std::string key = randomToken();
        json partner;
        json data;
        call("partnerLogin", {{"deviceKey", key}}, "", &partner);
        call("userLogin", {{"loginType", "user"}, {"userName", miraName}, {"password", password}},
             partner.at("partnerToken"), &data);
        call("associateDevice", {{"deviceId", digits + "-0"}}, data.at("userToken"), &data);
        acknowledge("radio " + digits, [digits, key](StationService &service) {
            return service.devices.find(digits + "-0", tokenHash(key)).has_value();
        });
        call("generateDeviceActivationCode", {{"deviceId", digits}}, partner.at("partnerToken"), &data);
        acknowledge("code of " + digits,
                    [code = data.at("activationCode").get<std::string>()](StationService &service) {
                        return service.activationCodes.find(code).has_value();
                    });
    }
    // Signs in, names stations and thumbs tracks up.
    void listen(int first, int rounds)
    {
        json data;
        call("partnerLogin", {{"deviceKey", randomToken()}}, "", &data);
        call("userLogin", {{"loginType", "user"}, {"userName", miraName}, {"password", password}},
             data.at("partnerToken"), &data);
        const std::string user = data.at("userToken");
        call("getStationList", json::object(), user, &data);
        const json stations = data.at("stations");
        for (int round = first; round < first + rounds; ++round) {
            const std::string station = stations.at(1 + static_cast<size_t>(round) % 3).at("stationToken");
            call("renameStation", {{"stationToken", station}, {"newName", std::to_string(round)}}, user, &data);
            acknowledge("name " + std::to_string(round), [station, round](StationService &service) {
                return std::atoi(service.stations.find(1, station)->name.c_str()) >= round;
            });
            call("getPlaylist", {{"stationToken", station}}, user, &data);
            const json entries = data.at("entries");
            for (const json &entry : entries) {
                if (entry.at("type") != "track")
                    continue;
                const json &track = entry.at("track");
                call("addFeedback", {{"isPositive", true}, {"trackToken", track.at("trackToken")}}, user, &data);
                const std::string song = track.at("songName");
                acknowledge("thumb for " + song, [station, id = song.substr(5)](StationService &service) {
                    return service.feedback.isThumbedUp(1, service.stations.find(1, station)->id,
                                                        service.catalogue.track(id)->id);
                });
            }
        }
    }
    // Cuts the power, mostly just after an answer, and looks at what is left.
    void cut(int cuts, unsigned seed)
    {
        const std::string record = contentOf(m_record);
        ASSERT_FALSE(m_acknowledged.empty());
        std::mt19937 random(seed);
        for (int number = 0; number < cuts; ++number) {
            const size_t at =
                number % 4 == 3 ? random() % (record.size() + 1) : m_acknowledged[random() % m_acknowledged.size()].at;
            SCOPED_TRACE("cut " + std::to_string(number) + " after " + std::to_string(at) + " bytes");
            Disk disk(m_before, m_root);
            disk.play(std::string_view(record).substr(0, at));
            const fs::path left = m_directory.path() / ("left" + std::to_string(number));
            disk.cut(left, std::array{Loss::All, Loss::Some, Loss::None}[static_cast<size_t>(number) % 3], random);
            lookAt(left, at);
            fs::remove_all(left);
        }
    }
    void lookAt(const fs::path &left, size_t at)
    {
        ServiceSettings settings;
        settings.dataDirectory = left / "data";
        StationService service(settings);
        {
            const Store::Lock db = service.store.lock();
            Statement row = db->prepare("PRAGMA integrity_check");
            ASSERT_TRUE(row.step());
            EXPECT_EQ(row.text(0), "ok");
        }
        for (const Acknowledged &done : m_acknowledged) {
            if (done.at <= at) {
                EXPECT_TRUE(done.isThere(service)) << done.what;
            }
        }
    }
    // Many at once where somebody looks for rare ones: VELMORA_POWER_CUTS=100.
    static int cutsToMake(int usual)
    {
        const char *wanted = std::getenv("VELMORA_POWER_CUTS");
        return wanted ? std::atoi(wanted) : usual;
    }

    const fs::path m_root = m_directory.path() / "disk";
    const fs::path m_before = m_directory.path() / "before";
    const fs::path m_record = m_directory.path() / "record";
    int m_port = 0;
    std::vector<Acknowledged> m_acknowledged;
};

TEST_F(PowerCutTest, WhatWasAcknowledgedIsThereAfterwards)
{
    begin(false);
    run(SIGTERM, [this] {
        addRadio(1);
        listen(1, 15);
    });
    run(SIGKILL, [this] {
        listen(16, 15);
        addRadio(2);
    });
    ASSERT_GT(m_acknowledged.size(), 100u);
    cut(cutsToMake(16), 1);
}

TEST_F(PowerCutTest, TheFirstAccountOfANewServiceIsThereAfterwards)
{
    begin(true);
    run(SIGKILL, [this] {
        acknowledge("the demo account with its password", [](StationService &service) {
            const std::string file = contentOf(demoAccountFile(service));
            const size_t end = file.find('\n');
            return end != std::string::npos && service.accounts.find(demoUserName) && file.size() > end + 12;
        });
    });
    cut(cutsToMake(4), 2);
}

} // namespace
} // namespace velmora::server
