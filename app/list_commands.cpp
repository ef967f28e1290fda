#include "app/list_commands.h"

#include <QDialog>
#include <QWidget>

#include <string>

#include "app/placement.h"
#include "dialogs/heron_dlg.h"
#include "dialogs/modal.h"
#include "dialogs/quads_dlg.h"
#include "dialogs/ui_text.h"
#include "lists/list_generators.h"
#include "resources/string_ids.h"
#include "windows/table_win.h"
#include "windows/text_win.h"

namespace {

constexpr int kPolygonChars = 19;
constexpr int kFactorFont = 2;  // the font table's Courier New 10
// Where the two windows first open below the frame (app/placement.h).
constexpr int kListStep = 0;
constexpr int kFactorStep = 2;

// The lists asked for with the one-input dialog. A list of one number reads
// it (and is refused) before it runs; Factor, Divisors and Two squares read
// the text themselves.
struct MenuList {
    int id;
    ListKind kind;
    ListTarget target;
    Result (*byValue)(CalcContext*, uint32_t, ListOutput*);
    Result (*byText)(CalcContext*, const std::string&, ListOutput*);
};

const MenuList kMenuLists[] = {
    {kCmdPrimes, ListKind::primes, ListTarget::list, ListPrimes, nullptr},
    {kCmdFactor, ListKind::factor, ListTarget::factorization, nullptr, ListFactor},
    {kCmdDivisors, ListKind::divisors, ListTarget::list, nullptr, ListDivisors},
    {kCmdPrimitiveTriples, ListKind::primitiveTriples, ListTarget::list,
     [](CalcContext* c, uint32_t n, ListOutput* o) { return ListHypotenuseTriples(c, n, true, o); },
     nullptr},
    {kCmdAllTriples, ListKind::allTriples, ListTarget::list,
     [](CalcContext* c, uint32_t n, ListOutput* o) {
         return ListHypotenuseTriples(c, n, false, o);
     },
     nullptr},
    {kCmdGenerators, ListKind::generators, ListTarget::list, ListTripleGenerators, nullptr},
    {kCmdCommonEntry, ListKind::commonEntry, ListTarget::list, ListCommonEntry, nullptr},
    {kCmd60Degrees, ListKind::tri60, ListTarget::list,
     [](CalcContext* c, uint32_t n, ListOutput* o) { return ListAngleTriangles(c, n, false, o); },
     nullptr},
    {kCmd120Degrees, ListKind::tri120, ListTarget::list,
     [](CalcContext* c, uint32_t n, ListOutput* o) { return ListAngleTriangles(c, n, true, o); },
     nullptr},
    // The number is taken as the runtime's conversion gives it, unchecked.
    {kCmdTwoSquares, ListKind::twoSquares, ListTarget::factorization, nullptr,
     [](CalcContext*, const std::string& t, ListOutput* o) {
         return ListTwoSquares(ReadListUnsignedLoose(t), o);
     }},
    {kCmdCyclotomic, ListKind::cyclotomic, ListTarget::list, ListCyclotomic, nullptr},
    {kCmdSoddyCircles, ListKind::soddyCircles, ListTarget::list, ListSoddyCircles, nullptr},
    {kCmdSoddySpheres, ListKind::soddySpheres, ListTarget::list, ListSoddySpheres, nullptr},
    {kCmdSoddyLine, ListKind::soddyLine, ListTarget::list, ListSoddyLine, nullptr},
    {kCmdSoddyPlane, ListKind::soddyPlane, ListTarget::list, ListSoddyPlane, nullptr},
    {kCmdTetrahedra, ListKind::tetrahedra, ListTarget::list, ListRationalTetrahedra, nullptr},
    {kCmdInscribedQuads, ListKind::cyclicQuads, ListTarget::list, ListCyclicQuadrilaterals,
     nullptr},
    {kCmdCircumscribedQuads, ListKind::bicentricQuads, ListTarget::list,
     ListBicentricQuadrilaterals, nullptr},
};

const MenuList* FindMenuList(int id) {
    for (const MenuList& m : kMenuLists)
        if (m.id == id) return &m;
    return nullptr;
}

}  // namespace

ListCommands::ListCommands(GuiHost* host, CalcContext* ctx) : host_(host), ctx_(ctx) {}

ListCommands::~ListCommands() {
    delete heron_;
    delete rational_;
    delete perpendicular_;
    delete quads_;
    delete list_;
    delete factor_;
}

bool ListCommands::Handles(int id) {
    return FindMenuList(id) != nullptr || id == kCmdPolygons || id == kCmdCurvatures ||
           (id >= kCmdQuadruples && id <= kCmdLatticeCubes);
}

void ListCommands::command(int id) {
    if (FindMenuList(id))
        askOneInput(id);
    else if (id == kCmdPolygons)
        askPolygons();
    else if (id == kCmdCurvatures)
        askCurvatures();
    else
        showDialog(id);
}

void ListCommands::askOneInput(int id) {
    const MenuList& m = *FindMenuList(id);
    QWidget* main = host_->MainWindow();
    QString text = m.kind == ListKind::cyclotomic
                       ? QString::number(cyclotomicIndex_)
                       : QString::fromStdString(ListDialogDefault(m.kind, &SharedListRandom()));
    // The dialog's length counts a terminator.
    const int chars = ListDialogOf(m.kind).maxInput - 1;
    if (!TheModal().oneInput(main, QString::fromStdString(ListDialogCaption(m.kind)),
                             QString::fromStdString(ListDialogPrompt(m.kind)), &text, chars))
        return;
    const std::string typed = text.toStdString();
    ListGenerator generator;
    if (m.byValue) {
        uint32_t value = 0;
        if (const Result code = ReadListValue(m.kind, typed, &value)) {
            ShowError(main, code);
            return;
        }
        if (m.kind == ListKind::cyclotomic) cyclotomicIndex_ = value;
        generator = [f = m.byValue, value](CalcContext* c, ListOutput* o) {
            return f(c, value, o);
        };
    } else {
        generator = [f = m.byText, typed](CalcContext* c, ListOutput* o) { return f(c, typed, o); };
    }
    (void)run(m.target, generator, main, nullptr);  // run reports its errors
}

void ListCommands::askPolygons() {
    QWidget* main = host_->MainWindow();
    QString length = QString::fromLatin1(kPolygonLengthPreset);
    QString sides = QString::fromLatin1(kPolygonSidesPreset);
    if (!TheModal().twoInput(main, OxText(kStrInput), QString::fromStdString(PolygonLengthPrompt()),
                             QString::fromStdString(PolygonSidesPrompt()), &length, kPolygonChars,
                             &sides, kPolygonChars, QString(), QString()))
        return;
    uint32_t n = 0, m = 0;
    const Result code =
        ParseListUnsigned(length.toStdString(), &n) && ParseListUnsigned(sides.toStdString(), &m)
            ? CheckPolygonInputs(n, m)
            : Result::kOutOfBounds;
    if (!Ok(code)) {
        ShowError(main, code);
        return;
    }
    (void)run(
        ListTarget::list,  // run reports its errors
        [n, m](CalcContext* c, ListOutput* o) {
            return ListPolygons(c, n, m, kPolygonRoundCap, &SharedListRandom(), o);
        },
        main, nullptr);
}

void ListCommands::askCurvatures() {
    QWidget* main = host_->MainWindow();
    QString quadruple = QString::fromLatin1(kCurvatureQuadruplePreset);
    QString bound = QString::fromLatin1(kCurvatureBoundPreset);
    if (!TheModal().twoInput(
            main, OxText(kStrCurvatures), QString::fromStdString(CurvatureQuadruplePrompt()),
            QString::fromStdString(CurvatureBoundPrompt()), &quadruple, kCurvatureInputChars,
            &bound, kCurvatureInputChars, QString(), QString()))
        return;
    DescartesQuadruple start{};
    uint32_t max = 0;
    Result code = ReadDescartesQuadruple(quadruple.toStdString(), start.k);
    if (Ok(code))
        code = ParseListUnsigned(bound.toStdString(), &max) ? CheckCurvatureBound(max)
                                                            : Result::kOutOfBounds;
    if (!Ok(code)) {
        ShowError(main, code);
        return;
    }
    (void)run(
        ListTarget::list,  // run reports its errors, a quadruple that is not one among them
        [start, max](CalcContext* c, ListOutput* o) { return ListCurvatures(c, start, max, o); },
        main, nullptr);
}

void ListCommands::showDialog(int id) {
    QWidget* main = host_->MainWindow();
    QDialog* d = nullptr;
    switch (id) {
    case kCmdHeronian:
        if (!heron_) heron_ = new THeroDlg(main, host_);
        d = heron_;
        break;
    case kCmdRationalMedians:
        if (!rational_) rational_ = new TRatMDlg(main, host_, false);
        d = rational_;
        break;
    case kCmdPerpendicularMedians:
        if (!perpendicular_) perpendicular_ = new TRatMDlg(main, host_, true);
        d = perpendicular_;
        break;
    case kCmdQuadruples:
    case kCmdLatticeCubes:
        if (!quads_) quads_ = new TQuadDlg(main, host_);
        // The cube list lives behind the quadruples' fourth choice; the
        // quadruples item leaves a cube choice for the first quadruple one.
        if (id == kCmdLatticeCubes)
            quads_->choose(254);
        else if (quads_->cubes())
            quads_->choose(251);
        d = quads_;
        break;
    default: return;
    }
    PresentWindow(d);
}

Result ListCommands::runList(const ListGenerator& generator, QWidget* progress, QString* summary) {
    return run(ListTarget::list, generator, progress, summary);
}

Result ListCommands::run(ListTarget target, const ListGenerator& generator, QWidget* progress,
                         QString* summary) {
    QWidget* main = host_->MainWindow();
    const QString caption = progress->windowTitle();
    ListOutput out;
    out.status = [progress](const std::string& text) {
        progress->setWindowTitle(QString::fromStdString(text));
    };
    if (list_ && target == ListTarget::list) list_->setBusy(true);
    main->activateWindow();
    main->setFocus();
    bool ran = false;
    const Result code = host_->RunWatched([&] {
        ran = true;
        return generator(ctx_, &out);
    });
    progress->setWindowTitle(caption);
    if (list_) list_->setBusy(false);
    if (!ran) return code;
    if (!ListOutputShown(code)) {
        ShowError(main, code);
        return code;
    }
    show(target, out);
    if (summary) *summary = QString::fromStdString(out.caption);
    return code;
}

void ListCommands::show(ListTarget target, const ListOutput& out) {
    const QString caption = QString::fromStdString(out.caption);
    QString text = QString::fromLatin1(out.text.data(), static_cast<qsizetype>(out.text.size()));
    if (target == ListTarget::list) {
        if (!list_) {
            list_ = new TTableWin(host_->MainWindow(), caption);
            PlaceBelowFrame(host_->MainWindow(), list_, kListStep);
        }
        list_->replaceText(text);
        list_->setTextAndTitle(caption);
        PresentWindow(list_);
        return;
    }
    text.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    if (!factor_) {
        factor_ = new TTextWin(host_->MainWindow(), caption, QString(), QString(), kFactorFont);
        PlaceBelowFrame(host_->MainWindow(), factor_, kFactorStep);
    }
    factor_->replaceText(text);
    factor_->markNotModified();
    factor_->setWindowTitle(caption);
    PresentWindow(factor_);
}
