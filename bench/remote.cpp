// From a press on a telephone to the radio's menu system: a POST to the page's address, the service, the radio's
// channel, the menu system's socket. All on loopback, with the real service and the real velmora-remote, while ten
// telephones wait for what the radio shows. Once with one process, and once with two on a PostgreSQL, where the radio
// waits at one and the telephones ask the other.
#include "bench/figures.h"
#include "bench/serviceprogram.h"
#include "platform/netcommon/device/menusocket.h"
#include "tests/server/postgresserver.h"

#include <QProcess>

#include <fstream>
#include <poll.h>
#include <regex>
#include <stdexcept>
#include <unistd.h>

using namespace bench;
using nlohmann::json;
using velmora::server::HttpAnswer;
using velmora::server::HttpClient;
namespace menu = netcommon::menu;
using SteadyClock = std::chrono::steady_clock;

namespace {

constexpr int telephones = 10;
constexpr int presses = 500;       // as many as an account may make at once
constexpr int pressesAcross = 100; // each may take a second
constexpr int patienceMs = 15'000;
const std::string name = "bench@house.example";
const std::string password = "seven small lamps";

// A browser that keeps its connection.
class Telephone {
public:
    explicit Telephone(int port)
        : m_client(port)
        , m_watch(port)
    {
        get("/account");
        post("/account/signin", "email=bench%40house.example&password=seven+small+lamps");
        get("/account");
    }

    HttpAnswer get(const std::string &path) { return ask(m_client, "GET", path, {}); }
    HttpAnswer post(const std::string &path, const std::string &fields)
    {
        return ask(m_client, "POST", path, "csrf=" + m_token + "&" + fields);
    }
    void beginPress(const std::string &key)
    {
        send(m_client, "POST", "/remote/press", "csrf=" + m_token + "&key=" + key);
    }
    int endPress() { return m_client.receive().status; }
    void beginLook(const std::string &revision) { send(m_watch, "GET", "/remote/state?after=" + revision, {}); }
    void endLook() { m_watch.receive(); }

private:
    void send(HttpClient &client, const std::string &method, const std::string &path, const std::string &body)
    {
        client.send(method + " " + path + " HTTP/1.1\r\nHost: radio\r\nAccept: application/json\r\nCookie: " +
                    m_cookie + "\r\nContent-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body);
    }
    HttpAnswer ask(HttpClient &client, const std::string &method, const std::string &path, const std::string &body)
    {
        send(client, method, path, body);
        HttpAnswer answer = client.receive();
        if (const std::string set = answer.header("Set-Cookie"); !set.empty())
            m_cookie = set.substr(0, set.find(';'));
        std::smatch match;
        if (std::regex_search(answer.body, match, std::regex("name=\"csrf\" value=\"([^\"]+)\"")))
            m_token = match[1];
        return answer;
    }

    HttpClient m_client;
    HttpClient m_watch;
    std::string m_cookie;
    std::string m_token;
};

// The account, and a radio of this key that is linked with it.
void makeAccount(int port, const std::filesystem::path &data, const std::string &key)
{
    HttpClient client(port);
    const std::string partner = call(client, "partnerLogin", {{"deviceKey", key}}, "").at("partnerToken");
    const std::string user =
        call(client, "createUser", {{"userName", name}, {"password", password}}, partner).at("userToken");
    openSignUpLink(client, data, name);
    call(client, "associateDevice", {{"deviceId", "02005E000001-0"}}, user);
}

// The menu system: its socket, on which orders arrive.
class Menu {
public:
    explicit Menu(const std::filesystem::path &socket)
    {
        QString reason;
        m_listener = menu::listenAt(QByteArray::fromStdString(socket.string()), &reason);
        if (m_listener < 0)
            throw std::runtime_error(reason.toStdString());
    }
    ~Menu()
    {
        for (const pollfd &peer : m_peers)
            ::close(peer.fd);
        ::close(m_listener);
    }
    // Waits for the next key; false when none comes. What the radio shows is asked for meanwhile, and answered.
    bool nextKey()
    {
        const auto start = SteadyClock::now();
        while (since(start) * 1000 < patienceMs) {
            std::vector<pollfd> watched = m_peers;
            watched.push_back({m_listener, POLLIN, 0});
            ::poll(watched.data(), watched.size(), 100);
            if (const int peer = menu::acceptPeer(m_listener); peer >= 0)
                m_peers.push_back({peer, POLLIN, 0});
            for (const pollfd &peer : m_peers) {
                menu::Packet packet;
                if (menu::receive(peer.fd, packet) != menu::Received::Packet)
                    continue;
                if (menu::typeOf(packet.message) == menu::MessageType::Key)
                    return true;
                const QByteArray shown = R"({"title":"Lamps","volume":)" + QByteArray::number(++m_shown % 100) + "}";
                menu::send(peer.fd, menu::makeMessage(menu::MessageType::Answer), shown);
            }
        }
        return false;
    }

private:
    int m_listener = -1;
    int m_shown = 0;
    std::vector<pollfd> m_peers;
};

// `database`: where two processes meet; empty: there is one. False when a press was lost.
bool measure(const std::string &database, const std::string &where)
{
    const ScratchFolder folder;
    const auto data = folder.path / "service";
    const std::string key(43, 'k');
    std::vector<std::string> options;
    if (!database.empty())
        options = {"--database", database};
    Server server(data, options); // the radio's
    const auto other = database.empty() ? nullptr : std::make_unique<Server>(data, options);
    const int phonesPort = other ? other->port() : server.port();
    makeAccount(server.port(), data, key);
    std::ofstream(folder.path / "device") << "velmora-ws-state 1\nmac=02005E000001\nkey=" << key << "\n";
    Menu menu(folder.path / "menu.sock");
    QProcess remote;
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.insert("VELMORA_WS_SERVER", QStringLiteral("http://127.0.0.1:%1").arg(server.port()));
    environment.insert("VELMORA_WS_STATE_DIR", QString::fromStdString(folder.path.string()));
    environment.insert("VELMORA_MENU_SOCKET", QString::fromStdString((folder.path / "menu.sock").string()));
    remote.setProcessEnvironment(environment);
    remote.start(QStringLiteral(BENCH_REMOTE), QStringList());

    std::vector<std::unique_ptr<Telephone>> phones;
    for (int i = 0; i < telephones; ++i)
        phones.push_back(std::make_unique<Telephone>(phonesPort));
    const auto start = SteadyClock::now();
    while (phones[0]->post("/remote/press", "volume=50").status != 200) {
        if (since(start) * 1000 > patienceMs)
            throw std::runtime_error("the radio does not come");
        ::usleep(50'000);
    }
    std::vector<double> ms;
    int lost = 0;
    const int count = database.empty() ? presses : pressesAcross;
    for (int i = 0; i < count; ++i) {
        for (auto &phone : phones)
            phone->beginLook(""); // answered at once, or with the next change
        Telephone &phone = *phones[size_t(i % telephones)];
        const auto pressed = SteadyClock::now();
        phone.beginPress("up");
        if (menu.nextKey())
            ms.push_back(since(pressed) * 1000);
        else
            ++lost;
        phone.endPress();
        for (auto &each : phones)
            each->endLook();
    }
    figures::note("from a telephone's press to the radio's menu system, median" + where, figures::median(ms), " ms");
    figures::print("  99th percentile" + where, figures::percentile(ms, 0.99), " ms", database.empty() ? 100 : 1000,
                   "of " + std::to_string(ms.size()) + ", ten telephones look; lost: " + std::to_string(lost));
    remote.kill();
    remote.waitForFinished();
    return lost == 0;
}

} // namespace

int main()
{
    try {
        bool isWhole = measure({}, {});
        if (velmora::PostgresServer::programs()) {
            velmora::PostgresServer postgres;
            isWhole = measure(postgres.makeDatabase(), ", two processes") && isWhole;
        } else {
            figures::note("PostgreSQL", "not installed, not measured");
        }
        return isWhole ? 0 : 1;
    } catch (const std::exception &error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
