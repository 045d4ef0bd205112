#pragma once

#include "serverfixture.h"

#include "server/web/mailbox.h"
#include "server/web/webpages.h"

#include <regex>

namespace velmora::server {

// A browser with its one cookie and the form token of the page it shows.
class Browser {
public:
    explicit Browser(int port)
        : m_port(port)
    {
    }

    int get(const std::string &path) { return take(httpGet(m_port, path, headers())); }

    int post(const std::string &path, std::map<std::string, std::string> form, bool withToken = true)
    {
        if (withToken)
            form.emplace("csrf", csrf);
        std::string fields;
        for (const auto &[name, value] : form) {
            fields += (fields.empty() ? "" : "&") + name + "=";
            for (const unsigned char c : value) {
                char escaped[4];
                std::snprintf(escaped, sizeof escaped, "%%%02X", c);
                fields += c == ' ' ? "+" : escaped;
            }
        }
        return take(httpPost(m_port, path, fields, headers()));
    }

    bool shows(const std::string &text) const { return body.find(text) != std::string::npos; }

    std::string language; // Accept-Language; empty: none is sent
    std::string body;
    std::string csrf;
    std::string cookie;
    HttpAnswer last;

private:
    http::Headers headers() const
    {
        http::Headers all;
        if (!cookie.empty())
            all.emplace_back("Cookie", "other=1; " + cookie);
        if (!language.empty())
            all.emplace_back("Accept-Language", language);
        return all;
    }

    int take(const HttpAnswer &answer)
    {
        body = answer.body;
        last = answer;
        const std::string set = answer.header("Set-Cookie");
        if (!set.empty())
            cookie = set.substr(0, set.find(';'));
        std::smatch match;
        if (std::regex_search(body, match, std::regex("name=\"csrf\" value=\"([^\"]+)\"")))
            csrf = match[1];
        return answer.status;
    }

    const int m_port;
};

class WebTest : public ServerTest {
protected:
    WebTest()
        : m_pages(*m_service, false, [now = m_now] { return now->load(); })
    {
        ListenSettings settings;
        settings.addPages = [this](http::Router &router) { m_pages.addTo(router); };
        settings.pageNotFound = [this](const http::Request &request) { return m_pages.notFound(request); };
        m_port = listen(settings).port();
        m_device = addDevice();
    }

    // The server must stop before the pages are deleted.
    ~WebTest() override { m_server->stop(); }

    std::string newCode()
    {
        return data("generateDeviceActivationCode", {{"deviceId", m_device.digits}}, m_device.partnerToken)
            .value("activationCode", "");
    }
    Reply deviceLogin(int slot = 0)
    {
        return call("userLogin", {{"loginType", "deviceId"}, {"deviceId", m_device.slot(slot)}}, m_device.partnerToken);
    }
    // Signed in on the account page.
    int signIn(Browser &browser, const std::string &email = miraName, const std::string &secret = password)
    {
        browser.get("/account");
        return browser.post("/account/signin", {{"email", email}, {"password", secret}});
    }
    MailSettings mailSettings() const
    {
        MailSettings settings;
        settings.outbox = m_outbox;
        settings.address = [] { return std::string("https://radio.example"); };
        return settings;
    }
    // Enters a code and reaches the permission page.
    void enter(Browser &browser, const std::string &code, const std::string &action, const std::string &email,
               const std::string &secret)
    {
        browser.get("/activate");
        ASSERT_EQ(browser.post("/activate", {{"code", code}}), 200) << browser.body;
        ASSERT_EQ(browser.post("/activate/account", {{"action", action}, {"email", email}, {"password", secret}}), 200)
            << browser.body;
        if (action == "create") {
            EXPECT_TRUE(browser.shows("Look into your mail"));
            const std::string token = m_mailer.sent.back().token;
            EXPECT_EQ(browser.get("/confirm?token=" + token), 200);
            EXPECT_EQ(browser.get("/confirm?token=" + token), 200) << "looking at it makes nothing";
            EXPECT_EQ(browser.post("/confirm", {{"token", token}}), 200);
            EXPECT_EQ(httpGet(m_port, "/confirm?token=" + token).status, 410);
        }
        ASSERT_TRUE(browser.shows("Allow this radio?"));
    }

    inline static const std::map<std::string, std::string> allowed{{"answer", "allow"}};
    const std::filesystem::path m_outbox = m_directory.path() / "outbox";
    WebPages m_pages;
    int m_port = 0;
    TestDevice m_device;
};

} // namespace velmora::server
