#pragma once

#include "serverfixture.h"

#include <array>
#include <thread>

namespace velmora::server {

// Eight listeners who rename stations, each their own, again and again through the network. What a server acknowledged
// must be kept. The writers take turns between two ports, which may be the same.
class Writers {
public:
    static constexpr size_t count = 8;
    struct Writer {
        std::string station;
        std::atomic<int> tried = 0, acknowledged = 0;
        std::atomic<int> told = 0;    // to come again later: HTTP 503 with Retry-After
        std::atomic<int> cut = 0;     // no connection, or no answer
        std::atomic<int> refused = 0; // any other answer
    };

    // Makes their account.
    explicit Writers(StationService &service)
    {
        EXPECT_EQ(service.createAccount("mira@example.org", "seven small lamps", {}, &m_account), CreateResult::Done);
        m_session = service.sessions.openUser(m_account, "a key's hash");
        for (Writer &writer : all) {
            writer.station = service.stations.createTapestry(m_account).token;
            service.store.lock()->run("UPDATE stations SET is_tapestry = 0, allow_rename = 1 WHERE token = ?1",
                                      writer.station);
        }
    }
    ~Writers() { end(); }

    void begin()
    {
        for (size_t i = 0; i < count; ++i)
            m_threads.emplace_back([this, i] { write(all[i], ports[i % 2]); });
    }
    void end()
    {
        m_isOver = true;
        m_threads.clear();
    }
    // Each has so many more acknowledged.
    void wait(int more)
    {
        for (Writer &writer : all) {
            for (const int before = writer.acknowledged; writer.acknowledged < before + more;)
                std::this_thread::yield();
        }
    }
    void expectKept(StationService &service)
    {
        for (const Writer &writer : all) {
            const int kept = std::stoi(service.stations.find(m_account, writer.station)->name);
            EXPECT_TRUE(kept >= writer.acknowledged && kept <= writer.tried) << kept << " of " << writer.acknowledged;
            EXPECT_EQ(writer.refused, 0);
        }
    }

    std::array<Writer, count> all;
    std::array<std::atomic<int>, 2> ports{};

private:
    void write(Writer &writer, const std::atomic<int> &port)
    {
        while (!m_isOver) {
            const int number = ++writer.tried;
            const json body = {{"stationToken", writer.station}, {"newName", std::to_string(number)}};
            HttpAnswer answer;
            try {
                answer = httpRequest(port, "POST", "/v1/renameStation",
                                     {{"Authorization", "Bearer " + m_session},
                                      {"Velmora-Request-Key", tokenHash(randomToken()).substr(0, 32)}},
                                     body.dump());
            } catch (const std::runtime_error &) { // nobody listens: whoever starts has the processor
                std::this_thread::sleep_for(std::chrono::milliseconds(5));
            }
            if (answer.status == 200 && json::parse(answer.body).at("code") == 0)
                writer.acknowledged = number;
            else if (answer.status == 0)
                ++writer.cut;
            else
                ++(answer.status == 503 && !answer.header("Retry-After").empty() ? writer.told : writer.refused);
        }
    }

    AccountId m_account = 0;
    std::string m_session;
    std::atomic<bool> m_isOver = false;
    std::vector<std::jthread> m_threads;
};

} // namespace velmora::server
