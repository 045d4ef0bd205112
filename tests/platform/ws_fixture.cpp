#include "ws_fixture.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QFile>
#include <QTimer>

WsFixture *WsFixture::s_current = nullptr;

WsFixture::WsFixture(const QByteArray &moreSettings, bool isStarted)
    : m_dispatcher(QAbstractEventDispatcher::instance())
{
    s_current = this;
    QFile settings(folder.filePath("ws.conf"));
    if (!settings.open(QIODevice::WriteOnly))
        qFatal("no settings file");
    settings.write("# of a test\nserver=" + server.address() + "/\nstate_dir=" + folder.filePath("state").toUtf8() +
                   "\nretry_for_ms=0\nstart_retry_for_ms=0\nretry_pause_ms=1\n" + moreSettings);
    settings.close();
    qputenv("VELMORA_WS_CONF", settings.fileName().toUtf8());
    for (const char *name : {"VELMORA_WS_SERVER", "VELMORA_WS_STATE_DIR", "VELMORA_WS_CA_FILE"})
        qunsetenv(name);
    if (isStarted && velmora_ws_init() != VLM_WS_ERR_OK)
        qFatal("the library does not start");
}

WsFixture::~WsFixture()
{
    velmora_ws_uninit();
    for (const WsCompletion &completion : m_completions)
        velmora_ws_release_handle(completion.handle);
    s_current = nullptr;
}

void WsFixture::callback(HANDLE_T handle, VLM_WS_EXT_ERRCODE_T result, VOID *tag)
{
    const WsCompletion completion{handle, result, tag, std::this_thread::get_id()};
    {
        std::lock_guard lock(s_current->m_mutex);
        s_current->m_completions.push_back(completion);
    }
    if (s_current->onCompletion)
        s_current->onCompletion(completion);
    s_current->m_dispatcher->wakeUp();
}

std::vector<WsCompletion> WsFixture::completions() const
{
    std::lock_guard lock(m_mutex);
    return m_completions;
}

int WsFixture::count() const
{
    std::lock_guard lock(m_mutex);
    return static_cast<int>(m_completions.size());
}

WsCompletion WsFixture::last() const
{
    std::lock_guard lock(m_mutex);
    return m_completions.back();
}

VLM_WS_EXT_ERRCODE_T WsFixture::wait(VLM_WS_EXT_ERRCODE_T immediate)
{
    if (immediate != VLM_WS_ERR_OK)
        return immediate;
    return waitFor(static_cast<int>(++m_waited)) ? last().result : static_cast<VLM_WS_EXT_ERRCODE_T>(1);
}

bool WsFixture::waitFor(int completed)
{
    bool isOver = false;
    QTimer limit;
    QObject::connect(&limit, &QTimer::timeout, &limit, [&isOver] { isOver = true; });
    int before = -1;
    while (count() < completed && !isOver) {
        if (count() != before)
            limit.start(20'000);
        before = count();
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    m_waited = static_cast<size_t>(count());
    return count() >= completed;
}

void WsFixture::forget(HANDLE_T released)
{
    std::lock_guard lock(m_mutex);
    std::erase_if(m_completions, [released](const WsCompletion &it) { return it.handle == released; });
    m_waited = m_completions.size();
}

void WsFixture::scriptLogins()
{
    server.answer("partnerLogin", QJsonObject{{"partnerToken", partnerToken}, {"expiresIn", 86400}});
    server.answer(
        "userLogin",
        QJsonObject{{"userToken", userToken}, {"userName", "mira@example.org"}, {"userId", "7"}, {"expiresIn", 14400}});
}

void WsFixture::logIn()
{
    scriptLogins();
    if (wait(velmora_ws_partnerLogin(nullptr, nullptr, nullptr, 1, callback, nullptr, &handle)) != VLM_WS_ERR_OK ||
        wait(velmora_ws_userLogin("deviceId", nullptr, nullptr, "001A2B3C4D5E-3", callback, nullptr, &handle)) !=
            VLM_WS_ERR_OK)
        qFatal("the logins fail");
    server.seen.clear();
}
