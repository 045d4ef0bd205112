#pragma once

#include <QString>

// A text longer than `length` UTF-16 code units becomes its first `length` units and "..."; a shorter one stays whole.
// A character of two units, such as an emoji, is never cut in half: it is left out.
inline QString cutText(const QString &text, int length)
{
    if (text.size() <= length)
        return text;
    const bool isInsidePair = length > 0 && text.at(length - 1).isHighSurrogate();
    return text.left(isInsidePair ? length - 1 : length) + QStringLiteral("...");
}
