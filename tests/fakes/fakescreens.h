#pragma once

#include "app/playerdialog.h"
#include "app/playerport.h"
#include "app/screenfactory.h"
#include "app/stationdialog.h"
#include "app/velmoraparentwidget.h"

#include <QPointer>
#include <QStringList>

// Screens that only record that they were requested, so that a test of one screen sees which screen follows. One
// instance per test; it registers itself as the factory, and its destructor unregisters it and deletes every screen
// that it made. GUI thread only.
class FakeScreens : public ScreenFactory {
public:
    FakeScreens();
    ~FakeScreens() override;

    QStringList made() const { return m_made; } // "selectUser 2", "activation code|page", "player", ...
    VelmoraParentWidget *last() const { return m_last; }

    // --- the player screen
    QList<int> stationCounts() const { return m_stationCounts; } // of the lists it was filled from, in order
    QStringList playerNotes() const { return m_playerNotes; }    // "stop", "play"; "own ..." when its own check says so
    int signOuts() const { return m_signOuts; }
    int idleRestarts() const { return m_idleRestarts; }

    VelmoraParentWidget *welcome() override { return make(QStringLiteral("welcome")); }
    VelmoraParentWidget *loading() override { return make(QStringLiteral("loading")); }
    VelmoraParentWidget *selectUser(int loginState) override;
    VelmoraParentWidget *signIn() override { return make(QStringLiteral("signIn")); }
    VelmoraParentWidget *signInFor(const QString &account) override;
    VelmoraParentWidget *activation(const QString &codeLine, const QString &pageLine) override;
    VelmoraParentWidget *emailPassword() override { return make(QStringLiteral("emailPassword")); }
    PlayerPort *player() override;
    StationDialog *createStation(int mode) override;
    StationDialog *renameStation(const QString &name, const QString &stationToken) override;
    TrackMenuDialog *trackMenu(QWidget *) override { return make<TrackMenuDialog>(QStringLiteral("trackMenu")); }
    PlayerDialog *about(QWidget *) override { return make<PlayerDialog>(QStringLiteral("about")); }
    PlayerDialog *why(const QString &text, QWidget *parent) override;

private:
    class Player;
    template <typename Screen = VelmoraParentWidget>
    Screen *make(const QString &name)
    {
        auto *screen = new Screen;
        screen->setObjectName(name);
        m_made.append(name);
        m_screens.append(screen);
        m_last = screen;
        return screen;
    }

    QStringList m_made;
    QPointer<VelmoraParentWidget> m_last;
    QList<QPointer<VelmoraParentWidget>> m_screens;
    QList<int> m_stationCounts;
    QStringList m_playerNotes;
    int m_signOuts = 0;
    int m_idleRestarts = 0;
    Player *m_player = nullptr;
};
