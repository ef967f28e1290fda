// The hailstone sequence x -> x/2 (even) or 3x+1 (odd) from a seed variable
// down to 1, keeping its largest term in a second variable.
#include "calc/model.h"

Result CalcModel::Hailstone(int seedLabel, int maxLabel, HailResult* out) {
    const NumberValue* seed = Variable(seedLabel);
    if (!seed) return Result::kCouldNotFind;
    if (seedLabel == maxLabel) return Result::kInconsistent;
    if (maxLabel < 1 || maxLabel > kLabelCount) return Result::kOutOfBounds;
    // 0 stays 0 and negative seeds fall into cycles: neither reaches 1.
    if (BigIsZero(&seed->numerator) || seed->numerator.negative) return Result::kPositiveValue;

    // The largest term is kept here and stored at the end (also after a stop,
    // to show the run so far); memory running out leaves the label as it was.
    BigInt x = {}, maximum = {}, one = {};
    if (BigCopy(&x, &seed->numerator) != 0 || BigCopy(&maximum, &x) != 0 ||
        BigFromInt(&one, 1) != 0) {
        BigFree(&x);
        BigFree(&maximum);
        BigFree(&one);
        return Result::kNoMemory;
    }
    Result code = Result::kOk;
    int steps = 0, stepsToMaximum = 0;
    while (Ok(code) && !BigIsOne(&x)) {
        // Not in the step itself: a seed of millions of digits takes long.
        if (ctx_->ShouldStop()) {
            code = Result::kStopped;
            break;
        }
        ++steps;
        const Result step = BigHail(ctx_, &x);
        if (IsError(step)) {
            code = step;
        } else if (step == kHailOddStep && BigCompareMag(&maximum, &x) == 1) {
            // Only odd steps can raise the maximum.
            BigInt copy = {};
            if (BigCopy(&copy, &x) != 0) {
                BigFree(&copy);
                code = Result::kNoMemory;
            } else {
                BigFree(&maximum);
                maximum = copy;
                stepsToMaximum = steps;
            }
        }
    }
    BigFree(&x);
    if (Ok(code) || code == Result::kStopped) {
        const Result stored = StoreValue(maxLabel, "", &maximum, &one);
        if (!Ok(stored)) code = stored;
    }
    BigFree(&maximum);
    BigFree(&one);
    if (Ok(code)) {
        out->steps = steps;
        out->stepsToMaximum = stepsToMaximum;
    }
    return code;
}
