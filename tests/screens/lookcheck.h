#pragma once

#include <QStringList>

class QWidget;

// What a machine can see on a window that shows: one line a fault, empty when there is none. GUI thread only.
namespace lookcheck {

// Texts whole, words and controls inside the safe area of the canvas, no two neighbours over each other, contrast of
// at least 4.5 to 1 against what is really behind, a name for every control that can take the focus.
QStringList faults(QWidget *window);

// Object names of the controls that look focused: an amber surface or an amber frame. The field that the on-screen
// keyboard types into is part of the keyboard.
QStringList focused(QWidget *window);

} // namespace lookcheck
