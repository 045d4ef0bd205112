// velmora-screen: the size of the screen that Qt's platform finds, as "WIDTHxHEIGHT" in real pixels. Exit code 1
// without a screen.
#include <QGuiApplication>
#include <QScreen>

#include <cstdio>

int main(int argc, char **argv)
{
    const QGuiApplication application(argc, argv);
    const QScreen *screen = QGuiApplication::primaryScreen();
    if (!screen)
        return 1;
    const QSize size = (QSizeF(screen->size()) * screen->devicePixelRatio()).toSize();
    std::printf("%dx%d\n", size.width(), size.height());
    return 0;
}
