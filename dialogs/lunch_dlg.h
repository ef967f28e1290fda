// TLunch (LUNCH, "today's specials"): five of the fourteen dishes of the
// string table, drawn at random without repeats onto check boxes 271..275,
// and a "take-out" box 276. It is a joke kept on purpose: ok only says
// "kitchen closed today". Every window of the program answers F12 with it.
#pragma once

#include <QList>

#include "dialogs/gen_dlg.h"

class QRandomGenerator;

constexpr int kLunchDishes = 14;
constexpr int kLunchChoices = 5;

class TLunch : public TGenDlg {
    Q_OBJECT
public:
    explicit TLunch(QWidget* parent);

    // kLunchChoices distinct string ids of dishes, in the order drawn.
    static QList<int> DrawDishes(QRandomGenerator* rng);
};

// Shows the lunch dialog through the modal seam; ok answers with message 13.
void RunLunch(QWidget* owner);
