// TGenDlg: the base of the program's dialogs. It carries the placement rule:
// a dialog given a remembered position opens there, any other one near the
// middle of a typical screen with a small random offset so that stacked
// dialogs stay distinguishable. Either way it is kept on the screen.
#pragma once

#include <QDialog>
#include <QPoint>

class TGenDlg : public QDialog {
    Q_OBJECT
public:
    // remembered: a position kept by the caller (nullptr for none); when
    // given, the dialog writes its last position back there when it closes.
    explicit TGenDlg(QWidget* parent, QPoint* remembered = nullptr);

    // Where a dialog without a remembered position opens.
    static QPoint DefaultPosition();

protected:
    void showEvent(QShowEvent* e) override;
    void done(int r) override;

private:
    QPoint* remembered_;
    bool placed_ = false;
};
