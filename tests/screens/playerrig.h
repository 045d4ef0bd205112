#pragma once

#include "fakes/fakedownload.h"
#include "fakes/fakeipc.h"
#include "fakes/fakenetwork.h"
#include "fakes/fakeplayback.h"
#include "fakes/fakescreens.h"
#include "fakes/fakewsfixture.h"
#include "fakes/logcapture.h"
#include "fakes/screentest.h"
#include "player/velmoramaindlg.h"
#include "widgets/imagelistwidget.h"

#include <QLabel>
#include <QPushButton>

// The screens that the player opens over itself are real; all others only record that they were requested.
class PlayerScreens : public FakeScreens {
public:
    PlayerPort *player() override;
    TrackMenuDialog *trackMenu(QWidget *parent) override;
    PlayerDialog *about(QWidget *parent) override;
    PlayerDialog *why(const QString &text, QWidget *parent) override;
};

const QString skipLimit = QStringLiteral("Unfortunately,our music licenses force us to limit the number of tracks you "
                                         "may skip each hour.");
const QString adsOnly = QStringLiteral("       Invalid operation for audio ads");

// One test's player screen over the fakes: "listener" is signed in, the player is made and shown. At the end it is
// closed, and handles, threads or screens that it left behind fail the test.
class PlayerRig {
public:
    explicit PlayerRig(const QByteArray &lastStation = "b");
    ~PlayerRig();

    // --- service
    static QList<FakeStation> stations(const QList<QByteArray> &tokens = {"a", "b", "c"}); // Tapestry is added
    static FakeEntry track(const QByteArray &name);
    static FakeReply tracks(int count);             // "Song 1" and so on
    HANDLE_T listed(const QList<FakeStation> &all); // a station list that has arrived
    HANDLE_T stationList(const QList<FakeStation> &own) { return listed(QList{FakeStation::tapestry()} + own); }
    HANDLE_T createdStation(const FakeStation &station);
    void fill(const QList<FakeStation> &own = stations());
    // Fills the list and starts the last station, whose playlist is this one; its first track plays.
    void play(const QList<FakeEntry> &entries);
    void startTracks(int count); // answers the playlist that was asked for; the first of "Song 1" and so on plays
    void tick() const { call("checkwaterline"); }
    void finishTrack(); // it has been heard to its end, and the next is being started
    void answer(int cmd, VLM_WS_EXT_ERRCODE_T code, const FakeReply &reply = {}); // the oldest that waits; then run()
    void run(); // returns when everything queued has been delivered
    int sent(int cmd) const { return service.ws.count(cmd); }
    QByteArray sentText(int cmd, int parameter = 0) const; // of the last request

    // --- screen
    ImageListWidget *stationsList() const { return list("stationListWidget"); }
    ImageListWidget *history() const { return list("playListWidget"); }
    ImageListWidget *list(const char *name) const { return screentest::child<ImageListWidget>(player, name); }
    QPushButton *button(const char *name) const { return screentest::child<QPushButton>(player, name); }
    QString text(const char *label) const { return screentest::child<QLabel>(player, label)->text(); }
    QString style(const char *name) const { return screentest::childWidget(player, name)->styleSheet(); }
    void key(int code) const { screentest::key(player, code); }
    void call(const char *slot) const; // by its name; then run() is up to the caller
    template <typename T>
    T *dialog() const // the open one of this class, else null
    {
        for (QWidget *widget : QApplication::topLevelWidgets())
            if (widget->isVisible())
                if (T *found = qobject_cast<T *>(widget))
                    return found;
        return nullptr;
    }
    bool hasThumb(const char *picture = "") const // the mark on the history's row
    {
        return !screentest::childWidget(player, "playlistthumb")->isHidden() &&
               style("playlistthumb").contains(QLatin1String(picture));
    }
    bool isAnimationShown() const { return player->isAnimationShown(); }
    // Object names of the controls of the player that look focused: exactly one, or none under a box or dialog.
    QStringList focused() const;
    QString lastStation() const;                  // of the settings
    static int takeSkips(const QString &station); // uses up what the limit still allows; how many
    static void useUpSkips(const QString &station);

    LogCapture log;
    FakeWsFixture service;
    PlayerScreens screens;
    QPointer<VelmoraMainDlg> player;
};

// The same, and the first of these tracks plays.
class PlayingRig : public PlayerRig {
public:
    explicit PlayingRig(const QByteArray &lastStation = "b")
        : PlayerRig(lastStation)
    {
        play({track("Song 1"), track("Song 2"), track("Song 3")});
    }
    explicit PlayingRig(const QList<FakeEntry> &entries) { play(entries); }
};
