// The program's string table: captions, prompts and messages by number.
// Messages for a result code k are entry 400 + k.
#pragma once

// The text of entry id, or "" when the table has none.
const char* OxString(int id);
// The message for result code k (entry 400 + k; -1 reads as "interrupted").
const char* OxMessage(int code);

// For the table's own checks: the number of entries and the id of entry i.
int OxStringCount();
int OxStringIdAt(int i);
