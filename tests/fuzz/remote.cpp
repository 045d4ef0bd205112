// The channel between telephones and radios: what a telephone posts, what a radio reports, what a radio is ordered and
// what it takes for an answer of the service.
#include "orders.h"
#include "scratchfile.h"
#include "server/http/message.h"
#include "server/remote/remoterecords.h"
#include "servicecalls.h"

#include <QJsonDocument>

using namespace velmora::server;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const std::string text(reinterpret_cast<const char *>(data), size);
    const QByteArray bytes = QByteArray::fromStdString(text);
    http::Request form;
    form.method = "POST";
    form.body = text;
    if (const auto order = orderOf([&](const char *name) { return form.parameter(name); })) {
        // What the service lets through, the radio understands.
        const QJsonDocument read = QJsonDocument::fromJson(QByteArray::fromStdString(*order));
        fuzz::require(read.isObject() && remote::requestFor(read.object()).has_value());
    }
    if (const auto state = radioStateOf(text)) {
        const std::string written = jsonOf(*state);
        const auto again = radioStateOf(written);
        fuzz::require(again && jsonOf(*again) == written);
    }
    remote::requestFor(QJsonDocument::fromJson(bytes).object());
    remote::readAnswer(200, bytes);
    return 0;
}
