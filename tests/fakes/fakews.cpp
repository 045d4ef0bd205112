#include "fakes/fakews.h"
#include "fakes/fakewsprivate.h"

#include <QStringList>

#include <cstring>

#if defined(__SANITIZE_ADDRESS__)
#include <sanitizer/asan_interface.h>
#endif

void FakeRequest::poison()
{
    std::memset(&record, 0xDD, sizeof record);
#if defined(__SANITIZE_ADDRESS__)
    ASAN_POISON_MEMORY_REGION(&record, sizeof record);
#endif
}

void FakeRequest::unpoison()
{
#if defined(__SANITIZE_ADDRESS__)
    ASAN_UNPOISON_MEMORY_REGION(&record, sizeof record);
#endif
}

FakeWs &FakeWs::instance()
{
    static FakeWs ws;
    return ws;
}

FakeWs::FakeWs()
    : d(new Private)
{
}

FakeWs::~FakeWs()
{
    d->stopWorker();
    delete d;
}

void FakeWs::reset(Delivery delivery)
{
    d->stopWorker();
    delete d;
    d = new Private;
    d->delivery = delivery;
}

// ---- delivery

VLM_WS_EXT_ERRCODE_T FakeWs::Private::submit(std::unique_ptr<FakeRequest> request, HANDLE_T *outHandle)
{
    const std::lock_guard lock(mutex);
    FakeCall &call = request->call;
    if (!device.isInitialised)
        return VLM_WS_ERR_NOT_INITIALISED;
    if (!failures.value(call.cmd).isEmpty()) {
        calls.append(call);
        return failures[call.cmd].takeFirst();
    }
    FakeRequest *made = request.get();
    requests.push_back(std::move(request));
    call.handle = made->handle();
    calls.append(call);
    byHandle.insert(call.handle, made);
    if (outHandle)
        *outHandle = call.handle;
    if (!once.value(call.cmd).isEmpty()) {
        const FakeCompletion completion = once[call.cmd].takeFirst();
        enqueue(made, completion.code, completion.reply);
    } else if (const auto answer = always.value(call.cmd)) {
        const FakeCompletion completion = answer(call);
        enqueue(made, completion.code, completion.reply);
    }
    return VLM_WS_ERR_OK;
}

void FakeWs::Private::enqueue(FakeRequest *request, VLM_WS_EXT_ERRCODE_T code, const FakeReply &reply)
{
    if (code == VLM_WS_ERR_OK)
        request->record.reply = reply.build(*request->arena);
    request->state = FakeRequest::State::Queued;
    queue.push_back({request->handle(), request->callback, code, request->call.tag});
    if (delivery == Delivery::Thread)
        startWorker();
    wake.notify_all();
}

bool FakeWs::Private::deliverOne(std::unique_lock<std::mutex> &lock)
{
    if (queue.empty())
        return false;
    const Queued next = queue.front();
    queue.pop_front();
    if (FakeRequest *request = byHandle.value(next.handle)) {
        request->state = FakeRequest::State::Completed;
        if (!next.callback)
            retire(request);
    }
    if (next.callback) {
        isDelivering = true;
        lock.unlock();
        next.callback(next.handle, next.code, next.tag);
        lock.lock();
        isDelivering = false;
    }
    wake.notify_all();
    return true;
}

void FakeWs::Private::run()
{
    std::unique_lock lock(mutex);
    while (!isStopping) {
        if (!deliverOne(lock))
            wake.wait(lock, [this] { return isStopping || !queue.empty(); });
    }
}

void FakeWs::Private::startWorker()
{
    if (!worker.joinable())
        worker = std::thread([this] { run(); });
}

void FakeWs::Private::stopWorker()
{
    {
        const std::lock_guard lock(mutex);
        isStopping = true;
        queue.clear();
        wake.notify_all();
    }
    if (worker.joinable())
        worker.join();
}

int FakeWs::deliver()
{
    std::unique_lock lock(d->mutex);
    int delivered = 0;
    while (d->deliverOne(lock))
        ++delivered;
    return delivered;
}

void FakeWs::flush()
{
    std::unique_lock lock(d->mutex);
    d->wake.wait(lock, [this] { return d->queue.empty() && !d->isDelivering; });
}

// ---- script

void FakeWs::failNext(int cmd, VLM_WS_EXT_ERRCODE_T code)
{
    const std::lock_guard lock(d->mutex);
    d->failures[cmd].append(code);
}

void FakeWs::replyNext(int cmd, VLM_WS_EXT_ERRCODE_T code, const FakeReply &reply)
{
    const std::lock_guard lock(d->mutex);
    d->once[cmd].append({code, reply});
}

void FakeWs::autoReply(int cmd, VLM_WS_EXT_ERRCODE_T code, const FakeReply &reply)
{
    autoReply(cmd, [code, reply](const FakeCall &) { return FakeCompletion{code, reply}; });
}

void FakeWs::autoReply(int cmd, std::function<FakeCompletion(const FakeCall &)> answer)
{
    const std::lock_guard lock(d->mutex);
    d->always.insert(cmd, std::move(answer));
}

void FakeWs::autoLogin(const QByteArray &userName, const FakeReply &stationList)
{
    autoReply(VLM_WS_MSGID_PARTNER_LOGIN, VLM_WS_ERR_OK, FakeReply::partnerLogin());
    autoReply(VLM_WS_MSGID_USER_LOGIN, VLM_WS_ERR_OK, FakeReply::userLogin(userName));
    autoReply(VLM_WS_MSGID_ASSOCIATE_DEVICE, VLM_WS_ERR_OK);
    autoReply(VLM_WS_MSGID_GET_STATION_LIST, VLM_WS_ERR_OK, stationList);
}

bool FakeWs::complete(HANDLE_T handle, VLM_WS_EXT_ERRCODE_T code, const FakeReply &reply)
{
    const std::lock_guard lock(d->mutex);
    FakeRequest *request = d->byHandle.value(handle);
    if (!request || request->state != FakeRequest::State::Waiting)
        return false;
    d->enqueue(request, code, reply);
    return true;
}

bool FakeWs::completeNext(int cmd, VLM_WS_EXT_ERRCODE_T code, const FakeReply &reply)
{
    const std::lock_guard lock(d->mutex);
    for (const auto &request : d->requests) {
        if (request->state == FakeRequest::State::Waiting && request->call.cmd == cmd) {
            d->enqueue(request.get(), code, reply);
            return true;
        }
    }
    return false;
}

FakeWs::Device &FakeWs::device()
{
    return d->device;
}

// ---- record

QList<FakeCall> FakeWs::calls() const
{
    const std::lock_guard lock(d->mutex);
    return d->calls;
}

QList<FakeCall> FakeWs::calls(int cmd) const
{
    QList<FakeCall> found;
    for (const FakeCall &call : calls()) {
        if (call.cmd == cmd)
            found.append(call);
    }
    return found;
}

int FakeWs::count(int cmd) const
{
    return static_cast<int>(calls(cmd).size());
}

QList<int> FakeWs::commands() const
{
    QList<int> found;
    for (const FakeCall &call : calls())
        found.append(call.cmd);
    return found;
}

FakeCall FakeWs::last(int cmd) const
{
    const QList<FakeCall> found = calls(cmd);
    return found.isEmpty() ? FakeCall() : found.last();
}

void FakeWs::clearCalls()
{
    const std::lock_guard lock(d->mutex);
    d->calls.clear();
}

int FakeWs::waiting(int cmd) const
{
    const std::lock_guard lock(d->mutex);
    int number = 0;
    for (const auto &request : d->requests)
        number += request->state == FakeRequest::State::Waiting && request->call.cmd == cmd;
    return number;
}

// ---- handles

VLM_WS_EXT_ERRCODE_T FakeWs::Private::release(HANDLE_T handle)
{
    const std::lock_guard lock(mutex);
    FakeRequest *request = byHandle.value(handle);
    if (!request) {
        ++(handle == 0 ? zeroReleases : unknownReleases);
        return VLM_WS_ERR_INVALID_ARGUMENT;
    }
    if (request->state == FakeRequest::State::Released) {
        ++doubleReleases;
        return VLM_WS_ERR_INVALID_ARGUMENT;
    }
    ++releases;
    retire(request);
    return VLM_WS_ERR_OK;
}

void FakeWs::Private::retire(FakeRequest *request)
{
    request->arena.reset();
    request->poison();
    request->state = FakeRequest::State::Released;
}

int FakeWs::liveHandles() const
{
    const std::lock_guard lock(d->mutex);
    int number = 0;
    for (const auto &request : d->requests)
        number += request->state == FakeRequest::State::Completed;
    return number;
}

bool FakeWs::isLive(HANDLE_T handle) const
{
    const std::lock_guard lock(d->mutex);
    const FakeRequest *request = d->byHandle.value(handle);
    return request && request->state != FakeRequest::State::Released;
}

int FakeWs::releases() const
{
    const std::lock_guard lock(d->mutex);
    return d->releases;
}

int FakeWs::doubleReleases() const
{
    const std::lock_guard lock(d->mutex);
    return d->doubleReleases;
}

QString FakeWs::leftovers() const
{
    QStringList found;
    const std::lock_guard lock(d->mutex);
    for (const auto &request : d->requests) {
        if (request->state == FakeRequest::State::Completed)
            found.append(QStringLiteral("a handle of command %1 was not given back").arg(request->call.cmd));
    }
    if (d->doubleReleases)
        found.append(QStringLiteral("%1 handles were given back twice").arg(d->doubleReleases));
    if (d->zeroReleases)
        found.append(QStringLiteral("0 was given back %1 times").arg(d->zeroReleases));
    if (d->unknownReleases)
        found.append(QStringLiteral("%1 unknown handles were given back").arg(d->unknownReleases));
    return found.join("; ");
}
