#pragma once

#include "fakes/fakereply.h"
#include "velmora_ws.h"

#include <QByteArray>
#include <QList>
#include <QVariantList>

#include <functional>
#include <memory>

// One request that was made. Text parameters are QByteArrays (an invalid QVariant for a null pointer), numbers ints, in
// the order of the library function.
struct FakeCall {
    int cmd = -1;
    HANDLE_T handle = 0; // 0: refused at once by failNext
    QVariantList params;
    bool hasCallback = false;
    VOID *tag = nullptr;
};

struct FakeCompletion {
    VLM_WS_EXT_ERRCODE_T code = VLM_WS_ERR_OK;
    FakeReply reply; // built only when the code is 0
};

// The scripted web-service library. It implements velmora_ws.h completely and answers nothing unless it is told to.
// Completions are delivered in the order in which they were scripted, on a thread of its own like the real library's
// (Delivery::Thread), or by deliver() in the thread that calls it (Delivery::OnDemand). Control functions may be called
// from any thread; reset() and flush() not from a callback. The library counts as initialised until uninit is called.
class FakeWs {
public:
    enum class Delivery { Thread, OnDemand };

    static FakeWs &instance();

    // Restores the initial state and drops pending requests. Waits for a running callback.
    void reset(Delivery delivery = Delivery::Thread);

    // --- script
    void failNext(int cmd, VLM_WS_EXT_ERRCODE_T code); // the next request of this command is refused at once
    void replyNext(int cmd, VLM_WS_EXT_ERRCODE_T code,
                   const FakeReply &reply = {}); // once, before autoReply; queues up
    void autoReply(int cmd, VLM_WS_EXT_ERRCODE_T code, const FakeReply &reply = {}); // every request from now on
    void autoReply(int cmd, std::function<FakeCompletion(const FakeCall &)> answer);
    // Partner login, user login, device association and the station list succeed for `userName`.
    void autoLogin(const QByteArray &userName, const FakeReply &stationList);

    // Completes one request now; false if none is waiting. completeNext takes the oldest of the command.
    bool complete(HANDLE_T handle, VLM_WS_EXT_ERRCODE_T code, const FakeReply &reply = {});
    bool completeNext(int cmd, VLM_WS_EXT_ERRCODE_T code, const FakeReply &reply = {});
    int deliver(); // OnDemand: everything, including what it leads to; how many
    void flush();  // Thread: returns when nothing waits for delivery

    // --- device: its address is 00:1A:2B:3C:4D:5E
    struct Device {
        VLM_WS_EXT_ERRCODE_T macResult = VLM_WS_ERR_OK;  // what velmora_ws_utility_get_mac returns
        VLM_WS_EXT_ERRCODE_T initResult = VLM_WS_ERR_OK; // what velmora_ws_init returns
        int macCalls = 0;
        bool isInitialised = true;
    };
    Device &device(); // while nothing is under way

    // --- record
    QList<FakeCall> calls() const;
    QList<FakeCall> calls(int cmd) const;
    int count(int cmd) const;
    QList<int> commands() const;  // of all calls, in order
    FakeCall last(int cmd) const; // cmd -1 when there was none
    void clearCalls();
    int waiting(int cmd) const; // made, not completed yet

    // --- handles
    int liveHandles() const; // completed and not given back
    bool isLive(HANDLE_T handle) const;
    int releases() const;
    int doubleReleases() const;
    // What is wrong with the handles: unreleased ones, releases of 0, double releases. Empty if all is well.
    QString leftovers() const;

    struct Private;
    Private *d;

private:
    FakeWs();
    ~FakeWs();
    FakeWs(const FakeWs &) = delete;
};
