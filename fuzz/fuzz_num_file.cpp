// The number-file reader: bytes that decode must save and decode again to the
// same value and notebook, and the saved bytes must be a fixed point.
#include <cstddef>
#include <cstdint>
#include <string>

#include "fuzz/fuzz_support.h"
#include "io/num_file.h"

namespace {

bool SameLimbs(const NumLimbs& a, const NumLimbs& b) {
    return a.limbs == b.limbs && a.negative == b.negative;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    NumFile file;
    if (DecodeNumFile(reinterpret_cast<const char*>(data), size, &file) != Result::kOk) return 0;
    const std::string saved = EncodeNumFile(file);
    NumFile again;
    FUZZ_CHECK(DecodeNumFile(saved.data(), saved.size(), &again) == Result::kOk);
    FUZZ_CHECK(again.label == file.label);
    FUZZ_CHECK(SameLimbs(again.numerator, file.numerator));
    FUZZ_CHECK(SameLimbs(again.denominator, file.denominator));
    FUZZ_CHECK(again.notebook == file.notebook);
    if (file.hasFont) {
        FUZZ_CHECK(std::string(again.font.faceName) == file.font.faceName);
        FUZZ_CHECK(again.fontExtra == file.fontExtra);
    }
    FUZZ_CHECK(EncodeNumFile(again) == saved);
    return 0;
}
