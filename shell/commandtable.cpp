// The one command table of the program: every menu item, pop-up item and button that runs
// a command, by its control name, with what a run-time fault in it abandons; then the
// dump and export handlers of the batch runner; then the reset of every process-wide
// table to its state at program start.
#include <vector>

#include "analysis/dataexport.h"
#include "analysis/exacttime.h"
#include "analysis/plots.h"
#include "analysis/spiceexport.h"
#include "analysis/statistics.h"
#include "analysis/walkers.h"
#include "core/commands.h"
#include "core/designflow.h"
#include "core/designstore.h"
#include "core/dipoles.h"
#include "design/coupledcmds.h"
#include "design/crystalcmds.h"
#include "design/dishalcmds.h"
#include "design/designfiles.h"
#include "design/ellipticcmd.h"
#include "design/handentry.h"
#include "design/lcflow.h"
#include "design/padcmds.h"
#include "design/qucmd.h"
#include "design/selector.h"
#include "design/tablecmds.h"
#include "design/terminate.h"
#include "entry/crystalsets.h"
#include "entry/designtitle.h"
#include "entry/panel.h"
#include "schematic/autotransformer.h"
#include "schematic/inductors.h"
#include "schematic/norton.h"
#include "schematic/report.h"
#include "schematic/dipoletransforms.h"
#include "schematic/schematicview.h"
#include "schematic/structuraledits.h"
#include "schematic/undo.h"
#include "schematic/tolerance.h"
#include "shell/exports.h"
#include "shell/frame.h"
#include "shell/help.h"
#include "synthesis/bwcheby.h"
#include "synthesis/coupled.h"
#include "synthesis/crystal.h"
#include "synthesis/dishal.h"
#include "synthesis/ellipticproto.h"
#include "synthesis/pads.h"
#include "synthesis/tables.h"

namespace zelk {

namespace {

constexpr CommandKind Plain = CommandKind::Plain;
constexpr CommandKind Design = CommandKind::Design;
constexpr CommandKind Edit = CommandKind::Edit;

// An edit: a fault restores the design only from a snapshot this edit took.
template <void (*F)()> void editentry() {
    undobeginedit();
    F();
}

// A plot's print and clipboard entries.
template <PlotForm* P> void printentry() { printplot(*P); }
template <PlotForm* P> void clipentry() { clipplot(*P); }
template <PlotForm* P> void exportentry() { exportplot_Click(P->formname); }

// An Options menu item that changes what the schematic shows.
template <const char* Item> void displayentry() { displayoption_Click(Item); }
constexpr char partslist[] = "partslist";
constexpr char showxtal[] = "Showxtal";
constexpr char nano[] = "nano";
constexpr char showtuning[] = "showtuning";
constexpr char sfp[] = "sfp";
constexpr char showcoil[] = "showcoil";

template <int Code> void arrangeentry() { arrange_Click(Code); }

const std::vector<Command>& commands() {
    static const std::vector<Command> t = {
        // FILE
        {"newfilter", newfilter_Click, Plain},
        {"openfilter", openfilter_Click, Plain},
        {"savefilter", savefilter_Click, Plain},
        {"delete", delete_Click, Plain},
        {"append", append_Click, Plain},
        {"insert", insert_Click, Plain},
        {"exitfilter", exitfilter_Click, Plain},
        {"printerSU", printerSU_Click, Plain},
        {"pSch", pSch_Click, Plain},
        {"pPEG", printentry<&plotPEG>, Plain},
        {"pPIG", printentry<&plotPIG>, Plain},
        {"pVEG", printentry<&plotVEG>, Plain},
        {"pVIG", printentry<&plotVIG>, Plain},
        {"pCEG", printentry<&plotCEG>, Plain},
        {"pCIG", printentry<&plotCIG>, Plain},
        {"pZin", printentry<&plotZin>, Plain},
        {"pZout", printentry<&plotZout>, Plain},
        {"pRL", printentry<&PLOTRL>, Plain},
        {"pPhase", printentry<&PLOTPHASE>, Plain},
        {"pGD", printentry<&PLOTGD>, Plain},
        {"pIR", printentry<&PLOTIR>, Plain},
        {"pUSR", printentry<&PLOTSR>, Plain},
        {"pPR", printentry<&PLOTPR>, Plain},
        {"pTPR", printentry<&PLOTTP>, Plain},
        {"cPEG", clipentry<&plotPEG>, Plain},
        {"cPIG", clipentry<&plotPIG>, Plain},
        {"cVEG", clipentry<&plotVEG>, Plain},
        {"cVIG", clipentry<&plotVIG>, Plain},
        {"cCEG", clipentry<&plotCEG>, Plain},
        {"cCIG", clipentry<&plotCIG>, Plain},
        {"cZin", clipentry<&plotZin>, Plain},
        {"cZout", clipentry<&plotZout>, Plain},
        {"cRL", clipentry<&PLOTRL>, Plain},
        {"cPhase", clipentry<&PLOTPHASE>, Plain},
        {"cGD", clipentry<&PLOTGD>, Plain},
        {"cIR", clipentry<&PLOTIR>, Plain},
        {"cUSR", clipentry<&PLOTSR>, Plain},
        {"cPR", clipentry<&PLOTPR>, Plain},
        {"cTPR", clipentry<&PLOTTP>, Plain},
        // UTILITIES and the schematic's edit pop-up
        {"undo", undo_Click, Plain},
        {"enter", enter_Click, Design},
        {"tzfm", editentry<tzfm_Click>, Edit},
        {"transform", editentry<transform_Click>, Edit},
        {"insertdipoles", editentry<insertdipoles_Click>, Edit},
        {"replace", editentry<replace_Click>, Edit},
        {"equamp", editentry<equamp_Click>, Edit},
        {"split", editentry<split_Click>, Edit},
        {"splitC", editentry<splitC_Click>, Edit},
        {"swap", editentry<swap_Click>, Edit},
        {"group", editentry<group_Click>, Edit},
        {"ungroup", ungroup_Click, Plain},
        {"ungroupL", editentry<ungroupL_Click>, Edit},
        {"ungroupR", editentry<ungroupR_Click>, Edit},
        {"norton", editentry<norton_Click>, Edit},
        {"auto", editentry<auto_Click>, Edit},
        {"xSch", xSch_Click, Plain},
        {"xPEG", exportentry<&plotPEG>, Plain},
        {"xPIG", exportentry<&plotPIG>, Plain},
        {"xVEG", exportentry<&plotVEG>, Plain},
        {"xVIG", exportentry<&plotVIG>, Plain},
        {"xCEG", exportentry<&plotCEG>, Plain},
        {"xCIG", exportentry<&plotCIG>, Plain},
        {"xZin", exportentry<&plotZin>, Plain},
        {"xZout", exportentry<&plotZout>, Plain},
        {"xRL", exportentry<&PLOTRL>, Plain},
        {"xPhase", exportentry<&PLOTPHASE>, Plain},
        {"xGD", exportentry<&PLOTGD>, Plain},
        {"xIR", exportentry<&PLOTIR>, Plain},
        {"xUSR", exportentry<&PLOTSR>, Plain},
        {"xPR", exportentry<&PLOTPR>, Plain},
        {"xTPR", exportentry<&PLOTTP>, Plain},
        {"xTouchstone", xTouchstone_Click, Plain},
        {"xSpice", xSpice_Click, Plain},
        // ANALYZE
        {"PEG", PEG_Click, Plain},
        {"PIG", PIG_Click, Plain},
        {"VEG", VEG_Click, Plain},
        {"VIG", VIG_Click, Plain},
        {"CEG", CEG_Click, Plain},
        {"CIG", CIG_Click, Plain},
        {"inputz", inputz_Click, Plain},
        {"outputz", outputz_Click, Plain},
        {"RL", RL_Click, Plain},
        {"PHA", PHA_Click, Plain},
        {"GD", GD_Click, Plain},
        {"IR", IR_Click, Plain},
        {"USR", USR_Click, Plain},
        {"pr", pr_Click, Plain},
        {"TPR", TPR_Click, Plain},
        {"statistical", statistical_Click, Plain},
        // UTILITIES
        {"qu", qu_Click, Plain},
        {"tolerance", tolerance_Click, Plain},
        {"standardT", standardT_Click, Plain},
        // DESIGN
        {"butterworth", butterworth_Click, Design},
        {"chebyshev", chebyshev_Click, Design},
        {"elliptic", elliptic_Click, Design},
        {"Bessel", Bessel_Click, Design},
        {"gaussian1", gaussian1_Click, Design},
        {"Gaussian6", Gaussian6_Click, Design},
        {"gaussian12", gaussian12_Click, Design},
        {"legendre", legendre_Click, Design},
        {"linearphase05", linearphase05_Click, Design},
        {"linearphase5", linearphase5_Click, Design},
        {"BCR", BCR_Click, Design},
        {"CCR", CCR_Click, Design},
        {"BesselCR", BesselCR_Click, Design},
        {"GaussianCR", GaussianCR_Click, Design},
        {"LegendreCR", LegendreCR_Click, Design},
        {"LP05CR", LP05CR_Click, Design},
        {"LP5CR", LP5CR_Click, Design},
        {"Gaussian6CR", Gaussian6CR_Click, Design},
        {"gaussian12CR", gaussian12CR_Click, Design},
        {"BCL", BCL_Click, Design},
        {"CCL", CCL_Click, Design},
        {"MCL", MCL_Click, Design},
        {"BesselCL", BesselCL_Click, Design},
        {"GaussianCL", GaussianCL_Click, Design},
        {"legendreCL", legendreCL_Click, Design},
        {"LP05CL", LP05CL_Click, Design},
        {"LP5CL", LP5CL_Click, Design},
        {"TG6", TG6_Click, Design},
        {"TG12", TG12_Click, Design},
        {"dLSBButter", dLSBButter_Click, Design},
        {"DLSBcheby", DLSBcheby_Click, Design},
        {"dUSBbutter", dUSBbutter_Click, Design},
        {"dUSBcheby", dUSBcheby_Click, Design},
        // The two minimum-loss sideband commands: no menu entry leads to them.
        {"dLSBCohn", dLSBCohn_Click, Design},
        {"dUSBCohn", dUSBCohn_Click, Design},
        {"attnp", attnp_Click, Design},
        {"attnt", attnt_Click, Design},
        // UTILITIES
        {"dinductor", dinductor_Click, Plain},
        // OPTIONS
        {"helpL", helpL_Click, Plain},
        {"partslist", displayentry<partslist>, Plain},
        {"Showxtal", displayentry<showxtal>, Plain},
        {"nano", displayentry<nano>, Plain},
        {"showtuning", displayentry<showtuning>, Plain},
        {"sfp", displayentry<sfp>, Plain},
        {"showcoil", displayentry<showcoil>, Plain},
        {"exacttime", exacttime_Click, Plain},
        // HELP and WINDOW
        {"helper", helper_Click, Plain},
        {"calculator", calculator_Click, Plain},
        {"savecrystaldata", savecrystaldata_Click, Plain},
        {"aboutfilter", aboutfilter_Click, Plain},
        {"troubleshoot", troubleshoot_Click, Plain},
        {"update", update_Click, Plain},
        {"homepage", homepage_Click, Plain},
        {"installcalc", installcalc_Click, Plain},
        {"cascade", arrangeentry<0>, Plain},
        {"tileH", arrangeentry<1>, Plain},
        {"tileV", arrangeentry<2>, Plain},
        {"arrangeicons", arrangeentry<3>, Plain},
    };
    return t;
}

const std::vector<DumpEntry>& dumps() {
    static const std::vector<DumpEntry> t = {
        {"panel", dumppanel},
        {"report", dumpreport},
        {"curve", dumpcurve},
        {"band", dumpband},
    };
    return t;
}

const std::vector<ExportEntry>& exports() {
    static const std::vector<ExportEntry> t = {
        {"spice", exportspice},
        {"svg", exportsvg},
        {"pdf", exportpdf},
        {"png", exportpng},
        {"touchstone", exporttouchstone},
        {"csv", exportcsv},
    };
    return t;
}

} // namespace

void installcommands() { installcommandtables({&commands(), &dumps(), &exports()}); }

void resetall() {
    store = DesignStore{};
    flow = DesignFlow{};
    prototerms = PrototypeTerms{};
    walk = WalkValues{};
    frame = FrameState{};
    elliptic = EllipticWork{};
    pad = PadWork{};
    coupled = CoupledWork{};
    crystalwork = CrystalWork{};
    dishal = DishalWork{};
    closetablefile();
    tables.tabratio = 0;
    selfunction.reset();
    terminatewindow.reset();
    resetpanel();
    designtitlewindow.reset();
    resetcrystalsets();
    report = ReportState{};
    inductorswindow.reset();
    resetschematic();
    norton = NortonWork{};
    resetplots();
    resetexacttime();
    standard.reset();
    resetstatisticsall();
    trouble.reset();
    buildmenus();
    undoreset();
    structural = StructuralState{};
    resethandentry();
    restoreafterfault = undorestoreafterfault;
    schematichooks = SchematicHooks{schematicclear, hideschematics, undoreset};
    installcommands();
}

} // namespace zelk
