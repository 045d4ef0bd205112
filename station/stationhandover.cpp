#include "station/stationhandover.h"

#include "app/playerport.h"
#include "app/screenfactory.h"
#include "app/velmoraparentwidget.h"
#include "service/velmorawebservice.h"

namespace stationhandover {

void retire(VelmoraParentWidget *dialog)
{
    QObject::disconnect(VelmoraWebService::getInstance(), nullptr, dialog, nullptr);
    dialog->stopTimer();
    dialog->controlAnimation(true);
    dialog->destroyedMsgbox();
    dialog->close();
}

void showPlayer()
{
    PlayerPort *player = ScreenFactory::instance()->player();
    player->screen()->show();
    player->restartIdleTimer();
}

void signOut(VelmoraParentWidget *dialog)
{
    retire(dialog);
    VelmoraParentWidget::clearAllRecordHistroyUiType();
    if (PlayerPort *player = PlayerPort::existing())
        player->signOutAfterError();
}

void enterPlayer(VelmoraParentWidget *dialog, HANDLE_T h_handle)
{
    retire(dialog);
    VelmoraParentWidget::clearAllRecordHistroyUiType();
    showPlayer();
    PlayerPort::existing()->fillFromStationList(h_handle);
}

} // namespace stationhandover
