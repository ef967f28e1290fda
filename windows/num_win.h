// TNumWin: the window that shows the value of one label (or the modulus).
//
// The window views a value it does not own: its owner (the main frame, over
// the calculation model) passes the numerator and denominator records and
// calls refill() after every change. Only the section on show is ever turned
// into text, so numbers of millions of digits open at once. The commands that
// go through the whole value (digit frequencies, saving, saving as text) read
// it in place, without a copy, and run through the owner's runner, which
// watches their polls so that Q stops them. Closing the window hides it. It
// owns its notebook and its help window.
#pragma once

#include <QString>

#include <functional>

#include "bigint/context.h"
#include "bigint/record.h"
#include "calc/model.h"
#include "io/logfont.h"
#include "resources/result.h"
#include "windows/num_win_layout.h"
#include "windows/text_win.h"

class TNoteWin;
class THelpWin;

class TNumWin : public TTextWin {
    Q_OBJECT
public:
    // label 1..26 for A..Z or kModulusLabel (calc/model.h); the file name is name + ".num",
    // even when name already ends in ".num". Both records must outlive the
    // window or be replaced through refill() first.
    TNumWin(QWidget* parent, const QString& name, int label, const BigInt* numerator,
            const BigInt* denominator, const LogFont& font);
    ~TNumWin() override;

    // The value changed (or moved): recompute sections and redisplay.
    // Answers kOk, or kNoMoreRoom when a part needs too many sections.
    Result refill(const BigInt* numerator, const BigInt* denominator);

    int label() const { return label_; }
    int displayState() const { return state_; }
    int part() const { return part_; }
    int32_t currentSection() const { return layout_[part_].current; }
    int32_t sectionCount() const { return layout_[part_].count; }
    int32_t lineDigits() const { return lineDigits_; }
    const SectionLayout& layout(int part) const { return layout_[part]; }
    LogFont logFont() const { return font_; }
    uint32_t fontExtra() const { return fontExtra_; }
    void setFontExtra(uint32_t v) { fontExtra_ = v; }

    TNoteWin* notebook() const { return notebook_; }
    // Replaces the notebook's text (how the number was formed).
    void setInscription(const QString& text);

    // Digits per line are normally measured from the font and the width; a
    // fixed value (above 0) overrides that, for a predictable layout.
    void setLineDigits(int32_t digits);

    // Long work over the whole value, given the context to poll.
    using Work = std::function<Result(CalcContext*)>;
    // Runs work for the window and answers its code. The owner runs it
    // watched (Q stops it, other commands wait); without a runner the work
    // runs with a context that never stops.
    using Runner = std::function<Result(const Work&)>;
    void setRunner(Runner run) { runner_ = std::move(run); }

    // Writes the number file: kOk, kCannotSaveFile, or kStopped (Q; the old
    // file left as it was).
    Result saveNumber(const QString& path);

    // The title for the current state (also set as the window title).
    QString titleText() const;

    void command(int id) override;
    bool commandEnabled(int id) override;

    // Where a new number window goes and how big it is.
    static QRect Placement(int label, int32_t digits, const QRect& base);

signals:
    // The window was shown or hidden (the modulus mode follows this).
    void shownChanged(bool shown);

protected:
    void showEvent(QShowEvent* e) override;
    void hideEvent(QHideEvent* e) override;
    void closeEvent(QCloseEvent* e) override;
    void resizeEvent(QResizeEvent* e) override;

private:
    Result relayout();
    void chooseState();
    void display();
    int32_t measuredLineDigits() const;
    const BigInt* shownPart() const { return part_ == 0 ? num_ : den_; }
    void go(int32_t section);
    void jump();
    void digitFrequencies();
    void saveAsText();
    void chooseFont();
    void showHelp(const char* name);
    Result run(const Work& work);
    void reportError(Result code);  // quiet for a stop

    int label_;
    const BigInt* num_;
    const BigInt* den_;
    SectionLayout layout_[2];
    int part_ = 0;
    int state_ = kShowWhole;
    int32_t lineDigits_ = 0;
    int32_t fixedLineDigits_ = 0;
    LogFont font_;
    uint32_t fontExtra_ = 0;
    TNoteWin* notebook_;
    THelpWin* help_ = nullptr;
    Runner runner_;
};
