#pragma once

#include "fakes/fakews.h"

#include <QHash>

#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>
#include <type_traits>

// A request record and its memory. A released record keeps its address until reset(), so that a second release is
// detected; its first bytes are poisoned to detect late reads.
struct FakeRequest {
    VLM_WS_REQUEST_T record{};
    FakeCall call;
    VELMORA_WS_CALLBACK_T callback = nullptr;
    std::unique_ptr<FakeArena> arena = std::make_unique<FakeArena>();
    enum class State { Waiting, Queued, Completed, Released };
    State state = State::Waiting;

    HANDLE_T handle() const { return reinterpret_cast<HANDLE_T>(&record); }
    void poison();
    void unpoison();
    ~FakeRequest() { unpoison(); }
};

struct FakeWs::Private {
    struct Queued {
        HANDLE_T handle;
        VELMORA_WS_CALLBACK_T callback;
        VLM_WS_EXT_ERRCODE_T code;
        VOID *tag;
    };

    mutable std::mutex mutex;
    std::condition_variable wake; // something was queued, delivered or stopped
    std::thread worker;
    bool isStopping = false;
    bool isDelivering = false;
    Delivery delivery = Delivery::Thread;

    std::deque<Queued> queue;
    std::vector<std::unique_ptr<FakeRequest>> requests; // in order, released ones too
    QHash<HANDLE_T, FakeRequest *> byHandle;
    QList<FakeCall> calls;
    QHash<int, QList<VLM_WS_EXT_ERRCODE_T>> failures;
    QHash<int, QList<FakeCompletion>> once;
    QHash<int, std::function<FakeCompletion(const FakeCall &)>> always;

    Device device;
    int releases = 0, doubleReleases = 0, zeroReleases = 0, unknownReleases = 0;

    VLM_WS_EXT_ERRCODE_T submit(std::unique_ptr<FakeRequest> request, HANDLE_T *outHandle);
    void enqueue(FakeRequest *request, VLM_WS_EXT_ERRCODE_T code, const FakeReply &reply); // mutex held
    bool deliverOne(std::unique_lock<std::mutex> &lock);
    void run();
    void startWorker(); // mutex held
    void stopWorker();
    VLM_WS_EXT_ERRCODE_T release(HANDLE_T handle);
    void retire(FakeRequest *request); // mutex held
};
