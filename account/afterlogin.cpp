#include "account/afterlogin.h"

#include "app/playerport.h"
#include "app/screenfactory.h"
#include "app/stationdialog.h"
#include "app/velmoraparentwidget.h"
#include "service/velmoralogin.h"
#include "service/wshandle.h"
#include "service/wsreply.h"

namespace afterlogin {

void enterPlayer(VelmoraParentWidget *screen, VelmoraLogin *login, HANDLE_T h_handle)
{
    WsHandle handle(h_handle);
    const int count = wsreply::StationList(h_handle).count();
    screen->retire(login);
    ScreenFactory *factory = ScreenFactory::instance();
    if (count > 0) {
        VelmoraParentWidget::clearAllRecordHistroyUiType();
        PlayerPort *player = factory->player();
        player->screen()->show();
        player->fillFromStationList(handle.take());
    } else {
        VelmoraParentWidget *create = factory->createStation(1);
        VelmoraParentWidget::recordHistroyUiType(VELMORA_UI_TYPE_SELECT_USER);
        create->show();
    }
}

} // namespace afterlogin
