// The mails: what is in them, who gets them, and what becomes of those that nobody takes.

#include "webfixture.h"

#include <fstream>
#include <netinet/in.h>
#include <openssl/ssl.h>
#include <set>
#include <sys/socket.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace velmora::server {

using MailTest = WebTest;

TEST_F(MailTest, aReminderIsALinkOfTheConfiguredAddressInAnOwnerOnlyFile)
{
    addAccount();
    const auto remind = [&](const char *userName) {
        return call("emailPassword", {{"userName", userName}}, m_device.partnerToken).code;
    };
    m_service->mailer = nullptr;
    EXPECT_EQ(remind(miraName), 5000) << "no mail is set up";
    {
        Mailbox mailbox(m_service->store, mailSettings());
        m_service->mailer = &mailbox;
        EXPECT_EQ(remind(miraName), 0);
        EXPECT_EQ(remind("nobody@example.org"), 0) << "the answer does not tell who has an account";
        EXPECT_EQ(remind("mira"), 5107);
    }
    m_service->mailer = &m_mailer;
    std::vector<std::filesystem::path> mails;
    for (const auto &entry : std::filesystem::directory_iterator(m_outbox))
        mails.push_back(entry.path());
    ASSERT_EQ(mails.size(), 1U);
    struct stat info {};
    ASSERT_EQ(::stat(mails.front().c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 0777, 0600U);
    ASSERT_EQ(::stat(m_outbox.c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 0777, 0700U);
    std::ifstream file(mails.front());
    const std::string text((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    std::smatch match;
    ASSERT_TRUE(
        std::regex_search(text, match, std::regex("https://radio\\.example(/reset\\?token=[A-Za-z0-9_-]+)\r\n")));
    EXPECT_NE(text.find("To: <mira@example.org>\r\n"), std::string::npos);
    EXPECT_EQ(text.find(password), std::string::npos);
    Browser browser(m_port);
    EXPECT_EQ(browser.get(match[1]), 200);
}

// A mail server that records what it receives.
class MailServer {
public:
    // Whether it offers STARTTLS, and whether that works.
    enum class Tls { Absent, Refused, Works };

    // One conversation for each element: its answer to the recipient. `identity` is a certificate with its key.
    explicit MailServer(std::vector<std::string_view> answers, Tls tls = Tls::Absent,
                        const std::filesystem::path &identity = {})
        : m_answers(std::move(answers))
        , m_tls(tls)
        , m_context(SSL_CTX_new(TLS_server_method()), &SSL_CTX_free)
        , m_listening(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0))
    {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        if (::bind(m_listening, reinterpret_cast<sockaddr *>(&address), size) != 0 || ::listen(m_listening, 1) != 0 ||
            ::getsockname(m_listening, reinterpret_cast<sockaddr *>(&address), &size) != 0)
            throw std::runtime_error("no port for the mail server");
        port = ntohs(address.sin_port);
        if (tls == Tls::Works &&
            (SSL_CTX_use_certificate_file(m_context.get(), identity.c_str(), SSL_FILETYPE_PEM) != 1 ||
             SSL_CTX_use_PrivateKey_file(m_context.get(), identity.c_str(), SSL_FILETYPE_PEM) != 1))
            throw std::runtime_error("no certificate for the mail server");
        m_thread = std::thread([this] {
            for (const std::string_view answer : m_answers)
                talk(answer);
        });
    }
    ~MailServer()
    {
        finish();
        ::close(m_listening);
    }
    // Waits for the end of the conversations.
    void finish()
    {
        ::shutdown(m_listening, SHUT_RD);
        if (m_thread.joinable())
            m_thread.join();
    }

    int port = 0;
    std::string heard;      // valid after finish()
    std::string heardByAll; // what of it was not encrypted

private:
    void talk(std::string_view answer)
    {
        const int peer = ::accept(m_listening, nullptr, nullptr);
        if (peer < 0)
            return;
        std::unique_ptr<SSL, decltype(&SSL_free)> ssl(nullptr, &SSL_free);
        const auto say = [&](std::string_view text) {
            return ssl ? SSL_write(ssl.get(), text.data(), static_cast<int>(text.size())) > 0
                       : ::send(peer, text.data(), text.size(), MSG_NOSIGNAL) > 0;
        };
        const auto nextLine = [&] {
            std::string line;
            char letter = 0;
            while (!line.ends_with('\n') && (ssl ? SSL_read(ssl.get(), &letter, 1) : ::read(peer, &letter, 1)) == 1)
                line += letter;
            return line;
        };
        bool isText = false;
        bool isTalking = say("220 here\r\n");
        for (std::string said = nextLine(); isTalking && !said.empty(); said = nextLine()) {
            heard += said;
            heardByAll += ssl ? "" : said;
            if (isText && said != ".\r\n")
                continue;
            isText = said.starts_with("DATA");
            if (said.starts_with("EHLO")) {
                isTalking = say(ssl                    ? "250-here\r\n250 AUTH PLAIN\r\n"
                                : m_tls != Tls::Absent ? "250-here\r\n250-AUTH PLAIN\r\n250 STARTTLS\r\n"
                                                       : "250-here\r\n250 AUTH PLAIN\r\n");
            } else if (said.starts_with("STARTTLS") && m_tls == Tls::Works) {
                isTalking = say("220 go on\r\n");
                ssl.reset(SSL_new(m_context.get()));
                SSL_set_fd(ssl.get(), peer);
                isTalking = isTalking && SSL_accept(ssl.get()) == 1;
            } else if (said.starts_with("STARTTLS")) {
                isTalking = say("454 not now\r\n");
            } else if (said.starts_with("AUTH")) {
                isTalking = say("334 \r\n");
                heard += nextLine();
                isTalking = isTalking && say("235 welcome\r\n");
            } else {
                isTalking = say(isText ? "354 go on\r\n" : said.starts_with("RCPT") ? answer : "250 fine\r\n");
            }
        }
        ssl.reset();
        ::close(peer);
    }

    const std::vector<std::string_view> m_answers;
    const Tls m_tls;
    const std::unique_ptr<SSL_CTX, decltype(&SSL_CTX_free)> m_context;
    int m_listening;
    std::thread m_thread;
};

TEST_F(MailTest, aTemporaryMailErrorIsRetriedAndAPermanentOneIsNot)
{
    const std::tuple<std::vector<std::string_view>, bool> cases[] = {
        {{"250 fine\r\n"}, true}, {{"451 later\r\n", "250 fine\r\n"}, true}, {{"550 nobody here\r\n"}, false}};
    for (const auto &[answers, isDelivered] : cases) {
        SCOPED_TRACE(answers.front());
        MailServer server(answers);
        MailSettings settings = mailSettings();
        settings.smtp = "smtp://127.0.0.1:" + std::to_string(server.port);
        settings.sender = "radio@radio.example";
        settings.retries = {std::chrono::seconds(0)};
        Mailbox mailbox(m_service->store, settings);
        mailbox.sendPasswordReset("mira@example.org", "token-of-the-mail");
        // `heard` is valid only after all conversations have ended.
        for (int i = 0; i < 1000 && !mailbox.isIdle(); ++i)
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        server.finish();
        EXPECT_NE(server.heard.find("MAIL FROM:<radio@radio.example>"), std::string::npos) << server.heard;
        EXPECT_NE(server.heard.find("RCPT TO:<mira@example.org>"), std::string::npos) << server.heard;
        const std::string link = "https://radio.example/reset?token=token-of-the-mail\r\n";
        EXPECT_EQ(server.heard.find(link) != std::string::npos, isDelivered) << server.heard;
        EXPECT_EQ(std::filesystem::exists(m_outbox), !isDelivered);
    }
}

TEST_F(MailTest, AMailThatAKilledProcessLeftIsSentAndNoneTwice)
{
    MailSettings settings = mailSettings();
    settings.smtp = "smtp://127.0.0.1:1";
    settings.retries = {std::chrono::hours(1)};
    {
        Mailbox killed(m_service->store, settings);
        killed.sendPasswordReset("mira@example.org", "token-of-the-mail");
        const auto isTried = [&] {
            return m_service->store.lock()->number("SELECT COUNT(*) FROM mails WHERE failures = 1") == 1;
        };
        for (int i = 0; i < 1000 && !isTried(); ++i)
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        EXPECT_EQ(m_database.content(m_service->dataDirectory()).find("mira@"), std::string::npos);
    }
    EXPECT_FALSE(std::filesystem::exists(m_outbox)) << "it is not given up";
    // As it is when the process dies in the middle of sending it.
    m_service->store.lock()->run("UPDATE mails SET due_at = 0, taken_until = ?1", int64_t(std::time(nullptr)) + 1);
    MailServer server({"250 fine\r\n"});
    settings.smtp = "smtp://127.0.0.1:" + std::to_string(server.port);
    {
        Mailbox next(m_service->store, settings);
        for (int i = 0; i < 1000 && !next.isIdle(); ++i)
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    server.finish();
    EXPECT_NE(server.heard.find("token-of-the-mail"), std::string::npos) << server.heard;

    settings.smtp.clear();
    constexpr int mails = 40;
    {
        Mailbox one(m_service->store, settings);
        Mailbox two(m_service->store, settings);
        for (int i = 0; i < mails; ++i)
            (i % 2 == 0 ? one : two).sendPasswordReset("mira@example.org", "number-" + std::to_string(i) + "-");
    }
    std::set<std::string> links;
    for (const auto &entry : std::filesystem::directory_iterator(m_outbox)) {
        std::ifstream file(entry.path());
        const std::string text((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
        links.insert(text.substr(text.find("number-"), 10));
    }
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(m_outbox), {}), mails) << "none twice";
    EXPECT_EQ(links.size(), mails) << "none lost";
}

TEST_F(MailTest, WhereTlsIsRequiredAServerWithoutItGetsNeitherAPasswordNorAMail)
{
    const std::filesystem::path identity = m_directory.path() / "mail.pem";
    const std::string file = identity.string();
    const std::string command = "openssl req -x509 -newkey rsa:2048 -nodes -days 2 -subj /CN=mail -addext "
                                "subjectAltName=IP:127.0.0.1 -keyout " +
                                file + " -out " + file + ".crt 2>/dev/null && cat " + file + ".crt >>" + file;
    ASSERT_EQ(std::system(command.c_str()), 0);
    const std::filesystem::path login = m_directory.path() / "login";
    std::ofstream(login) << "mira\nsecret\n";
    using Tls = MailServer::Tls;
    const struct {
        const char *what;
        Tls tls;
        bool hasLogin, isRequired, isTrusted, isDelivered;
    } cases[] = {{"a login", Tls::Absent, true, false, true, false},
                 {"required", Tls::Absent, false, true, true, false},
                 {"neither", Tls::Absent, false, false, true, true},
                 {"refused", Tls::Refused, true, true, true, false},
                 {"another's certificate", Tls::Works, true, true, false, false},
                 {"all well", Tls::Works, true, false, true, true}};
    for (const auto &c : cases) {
        SCOPED_TRACE(c.what);
        MailServer server({"250 fine\r\n"}, c.tls, identity);
        MailSettings settings = mailSettings();
        settings.smtp = "smtp://127.0.0.1:" + std::to_string(server.port);
        settings.smtpLogin = c.hasLogin ? login : std::filesystem::path();
        settings.isTlsRequired = c.isRequired;
        settings.smtpCa = c.isTrusted ? std::filesystem::path(file + ".crt") : std::filesystem::path();
        settings.retries = {};
        Mailbox mailbox(m_service->store, settings);
        mailbox.sendPasswordReset("mira@example.org", "token-of-the-mail");
        for (int i = 0; i < 1000 && !mailbox.isIdle(); ++i)
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        server.finish();
        EXPECT_EQ(server.heard.find("token-of-the-mail") != std::string::npos, c.isDelivered) << server.heard;
        EXPECT_EQ(server.heard.find("AUTH PLAIN") != std::string::npos, c.hasLogin && c.isDelivered) << server.heard;
        EXPECT_EQ(std::filesystem::exists(m_outbox), !c.isDelivered);
        if (c.hasLogin || c.isRequired) {
            EXPECT_EQ(server.heardByAll.find("AUTH"), std::string::npos) << server.heardByAll;
            EXPECT_EQ(server.heardByAll.find("MAIL"), std::string::npos) << server.heardByAll;
        }
        std::filesystem::remove_all(m_outbox);
    }
}

TEST_F(MailTest, AMailIsInTheLanguageOfThePageThatAskedForIt)
{
    *m_now = std::time(nullptr);
    addAccount();
    Mailbox mailbox(m_service->store, mailSettings());
    m_service->mailer = &mailbox;
    Browser browser(m_port);
    browser.language = "ja";
    browser.get("/forgot");
    EXPECT_EQ(browser.post("/forgot", {{"email", miraName}}), 200);
    for (int i = 0; i < 1000 && mailbox.kept().empty(); ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    const std::vector<KeptMail> mails = mailbox.kept();
    ASSERT_EQ(mails.size(), 1u);
    EXPECT_EQ(mails[0].subject, "Velmora のパスワード");
    EXPECT_NE(mails[0].text.find("新しいパスワード"), std::string::npos);
    std::ifstream file(m_outbox / mails[0].name);
    const std::string raw{std::istreambuf_iterator(file), {}};
    const std::string head = raw.substr(0, raw.find("\r\n\r\n"));
    EXPECT_TRUE(std::all_of(head.begin(), head.end(), [](unsigned char c) { return c < 0x80; })) << head;
    EXPECT_NE(raw.find("<html lang=\"ja\">"), std::string::npos);
    m_service->mailer = &m_mailer;
}

TEST_F(MailTest, AForgottenPasswordAnswersEverybodyAlikeAndTheOwnerFindsMailsThatWereNotDelivered)
{
    *m_now = std::time(nullptr); // as the mails are dated
    addAccount();
    addAccount("second@example.org");
    MailSettings settings = mailSettings();
    settings.smtp = "smtp://127.0.0.1:1";
    settings.retries = {};
    Mailbox mailbox(m_service->store, settings);
    m_service->mailer = &mailbox;
    Browser owner(m_port);
    Browser other(m_port);
    other.get("/account");
    EXPECT_TRUE(other.shows("href=\"/forgot\""));
    EXPECT_EQ(other.get("/forgot"), 200);
    EXPECT_EQ(other.post("/forgot", {{"email", "a<b@example.org"}}), 422);
    EXPECT_EQ(other.post("/forgot", {{"email", "nobody@example.org"}}), 200);
    const std::string unknown = std::regex_replace(other.body, std::regex("nobody@"), "second@");
    other.get("/forgot");
    EXPECT_EQ(other.post("/forgot", {{"email", "second@example.org"}}), 200);
    EXPECT_EQ(other.body, unknown);
    for (int i = 0; i < 1000 && !mailbox.isIdle(); ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));

    EXPECT_EQ(owner.get("/library/mails"), 403);
    signIn(owner);
    signIn(other, "second@example.org");
    EXPECT_EQ(other.get("/library/mails"), 403);
    EXPECT_EQ(owner.get("/library/mails"), 200);
    EXPECT_TRUE(owner.shows("second@example.org"));
    EXPECT_FALSE(owner.shows("nobody@example.org"));
    EXPECT_FALSE(owner.shows("DOCTYPE") || owner.shows("&lt;p&gt;")) << "the text, not the part of markup";
    std::smatch match;
    ASSERT_TRUE(std::regex_search(owner.body, match, std::regex("href=\"https://radio\\.example(/reset[^\"]*)\"")));
    EXPECT_EQ(other.get(match[1]), 200);
    *m_now += 3700; // the mail is dated by the real clock, some seconds later
    signIn(owner);
    signIn(other, "second@example.org");
    owner.get("/library/mails");
    EXPECT_FALSE(owner.shows("/reset")) << "its link is no longer valid";

    std::ofstream(m_directory.path() / "1.eml") << "beside the outbox";
    EXPECT_EQ(owner.post("/library/mails/forget", {{"mail", "../1.eml"}}), 303);
    EXPECT_TRUE(std::filesystem::exists(m_directory.path() / "1.eml"));
    owner.get("/library/mails");
    ASSERT_TRUE(std::regex_search(owner.body, match, std::regex("name=\"mail\" value=\"([^\"]*)\"")));
    EXPECT_EQ(other.post("/library/mails/forget", {{"mail", match[1]}}), 403);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(m_outbox), {}), 1);
    EXPECT_EQ(owner.post("/library/mails/forget", {{"mail", match[1]}}), 303);
    EXPECT_TRUE(std::filesystem::is_empty(m_outbox));
    m_service->mailer = &m_mailer;
}

} // namespace velmora::server
