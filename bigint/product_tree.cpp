// The range product (c + 1) × … × n by a product tree over the factors.
//
// The factors are consecutive, so neighbours have nearly equal sizes: the
// list product (product_list.cpp) packs them into words below 10^15 (two
// factors a word up to about 3·10^7, one above), fills leaves of a room of
// limbs and joins blocks whose products fill their power-of-two transforms.
// No list is stored: factor i is c + 1 + i.
//
// Allocation: leaf arrays and records from alloc.h; a refused one answers code 3.
#include "bigint/fast_paths.h"
#include "bigint/poll_clock.h"
#include "bigint/product_list.h"

namespace {

class RangeList : public FactorList {
public:
    RangeList(int32_t c, int32_t n) : c_(c), n_(n) {}
    size_t Count() const override { return size_t(n_ - c_); }
    uint64_t At(size_t i) const override { return uint64_t(c_) + 1 + i; }

private:
    int32_t c_, n_;
};

}  // namespace

Result RangeProductTree(CalcContext* ctx, int32_t c, int32_t n, BigInt* result) {
    PollClock clk(ctx);
    return ListProduct(clk, RangeList(c, n), result);
}
