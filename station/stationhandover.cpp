#include "station/stationhandover.h"

#include "app/playerport.h"
#include "app/screenfactory.h"
#include "app/velmoraparentwidget.h"

namespace stationhandover {

void showPlayer()
{
    PlayerPort *player = ScreenFactory::instance()->player();
    player->screen()->show();
    player->restartIdleTimer();
}

void signOut(VelmoraParentWidget *dialog)
{
    dialog->retire();
    VelmoraParentWidget::clearAllRecordHistroyUiType();
    if (PlayerPort *player = PlayerPort::existing())
        player->signOutAfterError();
}

void enterPlayer(VelmoraParentWidget *dialog, HANDLE_T h_handle)
{
    dialog->retire();
    VelmoraParentWidget::clearAllRecordHistroyUiType();
    showPlayer();
    PlayerPort::existing()->fillFromStationList(h_handle);
}

} // namespace stationhandover
