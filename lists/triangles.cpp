#include "lists/triangles.h"

#include <algorithm>

#include "resources/strings.h"

int PerimeterWidth(uint32_t maxPerimeter) {
    return std::max(DecDigits(maxPerimeter), static_cast<int>(std::string(OxString(230)).size()));
}

std::string TriangleCaption(int nounId, uint32_t minPerimeter, uint32_t upper, uint32_t count) {
    std::string caption;
    Concat8(&caption, OxString(nounId), " [", Dec(minPerimeter - 1), " < ", OxString(230), " < ",
            Dec(upper), "] : ");
    return caption + Dec(count);
}
