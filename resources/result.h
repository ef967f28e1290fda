// The program's result codes: what every fallible operation answers.
//
// 0 is success. Positive codes are errors; the user sees string 400 + code
// ("hmm ..." box, ResultMessage below). Negative codes are outcomes that are
// no error to report: the user stopped the work, or answered "cancel". The
// values are fixed: files, scripts (ordix-cli prints them) and the string
// table depend on them.
//
// The type is [[nodiscard]]: a call that drops a Result is a warning, so a
// caller either handles the code or says in a comment why it cannot fail and
// writes (void)F(...). Codes are written qualified, Result::kNoMemory; they
// still compare and print as the numbers they are.
#pragma once

enum [[nodiscard]] Result : int{
    kOk = 0,
    kCannotUnderstand = 1,    // "cannot understand"
    kCouldNotFind = 2,        // "could not find"
    kNoMemory = 3,            // "low memory...trouble!"
    kNoMoreRoom = 4,          // "no more room": a text or list is full
    kInconsistent = 6,        // "inconsistent data"
    kNothingToDo = 9,         // "nothing to do"
    kNothingToShow = 10,      // "nothing to show"
    kCannotOpenFile = 11,     // "cannot open file"
    kCannotSaveFile = 12,     // "cannot save file"
    kKitchenClosed = 13,      // "kitchen closed today"
    kPositiveValue = 14,      // "positive value?"
    kOutOfBounds = 17,        // "out of bounds"
    kEvaluationFailed = 101,  // "evaluation failed"
    kInterrupted = 102,       // "interrupted"
    kNotInteger = 103,        // "not an integer"
    kDivisionByZero = 104,    // "division by 0"
    kUnbalanced = 108,        // unbalanced parentheses: the string table has no text
    kStopped = -1,            // stopped by the user (Q, or a window action)
    kHalted = -2,             // a recursion's condition held; a print run the user refused
    kCancelled = -12,         // the user answered "cancel"
};

constexpr int ToInt(Result r) { return static_cast<int>(r); }
// Only positive codes are errors to report.
constexpr bool IsError(Result r) { return ToInt(r) > 0; }
constexpr bool Ok(Result r) { return r == Result::kOk; }

// The message of code r (string 400 + r; a stop reads as "interrupted").
const char* ResultMessage(Result r);
