// Runs one list by name for the command line: the generator's text and caption
// land in out, as they would in the list window.
#pragma once

#include <string>
#include <vector>

#include "bigint/bigint.h"
#include "lists/list_frame.h"

// args[0] is the list's name, the rest its arguments as typed:
//   primes N · factor N · divisors N · triples N · alltriples N ·
//   generators N · common N · tri60 N · tri120 N · squares N · cyclotomic N ·
//   heron MIN MAX [right] [isosceles] · ratmed MIN MAX [right] [isosceles] [two] ·
//   perpmed MIN MAX · quads MIN MAX [primitive] [ascending] [distinct|repeats] [zeros] ·
//   polygons N M ROUNDS [SEED] · cubes MAX [dups] · soddy MAX · soddy3 MAX ·
//   soddyline MAX · soddyplane MAX · curvatures [A B C D] MAX · tetra MAX ·
//   cyclic MAX · bicentric MAX
// Answers kOk, or the list's code (kOutOfBounds, kNothingToShow, kStopped, ...;
// kCannotUnderstand for arguments the command does not understand,
// kCouldNotFind for an unknown list) with out left as the run left it. A
// front end without a user at the keyboard sets out->endWhenFull first, so
// that a row that does not fit ends the run instead of waiting for a Q that
// no one will type.
Result RunListCommand(CalcContext* ctx, const std::vector<std::string>& args, ListOutput* out);

// Every list name RunListCommand knows, for completion.
std::vector<std::string> ListCommandNames();
