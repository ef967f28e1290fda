// The program's string table: captions, prompts and messages by number.
// Messages for a result code k are entry 400 + k (ResultMessage in
// resources/result.h).
#pragma once

// The text of entry id, or "" when the table has none.
const char* OxString(int id);

// For the table's own checks: the number of entries and the id of entry i.
int OxStringCount();
int OxStringIdAt(int i);
