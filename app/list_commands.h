// ListCommands: the Lists menu of the main frame. It asks for each list's
// bounds (the one- and two-input dialogs, or the modeless dialogs of the
// triangle lists and the quadruples), runs the generator under the frame's
// poll context and shows the result: the list window (a table window of a
// megabyte in sections) for the lists, the factorization window (a text
// window) for Factor and Two squares. It owns both windows and the modeless
// dialogs, and keeps the cyclotomic index last asked for.
//
// While a list runs, the caption of the main window (or of the modeless
// dialog that started it) reads "press Q to quit", Q or any command key
// stops it, and the caption reports the rows actually written.
#pragma once

#include <cstdint>

#include "dialogs/gui_host.h"
#include "lists/list_inputs.h"

class CalcContext;
class QDialog;
class THeroDlg;
class TQuadDlg;
class TRatMDlg;
class TTableWin;
class TTextWin;

enum ListsCommand {
    kCmdPolygons = 607,
    kCmdPrimes = 610,
    kCmdTwoSquares = 611,
    kCmdFactor = 612,
    kCmdPrimitiveTriples = 620,
    kCmdAllTriples = 621,
    kCmdGenerators = 622,
    kCmdCommonEntry = 623,
    kCmd60Degrees = 624,
    kCmd120Degrees = 625,
    kCmdQuadruples = 626,
    kCmdHeronian = 627,
    kCmdRationalMedians = 628,
    kCmdPerpendicularMedians = 629,
    kCmdLatticeCubes = 630,
    kCmdSoddyCircles = 631,
    kCmdSoddySpheres = 632,
    kCmdSoddyLine = 633,
    kCmdSoddyPlane = 634,
    kCmdCurvatures = 635,
    kCmdTetrahedra = 636,
    kCmdCyclotomic = 637,
    kCmdDivisors = 638,
    kCmdInscribedQuads = 639,
    kCmdCircumscribedQuads = 642,
};

// Where a list's text goes.
enum class ListTarget { list, factorization };

class ListCommands {
public:
    // host runs the generators (its RunWatched), parents the windows and
    // dialogs and is their host; ctx is the context they poll. Both must
    // outlive this object.
    ListCommands(GuiHost* host, CalcContext* ctx);
    ~ListCommands();
    ListCommands(const ListCommands&) = delete;
    ListCommands& operator=(const ListCommands&) = delete;

    // Whether id is a command of the Lists menu that this object runs.
    static bool Handles(int id);
    void command(int id);

    // Made on first use; nullptr before.
    TTableWin* listWindow() const { return list_; }
    TTextWin* factorWindow() const { return factor_; }
    THeroDlg* heronDialog() const { return heron_; }
    TRatMDlg* rationalDialog() const { return rational_; }
    TRatMDlg* perpendicularDialog() const { return perpendicular_; }
    TQuadDlg* quadDialog() const { return quads_; }
    uint32_t cyclotomicIndex() const { return cyclotomicIndex_; }

    // GuiHost::RunList for the host: into the list window.
    [[nodiscard]] Result runList(const ListGenerator& generator, QWidget* progress,
                                 QString* summary);

private:
    // As RunList, into the target window; summary may be null.
    Result run(ListTarget target, const ListGenerator& generator, QWidget* progress,
               QString* summary);
    void show(ListTarget target, const ListOutput& out);
    void askOneInput(int id);
    void askPolygons();
    void askCurvatures();
    void showDialog(int id);

    GuiHost* host_;
    CalcContext* ctx_;
    TTableWin* list_ = nullptr;
    TTextWin* factor_ = nullptr;
    THeroDlg* heron_ = nullptr;
    TRatMDlg* rational_ = nullptr;
    TRatMDlg* perpendicular_ = nullptr;
    TQuadDlg* quads_ = nullptr;
    uint32_t cyclotomicIndex_ = kCyclotomicFirstIndex;
};
