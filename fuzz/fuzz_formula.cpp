// The formula compiler and evaluator: the input is one formula, compiled and
// evaluated with the modulus off and on while A, B and C hold values. A whole
// result must print and read back to the same value.
#include <cstddef>
#include <cstdint>
#include <string>

#include "calc/decimal_read.h"
#include "calc/model.h"
#include "fuzz/fuzz_support.h"

namespace {

// Formulas are typed into a dialog: longer texts only repeat what shorter
// ones already reach, at the cost of runs.
constexpr std::size_t kMaxFormula = 2048;

void Store(CalcModel* model, int label, const char* numerator, const char* denominator) {
    std::string n = numerator, d = denominator;
    FuzzValue nv, dv;
    if (BigFromText(n.data(), &nv.v) != 0 || BigFromText(d.data(), &dv.v) != 0) return;
    (void)model->StoreValue(label, n, &nv.v, &dv.v);
}

void CheckWholeResult(const NumberValue& value) {
    if (!BigIsOne(&value.denominator) || value.denominator.negative) return;
    if (value.numerator.top > 50000) return;  // the round trip costs more than the run
    const std::string text = DecimalText(&value.numerator);
    FuzzValue back;
    FUZZ_CHECK(ReadDecimal(text, &back.v) == Result::kOk);
    FUZZ_CHECK(SameValue(&back.v, &value.numerator));
    FUZZ_CHECK(DecimalText(&back.v) == text);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    if (size > kMaxFormula) return 0;
    const std::string formula(reinterpret_cast<const char*>(data), size);
    BudgetContext ctx;
    CalcModel model(&ctx);
    Store(&model, 1, "123456789012345678901234567890", "1");
    Store(&model, 2, "-97", "1");
    Store(&model, 3, "22", "7");
    FuzzValue m;
    if (BigFromInt(&m.v, 1000003) != 0 || model.SetModulus(&m.v) != 0) return 0;
    for (bool modular : {false, true}) {
        model.SetModulusMode(modular);
        ctx.Restart();
        NumberValue value;
        if (model.EvaluateFormula(formula, &value) == Result::kOk) CheckWholeResult(value);
    }
    return 0;
}
