#pragma once

#include "velmora_ws.h"
#include "ws_testserver.h"

#include <mutex>
#include <QTemporaryDir>
#include <thread>
#include <vector>

class QAbstractEventDispatcher;

struct WsCompletion {
    HANDLE_T handle;
    VLM_WS_EXT_ERRCODE_T result;
    VOID *tag;
    std::thread::id thread;

    const VLM_WS_REQUEST_T *record() const { return reinterpret_cast<const VLM_WS_REQUEST_T *>(handle); }
    template <class T>
    const T *reply() const
    {
        return static_cast<const T *>(record()->reply);
    }
    template <class T>
    const T *params() const
    {
        return static_cast<const T *>(record()->params);
    }
};

// The real library against a scripted service, with its state under a folder of its own. One at a time. Failed requests
// are not repeated, unless `moreSettings` say for how long.
class WsFixture {
public:
    static constexpr char partnerToken[] = "pT0aK1bL2cM3dN4eO5fP6gQ7hR8iS9jT0kU1lV2mW3o";
    static constexpr char userToken[] = "uT9zY8xX7wW6vV5uU4tT3sS2rR1qQ0pP9oO8nN7mM6k";

    explicit WsFixture(const QByteArray &moreSettings = {}, bool isStarted = true);
    ~WsFixture(); // stops the library and releases what was completed

    // The library's callback: records the completion. A test may add work of its own, on the library's thread.
    static void callback(HANDLE_T handle, VLM_WS_EXT_ERRCODE_T result, VOID *tag);
    std::function<void(const WsCompletion &)> onCompletion; // set while the library is idle

    std::vector<WsCompletion> completions() const;
    int count() const;
    WsCompletion last() const;
    // Waits for the next completion; result 1 if none comes in time.
    VLM_WS_EXT_ERRCODE_T wait(VLM_WS_EXT_ERRCODE_T immediate);
    bool waitFor(int completed);  // until so many requests have completed in all; false when none does for long
    void forget(HANDLE_T handle); // the test releases it
    void logIn();                 // both sessions, with the tokens above
    void scriptLogins();

    QTemporaryDir folder;
    WsTestServer server;
    HANDLE_T handle = 0;

private:
    mutable std::mutex m_mutex;
    std::vector<WsCompletion> m_completions;
    size_t m_waited = 0;
    QAbstractEventDispatcher *m_dispatcher; // of the test's thread, which a completion wakes
    static WsFixture *s_current;
};
