#pragma once

class QWidget;

// Makes a window transparent where its style sheet draws nothing. Call it before the window shows.
void showRoundCorners(QWidget *window);
