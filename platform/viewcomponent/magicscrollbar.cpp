#include "viewcomponent/magicscrollbar.h"

namespace viewcomponent {

struct MagicScrollBar::Private {};

MagicScrollBar::MagicScrollBar(QWidget *parent)
    : QScrollBar(parent)
    , d(nullptr)
{
    setFocusPolicy(Qt::NoFocus);
    setContextMenuPolicy(Qt::NoContextMenu);
    setStyleSheet(QStringLiteral("QScrollBar { background: #3A2650; border: none; border-radius: 4px; margin: 0px; }"
                                 "QScrollBar:vertical { width: 8px; }"
                                 "QScrollBar:horizontal { height: 8px; }"
                                 "QScrollBar::handle { background: #7D6298; border-radius: 4px; min-height: 24px;"
                                 " min-width: 24px; }"
                                 "QScrollBar::add-line, QScrollBar::sub-line { width: 0px; height: 0px; }"
                                 "QScrollBar::add-page, QScrollBar::sub-page { background: none; }"));
}

MagicScrollBar::~MagicScrollBar()
{
    delete d;
}

} // namespace viewcomponent
