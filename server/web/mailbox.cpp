#include "server/web/mailbox.h"

#include "server/accounts/secrets.h"
#include "server/logging/log.h"
#include "server/web/language.h"
#include "server/web/mailmessage.h"

#include <curl/curl.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <ctime>
#include <fcntl.h>
#include <fstream>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

namespace velmora::server {

namespace {

constexpr size_t mostJobs = 100;
constexpr size_t mostWaiting = 10'000;       // mails
constexpr std::chrono::seconds lookEvery{2}; // for mails whose time has come, or that another process has left
constexpr size_t mostKept = 100;             // that are shown
constexpr size_t mostOfMail = 16 * 1024;     // bytes
constexpr long connectSeconds = 10;
constexpr long wholeSeconds = 30;

struct Upload {
    const std::string &text;
    size_t sent = 0;
};

size_t read(char *buffer, size_t size, size_t count, void *user)
{
    auto *upload = static_cast<Upload *>(user);
    const size_t part = std::min(size * count, upload->text.size() - upload->sent);
    std::copy_n(upload->text.data() + upload->sent, part, buffer);
    upload->sent += part;
    return part;
}

// Ours, and in no other folder.
bool isMailFile(std::string_view name)
{
    return name.ends_with(".eml") && name.front() >= '0' && name.front() <= '9' &&
           name.find('/') == std::string_view::npos;
}

} // namespace

std::optional<SmtpLogin> readSmtpLogin(const std::filesystem::path &file)
{
    std::ifstream stream(file);
    SmtpLogin login;
    std::getline(stream, login.name);
    std::getline(stream, login.password);
    return login.name.empty() || login.password.empty() ? std::nullopt : std::optional(login);
}

Mailbox::Mailbox(Store &store, MailSettings settings)
    : m_store(store)
    , m_key(store.settingOnce("mail key", [] { return randomToken(); }))
    , m_settings(std::move(settings))
{
    // Taken by a process that has ended: where this one is alone, nobody else sends.
    if (!store.isShared())
        store.lock()->run("UPDATE mails SET taken_until = 0 WHERE taken_until > 0");
    m_waiting = count();
    m_jobThread = std::thread([this] { doJobs(); });
    m_sendThread = std::thread([this] { sendMails(); });
}

Mailbox::~Mailbox()
{
    stop();
}

void Mailbox::stop()
{
    {
        const std::lock_guard guard(m_mutex);
        m_isEnding = true;
    }
    m_wake.notify_all();
    // The jobs first: they may add mails.
    for (std::thread *thread : {&m_jobThread, &m_sendThread}) {
        if (thread->joinable())
            thread->join();
    }
}

std::vector<KeptMail> Mailbox::kept() const
{
    std::vector<std::filesystem::path> files;
    std::error_code problem;
    for (std::filesystem::directory_iterator entry(m_settings.outbox, problem), end; !problem && entry != end;
         entry.increment(problem)) {
        if (isMailFile(entry->path().filename().native()))
            files.push_back(entry->path());
    }
    std::sort(files.rbegin(), files.rend()); // their names begin with the time
    files.resize(std::min(files.size(), mostKept));
    std::vector<KeptMail> mails;
    for (const std::filesystem::path &file : files) {
        std::ifstream stream(file, std::ios::binary);
        std::string message(mostOfMail, '\0');
        stream.read(message.data(), static_cast<std::streamsize>(message.size()));
        message.resize(static_cast<size_t>(stream.gcount()));
        mails.push_back(readMail(file.filename().native(), message));
    }
    return mails;
}

bool Mailbox::forget(const std::string &name)
{
    return isMailFile(name) && ::unlink((m_settings.outbox / name).c_str()) == 0;
}

bool Mailbox::later(std::function<void()> job)
{
    {
        const std::lock_guard guard(m_mutex);
        if (m_isEnding || m_jobs.size() >= mostJobs)
            return false;
        // Its mails are in the language of the page that asked for them.
        m_jobs.emplace_back([job = std::move(job), language = &InLanguage::current()] {
            const InLanguage texts(*language);
            job();
        });
    }
    m_wake.notify_all();
    return true;
}

void Mailbox::sendSignUp(const std::string &address, const std::string &token)
{
    enqueue(address, say("Your Velmora account"),
            say("Somebody, probably you, wants a Velmora account with this address.\n\n"
                "This page makes it. It opens once, within one hour:\n\n{1}\n\nIf it was not you, do nothing.\n",
                m_settings.address() + "/confirm?token=" + token));
}

void Mailbox::sendHasAccount(const std::string &address)
{
    enqueue(address, say("Your Velmora account"),
            say("Somebody, probably you, wants a Velmora account with this address. There is one already: sign in with "
                "its\n"
                "password. If you have forgotten it, this page sends a link for a new one:\n\n{1}\n\n"
                "If it was not you, do nothing.\n",
                m_settings.address() + "/forgot"));
}

void Mailbox::sendNewAddress(const std::string &address, const std::string &token)
{
    enqueue(address, say("Your new e-mail address"),
            say("Somebody, probably you, wants to use this address for a Velmora account.\n\n"
                "This page changes it. It opens once, within one hour:\n\n{1}\n\nIf it was not you, do nothing.\n",
                m_settings.address() + "/address?token=" + token));
}

void Mailbox::sendAddressChanged(const std::string &address)
{
    enqueue(address, say("Your old e-mail address"),
            say("Your Velmora account has another e-mail address now. This one no longer signs you in.\n\n"
                "If it was not you, ask the owner of the service at once.\n"));
}

void Mailbox::sendPasswordReset(const std::string &address, const std::string &token)
{
    enqueue(address, say("Your Velmora password"),
            say("Somebody, probably you, has asked for a new password for this Velmora account.\n\n"
                "This page sets one. It opens once, within one hour:\n\n{1}\n\n"
                "If it was not you, do nothing: your password stays as it is.\n",
                m_settings.address() + "/reset?token=" + token));
}

void Mailbox::sendPinRescue(const std::string &address, const std::string &token)
{
    enqueue(address, say("Your Velmora PIN"),
            say("Somebody, probably you, has forgotten the PIN of this Velmora account.\n\n"
                "This page sets a new one. It opens once, within one hour:\n\n{1}\n\n"
                "If it was not you, do nothing: the PIN stays as it is.\n",
                m_settings.address() + "/pin?token=" + token));
}

void Mailbox::enqueue(const std::string &recipient, const std::string &subject, const std::string &text)
{
    const std::string whole = mailMessage(m_settings.sender, recipient, subject, text, std::time(nullptr));
    if (whole.empty())
        return;
    {
        const std::lock_guard guard(m_mutex);
        if (m_waiting >= mostWaiting) {
            logs::warn("too many mails wait to be sent, one was dropped");
            return;
        }
    }
    // Its link must not stand in the log of a database. A backup has the key, too, and is kept as safe as the accounts.
    m_store.lock()->run(
        "INSERT INTO mails (id, recipient_hash, content, due_at, failures, taken_until) VALUES (?1, ?2, "
        "?3, ?4, 0, 0)",
        randomToken(), tokenHash(Accounts::foldedName(recipient)), sealed(m_key, recipient + '\n' + whole),
        int64_t(std::time(nullptr)));
    {
        const std::lock_guard guard(m_mutex);
        ++m_waiting;
        m_isNew = true;
    }
    m_wake.notify_all();
}

size_t Mailbox::count()
{
    return static_cast<size_t>(m_store.lock()->number("SELECT COUNT(*) FROM mails"));
}

size_t Mailbox::waiting()
{
    const std::lock_guard guard(m_mutex);
    return m_waiting;
}

bool Mailbox::isIdle()
{
    {
        const std::lock_guard guard(m_mutex);
        if (!m_jobs.empty() || m_isWorking || m_isSending)
            return false;
    }
    return count() == 0;
}

void Mailbox::doJobs()
{
    std::unique_lock lock(m_mutex);
    while (true) {
        m_wake.wait(lock, [this] { return m_isEnding || !m_jobs.empty(); });
        if (m_jobs.empty())
            return;
        const std::function<void()> job = std::move(m_jobs.front());
        m_jobs.pop_front();
        m_isWorking = true;
        lock.unlock();
        job();
        lock.lock();
        m_isWorking = false;
        m_wake.notify_all();
    }
}

void Mailbox::sendMails()
{
    std::unique_lock lock(m_mutex);
    while (true) {
        // Set before the look: a mail that is added after it is looked for again.
        m_isNew = false;
        const auto isLast = [this] { return m_isEnding && m_jobs.empty() && !m_isWorking; };
        const bool isEnd = isLast();
        if (m_isEnding && hasServer())
            return;
        m_isSending = true;
        lock.unlock();
        bool isMore = false;
        std::optional<size_t> waiting;
        try {
            isMore = sendNext();
            waiting = count();
        } catch (const StoreError &) {
            // Nothing is sent without the store; it is looked at again.
        }
        lock.lock();
        m_isSending = false;
        m_waiting = waiting.value_or(m_waiting);
        if (isMore)
            continue;
        if (isEnd)
            return;
        m_wake.wait_for(lock, lookEvery, [&] { return m_isNew || isLast() || (m_isEnding && hasServer()); });
    }
}

std::optional<Mailbox::Mail> Mailbox::takeDue()
{
    const int64_t now = std::time(nullptr);
    Mail mail;
    std::string content;
    {
        const Store::Lock db = m_store.lock();
        // Of two processes that find the same mail, the second one finds it taken.
        Statement row =
            db->prepare("UPDATE mails SET taken_until = ?2 WHERE taken_until <= ?1 AND id = (SELECT id FROM "
                        "mails WHERE due_at <= ?1 AND taken_until <= ?1 ORDER BY due_at, id LIMIT 1) "
                        "RETURNING id, content, failures");
        row.with(now, now + m_settings.lease.count());
        if (!row.step())
            return std::nullopt;
        mail.id = row.text(0);
        content = row.text(1);
        mail.failures = static_cast<size_t>(row.integer(2));
        while (row.step()) {
        }
    }
    const std::string text = unsealed(m_key, content).value_or("");
    const size_t split = std::min(text.find('\n'), text.size());
    mail.recipient = text.substr(0, split);
    mail.text = text.substr(std::min(split + 1, text.size()));
    return mail;
}

bool Mailbox::sendNext()
{
    const std::optional<Mail> mail = takeDue();
    if (!mail)
        return false;
    const Delivery delivery = mail->text.empty() ? Delivery::Done // of another key: nobody can read it
                              : hasServer()      ? deliver(*mail)
                                                 : Delivery::Refused;
    const auto putOff = [&](std::chrono::seconds pause) {
        m_store.lock()->run("UPDATE mails SET due_at = ?2, failures = failures + 1, taken_until = 0 WHERE id = ?1",
                            mail->id, int64_t(std::time(nullptr)) + pause.count());
    };
    if (delivery == Delivery::MayPass && mail->failures < m_settings.retries.size()) {
        putOff(m_settings.retries[mail->failures]);
    } else if (delivery != Delivery::Done && !keep(*mail)) {
        putOff(std::chrono::minutes(1)); // a full disk
        return false;
    } else {
        m_store.lock()->run("DELETE FROM mails WHERE id = ?1", mail->id);
    }
    return true;
}

Mailbox::Delivery Mailbox::deliver(const Mail &mail) const
{
    const std::unique_ptr<CURL, decltype(&curl_easy_cleanup)> curl(curl_easy_init(), &curl_easy_cleanup);
    if (!curl)
        return Delivery::MayPass;
    const std::unique_ptr<curl_slist, decltype(&curl_slist_free_all)> recipients(
        curl_slist_append(nullptr, ("<" + mail.recipient + ">").c_str()), &curl_slist_free_all);
    Upload upload{mail.text};
    curl_easy_setopt(curl.get(), CURLOPT_URL, m_settings.smtp.c_str());
    curl_easy_setopt(curl.get(), CURLOPT_PROTOCOLS_STR, "smtp,smtps");
    curl_easy_setopt(curl.get(), CURLOPT_USE_SSL, static_cast<long>(CURLUSESSL_TRY));
    curl_easy_setopt(curl.get(), CURLOPT_MAIL_FROM, ("<" + m_settings.sender + ">").c_str());
    curl_easy_setopt(curl.get(), CURLOPT_MAIL_RCPT, recipients.get());
    curl_easy_setopt(curl.get(), CURLOPT_READFUNCTION, &read);
    curl_easy_setopt(curl.get(), CURLOPT_READDATA, &upload);
    curl_easy_setopt(curl.get(), CURLOPT_UPLOAD, 1L);
    curl_easy_setopt(curl.get(), CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(curl.get(), CURLOPT_CONNECTTIMEOUT, connectSeconds);
    curl_easy_setopt(curl.get(), CURLOPT_TIMEOUT, wholeSeconds);
    if (!m_settings.smtpLogin.empty()) {
        const std::optional<SmtpLogin> login = readSmtpLogin(m_settings.smtpLogin);
        if (!login) {
            logs::warn("a mail was not sent, because " + m_settings.smtpLogin.string() + " cannot be read");
            return Delivery::MayPass;
        }
        curl_easy_setopt(curl.get(), CURLOPT_USERNAME, login->name.c_str());
        curl_easy_setopt(curl.get(), CURLOPT_PASSWORD, login->password.c_str());
    }
    // A password is not sent in the clear, and an answer without STARTTLS may come from somebody in between.
    if (m_settings.isTlsRequired || !m_settings.smtpLogin.empty())
        curl_easy_setopt(curl.get(), CURLOPT_USE_SSL, static_cast<long>(CURLUSESSL_ALL));
    if (!m_settings.smtpCa.empty())
        curl_easy_setopt(curl.get(), CURLOPT_CAINFO, m_settings.smtpCa.c_str());
    const CURLcode result = curl_easy_perform(curl.get());
    if (result == CURLE_OK)
        return Delivery::Done;
    const char *why = result == CURLE_USE_SSL_FAILED ? "the mail server offers no TLS, which is required"
                                                     : curl_easy_strerror(result);
    logs::warn(std::string("a mail was not delivered (") + why + ")");
    long answer = 0;
    curl_easy_getinfo(curl.get(), CURLINFO_RESPONSE_CODE, &answer);
    return answer >= 500 ? Delivery::Refused : Delivery::MayPass;
}

bool Mailbox::keep(const Mail &mail) const
{
    // Made owner-only by the mode, not afterwards: a folder that is there already keeps its own.
    std::error_code ignored;
    std::filesystem::create_directories(m_settings.outbox.parent_path(), ignored);
    ::mkdir(m_settings.outbox.c_str(), 0700);
    const std::filesystem::path file =
        m_settings.outbox / (std::to_string(std::time(nullptr)) + "-" + randomToken(6) + ".eml");
    const int handle = ::open(file.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600);
    size_t written = 0;
    while (handle >= 0 && written < mail.text.size()) {
        const ssize_t part = ::write(handle, mail.text.data() + written, mail.text.size() - written);
        if (part < 0 && errno == EINTR)
            continue;
        if (part <= 0)
            break;
        written += static_cast<size_t>(part);
    }
    if (handle >= 0)
        ::close(handle);
    const bool isKept = written == mail.text.size();
    if (isKept)
        logs::warn("a mail lies in " + file.string());
    else
        logs::warn("a mail could not be kept in " + m_settings.outbox.string() + "; it is tried again");
    return isKept;
}

} // namespace velmora::server
