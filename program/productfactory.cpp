#include "program/productfactory.h"

#include "account/emailpwddlg.h"
#include "account/internetradiodlg.h"
#include "account/loadingdlg.h"
#include "account/selectuserdlg.h"
#include "account/signindlg.h"
#include "account/welcomedlg.h"
#include "player/velmoramaindlg.h"
#include "station/aboutdlg.h"
#include "station/createstationdlg.h"
#include "station/menudlg.h"
#include "station/renamestationdlg.h"
#include "station/whydlg.h"

VelmoraParentWidget *ProductFactory::welcome()
{
    return new WelcomeDlg;
}

VelmoraParentWidget *ProductFactory::loading()
{
    return new LoadingDlg;
}

VelmoraParentWidget *ProductFactory::selectUser(int loginState)
{
    return new SelectUserDlg(loginState);
}

VelmoraParentWidget *ProductFactory::signIn()
{
    return new SignInDlg;
}

VelmoraParentWidget *ProductFactory::signInFor(const QString &account)
{
    auto *screen = new SignInDlg;
    screen->showByAccount(account);
    return screen;
}

VelmoraParentWidget *ProductFactory::activation(const QString &codeLine, const QString &pageLine)
{
    return new InternetRadioDlg(codeLine, pageLine);
}

VelmoraParentWidget *ProductFactory::emailPassword()
{
    return new EmailPwdDlg;
}

PlayerPort *ProductFactory::player()
{
    return VelmoraMainDlg::getInstance();
}

StationDialog *ProductFactory::createStation(int mode)
{
    return new CreateStationDlg(mode);
}

StationDialog *ProductFactory::renameStation(const QString &name, const QString &stationToken)
{
    return new RenameStationDlg(name, stationToken);
}

TrackMenuDialog *ProductFactory::trackMenu(QWidget *parent)
{
    return new MenuDlg(parent);
}

PlayerDialog *ProductFactory::about(QWidget *parent)
{
    return new AboutDlg(parent);
}

PlayerDialog *ProductFactory::why(const QString &text, QWidget *parent)
{
    return new WhyDlg(text, parent);
}
