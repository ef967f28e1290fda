// The frame every list generator shares: the target text with its ceiling,
// the row-formatting helpers, the stop polls and the result codes.
//
// A generator takes its validated inputs, a calculation context for the polls
// and a ListOutput (text plus caption). It answers
//   kOk           the list is complete;
//   kStopped      the user stopped the run: out holds what was written so far,
//                 with the caption counting the rows actually written;
//   kNoMoreRoom   (cyclotomic only) a row did not fit; the text says so;
//   kOutOfBounds, kNothingToShow, kInconsistent   the inputs were refused; out
//                 is left untouched and the caller shows the message.
// Whenever ListOutputShown(code) holds, out is what the list window shows.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "bigint/context.h"
#include "resources/result.h"

struct ListOutput {
    std::string caption;
    std::string text;  // rows separated by "\r\n", as in the list window
    // A list whose next row does not fit keeps offering it until the user
    // stops the run. A front end without a user at the keyboard sets this so
    // that the first refused row ends such a run instead.
    bool endWhenFull = false;
    // Progress text for the main window's caption while the run lasts
    // ("press Q to quit", the polygon search's running count); may be empty.
    std::function<void(const std::string&)> status;
};

inline bool ListOutputShown(Result code) {
    return code == Result::kOk || code == Result::kStopped || code == Result::kNoMoreRoom;
}

// Appends one row (its "\r\n" included) when the text stays within the
// 1,000,000-character ceiling; otherwise changes nothing and answers false.
[[nodiscard]] bool AppendListLine(ListOutput* out, std::string_view row);

// Appends a row like AppendListLine. A row the ceiling refuses is offered
// again after each poll until the user stops the run; the run ends at once
// instead when out->endWhenFull is set or there is no context that could stop
// it. False when the row was not written: the run is over, as stopped.
[[nodiscard]] bool OfferListRow(CalcContext* ctx, ListOutput* out, std::string_view row);

// Pads text on the left with fill up to width, or cuts it to its first width
// characters when it is longer.
std::string PadLeft(int width, std::string_view text, char fill = ' ');

// Appends the eight texts in order; places not needed take "".
void Concat8(std::string* target, std::string_view t1, std::string_view t2 = {},
             std::string_view t3 = {}, std::string_view t4 = {}, std::string_view t5 = {},
             std::string_view t6 = {}, std::string_view t7 = {}, std::string_view t8 = {});

// Clears target unless keep is set, then appends n "-".
void HyphenRule(std::string* target, int n, bool keep);

// Decimal text of a value. Unsigned values print as such: a 32-bit count or
// bound above 2^31 never shows as negative.
std::string Dec(uint32_t v);
std::string Dec(int64_t v);
// Number of decimal digits of v (1 for 0).
int DecDigits(uint64_t v);

// The label of row i of a numbered list of count rows: i right-justified in
// the width of the text of count + 1, then ". ".
std::string NumberedRowLabel(uint32_t i, uint32_t count);

// One poll of the context: the quit key first, then an interrupting action.
inline bool ListStopRequested(CalcContext* ctx) { return ctx != nullptr && ctx->ShouldStop(); }

// Announces a progress text to the front end, if it listens.
void ListStatus(ListOutput* out, const std::string& text);
