#include "fakes/fakescreens.h"

#include "service/wshandle.h"
#include "service/wsreply.h"

class FakeScreens::Player : public PlayerPort {
public:
    explicit Player(FakeScreens &owner)
        : m_owner(owner)
        , m_screen(new VelmoraParentWidget)
    {
        m_screen->setObjectName("player");
        QObject::connect(m_screen, &VelmoraParentWidget::signalTimeoutStop, [this] { note("own stop"); });
        QObject::connect(m_screen, &VelmoraParentWidget::signalTimeoutPlay, [this] { note("own play"); });
        setExisting(this);
    }
    ~Player() override
    {
        setExisting(nullptr);
        delete m_screen;
    }

    VelmoraParentWidget *screen() override { return m_screen; }
    void stopCurrentSong() override { note("stop"); }
    void playCurrentSong() override { note("play"); }
    void fillFromStationList(HANDLE_T h_handle) override
    {
        const WsHandle handle(h_handle);
        m_owner.m_stationCounts.append(wsreply::StationList(h_handle).count());
    }
    void restartIdleTimer() override { ++m_owner.m_idleRestarts; }
    void signOutAfterError() override { ++m_owner.m_signOuts; }

private:
    void note(const char *what) { m_owner.m_playerNotes.append(QLatin1String(what)); }

    FakeScreens &m_owner;
    QPointer<VelmoraParentWidget> m_screen;
};

FakeScreens::FakeScreens()
{
    ScreenFactory::setInstance(this);
    VelmoraParentWidget::m_ui_type_queue.clear();
}

FakeScreens::~FakeScreens()
{
    delete m_player;
    for (const QPointer<VelmoraParentWidget> &screen : std::as_const(m_screens))
        delete screen;
    VelmoraParentWidget::m_ui_type_queue.clear();
    ScreenFactory::setInstance(nullptr);
}

VelmoraParentWidget *FakeScreens::selectUser(int loginState)
{
    return make(QStringLiteral("selectUser %1").arg(loginState));
}

VelmoraParentWidget *FakeScreens::signInFor(const QString &account)
{
    VelmoraParentWidget *screen = make(QStringLiteral("signInFor ") + account);
    screen->show();
    return screen;
}

VelmoraParentWidget *FakeScreens::activation(const QString &codeLine, const QString &pageLine)
{
    return make(QStringLiteral("activation ") + codeLine + QLatin1Char('|') + pageLine);
}

PlayerPort *FakeScreens::player()
{
    if (!m_player) {
        m_player = new Player(*this);
        m_made.append("player");
    }
    return m_player;
}

StationDialog *FakeScreens::createStation(int mode)
{
    return make<StationDialog>(QStringLiteral("createStation %1").arg(mode));
}

StationDialog *FakeScreens::renameStation(const QString &name, const QString &stationToken)
{
    return make<StationDialog>(QStringLiteral("renameStation %1 %2").arg(name, stationToken));
}

PlayerDialog *FakeScreens::why(const QString &text, QWidget *)
{
    return make<PlayerDialog>(QStringLiteral("why ") + text);
}
