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
    VelmoraParentWidget *createStation(int mode) override;
    VelmoraParentWidget *renameStation(const QString &name, const QString &stationToken) override;
    VelmoraParentWidget *trackMenu(QWidget *parent) override;
    VelmoraParentWidget *about(QWidget *parent) override;
    VelmoraParentWidget *why(const QString &text, QWidget *parent) override;
};
