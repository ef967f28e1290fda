// What the modeless list dialogs (dialogs/heron_dlg.h, dialogs/quads_dlg.h)
// share: TListDlg with the bound edits, the buttons "list" and "close", the
// reading of the bounds and the busy flag of a run; controls named "ctl" + id.
#pragma once

#include <QString>

#include <cstdint>
#include <functional>

#include "dialogs/gen_dlg.h"
#include "dialogs/gui_host.h"
#include "resources/result.h"

class QAbstractButton;
class QDialogButtonBox;
class QLineEdit;
class QPushButton;
class QWidget;

// An edit of a bound (29 characters), named "ctl" + id, preset with text.
QLineEdit* ListBoundEdit(QWidget* parent, int id, const QString& preset);
// Names a check box or radio button "ctl" + id.
template <class Button>
Button* ListControl(QWidget* parent, int id, const QString& text) {
    auto* b = new Button(text, parent);
    b->setObjectName(QStringLiteral("ctl%1").arg(id));
    return b;
}
// The buttons "list" (the default) and "close", named so; *list and *close
// receive them.
QDialogButtonBox* ListButtons(QWidget* parent, QPushButton** list, QPushButton** close);

// A bound typed into a list dialog: kOk, or kOutOfBounds when the text is
// not a whole number that fits 32 bits.
Result ReadDialogBound(const QLineEdit* edit, uint32_t* value);

// The base of the list dialogs: edits 211 (min) and 212 (max). While a list
// runs the dialog is busy: "list" and closing do nothing.
class TListDlg : public TGenDlg {
    Q_OBJECT
public:
    QLineEdit* minEdit() const { return min_; }
    QLineEdit* maxEdit() const { return max_; }
    bool busy() const { return busy_; }

    // "list": the run's code, or a refusal of the input (reported by the
    // main window, nothing runs); kOk without a run while busy.
    virtual Result list() = 0;

public slots:
    void reject() override;

protected:
    // host must outlive the dialog.
    TListDlg(QWidget* parent, GuiHost* host, const QString& minPreset, const QString& maxPreset);

    // The buttons "list" (calls list()) and "close", made when the derived
    // dialog calls this, so that they come last in the tab order.
    QDialogButtonBox* makeButtons();
    // Both bounds, then check(min, max): kOk, or the first code, which the
    // main window has reported.
    Result readBounds(uint32_t* min, uint32_t* max,
                      const std::function<Result(uint32_t, uint32_t)>& check);
    // Runs generator through the host with the dialog busy; *summary gets
    // the list's caption (GuiHost::RunList).
    Result runList(const ListGenerator& generator, QString* summary);

    GuiHost* host_;
    QLineEdit* min_;
    QLineEdit* max_;

private:
    bool busy_ = false;
};
