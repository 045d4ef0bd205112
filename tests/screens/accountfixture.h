#pragma once

#include "app/velmoraparentwidget.h"
#include "fakes/devicetwin.h"
#include "fakes/fakeipc.h"
#include "fakes/fakescreens.h"
#include "fakes/fakewsfixture.h"
#include "fakes/screentest.h"
#include "service/devicepaths.h"
#include "service/velmorasettings.h"
#include "service/velmorawebservice.h"

#include <QTemporaryDir>

// The set-up of one test of an account or station screen: a private device, a scripted service, and a factory whose
// screens only record their names.
class ScreenFixture {
public:
    ScreenFixture()
    {
        screentest::prepare();
        DeviceTwin::setPrivateRoot(m_root.path());
        FakeIpc::reset();
        VelmoraWebService::getInstance();
        m_screens = std::make_unique<FakeScreens>();
    }

    ~ScreenFixture()
    {
        qDeleteAll(m_shown);
        screentest::settle();
        m_screens.reset();
        m_service.ws.flush();
        screentest::settle();
        delete VelmoraWebService::getInstance();
    }

    FakeWs &ws() { return m_service.ws; }
    FakeScreens &screens() { return *m_screens; }

    // Shows `screen`, which is deleted with this object at the latest.
    template <typename Screen>
    QPointer<Screen> show(Screen *screen)
    {
        m_shown.append(screen);
        screen->show();
        return screen;
    }

    static VelmoraSettings settings() { return deviceSettings(); }

    // Accounts with slots "0", "1", ... in this order; the first one logged in last.
    static void storeAccounts(const QStringList &names)
    {
        VelmoraSettings file = deviceSettings();
        for (int i = 0; i < names.size(); ++i)
            file.addAccount(names.at(i), QString::number(i));
        if (!names.isEmpty())
            file.setLastLogin(names.first());
    }

private:
    QTemporaryDir m_root;
    FakeWsFixture m_service;
    std::unique_ptr<FakeScreens> m_screens;
    QList<QPointer<QWidget>> m_shown;
};

// Removes `screen`'s next message box as soon as it shows, as a lost network or an ordered exit does.
inline void destroyNextBox(VelmoraParentWidget *screen)
{
    auto *look = new QTimer(screen);
    QObject::connect(look, &QTimer::timeout, screen, [screen, look] {
        if (!screentest::visibleBox())
            return;
        look->deleteLater();
        look->stop();
        screen->destroyedMsgbox();
    });
    look->start(5);
}
