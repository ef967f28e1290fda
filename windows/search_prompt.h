// The question that starts a search in the text and table windows.
#pragma once

class QString;
class QWidget;

// Asks for the text to search for, preset with *searchText. On an answer
// that is not empty, stores it there and answers true; a cancel answers
// false, and an empty answer is reported ("nothing to do") and answers false.
[[nodiscard]] bool AskSearchText(QWidget* owner, QString* searchText);
