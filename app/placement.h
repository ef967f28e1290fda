// Placing and presenting the frame's own windows. The list, factorization,
// table and batch windows first open below the main window, each kind moved
// right and down by its own step so that they do not hide one another
// completely, and kept on the screen.
#pragma once

class QWidget;

void PlaceBelowFrame(const QWidget* frame, QWidget* window, int step);

// Shows window, brings it to the top and makes it the active window.
void PresentWindow(QWidget* window);
