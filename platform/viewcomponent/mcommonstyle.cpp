#include "viewcomponent/mcommonstyle.h"

namespace viewcomponent {

struct MCommonStyle::Private {};

MCommonStyle::MCommonStyle()
    : d(nullptr)
{
}

MCommonStyle::~MCommonStyle()
{
    delete d;
}

void MCommonStyle::drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                                 const QWidget *widget) const
{
    // The screens show the focus by their own pictures.
    if (element != PE_FrameFocusRect)
        QProxyStyle::drawPrimitive(element, option, painter, widget);
}

} // namespace viewcomponent
