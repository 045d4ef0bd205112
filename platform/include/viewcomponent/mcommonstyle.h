#pragma once

#include "viewcomponent/viewcomponent_global.h"

#include <QProxyStyle>

namespace viewcomponent {

// The platform's style of buttons and lists: no focus frame.
class VIEWCOMPONENT_EXPORT MCommonStyle : public QProxyStyle {
    Q_OBJECT
public:
    MCommonStyle();
    ~MCommonStyle() override;

    void drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                       const QWidget *widget = nullptr) const override;

private:
    struct Private;
    Private *d;
};

} // namespace viewcomponent
