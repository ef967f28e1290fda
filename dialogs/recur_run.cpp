#include "dialogs/recur_run.h"

#include <QWidget>

#include <functional>

#include "calc/model.h"
#include "dialogs/gui_host.h"
#include "dialogs/modal.h"
#include "dialogs/ui_text.h"
#include "resources/string_ids.h"

namespace {

// Runs under the host with the main window focused and captioned
// "press Q to quit".
Result RunWithCaption(GuiHost* host, const std::function<Result()>& run) {
    host->MainWindow()->activateWindow();
    return host->RunCaptioned(run);
}

Result Report(GuiHost* host, Result code) {
    if (IsError(code)) ShowError(host->MainWindow(), code);
    return code;
}

}  // namespace

Result OneStepCommand(CalcModel* model, GuiHost* host) {
    const Result code = Report(host, RunWithCaption(host, [model] { return model->OneStep(); }));
    host->MainWindow()->activateWindow();
    return code;
}

Result ManyStepsCommand(CalcModel* model, GuiHost* host) {
    QString count = QString::number(model->StepCountDefault());
    if (!TheModal().oneInput(host->MainWindow(), OxText(kStrHowManyIterations), OxText(kStrInput),
                             &count, kStepCountChars))
        return Result::kCancelled;
    const std::string text = count.toStdString();
    return Report(host, RunWithCaption(host, [model, &text] { return model->ManySteps(text); }));
}
