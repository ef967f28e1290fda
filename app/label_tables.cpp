#include "app/label_tables.h"

#include <algorithm>

#include "app/placement.h"
#include "calc/model.h"
#include "dialogs/ui_text.h"
#include "resources/string_ids.h"
#include "windows/table_win.h"

namespace {

// How often a running recursion redraws the tables it fills.
constexpr int kRefreshIntervalMs = 200;
// Below the frame (app/placement.h): the batch window, then the tables by label.
constexpr int kBatchStep = 1;
constexpr int kFirstTableStep = 3;

}  // namespace

int LabelFromText(const QString& text) {
    const QString t = text.trimmed().toUpper();
    if (t.size() != 1 || t[0] < QLatin1Char('A') || t[0] > QLatin1Char('Z')) return 0;
    return t[0].unicode() - 'A' + 1;
}

LabelTables::LabelTables(QWidget* owner) : owner_(owner) {}

LabelTables::~LabelTables() {
    for (TTableWin*& t : tables_) {
        delete t;
        t = nullptr;
    }
    delete batch_;
}

TTableWin* LabelTables::table(int label) const {
    return label >= 1 && label <= kLabelCount ? tables_[label - 1] : nullptr;
}

TTableWin* LabelTables::showTable(int label) {
    if (label < 1 || label > kLabelCount) return nullptr;
    TTableWin*& t = tables_[label - 1];
    if (!t) {
        const QString title = OxText(kStrTable) + QLatin1Char(' ') + QChar(LabelLetter(label));
        t = new TTableWin(owner_, title);
        PlaceBelowFrame(owner_, t, kFirstTableStep + (label - 1) % 8);
    }
    PresentWindow(t);
    return t;
}

void LabelTables::stepDone(const CalcModel& model, const std::vector<int>& targets) {
    for (int label : targets) {
        TTableWin* t = table(label);
        const NumberValue* v = model.Variable(label);
        if (!t || !v || !t->isVisible()) continue;
        // A full table takes no more rows, without a message.
        (void)t->appendRow(&v->numerator);
        if (std::find(pending_.begin(), pending_.end(), t) == pending_.end()) pending_.push_back(t);
    }
    if (!sinceRefresh_.isValid() || sinceRefresh_.elapsed() >= kRefreshIntervalMs) runFinished();
}

void LabelTables::runFinished() {
    for (TTableWin* t : pending_) t->refresh();
    pending_.clear();
    sinceRefresh_.restart();
}

void LabelTables::showBatch(const QString& title, const QString& text) {
    if (!batch_) {
        batch_ = new TTableWin(owner_, title);
        PlaceBelowFrame(owner_, batch_, kBatchStep);
    }
    batch_->replaceText(text);
    batch_->setTextAndTitle(title);
    PresentWindow(batch_);
}
