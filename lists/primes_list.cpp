#include "lists/list_generators.h"
#include "lists/list_inputs.h"
#include "lists/prime_table.h"
#include "resources/string_ids.h"
#include "resources/strings.h"

namespace {
// Below this many primes the list is numbered: 67401 numbered rows take
// 999,997 characters, 67402 would pass the ceiling.
constexpr uint32_t kNumberingThreshold = 67402;
}  // namespace

Result ListPrimes(CalcContext* ctx, uint32_t bound, ListOutput* out) {
    if (Result code = CheckListValue(ListKind::primes, bound)) return code;
    const std::vector<uint32_t>& table = ListPrimeTable();
    uint32_t count = 0;
    while (count < table.size() && table[count] <= bound) ++count;
    const bool numbered = count < kNumberingThreshold;

    ListStatus(out, OxString(kStrPressQToQuit));
    out->text.clear();
    uint32_t written = 0;
    bool stopped = false;
    while (written < count) {
        std::string row;
        if (numbered) row = NumberedRowLabel(written + 1, count);
        Concat8(&row, Dec(table[written]), "\r\n");
        // A row that does not fit is offered again after the poll.
        bool appended = AppendListLine(out, row);
        if (appended) ++written;
        if (written == count) break;
        if (ListStopRequested(ctx) || (!appended && out->endWhenFull)) {
            stopped = true;
            break;
        }
    }
    out->caption = Dec(written) + " " + OxString(kStrPrimes);
    return stopped ? Result::kStopped : Result::kOk;
}
