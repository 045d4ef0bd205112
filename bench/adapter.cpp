// 10,000 completions through the adapter: none lost, none out of order, and their rate against plain queued signals
// between the same two threads. Median of ten alternating rounds.
#include "fakes/fakews.h"
#include "figures.h"
#include "service/velmorametatypes.h"
#include "service/velmorawebservice.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QThread>

namespace {

constexpr int completions = 10000;

class Sender : public QObject {
    Q_OBJECT
signals:
    void done(HANDLE_T h_handle, VLM_WS_EXT_ERRCODE_T e_ret, VOID *pv_tag);
};

// Receives in the main thread, as a screen does.
class Receiver : public QObject {
    Q_OBJECT
public:
    bool isReleasing = false;
    int count = 0;
    int misplaced = 0;

public slots:
    void done(HANDLE_T h_handle, VLM_WS_EXT_ERRCODE_T, VOID *pv_tag)
    {
        misplaced += reinterpret_cast<quintptr>(pv_tag) != static_cast<quintptr>(++count);
        if (isReleasing)
            velmora_ws_release_handle(h_handle);
    }
    double waitMs()
    {
        QElapsedTimer clock;
        clock.start();
        while (count < completions && clock.elapsed() < 60000)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        return static_cast<double>(clock.nsecsElapsed()) / 1e6;
    }
};

double plainMs(int *misplaced)
{
    Sender sender;
    Receiver receiver;
    QObject::connect(&sender, &Sender::done, &receiver, &Receiver::done);
    QThread *const thread = QThread::create([&] {
        for (quintptr i = 1; i <= completions; ++i)
            emit sender.done(static_cast<HANDLE_T>(i), VLM_WS_ERR_OK, reinterpret_cast<VOID *>(i));
    });
    QElapsedTimer clock;
    clock.start();
    thread->start();
    receiver.waitMs();
    const double ms = static_cast<double>(clock.nsecsElapsed()) / 1e6;
    thread->wait();
    delete thread;
    *misplaced += receiver.misplaced + completions - receiver.count;
    return ms;
}

double adapterMs(int *misplaced)
{
    FakeWs &ws = FakeWs::instance();
    ws.reset(FakeWs::Delivery::OnDemand);
    VelmoraWebService *const service = VelmoraWebService::getInstance();
    service->init();
    Receiver receiver;
    receiver.isReleasing = true;
    QObject::connect(service, &VelmoraWebService::signalAddSongBookmarkDone, &receiver, &Receiver::done);
    ws.autoReply(VLM_WS_MSGID_ADD_SONG_BOOKMARK, VLM_WS_ERR_OK);
    for (quintptr i = 1; i <= completions; ++i) {
        HANDLE_T handle = 0;
        service->addSongBookmark("track", false, reinterpret_cast<VOID *>(i), &handle);
    }
    QThread *const thread = QThread::create([&] { ws.deliver(); });
    QElapsedTimer clock;
    clock.start();
    thread->start();
    receiver.waitMs();
    const double ms = static_cast<double>(clock.nsecsElapsed()) / 1e6;
    thread->wait();
    delete thread;
    *misplaced += receiver.misplaced + completions - receiver.count + ws.liveHandles() + ws.doubleReleases();
    return ms;
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    registerVelmoraMetaTypes();
    std::vector<double> plain, adapter;
    int plainFaults = 0, faults = 0;
    for (int round = 0; round < 10; ++round) {
        plain.push_back(plainMs(&plainFaults));
        adapter.push_back(adapterMs(&faults));
    }
    figures::print("adapter, completions lost, out of order or not given back, of 100,000", faults, "", 0);
    figures::note("adapter, 10,000 completions", figures::median(adapter), " ms", "median of ten");
    figures::note("plain queued signals, 10,000", figures::median(plain), " ms", "median of ten");
    figures::note("adapter against plain queued signals, time", figures::median(adapter) / figures::median(plain), "");
    return faults == 0 ? 0 : 1;
}

#include "adapter.moc"
