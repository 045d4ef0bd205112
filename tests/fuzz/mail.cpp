// The header guard of mails. The input is a recipient and, after the first NUL byte, a text.
#include "scratchfile.h"
#include "server/web/mailmessage.h"

using velmora::server::mailMessage;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const std::string all(reinterpret_cast<const char *>(data), size);
    const size_t end = std::min(all.find('\0'), all.size());
    const std::string recipient = all.substr(0, end);
    const std::string text = end < all.size() ? all.substr(end + 1) : std::string();
    const std::string mail = mailMessage("radio@example.org", recipient, "Your password", text, 0);
    if (mail.empty())
        return 0;
    // The same headers as an ordinary mail's, whatever the recipient is called.
    const std::string head = mail.substr(0, mail.find("\r\n\r\n") + 2);
    size_t lines = 0;
    for (size_t at = head.find("\r\n"); at != std::string::npos; at = head.find("\r\n", at + 2))
        ++lines;
    static const size_t expected = [] {
        const std::string plain = mailMessage("radio@example.org", "a@example.org", "Your password", "", 0);
        const std::string plainHead = plain.substr(0, plain.find("\r\n\r\n") + 2);
        size_t count = 0;
        for (size_t at = plainHead.find("\r\n"); at != std::string::npos; at = plainHead.find("\r\n", at + 2))
            ++count;
        return count;
    }();
    fuzz::require(lines == expected);
    fuzz::require(head.find('\0') == std::string::npos);
    return 0;
}
