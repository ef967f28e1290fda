// F12 asks about lunch in every window of the program, dialogs included.
#pragma once

class QWidget;

// Gives window an F12 key that opens the lunch dialog over it.
void AddLunchKey(QWidget* window);
