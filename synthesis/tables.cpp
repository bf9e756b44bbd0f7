#include "synthesis/tables.h"
#include "core/hostmath.h"

#include "synthesis/transforms.h"

#include <cmath>
#include <string>

#include "core/designflow.h"
#include "core/designstore.h"
#include "core/desktop.h"
#include "core/paths.h"

namespace zelk {

namespace {



// The host's free-form input: the next number, items separated by commas or line ends.
// Past the end of the file it is the host's "Input past end of file".
double readnumber() {
    std::string item;
    char ch;
    bool any = false;
    while (tables.file1.get(ch)) {
        if (ch == ',' || ch == '\n') {
            if (any || ch == ',') break;
            continue; // blank lines between records
        }
        if (ch == '\r') continue;
        if (ch != ' ' && ch != '\t') any = true;
        item += ch;
    }
    if (!any && !tables.file1) raisefault(62);
    return Val(item);
}

// End of file: nothing but blanks and line ends is left.
bool endoffile() {
    for (;;) {
        const int ch = tables.file1.peek();
        if (ch == std::char_traits<char>::eof()) return true;
        if (ch != ' ' && ch != '\t' && ch != '\r' && ch != '\n') return false;
        tables.file1.get();
    }
}

// Reads one record into g and tabratio; returns its order.
double readrecord() {
    const double n = readnumber();
    tables.tabratio = readnumber();
    for (int i = 1; i <= clampint(Fix(n), 0, 17); ++i) {
        const double v = readnumber();
        if (i > 16) raisefault(9);
        store.g[static_cast<size_t>(i)] = v;
    }
    return n;
}

void settype(int d, short type) {
    cleardipole(d);
    dipole(store.curslot, d).type = type;
}

} // namespace

void opentablefile(const std::string& literal) {
    closetablefile();
    tables.file1.open(mappath(literal));
    if (!tables.file1) raisefault(53);
}

void closetablefile() {
    if (tables.file1.is_open()) tables.file1.close();
    tables.file1.clear();
}

void gettabledata() {
    if (!tables.file1.is_open()) raisefault(52);
    DesignSlot& s = current();
    while (!endoffile()) {
        const double n = readrecord();
        if (Val(Str(tables.tabratio)) == 0) tables.tabratio = 100;
        if (n != s.order.value()) continue;
        store.oddorder = n / 2 != Int(n / 2);
        double t = hdiv(s.Zout, s.Zin);
        if (store.oddorder) {
            if (t > 1) t = 1 / t;
            if (tables.tabratio <= t) break;
        } else {
            if (t < 1) t = hdiv(1, t);
            if (tables.tabratio > t || tables.tabratio == 0) break;
        }
    }
    closetablefile();
}

void getCRtabledata() {
    if (!tables.file1.is_open()) raisefault(52);
    while (!endoffile())
        if (readrecord() == current().order.value()) break;
    closetablefile();
}

void tablerealize() {
    DesignSlot& s = current();
    const double n = s.order;
    if (n > 16) raisefault(5);
    // An order the file lacks (0 among them) lays out no elements.
    const int last = clampint(Int(n), -16, 16);
    const double tr = tables.tabratio;
    const bool odd = n / 2 != Int(n / 2);
    store.oddorder = odd;
    const bool pi = flow.configuration == "Pi";
    const double zin = s.Zin, zout = s.Zout;

    // Per case: which termination multiplies by the ratio, the end that gives r0, the
    // layout, the reading of g and the end of the ladder.
    bool test, zoutup, r0isout, cfirst, forwards, wireend;
    if (pi && odd) {
        test = zin <= zout;
        zoutup = !test;
        r0isout = test;
        cfirst = true;
        forwards = test;
        wireend = true;
    } else if (pi) {
        test = zin <= zout;
        zoutup = test;
        r0isout = test;
        cfirst = test;
        forwards = test;
        wireend = !test;
    } else if (odd) {
        test = zin >= zout;
        zoutup = test;
        r0isout = !test;
        cfirst = false;
        forwards = test;
        wireend = false;
    } else {
        test = zin <= zout;
        zoutup = true;
        r0isout = !test;
        cfirst = !test;
        forwards = test;
        wireend = test;
    }
    // "Zin" keeps Zin and moves Zout; "Zout" keeps Zout and moves Zin.
    if (flow.termchoice == "Zin") s.Zout = zoutup ? zin * tr : hdiv(zin, tr);
    else if (flow.termchoice == "Zout") s.Zin = zoutup ? hdiv(zout, tr) : zout * tr;
    s.r0 = r0isout ? s.Zout : s.Zin;

    layladder(last, cfirst, forwards, wireend, s.Zout);
    settype(1, 1);
    s.dip(1).R = s.Zin;
}

} // namespace zelk
