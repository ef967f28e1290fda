// What each list asks of the user: dialog caption, prompt, default and input
// length, and the checks of the values typed. The desktop dialogs and the
// command line both use these, so bounds live in one place.
#pragma once

#include <cstdint>
#include <string>

#include "lists/list_random.h"
#include "resources/result.h"

// The lists asked for through the one-input dialog.
enum class ListKind {
    primes,
    factor,
    divisors,
    primitiveTriples,
    allTriples,
    generators,
    commonEntry,
    tri60,
    tri120,
    twoSquares,
    cyclotomic,
    latticeCubes,  // the bound of the cube state of the quadruples dialog
    soddyCircles,
    soddySpheres,
    soddyLine,
    soddyPlane,
    tetrahedra,
    cyclicQuads,
    bicentricQuads,
};

struct ListDialog {
    int menuId;
    int captionId;           // string table entry of the dialog caption
    int promptId;            // string table entry of the prompt
    const char* promptTail;  // appended to the prompt (the bound as advice)
    int maxInput;            // input length the dialog passes, terminator included
};

const ListDialog& ListDialogOf(ListKind kind);
std::string ListDialogCaption(ListKind kind);
std::string ListDialogPrompt(ListKind kind);
// The preset text of the dialog; random defaults draw from rng. The
// cyclotomic index is the main window's remembered one (kCyclotomicFirstIndex
// before the first use).
std::string ListDialogDefault(ListKind kind, ListRandom* rng);
constexpr uint32_t kCyclotomicFirstIndex = 105;

// Reads an unsigned decimal number, blanks around it allowed. False for text
// that is not a number or does not fit 32 bits.
[[nodiscard]] bool ParseListUnsigned(const std::string& text, uint32_t* value);
// The runtime's loose conversion: leading blanks, then digits as far as they
// go, saturating at 4294967295; anything else reads as 0.
uint32_t ReadListUnsignedLoose(const std::string& text);

// The check of a one-input value: kOk, then for a value below the range
// kNothingToShow (the triple and triangle lists) or kOutOfBounds (the others),
// above it kOutOfBounds. Factoring and divisors take big-integer text: see
// ReadFactorInput.
Result CheckListValue(ListKind kind, uint32_t value);
// Parse and check: kOutOfBounds for text that is not a number, then CheckListValue.
Result ReadListValue(ListKind kind, const std::string& text, uint32_t* value);

// The curvature list's two-input dialog: the quadruple typed as four signed
// integers separated by blanks or commas, and the largest curvature listed.
std::string CurvatureQuadruplePrompt();  // "Descartes quadruple"
std::string CurvatureBoundPrompt();      // "largest curvature" and its bound
constexpr const char* kCurvatureQuadruplePreset = "-1 2 2 3";
constexpr const char* kCurvatureBoundPreset = "1000";
constexpr int kCurvatureInputChars = 60;
constexpr int64_t kCurvatureInputMax = 2147483647;  // |k| of a quadruple typed
// An integral packing's curvatures fall in at most 8 residue classes mod 24,
// so up to this bound a complete list has at most 33342 rows of 20
// characters and always fits the list window.
constexpr uint32_t kCurvatureBoundMax = 100000;
// kOutOfBounds for text that is not four integers within ±kCurvatureInputMax.
// Whether they form a Descartes quadruple is the generator's check.
Result ReadDescartesQuadruple(const std::string& text, int64_t k[4]);
// kOutOfBounds unless 1 <= bound <= kCurvatureBoundMax.
Result CheckCurvatureBound(uint32_t bound);

// The two-bound dialogs of the triangle lists and the quadruples, with the
// presets of the triangle dialogs (the perpendicular-median dialog presets 54).
constexpr uint32_t kPerimeterPresetMin = 12;
constexpr uint32_t kPerimeterPresetMax = 1000;
constexpr uint32_t kPerpendicularPresetMin = 54;
constexpr uint32_t kPerimeterMin = 12;
constexpr uint32_t kPerimeterMax = 65535;
constexpr uint32_t kQuadLengthMin = 3;
constexpr uint32_t kQuadLengthMax = 65535;
// kInconsistent when max < min, kOutOfBounds when outside the range, else kOk.
Result CheckPerimeterBounds(uint32_t minPerimeter, uint32_t maxPerimeter);
Result CheckQuadBounds(uint32_t minLength, uint32_t maxLength);

// The polygon search's two-input dialog (caption: kStrInput): prompts and presets.
std::string PolygonLengthPrompt();  // "squared length < 4294967296"
std::string PolygonSidesPrompt();   // "number of sides (6, 8, 10, 12)"
constexpr const char* kPolygonLengthPreset = "32045";
constexpr const char* kPolygonSidesPreset = "6";
// The polygon search's two inputs: kOutOfBounds unless N >= 5 and m is 6, 8, 10 or 12.
Result CheckPolygonInputs(uint32_t squaredLength, uint32_t sides);
