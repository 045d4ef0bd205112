#include "app/screenfactory.h"

namespace {
ScreenFactory *theFactory = nullptr;
}

ScreenFactory *ScreenFactory::instance()
{
    return theFactory;
}

void ScreenFactory::setInstance(ScreenFactory *factory)
{
    theFactory = factory;
}
