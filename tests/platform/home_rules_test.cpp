// What velmora-home decides: when the service is asked, what its answers mean, what is wrong with the network.
#include "foundservice.h"
#include "networkwords.h"
#include "servicehealth.h"
#include "servicepane.h"
#include "servicewait.h"

#include <QNetworkReply>
#include <QtTest>

using namespace home;
using Result = ServiceHealth::Result;

constexpr char ready[] = "{\"code\":0,\"data\":{\"status\":\"ready\"}}";

class HomeRulesTest : public QObject {
    Q_OBJECT
private slots:
    void theServiceIsAskedLessAndLessOften()
    {
        const double chances[] = {0.5, 0, 1};
        const int expected[][7] = {{1000, 2000, 5000, 10000, 15000, 15000, 15000},
                                   {800, 1600, 4000, 8000, 12000, 12000, 12000},
                                   {1200, 2400, 6000, 12000, 18000, 18000, 18000}};
        for (int row = 0; row < 3; ++row) {
            ServiceWait wait;
            for (const int pause : expected[row])
                QCOMPARE(wait.nextPause(chances[row]), pause);
        }
    }

    void onlyAServiceInTheHouseIsProbed()
    {
        for (const char *address : {"http://127.0.0.1:7480", "http://localhost", "http://[::1]:7480", "http://10.1.2.3",
                                    "http://172.31.0.1", "https://192.168.1.20:7480/radio", "http://nas:7480",
                                    "http://radio.local", "http://[fd00::1]", "http://169.254.1.1"})
            QVERIFY2(isInTheHouse(QLatin1String(address)), address);
        for (const char *address : {"https://radio.example", "http://172.32.0.1", "http://192.0.2.7",
                                    "http://[2001:db8::1]", "http://local", "", "radio"})
            QVERIFY2(isInTheHouse(QLatin1String(address)) == (QLatin1String(address) == QLatin1String("http://local")),
                     address);
    }

    void whatTheNetworkAnnouncesIsReadIntoBounds()
    {
        const QByteArrayList tls{"x=1", "tls=1"}, plain{"tls=0"};
        const struct {
            QString name, host, address;
            int port;
            QByteArrayList texts;
            QString expected; // name and address; empty: left out
        } table[] = {
            {"Kitchen", "Kitchen.local", "192.168.1.20", 7480, tls, "Kitchen https://kitchen.local:7480"},
            {"Kitchen", "kitchen", "10.0.0.1", 80, plain, "Kitchen http://10.0.0.1:80"},
            {"a\n\u202Eb\x1b[1m", "x.local/../", "169.254.3.4", 1, tls, "a b[1m https://169.254.3.4:1"},
            {"\u200B", "-.local", "172.16.0.1", 65535, tls, "172.16.0.1 https://172.16.0.1:65535"},
            {QString(200, u'n'), "me@x.local", "127.0.0.1", 9, plain, QString(63, u'n') + " http://127.0.0.1:9"},
            {"own network", "", "198.51.100.9", 7480, tls, "own network https://198.51.100.9:7480"},
            {"outside", "a.local", "198.51.101.9", 7480, tls, {}},
            {"outside", "a.local", "2001:db8::1", 7480, tls, {}},
            {"six", "", "FD00:0::2", 7480, tls, "six https://[fd00::2]:7480"},
            {"needs a card's name", "a.local", "fe80::2", 7480, tls, {}},
            {"no address", "a.local", "192.168.1.20@evil.example", 7480, tls, {}},
            {"no port", "a.local", "192.168.1.20", 0, tls, {}},
            {"both", "a.local", "192.168.1.20", 7480, tls + plain, {}},
            {"neither", "a.local", "192.168.1.20", 7480, {"tls=2"}, {}},
        };
        for (const auto &row : table) {
            const auto found = foundService(row.name, row.host, row.address, row.port, row.texts,
                                            {{QHostAddress("198.51.100.1"), 24}});
            QCOMPARE(found ? found->name + ' ' + found->url(!found->host.isEmpty()) : QString(), row.expected);
        }
    }

    void anAnswerIsHealthyOrSaysWhatIsWrong()
    {
        const struct {
            int error;
            int status;
            const char *body;
            Result expected;
        } cases[] = {
            {QNetworkReply::NoError, 200, ready, Result::Healthy},
            {QNetworkReply::NoError, 200, "{\"code\":5096,\"data\":{\"status\":\"x\"}}", Result::Refused},
            {QNetworkReply::NoError, 200, "<html>Log in to the hotel</html>", Result::OtherProgram},
            {QNetworkReply::NoError, 200, "{\"code\":0}", Result::OtherProgram},
            {QNetworkReply::RemoteHostClosedError, 200, "{\"code\":0,\"data\":{\"st", Result::Unreachable},
            {QNetworkReply::NoError, 302, "", Result::OtherProgram},
            {QNetworkReply::ContentNotFoundError, 404, "", Result::OtherProgram},
            {QNetworkReply::ServiceUnavailableError, 503, "", Result::Refused},
            {QNetworkReply::ConnectionRefusedError, 0, "", Result::Unreachable},
            {QNetworkReply::OperationCanceledError, 0, "", Result::Unreachable},
            {QNetworkReply::HostNotFoundError, 0, "", Result::UnknownHost},
            {QNetworkReply::SslHandshakeFailedError, 0, "", Result::NotTrusted},
        };
        for (const auto &row : cases)
            QVERIFY2(resultOf(row.error, row.status, row.body) == row.expected,
                     qPrintable(QStringLiteral("%1 %2 %3").arg(row.error).arg(row.status).arg(row.body)));
    }

    void theFirstBrokenLinkOfTheWayIsNamed()
    {
        NetworkFacts facts;
        const auto says = [&facts](const char *words) { return networkWords(facts).contains(QLatin1String(words)); };
        QVERIFY(says("no network card"));
        facts.hasCard = true;
        QVERIFY(says("No cable"));
        facts.isConnected = true;
        QVERIFY(says("no address"));
        facts.hasAddress = true;
        QVERIFY(says("no other network"));
        facts.hasRoute = true;
        QVERIFY(says("does not answer"));
        facts.service = Result::UnknownHost;
        QVERIFY(says("name of the service"));
        facts.service = Result::NotTrusted;
        QVERIFY(says("certificate"));
        facts.service = Result::Healthy;
        QVERIFY(says("All is well"));
        facts = {};
        facts.isServiceHere = true; // then no card is needed
        QVERIFY(says("on this device"));
        facts.service = Result::NoAddress;
        QVERIFY(says("No service is set up"));
    }

    void aTypedAddressIsCompleted()
    {
        const char *const cases[][2] = {{"192.168.1.20:7480", "http://192.168.1.20:7480"},
                                        {" nas:7480 ", "http://nas:7480"},
                                        {"radio.example", "https://radio.example"},
                                        {"http://radio.example", "http://radio.example"},
                                        {"", ""}};
        for (const auto &row : cases)
            QCOMPARE(ServicePane::completed(QLatin1String(row[0])), QLatin1String(row[1]));
    }
};

QTEST_GUILESS_MAIN(HomeRulesTest)
#include "home_rules_test.moc"
