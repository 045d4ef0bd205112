#include "player/focusring.h"

#include <algorithm>
#include <iterator>

namespace focusring {

namespace {

using enum Position;
constexpr Position ring[] = {StationList, Menu, Play, Next, ThumbDown, ThumbUp, History};

const char *picture(Position position, bool isPaused)
{
    switch (position) {
    case Play:
        return isPaused ? "Play.png" : "Pause.png";
    case Next:
        return "NextSong.png";
    case ThumbDown:
        return "ThumbsDown_Enable.png";
    case ThumbUp:
        return "ThumbsUp_Enable.png";
    default:
        return nullptr; // the menu button has a text
    }
}

} // namespace

bool isOnRing(Position position)
{
    return std::find(std::begin(ring), std::end(ring), position) != std::end(ring);
}

Position neighbour(Position position, bool isLeftToRight)
{
    constexpr int size = static_cast<int>(std::size(ring));
    const auto *found = std::find(std::begin(ring), std::end(ring), position);
    if (found == std::end(ring))
        return position;
    const int at = static_cast<int>(found - std::begin(ring));
    return ring[(at + (isLeftToRight ? 1 : size - 1)) % size];
}

bool isList(Position position)
{
    return position == StationList || position == History;
}

QString buttonStyle(Position position, bool isFocused, bool isPaused)
{
    if (!isOnRing(position) || isList(position))
        return QString();
    const bool isWhite = !isFocused || (position == Play && isPaused);
    QString style;
    if (const char *file = picture(position, isPaused))
        style = QStringLiteral("image: url(:/images/%1);\n").arg(QLatin1String(file));
    // "border-with" is no property (deliberate): the buttons are drawn as if it were not there.
    return style + QStringLiteral("border-image: url(:/images/%1);\ncolor: %2;\nborder-with: 5px;")
                       .arg(isFocused ? QStringLiteral("Button_F.png") : QStringLiteral("Button_N.png"),
                            isWhite ? QStringLiteral("rgb(255, 255, 255)") : QStringLiteral("rgb(0, 0, 0)"));
}

} // namespace focusring
