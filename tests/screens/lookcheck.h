#pragma once

#include <QStringList>

class QWidget;

// Checks what a program can see on a visible window. GUI thread only.
namespace lookcheck {

// Returns one line for each fault. The checks: no text is cut, texts and controls are inside the safe area of the
// canvas, no two siblings overlap, the contrast with the actual background is at least 4.5 to 1, and every focusable
// control has an accessible name.
QStringList faults(QWidget *window);

// The first of these checks alone: the only one that depends on the language.
QStringList cutTexts(QWidget *window);

// Object names of the controls that look focused: an amber surface or an amber frame. The field that the on-screen
// keyboard types into is part of the keyboard.
QStringList focused(QWidget *window);

} // namespace lookcheck
