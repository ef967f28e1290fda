// The Recursion menu's One step (Ctrl+S) and Many steps ... (Ctrl+M). The
// model runs the steps; these ask for the count, put "press Q to quit" into
// the main window's caption while the run goes and report its code. The
// windows of the targets follow through the model's observers.
//
// Q is read between steps but does not end a run: n steps are n steps unless
// a code or a halting condition stops them. Q still stops an evaluation long
// enough to poll, and the run then ends unreported with -1.
#pragma once

#include "resources/result.h"

class CalcModel;
class GuiHost;

constexpr int kStepCountChars = 30;

// One step. Answers the run's code: kOk (also when a condition halted it),
// kStopped, or a positive code, which has been reported.
Result OneStepCommand(CalcModel* model, GuiHost* host);
// Asks "how many iterations?" preset with the model's step count default and
// runs that many steps; text that is no count of at least 1 gives 14. The
// count becomes the default only when the run ends with 0. Answers as
// OneStepCommand, or kCancelled when the question was cancelled.
Result ManyStepsCommand(CalcModel* model, GuiHost* host);
