#include "widgets/roundcorners.h"

#include <QWidget>

void showRoundCorners(QWidget *window)
{
    window->setAttribute(Qt::WA_TranslucentBackground);
    // The attribute alone would also leave out the style sheet's background. The palette's would fill the corners.
    window->setAttribute(Qt::WA_NoSystemBackground, false);
    QPalette palette = window->palette();
    palette.setColor(QPalette::Window, Qt::transparent);
    window->setPalette(palette);
}
