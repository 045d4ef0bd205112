// In one process, on stand-ins for service and playback: filling the station list, the keyboard, motion, the marquee.
#include "fakes/fakews.h"
#include "figures.h"
#include "player/stationrecord.h"
#include "player/velmoramaindlg.h"
#include "service/velmorametatypes.h"
#include "service/velmorawebservice.h"
#include "viewcomponent/bufferdlg.h"
#include "virtualkb/qtvirtualkbdlg.h"
#include "widgets/imagelistwidget.h"

#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPaintEvent>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <random>

namespace {

double processCpuMs()
{
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

// Counts what is painted, and times every turn of the event loop that paints: from the wake-up (a timer is due) to the
// moment before the loop sleeps again, when everything is painted.
class PaintWatch : public QObject {
public:
    PaintWatch()
    {
        qApp->installEventFilter(this);
        auto *const dispatcher = QAbstractEventDispatcher::instance();
        connect(dispatcher, &QAbstractEventDispatcher::awake, this, [this] {
            if (!m_isAwake)
                m_clock.start();
            m_isAwake = true;
        });
        connect(dispatcher, &QAbstractEventDispatcher::aboutToBlock, this, [this] {
            if (m_hasPainted && m_isAwake)
                turnsMs.push_back(static_cast<double>(m_clock.nsecsElapsed()) / 1e6);
            m_hasPainted = false;
            m_isAwake = false;
        });
    }
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Paint) {
            m_hasPainted = true;
            ++paints;
            if (watched == counted)
                for (const QRect &rect : static_cast<QPaintEvent *>(event)->region())
                    pixels.push_back(rect.width() * rect.height());
        }
        return false;
    }

    const QObject *counted = nullptr;
    std::vector<double> turnsMs;
    std::vector<double> pixels; // painted by `counted`, a value a paint
    int paints = 0;

private:
    QElapsedTimer m_clock;
    bool m_hasPainted = false;
    bool m_isAwake = false; // the loop may wake several times without sleeping between
};

void run(int ms)
{
    QEventLoop loop;
    QTimer::singleShot(ms, &loop, &QEventLoop::quit);
    loop.exec();
}

void ignore(HANDLE_T, VLM_WS_EXT_ERRCODE_T, VOID *)
{
}

FakeStation station(const QByteArray &token, const QByteArray &name, bool isTapestry = false)
{
    FakeStation made;
    made.token = token;
    made.name = name;
    made.isTapestry = isTapestry;
    return made;
}

HANDLE_T stationList(const QList<FakeStation> &stations)
{
    FakeWs &ws = FakeWs::instance();
    ws.replyNext(VLM_WS_MSGID_GET_STATION_LIST, VLM_WS_ERR_OK, FakeReply::stationList(stations));
    HANDLE_T handle = 0;
    velmora_ws_getStationList(0, "", "", ignore, nullptr, &handle);
    ws.flush();
    return handle;
}

void benchRows(VelmoraMainDlg *player)
{
    std::vector<double> ms;
    std::mt19937 random(3);
    for (int round = 0; round < 100; ++round) {
        QList<FakeStation> stations;
        for (int i = 1; i < 100; ++i)
            stations.append(station("token" + QByteArray::number(i), "Station number " + QByteArray::number(i)));
        std::shuffle(stations.begin(), stations.end(), random);
        stations.prepend(station("tapestry", "Tapestry", true));
        const HANDLE_T handle = stationList(stations);
        stationrecord::List records; // sorted as after a creation
        for (const FakeStation &source : stations) {
            VLM_STATION_MAP_T record{};
            record.stationName = const_cast<char *>(source.name.constData());
            record.stationToken = const_cast<char *>(source.token.constData());
            records.push_back(copyStation(record));
        }
        QElapsedTimer clock;
        clock.start();
        std::sort(records.begin(), records.end(),
                  [](const StationCopy &a, const StationCopy &b) { return stationrecord::lessThan(a.get(), b.get()); });
        player->fillupStationListBox_Ex(handle, VLM_WS_ERR_OK, nullptr, false);
        QApplication::processEvents();
        ms.push_back(static_cast<double>(clock.nsecsElapsed()) / 1e6);
    }
    ms.erase(ms.begin()); // reads the pictures
    figures::note("100 station rows, median", figures::median(ms), " ms");
    figures::print("100 station rows with pictures, sorted, filled, painted; 99th percentile",
                   figures::percentile(ms, 0.99), " ms", 20);
}

void benchSlide(VelmoraMainDlg *player, PaintWatch &watch)
{
    watch.turnsMs.clear();
    for (int slide = 0; slide < 6; ++slide) {
        emit player->signalMovePlaybackWidget();
        run(700);
    }
    figures::print("slide, timer to end of paint, 99th percentile", figures::percentile(watch.turnsMs, 0.99), " ms", 16,
                   std::to_string(watch.turnsMs.size()) + " steps");
}

// Visible widgets in front of this one, which keep its pixels from being shifted.
std::string widgetsOver(const QWidget *widget)
{
    QStringList names;
    for (const QWidget *level = widget; level->parentWidget() && !level->isWindow(); level = level->parentWidget()) {
        const QObjectList &siblings = level->parentWidget()->children();
        const QRect place(widget->mapTo(level->parentWidget(), QPoint()), widget->size());
        for (qsizetype i = siblings.indexOf(const_cast<QWidget *>(level)) + 1; i < siblings.size(); ++i) {
            const auto *other = qobject_cast<const QWidget *>(siblings.at(i));
            if (other && other->isVisible() && !other->isWindow() && other->geometry().intersects(place))
                names += QString::fromLatin1(other->metaObject()->className()) + QLatin1Char(' ') + other->objectName();
        }
    }
    return names.isEmpty() ? "nothing" : names.join(QStringLiteral(", ")).toStdString();
}

void benchMarquee(VelmoraMainDlg *player, PaintWatch &watch)
{
    player->fillupStationListBox_Ex(
        stationList({station("tapestry", "A station whose name is far too long for its row", true), station("b", "B")}),
        VLM_WS_ERR_OK, nullptr, false);
    auto *const list = player->findChild<ImageListWidget *>(QStringLiteral("stationListWidget"));
    list->clearScroll();
    list->setCurrentRow(0);
    list->setFocus();
    list->checkScroll();
    run(1500);
    for (QObject *child : list->children())
        if (!qstrcmp(child->metaObject()->className(), "ImageListWidgetItem"))
            watch.counted = child;
    const auto *const label = static_cast<const QWidget *>(watch.counted);
    if (label) {
        figures::note("marquee, its label is opaque", label->testAttribute(Qt::WA_OpaquePaintEvent) ? "yes" : "no");
        figures::note("marquee, in front of its label", widgetsOver(label));
    }
    watch.turnsMs.clear();
    watch.pixels.clear();
    const double before = processCpuMs();
    constexpr int ms = 10000;
    run(ms);
    const double share = (processCpuMs() - before) / ms * 100;
    std::vector<double> turns = watch.turnsMs;
    list->clearScroll();
    run(300);
    const double quietBefore = processCpuMs();
    run(ms / 2);
    const double quiet = (processCpuMs() - quietBefore) / (ms / 2.0) * 100;
    if (watch.pixels.size() < 50)
        std::fprintf(stderr, "the marquee did not run: %zu steps\n", watch.pixels.size());
    figures::note("marquee, painted pixels a step, median", figures::median(watch.pixels), "",
                  std::to_string(watch.pixels.size()) + " steps, the row is 52 pixels high");
    figures::print("marquee, CPU share", share, " %", 1.0,
                   "the same screen without it: " + std::to_string(quiet) + " %");
    figures::print("marquee, timer to end of paint, 99th percentile", figures::percentile(turns, 0.99), " ms", 16);
}

void benchLoader(VelmoraMainDlg *player, PaintWatch &watch)
{
    viewcomponent::BufferDlg loader(QStringLiteral("Please wait..."), player);
    loader.show();
    run(500);
    watch.turnsMs.clear();
    run(10000);
    figures::print("loader, timer to end of paint, 99th percentile", figures::percentile(watch.turnsMs, 0.99), " ms",
                   16, std::to_string(watch.turnsMs.size()) + " frames");
}

void benchKeyboard(PaintWatch &watch)
{
    QDialog dialog;
    dialog.setFixedSize(1280, 720);
    dialog.setStyleSheet(QStringLiteral("QDialog{border-image: url(:/images/Main_Bg.png);}"));
    QLineEdit field(&dialog);
    field.setGeometry(320, 200, 640, 50);
    QtVirtualKbDlg keyboard(&dialog);
    keyboard.move(320, 310);
    keyboard.enableLineEdit(&field, false);
    keyboard.showWindow(false);
    dialog.show();
    field.setFocus();
    run(500);
    std::vector<double> ms;
    constexpr int keys[] = {Qt::Key_Right, Qt::Key_Select, Qt::Key_Down, Qt::Key_Select, Qt::Key_Right, Qt::Key_Up};
    int unpainted = 0;
    qsizetype typed = 0;
    for (int i = 0; i < 1200; ++i) {
        if (i % 100 == 99) {
            typed += field.text().size();
            field.clear();
        }
        const int key = keys[i % 6];
        QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier), release(QEvent::KeyRelease, key, Qt::NoModifier);
        const int paintsBefore = watch.paints;
        QElapsedTimer clock;
        clock.start();
        QApplication::sendEvent(&field, &press);
        QApplication::sendEvent(&field, &release);
        QApplication::processEvents(); // paints what the key has changed
        ms.push_back(static_cast<double>(clock.nsecsElapsed()) / 1e6);
        unpainted += watch.paints == paintsBefore;
    }
    figures::note("keyboard, key to end of paint, median", figures::median(ms), " ms");
    figures::print("keyboard, key to end of paint, 99th percentile", figures::percentile(ms, 0.99), " ms", 16,
                   std::to_string(ms.size() - static_cast<size_t>(unpainted)) + " of " + std::to_string(ms.size()) +
                       " keys painted something, " + std::to_string(typed) + " characters typed");
}

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_NO_GLIB", "1"); // Qt's own loop says when it wakes and when it is about to sleep
    QCoreApplication::setAttribute(Qt::AA_Use96Dpi);
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {}); // as with no reader
    registerVelmoraMetaTypes();
    VelmoraWebService::getInstance()->init();
    QFile style(QStringLiteral(":velmora.qss"));
    if (style.open(QIODevice::ReadOnly))
        application.setStyleSheet(QString::fromUtf8(style.readAll()));
    PaintWatch watch;
    benchKeyboard(watch);
    VelmoraMainDlg *const player = VelmoraMainDlg::getInstance();
    player->show();
    run(800);
    benchRows(player);
    benchSlide(player, watch);
    benchMarquee(player, watch);
    benchLoader(player, watch);
    std::fflush(stdout);
    std::_Exit(0); // the stand-ins have nothing to save
}
