// The frame's menu tree in menu order, the enabled states that updatemenus derives from
// the number of open designs, and the help lines a click on a menu title shows.
#include "shell/frame.h"

#include <initializer_list>
#include <string>

#include "core/commands.h"
#include "core/designstore.h"
#include "core/framestate.h"

namespace zelk {

namespace {

using Items = std::initializer_list<std::pair<const char*, const char*>>;

void items(const char* parent, Items list, bool popup = false) {
    for (auto& [name, caption] : list) addmenu(name, caption, parent, popup);
}

const char* const plotcaptions[15] = {"Power Effective Gain",   "Power Insertion Gain",
                                      "Voltage Effective Gain", "Voltage Insertion Gain",
                                      "Current Effective Gain", "Current Insertion Gain",
                                      "Input Impedance",        "Output Impedance",
                                      "Return Loss",            "Phase",
                                      "Group Delay",            "Impulse Response",
                                      "Unit Step Response",     "Pulse Response",
                                      "Tone Pulse Response"};

void filemenu() {
    addmenu("file", "FILE", "");
    items("file", {{"newfilter", "&New"},
                   {"openfilter", "&Open Filter"},
                   {"savefilter", "Save Filter"},
                   {"delete", "Delete Filter"},
                   {"printerSU", "Printer Setup"},
                   {"printfilter", "&Print"}});
    addmenu("pSch", "Schematic", "printfilter");
    for (int i = 0; i < 15; ++i) addmenu(printnames[i], plotcaptions[i], "printfilter");
    addmenu("clip", "&Clipboard", "file");
    for (int i = 0; i < 15; ++i) {
        std::string name = printnames[i];
        name[0] = 'c';
        addmenu(name, plotcaptions[i], "clip");
    }
    // The drawings and numbers of the design for other programs.
    addmenu("export", "E&xport", "file");
    addmenu("xSch", "Schematic...", "export");
    for (int i = 0; i < 15; ++i) addmenu(exportitem(printnames[i]), std::string(plotcaptions[i]) + "...", "export");
    items("export", {{"xTouchstone", "Touchstone S-Parameters..."}, {"xSpice", "SPICE Netlist..."}});
    addmenu("exitfilter", "&Exit", "file");
}

void utilitiesmenu() {
    addmenu("utilities", "UTILITIES", "");
    items("utilities", {{"undo", "Undo"},
                        {"calculator", "Calculator"},
                        {"enter", "Enter Design"},
                        {"append", "Append Filter"},
                        {"insert", "Insert Filter"},
                        {"savecrystaldata", "enter user crystal parameters"},
                        {"qu", "Set Qu of all L's"},
                        {"tzfm", "Transform Z or F"},
                        {"tolerance", "Set Part Tolerance"},
                        {"standardT", "Set Standard Tolerance"},
                        {"dinductor", "Design Inductors"}});
}

void analyzemenu() {
    addmenu("analysis", "ANALYZE", "");
    items("analysis", {{"PEG", "Power effective Gain"},
                       {"PIG", "Power insertion Gain"},
                       {"VEG", "Voltage effective Gain"},
                       {"VIG", "Voltage insertion Gain"},
                       {"CEG", "Current effective Gain"},
                       {"CIG", "Current Insertion Gain"},
                       {"inputz", "Input impedance"},
                       {"outputz", "Output impedance"},
                       {"RL", "Return Loss"},
                       {"PHA", "Phase"},
                       {"GD", "Group Delay"},
                       {"IR", "Impulse Response"},
                       {"USR", "Unit Step Response"},
                       {"pr", "Pulse Response"},
                       {"TPR", "Tone Pulse Response"},
                       {"statistical", "Statistical Analysis"}});
}

void designmenu() {
    addmenu("design", "DESIGN", "");
    items("design", {{"butterworth", "Butterworth"},
                     {"chebyshev", "Chebyshev"},
                     {"elliptic", "Elliptic (Cauer)"},
                     {"Bessel", "Bessel"},
                     {"linearphase", "Linear Phase"}});
    items("linearphase", {{"linearphase05", ".05 degree equiripple"}, {"linearphase5", ".5 degree equiripple"}});
    items("design", {{"gaussian1", "Gaussian"}, {"legendre", "Legendre"}, {"GaussianChebyshev", "Transitional Gaussian"}});
    items("GaussianChebyshev", {{"Gaussian6", "Gaussian to  6db"}, {"gaussian12", "Gaussian to 12 db"}});

    // The coupled-resonator families, with the same grouping as the LC families.
    addmenu("coupled", "Coupled Resonator", "design");
    items("coupled", {{"BCR", "Butterworth"}, {"CCR", "Chebyshev"}, {"BesselCR", "Bessel"}, {"LPCR", "Linear Phase"}});
    items("LPCR", {{"LP05CR", ".05 degree equiripple"}, {"LP5CR", ".5 degree equiripple"}});
    items("coupled", {{"GaussianCR", "Gaussian"}, {"LegendreCR", "Legendre"}, {"GCCR", "Transitional Gaussian"}});
    items("GCCR", {{"Gaussian6CR", "Gaussian to  6db"}, {"gaussian12CR", "Gaussian to 12 db"}});

    // Crystal ladders: the classic families, and the two sideband menus.
    addmenu("crystal", "Crystal Ladder", "design");
    addmenu("normal", "Classic", "crystal");
    items("normal", {{"BCL", "Butterworth"},
                     {"CCL", "Chebyshev"},
                     {"MCL", "Min-Loss (Cohn)"},
                     {"BesselCL", "Bessel"},
                     {"GaussianCL", "Gaussian"},
                     {"legendreCL", "Legendre"},
                     {"LP05CL", "Linear Phase .05 degree"},
                     {"LP5CL", "Linear Phase .5 degree"},
                     {"TG6", "Gaussian to  6db"},
                     {"TG12", "Gaussian to 12 db"}});
    addmenu("dishellsb", "Dishal LSB", "crystal");
    items("dishellsb", {{"dLSBButter", "Butterworth"}, {"DLSBcheby", "Chebyshev"}});
    addmenu("dishelusb", "Dishal USB", "crystal");
    items("dishelusb", {{"dUSBbutter", "Butterworth"}, {"dUSBcheby", "Chebyshev"}});

    addmenu("attn", "Attenuator Pad", "design");
    items("attn", {{"attnp", "Pi Pad"}, {"attnt", "T Pad"}});
}

void othermenus() {
    addmenu("options", "OPTIONS", "");
    for (const OptionItem& o : optionitems()) addmenu(o.item, o.caption, "options");

    addmenu("window", "WINDOW", "");
    items("window", {{"cascade", "&Cascade"},
                     {"tileH", "Tile &Horizontal"},
                     {"tileV", "Tile &Vertical"},
                     {"arrangeicons", "&Arrange Icons"}});

    addmenu("about", "HELP", "");
    items("about", {{"helper", "HELP"},
                    {"troubleshoot", "troubleshoot installation"},
                    {"update", "Updates and Upgrades"},
                    {"homepage", "ZELK Home Page"},
                    {"installcalc", "Install a Calculator"},
                    {"aboutfilter", "About ZELK Filter Design"}});

    // The schematic's edit pop-up.
    addmenu("edit", "EDIT", "", true);
    items("edit",
          {{"fordipole", "For Dipole"},
           {"insertdipoles", "Insert Dipole"},
           {"replace", "Replace Dipole"},
           {"change", "Change Values"},
           {"transform", "Transform Dipole"},
           {"ungroup", "Ungroup"}},
          true);
    items("ungroup", {{"ungroupL", "Left to Right"}, {"ungroupR", "Right to Left"}}, true);
    items("edit",
          {{"group", "Group"},
           {"split", "Split component"},
           {"splitC", "Split Capacitor"},
           {"swap", "Swap Components"},
           {"auto", "Auto Transformer"},
           {"norton", "Norton Transform"},
           {"equamp", "Equalize Amplitude"}},
          true);
}


} // namespace

const std::vector<OptionItem>& optionitems() {
    static const std::vector<OptionItem> o = {
        {"helpL", "helpl", "Help Line"},
        {"partslist", "partslist", "Parts List"},
        {"Showxtal", "showxtal", "Show XTAL parameters"},
        {"nano", "nano", "nano units"},
        {"showtuning", "showtuning", "Show Tuning Data"},
        {"sfp", "showparameters", "Show Filter Parameters"},
        {"showcoil", "showcoil", "Show Coil Data"},
        {"exacttime", "exacttime", "Exact Time Responses"},
    };
    return o;
}

void buildmenus() {
    menuitems().clear();
    filemenu();
    utilitiesmenu();
    analyzemenu();
    designmenu();
    othermenus();
}

bool menutitle_Click(const std::string& menu) {
    if (menu == "file")
        sethelp("Open an existing filter file.", "Save your completed design.", "Print your design or analysis.", "exit");
    else if (menu == "utilities")
        sethelp("Enter a design from a book or magazine.",
                "Append or Insert a filter to concatinate two filters.",
                "Transform filter to new impedance or frequency.",
                "Design toroid or air wound coils for your filter");
    else if (menu == "analysis")
        sethelp("Select the response to be plotted.", "Enter the plotting parameters requested.",
                "The default values produce a good initial plot.",
                "Plotting parameters can be changed by re-selecting the analysis type.");
    else if (menu == "design")
        sethelp("Select a filter response.",
                "Select low-pass, high-pass, band-pass or band-reject and a schematic configuration",
                "Enter the design parameters requested.", "The default values will create a sample design");
    else if (menu == "options")
        sethelp("The Options Menu allows you to customize ZELK Filter Designs appearance.",
                "Your can turn the helpline off / on.", "",
                "You can select the data included in the schematic diagram.");
    else if (menu == "edit")
        sethelp("These transforms are a powerful tool to adjust component values and or input or output impedance.",
                "However, it is a bit complicated. It is suggested that you read and understand the help references",
                "before attempting to use these transforms. ", "");
    else if (menu == "about")
        sethelp("Valuable information about:", "Updates and Upgrades to ZELK Filter Design,",
                "other ZELK products and", "how to contact ZELK.");
    else
        return false;
    return true;
}

} // namespace zelk
