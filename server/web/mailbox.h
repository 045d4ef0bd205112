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
    // A process that sends a mail has it alone for so long. Longer than any delivery takes.
    std::chrono::seconds lease{120};
};

struct SmtpLogin {
    std::string name;
    std::string password;
};
// From the first two lines of a file; nothing when one of them is missing or empty.
std::optional<SmtpLogin> readSmtpLogin(const std::filesystem::path &file);

// Sends the mails, one after another, on a thread of its own. They wait in the store, encrypted, so that each is sent
// at least once, whichever process is killed; processes that share the store send each other's. With an SMTP server
// through libcurl, encrypted where the server offers TLS; where TLS is required, a server without it gets neither a
// password nor a mail. What cannot be delivered in the end, and everything without a server, is written to the outbox,
// owner-only.
class Mailbox : public Mailer {
public:
    // The store outlives the mailbox.
    Mailbox(Store &store, MailSettings settings);
    ~Mailbox() override;

    // Ends with the jobs and with the mail that is being sent. Without an SMTP server the waiting ones are written to
    // the outbox; otherwise they stay in the store.
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
    size_t waiting() override;

    // Nothing waits and nothing is being sent.
    bool isIdle();

private:
    struct Mail {
        std::string id;
        std::string recipient;
        std::string text; // whole
        size_t failures = 0;
    };
    enum class Delivery { Done, MayPass, Refused };
    void enqueue(const std::string &recipient, const std::string &subject, const std::string &text);
    void doJobs();
    void sendMails();
    // False when none is due.
    bool sendNext();
    // No other process takes it until the lease ends.
    std::optional<Mail> takeDue();
    size_t count();
    Delivery deliver(const Mail &mail) const;
    bool keep(const Mail &mail) const; // false when the outbox cannot be written to

    Store &m_store;
    const std::string m_key; // that encrypts the waiting mails
    const MailSettings m_settings;
    std::mutex m_mutex; // guards the members below
    std::condition_variable m_wake;
    std::deque<std::function<void()>> m_jobs;
    size_t m_waiting = 0; // as last counted
    bool m_isNew = false; // a mail was added
    bool m_isEnding = false;
    bool m_isWorking = false; // at a job
    bool m_isSending = false;
    std::thread m_jobThread;  // runs doJobs(): a slow mail server holds up no job
    std::thread m_sendThread; // runs sendMails()
};

} // namespace velmora::server
