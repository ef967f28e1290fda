#include "support.h"

#include <vector>

Num::Num(const std::string& text) {
    std::vector<char> buf(text.begin(), text.end());
    buf.push_back('\0');
    BigFromText(buf.data(), &v);
}

std::string Text(const BigInt* v) {
    if (!v->limbs) return "(released)";
    const int32_t width = 4 * v->top + 16;
    std::vector<char> buf(static_cast<size_t>(width) + 8);
    BigToText(v, buf.data(), width, 0, -1, 0, 0);
    return buf.data();
}

std::string TestDataPath(const char* name) {
    std::string here = __FILE__;
    return here.substr(0, here.find_last_of('/') + 1) + name;
}
