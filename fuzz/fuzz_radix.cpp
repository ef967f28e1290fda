// The decimal reader and the base conversion. The first byte picks two bases
// (2..16), the rest is the text.
//  - Decimal: text -> value -> text -> value keeps the value, reading the
//    text whole or in two pieces agrees, and the printed text is a fixed
//    point.
//  - Bases: text of base F -> base T -> base F is the text of base F again,
//    and both sides name the same number in decimal.
#include <cstddef>
#include <cstdint>
#include <string>

#include "calc/decimal_read.h"
#include "fuzz/fuzz_support.h"

namespace {

constexpr std::size_t kMaxText = 4096;

void CheckDecimal(const std::string& text, std::size_t split) {
    FuzzValue whole, pieces;
    const Result code = ReadDecimal(text, &whole.v);
    DecimalReader reader;
    Result pieceCode = reader.Add(text.data(), split);
    if (pieceCode == Result::kOk) pieceCode = reader.Add(text.data() + split, text.size() - split);
    if (pieceCode == Result::kOk) pieceCode = reader.Finish(&pieces.v);
    FUZZ_CHECK(code == pieceCode);
    if (code != Result::kOk) return;
    FUZZ_CHECK(SameValue(&whole.v, &pieces.v));
    const std::string printed = DecimalText(&whole.v);
    FuzzValue back;
    FUZZ_CHECK(ReadDecimal(printed, &back.v) == Result::kOk);
    FUZZ_CHECK(SameValue(&whole.v, &back.v));
    FUZZ_CHECK(DecimalText(&back.v) == printed);
}

void CheckBases(BudgetContext* ctx, const std::string& text, int from, int to) {
    std::string there = text, decimal = text, canonical = text;
    ctx->Restart();
    const Result code = ConvertBase(ctx, from, to, &there);
    if (code != Result::kOk) return;
    ctx->Restart();
    if (ConvertBase(ctx, from, 10, &decimal) != Result::kOk) return;
    ctx->Restart();
    if (ConvertBase(ctx, from, from, &canonical) != Result::kOk) return;
    std::string back = there, thereDecimal = there;
    ctx->Restart();
    if (ConvertBase(ctx, to, from, &back) != Result::kOk) return;
    ctx->Restart();
    if (ConvertBase(ctx, to, 10, &thereDecimal) != Result::kOk) return;
    FUZZ_CHECK(back == canonical);
    FUZZ_CHECK(thereDecimal == decimal);
    // The decimal digits name the number the decimal reader reads.
    FuzzValue v;
    if (decimal.empty()) return;  // zero converts to the empty text
    FUZZ_CHECK(ReadDecimal(decimal, &v.v) == Result::kOk);
    FUZZ_CHECK(DecimalText(&v.v) == decimal);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    if (size < 1 || size > kMaxText) return 0;
    const int from = 2 + data[0] % 15;
    const int to = 2 + (data[0] / 15) % 15;
    const std::string text(reinterpret_cast<const char*>(data) + 1, size - 1);
    CheckDecimal(text, text.size() / 2);
    BudgetContext ctx;
    CheckBases(&ctx, text, from, to);
    return 0;
}
