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

    BigInt x = {}, one = {};
    if (BigCopy(&x, &seed->numerator) != 0 || BigFromInt(&one, 1) != 0) {
        BigFree(&x);
        BigFree(&one);
        return Result::kNoMemory;
    }
    Result code = StoreValue(maxLabel, "", &x, &one);
    BigFree(&one);
    NumberValue* maximum = Slot(maxLabel);
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
        } else if (step == kHailOddStep && BigCompareMag(&maximum->numerator, &x) == 1) {
            // Only odd steps can raise the maximum.
            BigInt copy = {};
            if (BigCopy(&copy, &x) != 0) {
                BigFree(&copy);
                code = Result::kNoMemory;
            } else {
                BigFree(&maximum->numerator);
                maximum->numerator = copy;
                stepsToMaximum = steps;
            }
        }
    }
    BigFree(&x);
    NotifyVariable(maxLabel);
    if (Ok(code)) {
        out->steps = steps;
        out->stepsToMaximum = stepsToMaximum;
    }
    return code;
}
