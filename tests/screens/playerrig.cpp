#include "screens/playerrig.h"

#include "fakes/devicetwin.h"
#include "service/devicepaths.h"
#include "service/velmoranextlimit.h"
#include "service/velmorasettings.h"
#include "station/aboutdlg.h"
#include "station/menudlg.h"
#include "station/whydlg.h"

#include <QFile>

PlayerPort *PlayerScreens::player()
{
    return VelmoraMainDlg::getInstance();
}

TrackMenuDialog *PlayerScreens::trackMenu(QWidget *parent)
{
    return new MenuDlg(parent);
}

PlayerDialog *PlayerScreens::about(QWidget *parent)
{
    return new AboutDlg(parent);
}

PlayerDialog *PlayerScreens::why(const QString &text, QWidget *parent)
{
    return new WhyDlg(text, parent);
}

PlayerRig::PlayerRig(const QByteArray &lastStation)
{
    screentest::prepare();
    QFile style(":/velmora.qss"); // where the images are linked in
    if (qApp->styleSheet().isEmpty() && style.open(QIODevice::ReadOnly))
        qApp->setStyleSheet(QString::fromUtf8(style.readAll()));
    FakePlayback::reset();
    FakeDownload::reset();
    FakeIpc::reset();
    QFile::remove(device::settingsFile());
    {
        VelmoraSettings settings(device::settingsFile(), QSettings::IniFormat, nullptr);
        settings.addAccount("listener@example.org", "0");
        settings.setLastLogin("listener@example.org", "0");
        settings.setStationInfo("listener@example.org", QString::fromLatin1(lastStation));
    }
    player = VelmoraMainDlg::getInstance();
    player->show();
    player->activateWindow();
    screentest::settle();
}

PlayerRig::~PlayerRig()
{
    if (player)
        player->close();
    run();
    delete VelmoraNextLimit::existing();
    if (PlayerPort::existing() || FakePlayback::livingThreads != 0 || FakeDownload::living != 0)
        QTest::qFail("the player screen has left something running", __FILE__, __LINE__);
    for (const QString &violation : FakePlayback::violations)
        QTest::qFail(qPrintable(violation), __FILE__, __LINE__);
}

// ---- service

QList<FakeStation> PlayerRig::stations(const QList<QByteArray> &tokens)
{
    QList<FakeStation> own;
    for (const QByteArray &token : tokens)
        own.append(FakeStation{token, "Station " + token});
    return own;
}

FakeEntry PlayerRig::track(const QByteArray &name)
{
    FakeTrack track;
    track.songName = name;
    track.artistName = "Artist of " + name;
    track.albumName = "Album of " + name;
    track.audioUrl = "http://127.0.0.1:1/" + name;
    track.trackToken = "token of " + name;
    track.albumArtUrl = "http://127.0.0.1:1/cover of " + name;
    return FakeEntry::track(track);
}

FakeReply PlayerRig::tracks(int count)
{
    QList<FakeEntry> entries;
    for (int i = 1; i <= count; ++i)
        entries.append(track("Song " + QByteArray::number(i)));
    return FakeReply::playlist(entries);
}

namespace {

void ignore(HANDLE_T, VLM_WS_EXT_ERRCODE_T, VOID *)
{
}

} // namespace

HANDLE_T PlayerRig::listed(const QList<FakeStation> &all)
{
    service.ws.replyNext(VLM_WS_MSGID_GET_STATION_LIST, VLM_WS_ERR_OK, FakeReply::stationList(all));
    HANDLE_T handle = 0;
    velmora_ws_getStationList(0, "", "", ignore, nullptr, &handle);
    service.ws.flush();
    return handle;
}

HANDLE_T PlayerRig::createdStation(const FakeStation &station)
{
    service.ws.replyNext(VLM_WS_MSGID_CREATE_STATION, VLM_WS_ERR_OK, FakeReply::station(station));
    HANDLE_T handle = 0;
    velmora_ws_createStation("music", nullptr, nullptr, 0, ignore, nullptr, &handle);
    service.ws.flush();
    return handle;
}

void PlayerRig::fill(const QList<FakeStation> &own)
{
    player->fillFromStationList(stationList(own));
    run();
}

namespace {

// A start empties the buffer. Between the water lines the timer, which a slow machine sees, changes nothing by itself.
void beginTrack(int seconds)
{
    FakePlayback::setBuffer(0, 5000);
    FakePlayback::playOk(seconds);
}

} // namespace

void PlayerRig::play(const QList<FakeEntry> &entries)
{
    fill();
    answer(VLM_WS_MSGID_GET_PLAYLIST, VLM_WS_ERR_OK, FakeReply::playlist(entries));
    beginTrack(180);
    run();
}

void PlayerRig::startTracks(int count)
{
    answer(VLM_WS_MSGID_GET_PLAYLIST, VLM_WS_ERR_OK, tracks(count));
    beginTrack(10);
}

void PlayerRig::finishTrack()
{
    FakePlayback::finished();
    tick();
    run();
}

void PlayerRig::answer(int cmd, VLM_WS_EXT_ERRCODE_T code, const FakeReply &reply)
{
    if (!service.ws.completeNext(cmd, code, reply))
        QTest::qFail(qPrintable(QStringLiteral("no request %1 waits").arg(cmd)), __FILE__, __LINE__);
    run();
}

void PlayerRig::run()
{
    for (int i = 0; i < 3; ++i) {
        service.ws.flush();
        screentest::settle();
    }
}

QByteArray PlayerRig::sentText(int cmd, int parameter) const
{
    return service.ws.last(cmd).params.value(parameter).toByteArray();
}

// ---- screen

void PlayerRig::call(const char *slot) const
{
    if (!QMetaObject::invokeMethod(player, slot, Qt::DirectConnection))
        QTest::qFail(slot, __FILE__, __LINE__);
}

QStringList PlayerRig::focused() const
{
    QStringList names;
    for (const char *name : {"menuBtn", "playBtn", "nextBtn", "thumbdownBtn", "thumbupBtn"})
        if (style(name).contains(QLatin1String("Button_F.png")))
            names.append(QString::fromLatin1(name));
    for (const char *name : {"stationListWidget", "playListWidget"}) {
        const QListWidgetItem *item = list(name)->currentItem();
        const bool hasKeys = list(name)->hasFocus();
        const bool hasBar = item && !item->background().texture().isNull() &&
                            item->background().texture().cacheKey() == QPixmap(":/images/FocusBar.png").cacheKey();
        if (hasKeys || hasBar)
            names.append(QString::fromLatin1(name) + (!item || hasBar ? QString() : QStringLiteral(" without bar")));
    }
    return names;
}

QString PlayerRig::lastStation() const
{
    VelmoraSettings settings(device::settingsFile(), QSettings::IniFormat, nullptr);
    return settings.getStationInfo();
}

int PlayerRig::takeSkips(const QString &station)
{
    VelmoraNextLimit *limit = VelmoraNextLimit::getInstance();
    int left = 0;
    while (limit->isAllowedNext(station) && left < 10) {
        limit->addIntoQueue(station);
        ++left;
    }
    return left;
}

void PlayerRig::useUpSkips(const QString &station)
{
    for (int i = 0; i < 6; ++i)
        VelmoraNextLimit::getInstance()->addIntoQueue(station);
}
