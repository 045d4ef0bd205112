#pragma once

#include "app/velmoraparentwidget.h"

// A dialog that the player screen opens over itself, by what the player hears of it. GUI thread only.
class PlayerDialog : public VelmoraParentWidget {
    Q_OBJECT
public:
    using VelmoraParentWidget::VelmoraParentWidget;

signals:
    void signalDestroyedWindow(); // by the destructor, once
};

// The track menu, likewise.
class TrackMenuDialog : public PlayerDialog {
    Q_OBJECT
public:
    using PlayerDialog::PlayerDialog;

signals:
    // Spelled so. 0 bookmark artist, 1 bookmark track, 2 sleep, 3 create, 4 delete, 5 rename, 6 switch user, 7 exit,
    // 8 nobody used the menu for nine hours, 9 why.
    void itemCliecked(int index);
};
