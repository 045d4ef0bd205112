#include "widgets/roundcorners.h"

#include <QWidget>

void showRoundCorners(QWidget *window)
{
    window->setAttribute(Qt::WA_TranslucentBackground);
    // That leaves the style sheet's own background out as well; and the palette's would fill the corners.
    window->setAttribute(Qt::WA_NoSystemBackground, false);
    QPalette palette = window->palette();
    palette.setColor(QPalette::Window, Qt::transparent);
    window->setPalette(palette);
}
