#pragma once

#include "app/screenfactory.h"

// The product's screens: the only place that knows the classes of all folders.
class ProductFactory : public ScreenFactory {
public:
    VelmoraParentWidget *welcome() override;
    VelmoraParentWidget *loading() override;
    VelmoraParentWidget *selectUser(int loginState) override;
    VelmoraParentWidget *signIn() override;
    VelmoraParentWidget *signInFor(const QString &account) override;
    VelmoraParentWidget *activation(const QString &codeLine, const QString &pageLine) override;
    VelmoraParentWidget *emailPassword() override;
    PlayerPort *player() override;
    StationDialog *createStation(int mode) override;
    StationDialog *renameStation(const QString &name, const QString &stationToken) override;
    TrackMenuDialog *trackMenu(QWidget *parent) override;
    PlayerDialog *about(QWidget *parent) override;
    PlayerDialog *why(const QString &text, QWidget *parent) override;
};
