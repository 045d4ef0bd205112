#include "servicecalls.h"

#include <QJsonDocument>

namespace remote {

using velmora::ws::SecretText;

namespace {

constexpr int noSuchFunction = 5005;
constexpr int versionRefused = 5003;

velmora::ws::Config patient(velmora::ws::Config config, std::chrono::seconds patience)
{
    config.stallTimeout = config.requestTimeout = patience;
    return config;
}

} // namespace

ServiceAnswer readAnswer(long httpStatus, const QByteArray &body)
{
    ServiceAnswer answer;
    const QJsonDocument document = QJsonDocument::fromJson(body);
    const QJsonValue code = document.object()[QStringLiteral("code")];
    if (!code.isDouble()) {
        answer.kind = httpStatus == 404 ? ServiceAnswer::Kind::Absent : ServiceAnswer::Kind::Failed;
        return answer;
    }
    answer.code = code.toInt();
    answer.data = document.object()[QStringLiteral("data")].toObject();
    answer.kind = answer.code == noSuchFunction || answer.code == versionRefused ? ServiceAnswer::Kind::Absent
                                                                                 : ServiceAnswer::Kind::Answered;
    return answer;
}

ServiceCalls::ServiceCalls(velmora::ws::Config config, std::chrono::seconds patience)
    : m_transport(patient(std::move(config), patience))
{
}

ServiceAnswer ServiceCalls::call(const char *function, const SecretText &token, SecretText body)
{
    if (m_isStopped || !m_transport.start(function, token, {}, std::move(body)))
        return {};
    while (!m_isStopped) {
        const auto answer = m_transport.run({});
        if (!answer)
            continue;
        if (answer->end != velmora::ws::Answer::End::Complete)
            return {};
        return readAnswer(answer->httpStatus, QByteArray::fromStdString(answer->body));
    }
    m_transport.stop();
    return {};
}

void ServiceCalls::stop()
{
    m_isStopped = true;
    m_transport.wake();
}

SecretText SessionToken::get() const
{
    const std::lock_guard guard(m_mutex);
    return m_token;
}

void SessionToken::set(SecretText token)
{
    const std::lock_guard guard(m_mutex);
    m_token = std::move(token);
}

void SessionToken::refuse(const SecretText &token)
{
    const std::lock_guard guard(m_mutex);
    if (m_token == token)
        velmora::ws::forget(m_token);
}

} // namespace remote
