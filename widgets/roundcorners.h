#pragma once

class QWidget;

// Lets what lies behind a window show through where its style sheet draws nothing. Call it before the window shows.
void showRoundCorners(QWidget *window);
