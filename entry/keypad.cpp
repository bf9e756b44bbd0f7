// The data panel's keypad: digits and suffix letters typed at the caret, backspace, clear,
// cancel, and a small calculator with one pending product or quotient (calcterm) and a
// running sum (calcsum). The row's text carries the pending operator as its first
// character.
#include <cmath>

#include "core/commands.h"
#include "core/designstore.h"
#include "core/hostmath.h"
#include "core/desktop.h"
#include "core/notation.h"
#include "entry/panel.h"

namespace zelk {

namespace {

struct Key {
    const char* caption;
    const char* tooltip;
};

// Keys 0 to 29. Key 16 shows the Greek mu and types "u"; 21 is no key; 28 and 29 are
// pictures (squared, square root).
const Key keys[30] = {
    {"0", ""},         {"1", ""},         {"2", ""},          {"3", ""},
    {"4", ""},         {"5", ""},         {"6", ""},          {"7", ""},
    {"8", ""},         {"9", ""},         {".", "decimel"},   {"bksp", "Backspace"},
    {"p", "pico-"},    {"m", "milli-"},   {"n", "nano-"},     {"K", "Kilo-"},
    {"\xC2\xB5", "micro-"}, {"M", "Mega-"}, {"Cancel", "Abort input"}, {"tab", "Tab to next value"},
    {"CLR", "Clear value"}, {"", ""},     {"+", "add"},       {"-", "subtract"},
    {"*", "multiply"}, {"/", "divide"},   {"=", "equals"},    {"%", "percent"},
    {"x\xC2\xB2", "Squared"}, {"\xE2\x88\x9A", "square root"}};


bool endspercent(const std::string& t) { return !t.empty() && t.back() == '%'; }

// Steps 1 and 2 of the calculator: a pending "*" or "/" row multiplies or divides the
// pending term. Returns false when the row holds no such operator.
bool productterm(const std::string& t) {
    if (t.empty() || (t[0] != '*' && t[0] != '/')) return false;
    Getdata& p = getdata;
    double v = parsevalue(std::string_view(t).substr(1));
    if (t[0] == '*') p.calcterm = endspercent(t) ? p.calcterm * v / 100 : p.calcterm * v;
    else p.calcterm = endspercent(t) ? hdiv(p.calcterm, v) * 100 : hdiv(p.calcterm, v);
    return true;
}

// The calculator step of "+", "-" and "=". The tab key's variant adds the row's text less
// its first character in the last case, so that the sign of "-5" is dropped.
void calculatorstep(const std::string& t, bool tabvariant) {
    Getdata& p = getdata;
    if (productterm(t)) {
        p.calcsum += p.calcterm;
        p.calcterm = 0;
    } else if (p.calcterm != 0) {
        p.calcsum += p.calcterm;
        p.calcterm = 0;
    } else if (tabvariant) {
        p.calcsum += parsevalue(t.empty() ? std::string_view{} : std::string_view(t).substr(1));
    } else {
        p.calcsum += parsevalue(t);
    }
}

// The product step of "*" and "/": the result stays pending.
void productstep(const std::string& t) {
    if (!productterm(t)) getdata.calcterm = parsevalue(t);
}

// The row shows the sum, the caret at its end, and the calculator starts again.
void showsum(int row) {
    Getdata& p = getdata;
    double sum = p.calcsum;
    p.setrow(row, engformat(sum));
    Control& r = p.getvalue(row);
    r.selstart = static_cast<int>(r.text.size());
    r.sellength = 0;
    p.calcsum = 0;
    p.calcterm = 0;
}

// Types text at the caret of the row, replacing the selection.
void insert(int row, const std::string& s) {
    Control& r = getdata.getvalue(row);
    int len = static_cast<int>(r.text.size());
    int start = std::min(std::max(r.selstart, 0), len);
    int sel = std::min(std::max(r.sellength, 0), len - start);
    std::string t = r.text;
    t.replace(static_cast<size_t>(start), static_cast<size_t>(sel), s);
    getdata.setrow(row, t);
    r.selstart = start + static_cast<int>(s.size());
    r.sellength = 0;
}

void replacerow(int row, const std::string& s) {
    getdata.setrow(row, s);
    Control& r = getdata.getvalue(row);
    r.selstart = static_cast<int>(s.size());
    r.sellength = 0;
}

void presskey(int i) {
    Getdata& p = getdata;
    if (p.retryentry) {
        // The first key after a refusal goes to the refused row.
        p.retryentry = false;
        if (p.retryrow >= 0) p.focus("getvalue", p.retryrow);
    }
    int row = p.currentrow;
    if (row < 0 || row >= PANELROWS) row = 0;
    const std::string t = p.getvalue(row).text;
    switch (i) {
    case 10: insert(row, "."); break;
    case 11: {
        Control& r = p.getvalue(row);
        int caret = std::min(r.selstart, static_cast<int>(r.text.size()));
        if (caret > 0) {
            r.selstart = caret - 1;
            r.sellength = 1;
            insert(row, "");
        }
        break;
    }
    case 12: insert(row, "p"); break;
    case 13: insert(row, "m"); break;
    case 14: insert(row, "n"); break;
    case 15: insert(row, "K"); break;
    case 16: insert(row, "u"); break;
    case 17: insert(row, "M"); break;
    case 18:
        // Cancel: the panel closes for good.
        p.closebox();
        return;
    case 19: tabdataindex(); return;
    case 20: replacerow(row, ""); break;
    case 21: return;
    case 22:
    case 23:
        calculatorstep(t, false);
        replacerow(row, i == 22 ? "+" : "-");
        break;
    case 24:
    case 25:
        productstep(t);
        replacerow(row, i == 24 ? "*" : "/");
        break;
    case 26:
        if (p.calcsum == 0 && p.calcterm == 0) break;
        calculatorstep(t, false);
        showsum(row);
        break;
    case 27: insert(row, "%"); break;
    case 28: {
        double v = parsevalue(t);
        replacerow(row, plainnum(std::pow(v, 2)));
        break;
    }
    case 29: {
        double v = parsevalue(t);
        if (v < 0) raisefault(5);
        replacerow(row, plainnum(std::sqrt(v)));
        break;
    }
    default:
        if (i >= 0 && i <= 9) insert(row, std::string(1, static_cast<char>('0' + i)));
        break;
    }
    // The key gives the focus back to the row.
    if (p.visible) p.focus("getvalue", row);
}

} // namespace

void keypadsetup(Getdata& panel) {
    for (int i = 0; i < 30; ++i) {
        Control& k = panel.ctl("keypad", i);
        k.caption = keys[i].caption;
        k.tooltip = keys[i].tooltip;
        k.visible = i != 21;
    }
}

void keypad_Click(int i) {
    // A fault of the calculator (a division by zero, the root of a negative number) shows
    // the host's box; the panel stays up with the row as it was.
    guarded([i] { presskey(i); });
}

void tabdataindex() {
    Getdata& p = getdata;
    int row = p.currentrow;
    if (row < 0 || row >= PANELROWS) row = 0;
    if (!(p.calcsum == 0 && p.calcterm == 0)) {
        calculatorstep(p.getvalue(row).text, true);
        showsum(row);
    }
    // The next row that is both enabled and visible, wrapping after row 8.
    int next = row;
    bool found = false;
    for (int tries = 0; tries < PANELROWS; ++tries) {
        next = next + 1 >= PANELROWS ? 0 : next + 1;
        const Control& r = p.getvalue(next);
        if (r.enabled && r.visible) {
            found = true;
            break;
        }
    }
    if (!found) {
        MsgBox("There is no value on this panel to move to.", vbOKOnly | vbExclamation, "WARNING");
        return;
    }
    p.currentrow = static_cast<short>(next);
    p.focus("getvalue", next);
    Control& r = p.getvalue(next);
    r.selstart = 0;
    r.sellength = std::min(16, static_cast<int>(r.text.size()));
}

} // namespace zelk
