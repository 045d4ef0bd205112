#include "server/web/mailmessage.h"

#include "server/accounts/mailaddress.h"
#include "server/accounts/secrets.h"
#include "server/web/html.h"

#include <algorithm>
#include <charconv>
#include <ctime>
#include <sodium.h>

namespace velmora::server {

namespace {

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

} // namespace

KeptMail readMail(const std::string &name, const std::string &message)
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

std::string mailMessage(const std::string &sender, const std::string &recipient, const std::string &subject,
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

} // namespace velmora::server
