// LabelTables: the table windows the main frame owns besides the list
// window: one per label A..Z (View|Table), which a recursion fills with the
// label's value after every step while the window is shown, and the batch
// window that receives Batch's rows. Windows are made on first use and live
// as long as the frame; closing one only hides it.
#pragma once

#include <QElapsedTimer>
#include <QString>

#include <vector>

#include "resources/limits.h"

class CalcModel;
class QWidget;
class TTableWin;

class LabelTables {
public:
    explicit LabelTables(QWidget* owner);
    ~LabelTables();
    LabelTables(const LabelTables&) = delete;
    LabelTables& operator=(const LabelTables&) = delete;

    // The table of label 1..26, nullptr until it is first shown.
    TTableWin* table(int label) const;
    // Makes the table of label 1..26 when it has none, then shows it.
    TTableWin* showTable(int label);
    // After a recursion step: one row with the numerator of each target whose
    // table is shown. The display follows now and then during a run and
    // always at its end (runFinished), so that a long run is not slowed down
    // by redrawing.
    void stepDone(const CalcModel& model, const std::vector<int>& targets);
    void runFinished();

    TTableWin* batchWindow() const { return batch_; }
    // The batch window gets text and title, and is shown and made active.
    void showBatch(const QString& title, const QString& text);

private:
    QWidget* owner_;
    TTableWin* tables_[kLabelCount] = {};
    TTableWin* batch_ = nullptr;
    std::vector<TTableWin*> pending_;  // appended to since their last refresh
    QElapsedTimer sinceRefresh_;
};

// The label a View|Table answer names: one letter A..Z in either case,
// blanks around it allowed; 0 for anything else.
int LabelFromText(const QString& text);
