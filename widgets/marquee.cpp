#include "widgets/marquee.h"

namespace marquee {

bool runs(int textWidth)
{
    return textWidth > widestStill;
}

Step advance(int &offset, int bandWidth)
{
    if (++offset < bandWidth)
        return Step::Shift;
    offset = 0;
    return Step::ShiftAndPause;
}

QList<int> copies(int offset, int bandWidth, int windowWidth)
{
    QList<int> edges;
    if (bandWidth > 0)
        for (int x = -offset; x <= windowWidth; x += bandWidth)
            edges.append(x);
    return edges;
}

} // namespace marquee
