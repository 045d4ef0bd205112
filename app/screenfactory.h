#pragma once

#include <QString>

class PlayerDialog;
class PlayerPort;
class QWidget;
class StationDialog;
class TrackMenuDialog;
class VelmoraParentWidget;

// Makes screens for callers that must not know their classes. main() registers the product's factory; tests register
// their own.
// Every screen is returned hidden, deletes itself when it is closed, and has no parent unless one is given. The caller
// connects what it needs; the returned class declares the screen's signals.
class ScreenFactory {
public:
    virtual ~ScreenFactory() = default;

    static ScreenFactory *instance();                // never null after main's registration
    static void setInstance(ScreenFactory *factory); // not owned

    virtual VelmoraParentWidget *welcome() = 0;
    virtual VelmoraParentWidget *loading() = 0;
    virtual VelmoraParentWidget *selectUser(int loginState) = 0;
    virtual VelmoraParentWidget *signIn() = 0;
    // The sign-in screen for a known account: it asks for the password only. The screen shows itself.
    virtual VelmoraParentWidget *signInFor(const QString &account) = 0;
    virtual VelmoraParentWidget *activation(const QString &codeLine, const QString &pageLine) = 0;
    virtual VelmoraParentWidget *emailPassword() = 0;
    // The single player screen; made by this call if there is none.
    virtual PlayerPort *player() = 0;
    virtual StationDialog *createStation(int mode) = 0;
    virtual StationDialog *renameStation(const QString &name, const QString &stationToken) = 0;
    virtual TrackMenuDialog *trackMenu(QWidget *parent) = 0;
    virtual PlayerDialog *about(QWidget *parent) = 0;
    virtual PlayerDialog *why(const QString &text, QWidget *parent) = 0;
};
