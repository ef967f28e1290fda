// Where the sections of a table window's text begin. Qt-free.
//
// The first section begins at the start of the text. While the rest from the
// current start holds more than kTableSectionChars characters, the next
// section begins just after the last line feed among the rest's first
// kTableSectionChars characters, so that rows are not split. A rest whose
// first kTableSectionChars characters hold no line feed (a row longer than
// a section) is cut after them, or one before when that would part a CR from
// its LF. No section is longer than kTableSectionChars; long rows make
// shorter ones (rows of 15001 characters give one row per section), so the
// list of starts has no fixed size.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

std::vector<std::size_t> TableSectionStarts(std::u16string_view text);
