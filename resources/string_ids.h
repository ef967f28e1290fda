// The ids of the string table's entries that the desktop program shows
// (OxString in resources/strings.h), one name each, grouped by where they
// appear. The numbers are the table's and never change; a run of ids that a
// dialog walks through (the about text, the lunch dishes, the quadruples'
// choices) is named by its first entry.
#pragma once

// Shared captions, prompts and buttons.
constexpr int kStrCareful = 2;         // "careful!"
constexpr int kStrInput = 5;           // "input"
constexpr int kStrOverwrite = 13;      // "overwrite existing file?"
constexpr int kStrClose = 44;          // "close"
constexpr int kStrCalculate = 45;      // "calculate"
constexpr int kStrHmm = 62;            // "hmm ...", the caption of error messages
constexpr int kStrPressQToQuit = 601;  // the caption while a computation runs

// The main window and its number windows.
constexpr int kStrOrdix = 800;          // "Ordix"
constexpr int kStrModulus = 206;        // "modulus"
constexpr int kStrNumber = 270;         // "number", the name of a new number window
constexpr int kStrDigits = 801;         // "digits"
constexpr int kStrSection = 802;        // "section"
constexpr int kStrNumerator = 803;      // "num"
constexpr int kStrDenominator = 804;    // "den"
constexpr int kStrDigitsPerLine = 805;  // "digits per line"
constexpr int kStrNumberFiles = 806;    // "Number files (*.NUM)|*.num"
constexpr int kStrLatexSaved = 809;     // "LaTeX file saved", a pasted number's notebook
constexpr int kStrTable = 812;          // "table"
constexpr int kStrLabelPrompt = 813;    // "label (A ... Z)"
constexpr int kStrTargetNumber = 209;   // "target number"

// Text windows, notebooks, help, search.
constexpr int kStrSearchFor = 700;        // "search for"
constexpr int kStrLengthenHyphens = 701;  // "lengthen hyphens"
constexpr int kStrMinusSignCode = 702;    // "ASCII value of new minus sign"
constexpr int kStrSaveChangesTo = 703;    // "save changes to "
constexpr int kStrNotebook = 704;         // "notebook"
constexpr int kStrSearching = 705;        // "searching"
constexpr int kStrSearchHelp = 706;       // how Search and Next work
constexpr int kStrOrdixHelp = 707;        // "ordix help"
constexpr int kStrTextFiles = 708;        // "Text Files (*.TXT)|*.txt"
constexpr int kStrTableTarget = 760;      // "target number", the table window's
constexpr int kStrSections = 761;         // "sections"
constexpr int kStrSectionsHelp = 762;     // how a long table is cut into sections

// Printing.
constexpr int kStrCannotPrint = 763;      // "cannot print"
constexpr int kStrPrintFormat = 764;      // "print format (cm)"
constexpr int kStrPrintWidth = 765;       // "width"
constexpr int kStrPrintUnit = 766;        // "x unit"
constexpr int kStrPrintOffset = 767;      // "offset of upper left corner"
constexpr int kStrPrintHorizontal = 768;  // "hori"
constexpr int kStrPrintVertical = 769;    // "vert"
constexpr int kStrPrintFrame = 770;       // "frame image"
constexpr int kStrColorPrinter = 771;     // "color printer"

// About and lunch.
constexpr int kStrTodaysSpecials = 709;   // "today's specials"
constexpr int kStrTakeOut = 710;          // "take-out"
constexpr int kStrFirstDish = 711;        // "hummus melt", the first of the dishes
constexpr int kStrAboutOrdix = 730;       // "about Ordix"
constexpr int kStrVersionOpen = 731;      // " [v 1."
constexpr int kStrSystems = 732;          // "Windows 95/98/ME/2K/XP/Vista/7"
constexpr int kStrVersionCompiled = 733;  // "version compiled"
constexpr int kStrCompileMonth = 734;     // "September"
constexpr int kStrNoticeFirst = 735;      // the notice's first line, 735..741
constexpr int kStrNoticeThird = 737;      // a blank line follows it
constexpr int kStrNoticeLast = 741;       // "Reports of wrong results are most welcome."
constexpr int kStrComments = 742;         // "Comments and suggestions welcome"

// Calculate, Recursion, Batch, Hailstone, Base conversion.
constexpr int kStrCalculation = 205;        // "calculation"
constexpr int kStrHowManyIterations = 207;  // "how many iterations?"
constexpr int kStrRecursion = 266;          // "recursion", also its first radio button
constexpr int kStrCollatz = 275;            // "Collatz calculation"
constexpr int kStrBatch = 278;              // "batch calculation"
constexpr int kStrNameResult = 807;         // "name result"
constexpr int kStrCreate = 808;             // "create"
constexpr int kStrFormulaPreset = 810;      // "2^100"
constexpr int kStrCondition = 900;          // "condition"
constexpr int kStrEnter = 901;              // "enter"
constexpr int kStrDelete = 902;             // "delete"
constexpr int kStrDeleteOne = 903;          // "one"
constexpr int kStrDeleteAll = 904;          // "all"
constexpr int kStrHelp = 905;               // "help"
constexpr int kStrTermZero = 906;           // "= term 0"
constexpr int kStrOneIsTerm = 907;          // "1 = term"
constexpr int kStrIsMaximum = 908;          // "= maximum"
constexpr int kStrMaximumIsTerm = 909;      // "maximum = term"
constexpr int kStrStepsUnknown = 910;       // " ...."
constexpr int kStrMaximumUnknown = 911;     // " ..."
constexpr int kStrBaseConversion = 912;     // "base conversion"
constexpr int kStrConvert = 913;            // "convert"
constexpr int kStrBaseA = 914;              // "A ="
constexpr int kStrBaseB = 915;              // "B ="
constexpr int kStrBatchFormula = 916;       // "A^B"
constexpr int kStrBatchFirst = 917;         // "2"
constexpr int kStrBatchSecond = 918;        // "10,20,40,80,100"
constexpr int kStrConvInput = 919;          // "100001"
constexpr int kStrConvBases = 920;          // "33"

// The list dialogs.
constexpr int kStrQuadruples = 216;            // "Pythagorean quadruples"
constexpr int kStrLength = 227;                // "length"
constexpr int kStrMaxLength = 229;             // "max length"
constexpr int kStrHeronian = 248;              // "Heronian triangles"
constexpr int kStrRationalMedians = 249;       // "rational medians"
constexpr int kStrPerpendicularMedians = 251;  // "perpendicular medians"
constexpr int kStrList = 820;                  // "list"
constexpr int kStrMinPerimeter = 821;          // "min perimeter"
constexpr int kStrMaxPerimeter = 822;          // "max perimeter"
constexpr int kStrAboveEleven = 823;           // " > 11"
constexpr int kStrBelow65536 = 824;            // "< 65536"
constexpr int kStrAboveFiftyThree = 825;       // " > 53"
constexpr int kStrRightTriangles = 826;        // "right triangles"
constexpr int kStrIsosceles = 827;             // "isosceles triangles"
constexpr int kStrAtLeastTwo = 828;            // "at least two"
constexpr int kStrMinLength = 829;             // "min length"
constexpr int kStrAboveTwo = 830;              // " > 2"
constexpr int kStrLengthBelow65536 = 831;      // " < 65536"
constexpr int kStrFirstQuadChoice = 832;       // "allow repeated entries", then 833..835
constexpr int kStrAscending = 836;             // "display a < b < c"
constexpr int kStrPrimitiveOnly = 837;         // "list only primitive examples"
constexpr int kStrAllowZeros = 838;            // "allow zeros"
constexpr int kStrAllowDuplicates = 839;       // "allow duplicates"

// The lists: the one-input dialogs' captions and prompts, the nouns of the
// summary captions and the column headers (also shown by ordix-cli).
constexpr int kStrPrimitive = 194;           // "primitive"
constexpr int kStrLargestPrimeAtMost = 195;  // "largest prime at most"
constexpr int kStrDistinct = 196;            // "distinct"
constexpr int kStrRepeats = 197;             // "repeats"
constexpr int kStrPrimeFactorization = 198;  // "prime factorization of"
constexpr int kStrDivisorList = 199;         // "divisor list"
constexpr int kStrDivisorSum = 200;          // "divisor sum"
constexpr int kStrPrimes = 208;              // "primes"
constexpr int kStrSumOfTwoSquares = 210;     // "sum of two squares"
constexpr int kStrSumsOfTwoSquares = 211;    // "sums of two squares"
constexpr int kStrTriples = 213;             // "Pythagorean triples"
constexpr int kStrCommonNumber = 214;        // "common number"
constexpr int kStrMaxHypotenuse = 218;       // "maximum hypotenuse"
constexpr int kStrTopGenerator = 219;        // "top generator"
constexpr int kStrPrimitive60 = 220;         // "primitive 60-degree triangles"
constexpr int kStrPrimitive120 = 221;        // "primitive 120-degree triangles"
constexpr int kStrFound = 224;               // "found"
constexpr int kStrSquaredLength = 225;       // "squared length"
constexpr int kStrNumberOfSides = 226;       // "number of sides"
constexpr int kStrPerimeter = 230;           // "perim", a column header
constexpr int kStrArea = 231;                // "area"
constexpr int kStrSides = 236;               // "sides"
constexpr int kStrCyclotomic = 250;          // "cyclotomic polynomial"
constexpr int kStrMaxGenerator = 256;        // "maximum generator"
constexpr int kStrHypotenuse = 257;          // "hypotenuse"
constexpr int kStrMedians = 263;             // "medians"
constexpr int kStrExponent = 267;            // "expo", a column header
constexpr int kStrCoefficient = 268;         // "coef", a column header
constexpr int kStrIndex = 271;               // "index"
constexpr int kStrPolygons = 272;            // "polygons"

// The lists added by this program: nouns (also the dialogs' captions) and prompts.
constexpr int kStrLatticeCubes = 940;         // "lattice cubes"
constexpr int kStrSoddyCircles = 941;         // "Soddy circles"
constexpr int kStrSoddySpheres = 942;         // "Soddy spheres"
constexpr int kStrCirclesOnLine = 943;        // "circles on a line"
constexpr int kStrSpheresOnPlane = 944;       // "spheres on a plane"
constexpr int kStrCurvatures = 945;           // "curvatures"
constexpr int kStrRationalTetrahedra = 946;   // "rational tetrahedra"
constexpr int kStrInscribedQuads = 947;       // "inscribed quadrilaterals"
constexpr int kStrCircumscribedQuads = 948;   // "circumscribed quadrilaterals"
constexpr int kStrLargestNegCurvature = 949;  // "largest |curvature| of the outer one"
constexpr int kStrLargestCurvature = 950;     // "largest curvature"
constexpr int kStrLargestEdge = 951;          // "largest edge"
constexpr int kStrLargestPerimeter = 952;     // "largest perimeter"
constexpr int kStrDescartesQuadruple = 953;   // "Descartes quadruple"
// Column headers and caption words of those lists.
constexpr int kStrDuplicates = 955;       // "duplicates", in the caption
constexpr int kStrCurvatureColumn = 970;  // "curvature"
constexpr int kStrCirclesColumn = 971;    // "circles"
constexpr int kStrVolume = 975;           // "volume"
constexpr int kStrEdge = 976;             // "edge"
constexpr int kStrInradius = 980;         // "inradius"
