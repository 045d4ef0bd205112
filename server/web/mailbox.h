#pragma once

#include "server/api/stationservice.h"

#include <chrono>
#include <condition_variable>
#include <deque>
#include <filesystem>
#include <functional>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

namespace velmora::server {

struct MailSettings {
    std::string smtp;                // smtp[s]://host[:port]; empty: into the outbox
    std::filesystem::path smtpLogin; // user name and password, a line each; empty: without
    bool isTlsRequired = false;      // with a login it always is
    std::filesystem::path smtpCa;    // PEM: the certificates to trust; empty: the system's
    std::filesystem::path outbox;    // a folder, made owner-only
    std::string sender = "velmora@localhost";
    std::function<std::string()>
        address; // of the pages, configured, never a request's own; asked when a mail is written
    // The pauses before each retry after a temporary failure (no connection, "try later"); a link lives an hour.
    std::vector<std::chrono::seconds> retries{std::chrono::minutes(1), std::chrono::minutes(5),
                                              std::chrono::minutes(15)};
};

struct SmtpLogin {
    std::string name;
    std::string password;
};
// From the first two lines of a file; nothing when one of them is missing or empty.
std::optional<SmtpLogin> readSmtpLogin(const std::filesystem::path &file);

// Sends the mails, one after another, on a thread of its own. With an SMTP server through libcurl, encrypted where the
// server offers TLS; where TLS is required, a server without it gets neither a password nor a mail. What cannot be
// delivered in the end, and everything without a server, is written to the outbox, owner-only.
class Mailbox : public Mailer {
public:
    explicit Mailbox(MailSettings settings);
    ~Mailbox() override;

    // Waits for the mail that is being sent and moves the waiting ones to the outbox. Nothing is sent afterwards.
    void stop();

    bool later(std::function<void()> job) override;
    void sendSignUp(const std::string &address, const std::string &token) override;
    void sendHasAccount(const std::string &address) override;
    void sendNewAddress(const std::string &address, const std::string &token) override;
    void sendAddressChanged(const std::string &address) override;
    void sendPasswordReset(const std::string &address, const std::string &token) override;
    void sendPinRescue(const std::string &address, const std::string &token) override;
    bool hasServer() const override { return !m_settings.smtp.empty(); }
    std::vector<KeptMail> kept() const override;
    bool forget(const std::string &name) override;

    // Nothing waits and nothing is being sent.
    bool isIdle();

    // The whole message, headers and all, as plain text and as HTML; a recipient that is no mail address is refused
    // (empty). A line of the text that is an address becomes a link.
    static std::string message(const std::string &sender, const std::string &recipient, const std::string &subject,
                               const std::string &text, int64_t now);

private:
    struct Mail {
        std::string recipient;
        std::string text; // whole
        std::chrono::steady_clock::time_point due;
        size_t failures = 0;
    };
    enum class Delivery { Done, MayPass, Refused };
    void enqueue(const std::string &recipient, const std::string &subject, const std::string &text);
    void work();
    // Waits until there is a job, which comes first, or a mail is due. After stop() it does not wait; false when
    // nothing is left then.
    bool takeDue(std::unique_lock<std::mutex> &lock, std::function<void()> *job, Mail *mail);
    void send(std::unique_lock<std::mutex> &lock, Mail mail);
    Delivery deliver(const Mail &mail) const;
    void keep(const Mail &mail) const;

    MailSettings m_settings;
    std::mutex m_mutex;
    std::condition_variable m_wake;
    std::deque<std::function<void()>> m_jobs;
    std::vector<Mail> m_waiting;
    bool m_isEnding = false;
    bool m_isSending = false;
    std::thread m_thread;
};

} // namespace velmora::server
