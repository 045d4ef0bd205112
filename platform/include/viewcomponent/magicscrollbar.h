#pragma once

#include "viewcomponent/viewcomponent_global.h"

#include <QScrollBar>

namespace viewcomponent {

// A scroll bar in the platform's look that never takes the focus.
class VIEWCOMPONENT_EXPORT MagicScrollBar : public QScrollBar {
    Q_OBJECT
public:
    explicit MagicScrollBar(QWidget *parent = nullptr);
    ~MagicScrollBar() override;

private:
    struct Private;
    Private *d;
};

} // namespace viewcomponent
