#include "server/web/mailbox.h"

#include "server/accounts/mailaddress.h"
#include "server/web/html.h"

#include <curl/curl.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstdio>
#include <ctime>
#include <fcntl.h>
#include <fstream>
#include <memory>
#include <sodium.h>
#include <sys/stat.h>
#include <unistd.h>

namespace velmora::server {

namespace {

constexpr size_t mostWaiting = 100;
constexpr size_t mostKept = 100;         // that are shown
constexpr size_t mostOfMail = 16 * 1024; // bytes
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

constexpr char wordBegin[] = "=?UTF-8?B?"; // an encoded word of a header (RFC 2047)
constexpr char wordEnd[] = "?=";
constexpr size_t mostOfWord = 45; // bytes that an encoded word has room for

// A header's text, in encoded words where ASCII does not suffice; the words are on lines of their own.
std::string encodedHeader(const std::string &text)
{
    const auto isAscii = [](char c) { return static_cast<unsigned char>(c) < 0x80; };
    if (std::all_of(text.begin(), text.end(), isAscii))
        return text;
    std::string words;
    for (size_t at = 0; at < text.size();) {
        size_t end = std::min(at + mostOfWord, text.size());
        while (end < text.size() && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80) // within a character
            --end;
        std::string word(sodium_base64_encoded_len(end - at, sodium_base64_VARIANT_ORIGINAL), '\0');
        sodium_bin2base64(word.data(), word.size(), reinterpret_cast<const unsigned char *>(text.data() + at), end - at,
                          sodium_base64_VARIANT_ORIGINAL);
        word.pop_back(); // the NUL
        words += (words.empty() ? "" : "\r\n ") + (wordBegin + word) + wordEnd;
        at = end;
    }
    return words;
}

// The other way round, for a header of ours from which the line breaks are gone.
std::string decodedHeader(const std::string &header)
{
    std::string text;
    for (size_t at = header.find(wordBegin); at != std::string::npos; at = header.find(wordBegin, at)) {
        at += sizeof wordBegin - 1;
        const size_t end = std::min(header.find(wordEnd, at), header.size());
        std::string bytes(end - at, '\0');
        size_t length = 0;
        if (sodium_base642bin(reinterpret_cast<unsigned char *>(bytes.data()), bytes.size(), header.data() + at,
                              end - at, nullptr, &length, nullptr, sodium_base64_VARIANT_ORIGINAL) == 0)
            text += bytes.substr(0, length);
    }
    return text.empty() ? header : text;
}

std::string mailDate(int64_t now)
{
    const std::time_t seconds = now;
    std::tm parts{};
    ::gmtime_r(&seconds, &parts);
    char text[64];
    std::strftime(text, sizeof text, "%a, %d %b %Y %H:%M:%S +0000", &parts);
    return text;
}

// Ours, and in no other folder.
bool isMailFile(std::string_view name)
{
    return name.ends_with(".eml") && name.front() >= '0' && name.front() <= '9' &&
           name.find('/') == std::string_view::npos;
}

// A mail as message() writes it; an older one has no parts.
KeptMail readable(const std::string &name, const std::string &message)
{
    const auto between = [](const std::string &text, const std::string &begin, const std::string &end) {
        const size_t at = text.find(begin);
        if (at == std::string::npos)
            return std::string();
        const size_t from = at + begin.size();
        return text.substr(from, text.find(end, from) - from);
    };
    KeptMail mail;
    mail.name = name;
    std::from_chars(name.data(), name.data() + name.size(), mail.writtenAt);
    const size_t split = std::min(message.find("\r\n\r\n"), message.size());
    const std::string head = message.substr(0, split) + "\r\n";
    mail.recipient = between(head, "\r\nTo: <", ">");
    mail.subject = decodedHeader(between(head, "\r\nSubject: ", "\r\nMessage-ID"));
    mail.text = message.substr(std::min(split + 4, message.size()));
    if (const std::string boundary = between(head, "boundary=\"", "\""); !boundary.empty())
        mail.text = between(mail.text, "\r\n\r\n", "\r\n--" + boundary);
    std::erase(mail.text, '\r');
    return mail;
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

Mailbox::Mailbox(MailSettings settings)
    : m_settings(std::move(settings))
    , m_thread([this] { work(); })
{
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
    if (m_thread.joinable())
        m_thread.join();
}

std::string Mailbox::message(const std::string &sender, const std::string &recipient, const std::string &subject,
                             const std::string &text, int64_t now)
{
    // A line break would let a recipient add headers.
    if (!isMailAddress(recipient))
        return {};
    const std::string boundary = "velmora-" + randomToken(16); // in no text that somebody else wrote
    const auto part = [&](const char *type, const std::string &content) {
        std::string lines = "--" + boundary + "\r\nContent-Type: " + type +
                            "; charset=utf-8\r\nContent-Transfer-Encoding: 8bit\r\n\r\n";
        for (const char c : content)
            lines += c == '\n' ? std::string("\r\n") : std::string(1, c);
        return lines + "\r\n";
    };
    return "Date: " + mailDate(now) + "\r\nFrom: Velmora <" + sender + ">\r\nTo: <" + recipient +
           ">\r\nSubject: " + encodedHeader(subject) + "\r\nMessage-ID: <" + randomToken(16) + "@velmora>\r\n" +
           "MIME-Version: 1.0\r\nContent-Type: multipart/alternative; boundary=\"" + boundary + "\"\r\n" +
           "Auto-Submitted: auto-generated\r\n\r\n" + part("text/plain", text) +
           part("text/html", html::mail(subject, text)) + "--" + boundary + "--\r\n";
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
        mails.push_back(readable(file.filename().native(), message));
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
        if (m_isEnding || m_jobs.size() >= mostWaiting)
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
    Mail mail{recipient, message(m_settings.sender, recipient, subject, text, std::time(nullptr)),
              std::chrono::steady_clock::now()};
    if (mail.text.empty())
        return;
    {
        const std::lock_guard guard(m_mutex);
        if (m_waiting.size() >= mostWaiting) {
            std::fputs("velmora-server: too many mails wait to be sent, one was dropped\n", stderr);
            return;
        }
        m_waiting.push_back(std::move(mail));
    }
    m_wake.notify_all();
}

bool Mailbox::isIdle()
{
    const std::lock_guard guard(m_mutex);
    return m_jobs.empty() && m_waiting.empty() && !m_isSending;
}

bool Mailbox::takeDue(std::unique_lock<std::mutex> &lock, std::function<void()> *job, Mail *mail)
{
    while (true) {
        if (!m_jobs.empty()) {
            *job = std::move(m_jobs.front());
            m_jobs.pop_front();
            return true;
        }
        const auto next = std::min_element(m_waiting.begin(), m_waiting.end(),
                                           [](const Mail &a, const Mail &b) { return a.due < b.due; });
        if (next == m_waiting.end()) {
            if (m_isEnding)
                return false;
            m_wake.wait(lock);
        } else if (const auto due = next->due; m_isEnding || due <= std::chrono::steady_clock::now()) {
            *mail = std::move(*next);
            m_waiting.erase(next);
            return true;
        } else {
            m_wake.wait_until(lock, due);
        }
    }
}

void Mailbox::work()
{
    std::unique_lock lock(m_mutex);
    std::function<void()> job;
    Mail mail;
    while (takeDue(lock, &job, &mail)) {
        m_isSending = true;
        if (job) {
            lock.unlock();
            std::exchange(job, nullptr)();
            lock.lock();
        } else {
            send(lock, std::move(mail));
        }
        m_isSending = false;
    }
}

void Mailbox::send(std::unique_lock<std::mutex> &lock, Mail mail)
{
    // The program's end does not wait for a slow mail server: the mail goes to the outbox.
    const bool hasServer = !m_isEnding && !m_settings.smtp.empty();
    lock.unlock();
    const Delivery delivery = hasServer ? deliver(mail) : Delivery::Refused;
    const bool isTriedAgain = delivery == Delivery::MayPass && mail.failures < m_settings.retries.size();
    if (delivery != Delivery::Done && !isTriedAgain)
        keep(mail);
    lock.lock();
    if (isTriedAgain) {
        mail.due = std::chrono::steady_clock::now() + m_settings.retries[mail.failures++];
        m_waiting.push_back(std::move(mail));
    }
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
            std::fprintf(stderr, "velmora-server: a mail was not sent, because %s cannot be read\n",
                         m_settings.smtpLogin.c_str());
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
    std::fprintf(stderr, "velmora-server: a mail was not delivered (%s)\n",
                 result == CURLE_USE_SSL_FAILED ? "the mail server offers no TLS, which is required"
                                                : curl_easy_strerror(result));
    long answer = 0;
    curl_easy_getinfo(curl.get(), CURLINFO_RESPONSE_CODE, &answer);
    return answer >= 500 ? Delivery::Refused : Delivery::MayPass;
}

void Mailbox::keep(const Mail &mail) const
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
    if (written == mail.text.size())
        std::fprintf(stderr, "velmora-server: a mail lies in %s\n", file.c_str());
    else
        std::fprintf(stderr, "velmora-server: a mail could not be kept in %s\n", m_settings.outbox.c_str());
}

} // namespace velmora::server
