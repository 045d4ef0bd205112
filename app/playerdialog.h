#pragma once

#include "app/velmoraparentwidget.h"

// The signals that the player screen needs from a dialog that it opens over itself. GUI thread only.
class PlayerDialog : public VelmoraParentWidget {
    Q_OBJECT
public:
    using VelmoraParentWidget::VelmoraParentWidget;

signals:
    void signalDestroyedWindow(); // by the destructor, once
};

// The same for the track menu.
class TrackMenuDialog : public PlayerDialog {
    Q_OBJECT
public:
    using PlayerDialog::PlayerDialog;

signals:
    // Spelled so. 0 bookmark artist, 1 bookmark track, 2 sleep, 3 create, 4 delete, 5 rename, 6 switch user, 7 exit,
    // 8 no key for nine hours, 9 why.
    void itemCliecked(int index);
};
