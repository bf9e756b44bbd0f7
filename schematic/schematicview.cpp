#include "schematic/schematicview.h"

#include <algorithm>

#include "core/commands.h"
#include "core/desktop.h"
#include "core/dipoles.h"
#include "core/surface.h"
#include "core/notation.h"
#include "schematic/dipolepictures.h"
#include "schematic/report.h"
#include "schematic/structuraledits.h"
#include "entry/designtitle.h"
#include "core/framestate.h"

namespace zelk {

namespace {

// Twips per pixel, for the placement of the windows in the frame.
constexpr double TWIPS = 15;
// The dipole picture template: 960 twips square.
constexpr double SYMBOLSIZE = 960 / TWIPS;

SchematicWindow window0("schematic", 0);
SchematicWindow window1("schematic1", 1);



// Type of dipole n of slot s; a place outside the table reads as no type.
int typeat(int s, int n) {
    if (n < 0 || n > MAXDIPOLE) return 0;
    return dipole(s, n).type;
}

// A fallback surface for a window that no desktop has shown (measuring and drawing
// still work, nothing is displayed).
RecordingSurface& fallbacksurface(SchematicWindow& w) {
    static RecordingSurface s0(&window0.clientwidth, &window0.clientheight, 1);
    static RecordingSurface s1(&window1.clientwidth, &window1.clientheight, 1);
    return &w == &window1 ? s1 : s0;
}

Surface& surf(SchematicWindow& w) { return w.surface ? *w.surface : fallbacksurface(w); }

// The row of pictures, the labels, the listing and the caption of slot s, which is
// curslot while this runs.
void drawslot(SchematicWindow& w, int s, bool asktitle) {
    DesignSlot& sl = slot(s);
    double size = schem.cellsize;
    int count = sl.count();
    for (int n = 1; n <= count; ++n) {
        int t = sl.dip(n).type;
        if (t < 30) {
            // Series: shares its cell with the shunt dipole that follows.
            SchematicElement& e = w.makeelement(ElementList::symbol, n);
            e.left = schem.xpos;
            e.top = schem.ypos;
            e.vertical = false;
            e.picture = t;
            e.visible = true;
            w.setcursor(e.left, e.top - 20);
            w.print("dipole " + plainnum(n));
        } else if (t < 55 || t == 67 || t == 68) {
            SchematicElement& e = w.makeelement(ElementList::symbol, n);
            e.left = schem.xpos + size * 0.656;
            e.top = schem.ypos + size;
            e.vertical = true;
            e.picture = t;
            e.visible = true;
            if (t != 38) {
                SchematicElement& c = w.makeelement(ElementList::connection, ++schem.connectioncount[s]);
                c.left = schem.xpos + size;
                c.top = schem.ypos + (size * 26) / 64;
                c.visible = true;
                schem.xpos += c.width;
            }
            schem.xpos += size * 0.968;
            w.setcursor(e.left, e.top + e.height + 10);
            w.print("dipole " + plainnum(n));
            w.setrail(40, schem.ypos + size * 1.96, schem.xpos, schem.ypos + size * 1.96);
        } else {
            // Transformer types hang from a frame on the line, in a cell of their own.
            schem.xpos += size * 0.968;
            SchematicElement& f = w.makeelement(ElementList::transformer, ++schem.transformercount[s]);
            f.left = schem.xpos;
            f.top = schem.ypos;
            f.vertical = true;
            f.picture = 0;
            f.visible = true;
            SchematicElement& e = w.makeelement(ElementList::symbol, n);
            e.left = schem.xpos;
            e.top = schem.ypos + size;
            e.vertical = true;
            e.picture = t;
            e.visible = true;
            schem.xpos += size * 0.968;
            w.setcursor(e.left, e.top + e.height + 10);
            w.print("dipole " + plainnum(n));
            w.setrail(40, schem.ypos + size * 1.96, schem.xpos, schem.ypos + size * 1.96);
        }
    }
    if (asktitle && sl.designtitle.empty()) designtitle_show();
    w.caption = sl.designtitle;
    dipolelisting();
    titleblock();
    w.setcursor(100, w.windowheight() - 50);
    w.setbold(true);
    w.print(sl.designtitle + " Schematic");
    w.setbold(false);
}

// Sets the template sizes from the window's width: half size under 600 pixels.
void settemplates(SchematicWindow& w) {
    double scale = w.clientwidth < 600 ? 0.5 : 1;
    SchematicElement& sym = w.element(ElementList::symbol, 0);
    sym.width = SYMBOLSIZE * scale;
    sym.height = SYMBOLSIZE * scale;
    schem.cellsize = static_cast<float>(sym.width);
    SchematicElement& con = w.element(ElementList::connection, 0);
    con.width = schem.cellsize / 4;
    con.height = sym.height;
    SchematicElement& tr = w.element(ElementList::transformer, 0);
    tr.width = sym.width;
    tr.height = sym.height;
}

const char* PALETTES[] = {"dipolesH", "dipolesV"};

void hidepalettes() {
    for (const char* p : PALETTES)
        if (Window* w = findwindow(p); w && w->visible) w->hide();
}

} // namespace

SchematicWindow::SchematicWindow(std::string name, int s) : Window(std::move(name), "Schematic"), slotnumber(s) {
    reset();
}

void SchematicWindow::reset() {
    symbol.assign(1, SchematicElement{});
    connection.assign(1, SchematicElement{});
    transformer.assign(1, SchematicElement{});
    for (auto* l : {&symbol, &connection, &transformer}) {
        (*l)[0].width = SYMBOLSIZE;
        (*l)[0].height = SYMBOLSIZE;
    }
    connection[0].width = SYMBOLSIZE / 4;
    Line1 = Rail{};
    printed.clear();
    cursorx = cursory = 0;
    textcolour = BLACK;
    textbold = false;
    isopen = false;
    loaded = visible = modal = false;
    surface = nullptr;
    draws = true;
    unit = 1;
    caption = "Schematic";
    left = top = 0;
    clientwidth = 900;
    clientheight = 560;
    setupcontrols();
}

void SchematicWindow::setupcontrols() {
    controls.clear();
    // The client area itself: a right button press opens the analysis menu; a click
    // beside the pictures ends a palette left up by the edit in hand.
    Control& f = add(ControlKind::Picture, "frame");
    f.onmousedown = [](int, int button, int, double, double) {
        if (button == 2) desktop().popupmenu("analysis");
    };
    f.onclick = [](int) {
        if (store.curslot < 0) return;
        if (schem.dipoleselected && schem.selecteddipole < slot(store.curslot).count()) {
            hidepalettes();
            showhelplines();
        }
    };
}

std::vector<SchematicElement>& SchematicWindow::list(ElementList l) {
    switch (l) {
    case ElementList::connection: return connection;
    case ElementList::transformer: return transformer;
    default: return symbol;
    }
}

SchematicElement& SchematicWindow::element(ElementList l, int n) {
    auto& v = list(l);
    if (n < 0 || n >= static_cast<int>(v.size())) raisefault(9);
    return v[static_cast<size_t>(n)];
}

SchematicElement& SchematicWindow::makeelement(ElementList l, int n) {
    auto& v = list(l);
    if (n < 1 || n > 4 * MAXDIPOLE) raisefault(9);
    if (static_cast<int>(v.size()) <= n) v.resize(static_cast<size_t>(n) + 1);
    SchematicElement& e = v[static_cast<size_t>(n)];
    // A new element takes the size of the template and starts hidden.
    e = SchematicElement{};
    e.made = true;
    e.width = v[0].width;
    e.height = v[0].height;
    if (l == ElementList::symbol && !find("symbol", n)) {
        Control& c = add(ControlKind::Picture, "symbol", n);
        c.tooltip = "Right click to transform this dipole";
        c.onclick = [](int index) { dipoleclick(index); };
    }
    return e;
}

void SchematicWindow::removeelement(ElementList l, int n) {
    auto& v = list(l);
    if (n < 1 || n >= static_cast<int>(v.size())) return;
    v[static_cast<size_t>(n)] = SchematicElement{};
    if (l == ElementList::symbol) {
        controls.erase(std::remove_if(controls.begin(), controls.end(),
                                      [n](const std::unique_ptr<Control>& c) {
                                          return c->name == "symbol" && c->index == n;
                                      }),
                       controls.end());
    }
    while (v.size() > 1 && !v.back().made) v.pop_back();
}

void SchematicWindow::clear() {
    printed.clear();
    cursorx = cursory = 0;
}

void SchematicWindow::setcursor(double x, double y) {
    cursorx = x;
    cursory = y;
}

double SchematicWindow::textwidth(const std::string& text) {
    Surface& s = surf(*this);
    bool was = s.bold();
    s.setbold(textbold);
    double w = s.textwidth(text);
    s.setbold(was);
    return w;
}

double SchematicWindow::textheight() { return surf(*this).textheight("X"); }

void SchematicWindow::print(const std::string& text) {
    if (!text.empty()) printed.push_back({cursorx, cursory, text, textcolour, textbold});
    cursory += textheight();
    cursorx = 0;
}

void SchematicWindow::setrail(double x1, double y1, double x2, double y2) {
    Line1 = {true, x1, y1, x2, y2};
}

void SchematicWindow::render() {
    // The picture controls follow their elements, for the pointer.
    for (auto& c : controls) {
        if (c->name == "frame") {
            c->left = 0;
            c->top = 0;
            c->width = clientwidth;
            c->height = clientheight;
        } else if (c->name == "symbol" && c->index > 0 && c->index < static_cast<int>(symbol.size())) {
            const SchematicElement& e = symbol[static_cast<size_t>(c->index)];
            c->left = e.left;
            c->top = e.top;
            c->width = e.width;
            c->height = e.height;
            c->visible = e.visible;
        }
    }
    Surface& s = surf(*this);
    s.cls();
    s.setbold(false);
    s.setcolour(BLACK);
    for (size_t i = 1; i < connection.size(); ++i) {
        const SchematicElement& e = connection[i];
        if (e.made && e.visible) drawconnection(s, e.left, e.top, e.width, e.height);
    }
    for (size_t i = 1; i < transformer.size(); ++i) {
        const SchematicElement& e = transformer[i];
        if (e.made && e.visible) drawdipolepicture(s, 0, true, e.left, e.top, e.width, e.height);
    }
    for (size_t i = 1; i < symbol.size(); ++i) {
        const SchematicElement& e = symbol[i];
        if (e.made && e.visible)
            drawdipolepicture(s, e.picture, e.vertical, e.left, e.top, e.width, e.height);
    }
    s.setcolour(BLACK);
    if (Line1.set) s.line(Line1.x1, Line1.y1, Line1.x2, Line1.y2);
    for (const Printed& p : printed) {
        s.setcolour(p.colour);
        s.setbold(p.bold);
        s.drawtext(p.x, p.y, p.text);
    }
    s.setcolour(BLACK);
    s.setbold(false);
    s.moveto(cursorx, cursory);
    if (loaded) refresh();
}

void SchematicWindow::closebox() {
    if (store.curslot > 0) {
        isopen = false;
        unload();
        store.lastslot = static_cast<short>(store.lastslot - 1);
        store.curslot = store.lastslot;
        return;
    }
    if (store.curslot == 0 && !frame.designsaved) {
        int answer = MsgBox("Do you want to save this design before closing?", vbYesNoCancel | vbQuestion, "WARNING");
        if (answer == vbCancel) return;
        if (answer == vbYes) {
            if (const Command* c = findcommand("savefilter")) runcommand(*c);
        }
    }
    newfilter_Click();
    updatemenus();
    setenabled("pSch", false);
    setenabled("xSch", false);
    sethelp("Use [File  Open]  to load an existing schematic file from disk.",
            "Use [Utilities  Enter Design]  to enter a schematic from a book or magazine.",
            "Use [Design  filter type] to design a filter to your specifications.",
            "(You can turn this Helpline off / on under [Options  Helpline])");
    isopen = false;
    unload();
}

namespace {
// A build in progress (it may wait in the design title window while the desktop resizes
// the window): a resize then only asks for one more drawing when the build is done.
bool building = false;
bool redrawpending = false;
} // namespace

void SchematicWindow::resized() {
    if (!isopen || store.lastslot < slotnumber) return;
    if (building) {
        redrawpending = true;
        return;
    }
    settemplates(*this);
    short keep = store.curslot;
    store.curslot = static_cast<short>(slotnumber);
    guarded([this] {
        schematicclear(slotnumber);
        schem.xpos = 40;
        schem.ypos = 30;
        drawslot(*this, slotnumber, false);
        render();
    });
    store.curslot = keep;
}

SchematicWindow& schematicwindow(int s) {
    if (s == 0) return window0;
    if (s == 1) return window1;
    raisefault(9);
}

void schematicload(int s) {
    SchematicWindow& w = schematicwindow(s);
    DesignSlot& sl = slot(s);
    w.caption = sl.title;
    w.isopen = true;
    double last = std::max<double>(store.lastslot, 0);
    // Cascaded beside the series palette, in twips as the frame places its children.
    w.left = (schem.palettewidth + 250 * last) / TWIPS;
    w.top = 300 * last / TWIPS;
    w.clientwidth = (frame.framewidth * TWIPS - schem.palettewidth - 200 - 250 * last) / TWIPS;
    w.clientheight = frame.frameheight * 0.9 - (frame.helppanelshown ? frame.helppanelheight : 0);
    settemplates(w);
    schem.xpos = 30;
    schem.ypos = 40;
    schem.dipoleselected = false;
}

void schematicbuild() {
    if (store.lastslot < 0) return;
    int s = store.curslot;
    SchematicWindow& w = schematicwindow(s);
    sethelp("Click a dipole to change its configuration or values.",
            "Also you can use a transformer to change the impedance of following dipoles.",
            "Read the help files before using these powerful tools.", "");
    if (!w.isopen) schematicload(s);
    schem.xpos = 40;
    schem.ypos = 30;
    schematicclear(s);
    building = true;
    redrawpending = false;
    struct Done {
        ~Done() { building = false; }
    } done;
    w.show();
    drawslot(w, s, true);
    w.render();
    building = false;
    if (redrawpending) {
        redrawpending = false;
        w.resized();
    }
    updatemenus();
    schem.schematicexists = true;
    setenabled("pSch", true);
    setenabled("xSch", true);
}

void schematicclear(int s) {
    if (store.curslot < 0) return;
    if (schem.skipclear) {
        schem.skipclear = false;
        // The row stays; the printed text is written afresh by the rebuild.
        schematicwindow(s).clear();
        return;
    }
    SchematicWindow& w = schematicwindow(s);
    w.clear();
    if (w.symbol.size() > 1) {
        int count = slot(s).count();
        for (int n = 1; n <= count; ++n) w.removeelement(ElementList::symbol, n);
        for (int n = 1; n <= schem.connectioncount[static_cast<size_t>(s)]; ++n)
            w.removeelement(ElementList::connection, n);
        for (int n = 1; n <= schem.transformercount[static_cast<size_t>(s)]; ++n)
            w.removeelement(ElementList::transformer, n);
    }
    schem.connectioncount[static_cast<size_t>(s)] = 0;
    schem.transformercount[static_cast<size_t>(s)] = 0;
    w.render();
}

void schematicclear() { schematicclear(store.curslot); }

void resetschematic() {
    schem = SchematicState{};
    window0.reset();
    window1.reset();
}

void hideschematics() {
    for (SchematicWindow* w : {&window0, &window1})
        if (w->visible) w->hide();
}

void dipoleclick(int n) {
    // Two open filters cannot be edited: the undo store reuses slot 1.
    if (store.lastslot > 0 || store.curslot < 0) return;
    schem.dipoleselected = true;
    if (Window* h = findwindow("dipolesH"))
        if (Control* done = h->find("Hdipole", 8)) done->visible = false;
    schem.selecteddipole = n;
    int s = store.curslot;
    int count = slot(s).count();
    int t = typeat(s, n);
    std::string fordipole = "For Dipole " + numtext(n);

    setenabled("equamp", slot(0).w1 > 0 && (t == 38 || t == 6) && (n == count - 1 || n == count - 2));

    if (store.entering) {
        for (const char* e : {"transform", "auto", "swap", "split", "ungroup", "group", "norton"})
            setenabled(e, false);
        if (MenuItem* m = findmenu("fordipole")) m->caption = fordipole;
        desktop().popupmenu("edit");
        return;
    }

    int p = typeat(s, n - 1), q = typeat(s, n + 1);
    setenabled("splitC", t == 3 && p == 35 && q == 35);
    setenabled("split", among(t, {2, 3, 32, 33}));
    // Transform keeps its state from the last click on a type that has a transform of
    // its own; only a shunt tank next to an end enables it, and other types disable it.
    if (t == 35)
        setenabled("transform", n == 2 || n == count - 2);
    else if (!among(t, {9, 10, 12, 13, 17, 18, 19, 20, 21, 22, 23, 24, 39, 40, 42, 43, 47, 48, 49,
                        50, 51, 52, 53, 54}))
        setenabled("transform", false);
    setenabled("auto", among(t, {5, 32, 35}));
    setenabled("swap", t == 6 || t == 38);
    setenabled("group", t == 6 || t == 38);
    setenabled("ungroup", ungroupable(t));

    // Norton: the neighbour on one side must be the mate (the same element in the other
    // arm) and the other side the mate or the blank of that arm.
    schem.stepupok = false;
    schem.stepdownok = false;
    if (among(t, {2, 3, 5})) {
        int mate = t + 30;
        schem.stepupok = q == mate && (p == 38 || p == mate);
        schem.stepdownok = p == mate && (q == 38 || q == mate);
    } else if (among(t, {32, 33, 34})) {
        int mate = t - 30;
        schem.stepupok = p == mate && (q == 6 || q == mate);
        schem.stepdownok = q == mate && (p == 6 || p == mate);
    }
    setenabled("norton", schem.stepupok || schem.stepdownok);

    if (MenuItem* m = findmenu("fordipole")) m->caption = fordipole;
    desktop().popupmenu("edit");
}

} // namespace zelk
