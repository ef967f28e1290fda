// Batch calculation: one formula in A and B over every pair of values from
// two comma-separated lists, written row by row to a text.
#include <new>
#include <vector>

#include "calc/decimal_read.h"
#include "calc/model.h"
#include "resources/string_ids.h"
#include "resources/strings.h"

namespace {

constexpr int kBatchLineLength = 72;

std::string WithoutSpaces(const std::string& text) {
    std::string out;
    for (char c : text)
        if (c != ' ') out.push_back(c);
    return out;
}

// The items of a list that ends with a comma, as typed.
std::vector<std::string> SplitList(const std::string& list) {
    std::vector<std::string> items;
    size_t start = 0;
    for (size_t comma = list.find(','); comma != std::string::npos; comma = list.find(',', start)) {
        items.push_back(list.substr(start, comma - start));
        start = comma + 1;
    }
    return items;
}

// A or B during a batch: either an existing variable whose numerator is kept
// and given back, or a temporary one (value 1) that is removed afterwards.
// A copy that failed holds 1 and is never given back.
struct BatchVariable {
    bool temporary = false;
    bool kept = false;
    BigInt copy = {};
};

}  // namespace

Result CalcModel::Batch(const std::string& formula, const std::string& list1,
                        const std::string& list2, BatchResult* out) {
    out->shown = false;
    out->text.clear();
    // Everything that can fail for want of memory before a variable is
    // touched: the lists, the page, the title, the temporaries' records.
    std::vector<std::string> firstItems, secondItems;
    std::vector<char> page;
    std::string title;
    std::unique_ptr<NumberValue> temporaries[2];
    try {
        std::string first = WithoutSpaces(list1);
        std::string second = WithoutSpaces(list2);
        if (first.empty() || second.empty()) return Result::kInconsistent;
        Result code = Compile(formula);
        if (!Ok(code)) return code;
        if (first.back() != ',') first += ',';
        if (second.back() != ',') second += ',';
        firstItems = SplitList(first);
        secondItems = SplitList(second);
        // A page of kTextBufferChars characters, two more per line break.
        page.resize(kTextBufferChars + 2 * (kTextBufferChars / kBatchLineLength + 2) + 1);
        title = std::string(OxString(kStrBatch)) + " [" + formula + "]";
        for (int i = 0; i < 2; ++i)
            if (!slots_[i]) temporaries[i] = std::make_unique<NumberValue>();
    } catch (const std::bad_alloc&) {
        tree_.reset();
        return Result::kNoMemory;
    }

    // The variables are changed and given back without notifying anyone: to
    // the rest of the program they never changed.
    Result code = Result::kOk;
    BatchVariable vars[2];
    for (int i = 0; i < 2; ++i) {
        std::unique_ptr<NumberValue>& slot = slots_[i];
        if (slot) {
            vars[i].kept = BigCopy(&vars[i].copy, &slot->numerator) == 0;
            if (!vars[i].kept) code = Result::kNoMemory;
        } else {
            vars[i].temporary = true;
            slot = std::move(temporaries[i]);
            // Every pair replaces the numerator before it is read.
            if (BigFromInt(&slot->numerator, 1) != 0 || BigFromInt(&slot->denominator, 1) != 0)
                code = Result::kNoMemory;
        }
    }

    for (const std::string& a : firstItems) {
        for (const std::string& b : secondItems) {
            if (code == Result::kNoMemory) break;
            BigInt va = {}, vb = {};
            code = ReadDecimal(a, &va);
            if (Ok(code)) code = ReadDecimal(b, &vb);
            if (!Ok(code)) {
                BigFree(&va);
                BigFree(&vb);
                continue;
            }
            // Only the numerators are replaced; denominators stay.
            BigFree(&slots_[0]->numerator);
            slots_[0]->numerator = va;
            BigFree(&slots_[1]->numerator);
            slots_[1]->numerator = vb;
            ExprNode* root = tree_.get();
            code = Evaluate(ctx_, *this, root);
            if (Ok(code)) {
                int32_t digits = BigTextLength(&root->numerator);
                if (digits < kTextBufferChars &&
                    digits + static_cast<int64_t>(out->text.size()) < kTextBufferChars) {
                    BigToText(&root->numerator, page.data(), kTextBufferChars, kBatchLineLength, -1,
                              0, 0);
                    try {
                        out->text += "A=" + a + ", B=" + b + "\r\n" + page.data() + "\r\n\r\n";
                    } catch (const std::bad_alloc&) {
                        code = Result::kNoMemory;
                    }
                }
            }
            ReleaseValues(root);
        }
    }
    out->title.swap(title);
    out->shown = true;

    for (int i = 0; i < 2; ++i) {
        if (vars[i].temporary) {
            slots_[i].reset();
        } else if (vars[i].kept) {
            BigFree(&slots_[i]->numerator);
            slots_[i]->numerator = vars[i].copy;
        } else {
            // No pair ran (the first failure ends the loops), so the slot
            // still holds the user's value.
            BigFree(&vars[i].copy);
        }
    }
    tree_.reset();
    // Deliberately only the last pair's code: an earlier failure is
    // forgotten when a later pair succeeds.
    return code;
}
