#include "lists/triangles.h"

#include <algorithm>

#include "resources/string_ids.h"
#include "resources/strings.h"

int PerimeterWidth(uint32_t maxPerimeter) {
    return std::max(DecDigits(maxPerimeter),
                    static_cast<int>(std::string(OxString(kStrPerimeter)).size()));
}

std::string TriangleCaption(int nounId, uint32_t minPerimeter, uint32_t upper, uint32_t count) {
    std::string caption;
    Concat8(&caption, OxString(nounId), " [", Dec(minPerimeter - 1), " < ", OxString(kStrPerimeter),
            " < ", Dec(upper), "] : ");
    return caption + Dec(count);
}
