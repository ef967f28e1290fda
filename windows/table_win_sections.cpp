#include "windows/table_win_sections.h"

#include "resources/limits.h"

std::vector<std::size_t> TableSectionStarts(std::u16string_view text) {
    constexpr std::size_t kSection = kTableSectionChars;
    std::vector<std::size_t> starts{0};
    std::size_t start = 0;
    while (text.size() - start > kSection) {
        const std::size_t lf = text.substr(start, kSection).rfind(u'\n');
        std::size_t next = start + kSection;
        if (lf != std::u16string_view::npos)
            next = start + lf + 1;
        else if (text[next - 1] == u'\r' && text[next] == u'\n')
            --next;
        starts.push_back(next);
        start = next;
    }
    return starts;
}
