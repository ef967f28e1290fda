#include "dialogs/recur_run.h"

#include <QWidget>

#include <functional>

#include "calc/model.h"
#include "dialogs/modal.h"
#include "dialogs/run_host.h"
#include "resources/strings.h"

namespace {

QString S(int id) { return QString::fromUtf8(OxString(id)); }

constexpr int kCountCaption = 207;   // "how many iterations?"
constexpr int kCountPrompt = 5;      // "input"
constexpr int kRunCaption = 601;     // "press Q to quit"

// Runs under the host with the main window focused and captioned
// "press Q to quit"; its own caption comes back afterwards.
int RunWithCaption(RunHost* host, const std::function<int()>& run) {
    QWidget* main = host->MainWindow();
    const QString caption = main->windowTitle();
    main->setWindowTitle(S(kRunCaption));
    main->activateWindow();
    const int code = host->RunWatched(run);
    main->setWindowTitle(caption);
    return code;
}

int Report(RunHost* host, int code) {
    if (code > 0) ShowError(host->MainWindow(), code);
    return code;
}

}  // namespace

int OneStepCommand(CalcModel* model, RunHost* host) {
    const int code = Report(host, RunWithCaption(host, [model] { return model->OneStep(); }));
    host->MainWindow()->activateWindow();
    return code;
}

int ManyStepsCommand(CalcModel* model, RunHost* host) {
    QString count = QString::number(model->StepCountDefault());
    if (!TheModal().oneInput(host->MainWindow(), S(kCountCaption), S(kCountPrompt), &count,
                             kStepCountChars))
        return kStepCountCancelled;
    const std::string text = count.toStdString();
    return Report(host, RunWithCaption(host, [model, &text] { return model->ManySteps(text); }));
}
