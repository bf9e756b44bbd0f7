#include "design/designfiles.h"

#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <limits>
#include <sstream>

#include "core/commands.h"
#include "core/designflow.h"
#include "core/desktop.h"
#include "core/hostmath.h"
#include "core/paths.h"
#include "schematic/schematicview.h"
#include "core/framestate.h"

namespace zelk {

namespace fs = std::filesystem;

namespace {

// ---------------------------------------------------------------------------------------
// Writing

std::string quotedtext(const std::string& s) { return "\"" + s + "\""; }

// A Number in whichever form its value has: empty when never set, a quoted text when a
// file put a text into it, else plain decimal (no point for an integer).
std::string numberline(const Number& n) {
    switch (n.kind()) {
    case Number::Kind::Empty: return {};
    case Number::Kind::Text: return quotedtext(n.textvalue());
    default: return Str(n.value());
    }
}

// ---------------------------------------------------------------------------------------
// Reading: the items of a file, one at a time, as the host's sequential input reads them.

struct Item {
    std::string text;
    bool quoted = false;
};

class ItemReader {
  public:
    explicit ItemReader(std::string_view t) : t_(t) {}

    // The next comma- or line-delimited item; false at the end of the text.
    bool next(Item& item) {
        while (i_ < t_.size() && (t_[i_] == ' ' || t_[i_] == '\t')) ++i_;
        if (i_ >= t_.size()) return false;
        item = Item{};
        if (t_[i_] == '"') {
            item.quoted = true;
            size_t close = t_.find('"', i_ + 1);
            if (close == std::string_view::npos) close = t_.size();
            item.text.assign(t_.substr(i_ + 1, close - i_ - 1));
            i_ = close < t_.size() ? close + 1 : close;
            // Anything between the closing quote and the delimiter is passed over.
            while (i_ < t_.size() && !isdelimiter(t_[i_])) ++i_;
        } else {
            size_t start = i_;
            while (i_ < t_.size() && !isdelimiter(t_[i_])) ++i_;
            std::string_view raw = t_.substr(start, i_ - start);
            while (!raw.empty() && (raw.back() == ' ' || raw.back() == '\t')) raw.remove_suffix(1);
            item.text.assign(raw);
        }
        enddelimiter();
        return true;
    }

  private:
    std::string_view t_;
    size_t i_ = 0;

    static bool isdelimiter(char c) { return c == ',' || c == '\r' || c == '\n'; }
    void enddelimiter() {
        if (i_ >= t_.size()) return;
        if (t_[i_] == '\r') {
            ++i_;
            if (i_ < t_.size() && t_[i_] == '\n') ++i_;
        } else {
            ++i_; // ',' or '\n'
        }
    }
};

enum class Conversion { Number, NotNumber, Overflow };

// Reads a whole item as a decimal number with a point as separator, whatever the
// locale: optional sign, digits with an optional point, optional exponent (E or D).
Conversion tonumber(std::string_view s, double& value, bool& integral) {
    size_t i = 0;
    std::string mantissa;
    if (i < s.size() && (s[i] == '+' || s[i] == '-')) {
        if (s[i] == '-') mantissa += '-';
        ++i;
    }
    int intdigits = 0, leadingfraczeros = 0;
    bool digits = false, point = false, nonzero = false;
    for (; i < s.size(); ++i) {
        char c = s[i];
        if (c >= '0' && c <= '9') {
            digits = true;
            if (c != '0') nonzero = true;
            if (!point && nonzero) ++intdigits;
            if (point && !nonzero) ++leadingfraczeros;
            mantissa += c;
        } else if (c == '.' && !point) {
            point = true;
            mantissa += c;
        } else {
            break;
        }
    }
    if (!digits) return Conversion::NotNumber;
    long exponent = 0;
    bool hasexponent = false;
    if (i < s.size() && (s[i] == 'e' || s[i] == 'E' || s[i] == 'd' || s[i] == 'D')) {
        ++i;
        bool negative = false;
        if (i < s.size() && (s[i] == '+' || s[i] == '-')) negative = s[i++] == '-';
        bool exdigits = false;
        for (; i < s.size() && s[i] >= '0' && s[i] <= '9'; ++i) {
            exdigits = true;
            if (exponent < 100000) exponent = exponent * 10 + (s[i] - '0');
        }
        if (!exdigits) return Conversion::NotNumber;
        if (negative) exponent = -exponent;
        hasexponent = true;
    }
    if (i != s.size()) return Conversion::NotNumber;
    std::string text = mantissa;
    if (hasexponent) text += "e" + std::to_string(exponent);
    double v = 0;
    auto res = std::from_chars(text.data(), text.data() + text.size(), v, std::chars_format::general);
    if (res.ec == std::errc::result_out_of_range) {
        // Too small to hold is zero; too large is the host's overflow.
        long magnitude = exponent + (intdigits > 0 ? intdigits : -leadingfraczeros);
        if (magnitude <= 0) {
            v = 0;
        } else {
            // The largest doubles are written rounded up beyond the range: they read
            // back as the largest.
            std::string tenth = mantissa + "e" + std::to_string(exponent - 1);
            double w = 0;
            auto r2 = std::from_chars(tenth.data(), tenth.data() + tenth.size(), w,
                                      std::chars_format::general);
            if (r2.ec != std::errc() || std::fabs(w) > 1.79769313486232e307) return Conversion::Overflow;
            v = std::copysign(std::numeric_limits<double>::max(), w);
        }
    } else if (res.ec != std::errc() || res.ptr != text.data() + text.size()) {
        return Conversion::NotNumber;
    }
    if (!std::isfinite(v)) return Conversion::Overflow;
    value = v;
    integral = !point && !hasexponent && std::fabs(v) <= 2147483647.0;
    return Conversion::Number;
}

// Number of characters of a UTF-8 text (continuation bytes do not count).
size_t charcount(const std::string& s) {
    size_t n = 0;
    for (unsigned char c : s)
        if ((c & 0xC0) != 0x80) ++n;
    return n;
}

// Field readers. Each takes one item; at the end of the text the field keeps its value.
class FieldReader {
  public:
    explicit FieldReader(std::string_view t) : items_(t) {}

    // A text field takes the item as it is, without its quotes.
    void text(std::string& f) {
        Item it;
        if (items_.next(it)) f = std::move(it.text);
    }
    // A Number field takes whatever the item holds: empty, a number, or a text.
    void number(Number& f) {
        Item it;
        if (!items_.next(it)) return;
        if (it.quoted) {
            f = Number::text(std::move(it.text));
            return;
        }
        if (it.text.empty()) {
            f = Number();
            return;
        }
        double v;
        bool integral;
        switch (tonumber(it.text, v, integral)) {
        case Conversion::Number: f = integral ? Number::integer(v) : Number(v); break;
        case Conversion::NotNumber: f = Number::text(std::move(it.text)); break;
        case Conversion::Overflow: break; // the host's overflow: the field keeps its value
        }
    }
    // The next item as a number: true with v (an empty item reads as 0); a quoted item,
    // a text that is no number or a number too large is consumed, and false.
    bool number(double& v) {
        Item it;
        if (!items_.next(it) || it.quoted) return false;
        if (it.text.empty()) {
            v = 0;
            return true;
        }
        bool integral;
        return tonumber(it.text, v, integral) == Conversion::Number;
    }
    // A Double field: set from the next item when it is a number, else kept.
    void real(double& f) {
        double v;
        if (number(v)) f = v;
    }
    // A 16-bit integer field: as real, rounded to the nearest integer (half to even)
    // and kept outside -32768..32767.
    void integer(short& f) {
        double v;
        if (!number(v)) return;
        v = std::nearbyint(v);
        if (v >= -32768 && v <= 32767) f = static_cast<short>(v);
    }

    void dipole(Dipole& p) {
        integer(p.type);
        real(p.R);
        real(p.C);
        real(p.L);
        real(p.Qu);
        real(p.K);
        text(p.Lcore);
        real(p.Lform);
        real(p.Lawg);
        real(p.Lturns);
        real(p.Llength);
        real(p.Ca);
        real(p.La);
        real(p.Qa);
        real(p.Kspare);
        text(p.Lacore);
        real(p.Laform);
        real(p.Laawg);
        real(p.Laturns);
        real(p.Lalength);
        real(p.Ls);
        real(p.Cs);
        real(p.Cp);
        real(p.Rs);
        real(p.Qx);
    }

    // The header into d, field 16 into wa. The second text decides the form: longer than
    // 3 characters it is the design title and the code follows; else it is the code and
    // the design title is left as it was. `aftertitle` runs right after the title.
    void header(DesignSlot& d, Number& wa, const std::function<void()>& aftertitle = {}) {
        text(d.title);
        if (aftertitle) aftertitle();
        std::string second;
        text(second);
        if (charcount(second) > 3) {
            d.designtitle = second;
            text(d.code);
        } else {
            d.code = second;
        }
        for (Number* n : {&d.order, &d.Astop, &d.Apass, &d.Zin, &d.Zout, &d.r0, &d.w0, &d.w1,
                          &d.w2, &d.w3, &d.w4, &d.bw, &wa, &d.Ls, &d.Cs, &d.Cp, &d.Qx, &d.Rs,
                          &d.Fs, &d.Fp, &d.Fbw, &d.dipolecount})
            number(*n);
    }

  private:
    ItemReader items_;
};

// Runs one step of a file command with run-time errors ignored: a fault ends the step
// silently and the command goes on with the next.
void quiet(const std::function<void()>& step) {
    try {
        step();
    } catch (const RuntimeFault&) {
    }
}

// The whole content of a file; false, with the system's reason, when it is not a regular
// file that can be read (a folder opens as a stream but fails on the first read).
bool slurp(const std::string& path, std::string& out, std::string& why) {
    std::error_code ec;
    fs::file_status st = fs::status(path, ec);
    if (ec) {
        why = ec.message();
        return false;
    }
    if (fs::is_directory(st)) {
        why = std::make_error_code(std::errc::is_a_directory).message();
        return false;
    }
    if (!fs::is_regular_file(st)) {
        why = "not a regular file";
        return false;
    }
    std::FILE* f = std::fopen(path.c_str(), "rb");
    if (!f) {
        why = std::strerror(errno);
        return false;
    }
    std::string text;
    char buf[65536];
    size_t got;
    while ((got = std::fread(buf, 1, sizeof buf, f)) > 0) text.append(buf, got);
    const bool failed = std::ferror(f) != 0;
    if (failed) why = std::strerror(errno);
    std::fclose(f);
    if (failed) return false;
    out = std::move(text);
    return true;
}

// The text of the chosen file, or an empty text when it cannot be read: then every read
// of the command fails as the host's reads of a file it could not open, and the desktop
// is told which file and why.
std::string chosenfile(const std::string& path) {
    std::string text, why;
    if (!slurp(path, text, why)) desktop().filenotread(path, why);
    return text;
}

// Shows a file dialog; false on cancel or a name that begins with "*".
bool askfile(FileDialogRequest& r) {
    if (!desktop().filedialog(r)) return false;
    return !r.filename.empty() && r.filename.front() != '*';
}

FileDialogRequest openrequest(std::string title, std::string initdir) {
    FileDialogRequest r;
    r.title = std::move(title);
    r.initdir = std::move(initdir);
    r.filename = "*.sch";
    return r;
}

// The name with its last four characters replaced by ".sch"; false when the name has
// fewer than four characters (the cut fails and nothing is saved).
bool schname(const std::string& name, std::string& out) {
    size_t cut = name.size();
    for (int k = 0; k < 4; ++k) {
        if (cut == 0) return false;
        --cut;
        while (cut > 0 && (static_cast<unsigned char>(name[cut]) & 0xC0) == 0x80) --cut;
    }
    out = name.substr(0, cut) + ".sch";
    return true;
}

// A dipole number from a count that a file may have made fractional or huge: rounded to
// the nearest integer as the host rounds a subscript; beyond any table it faults.
int index(double k) {
    double r = std::nearbyint(k);
    if (r < -1 || r > MAXDIPOLE + 1) raisefault(9);
    return static_cast<int>(r);
}

// The dipole count of a join, n + m - 2; a sum too large to hold is the host's overflow.
Number joinedcount(double n, double m) {
    double c = n + m - 2;
    if (!std::isfinite(c)) raisefault(6);
    return Number(c);
}

// The header of a file that append and insert join: title, design title and dipole count
// are kept, its other header values go to scratch fields.
struct JoinHeader {
    DesignSlot scratch;
    Number wa;
};


} // namespace

std::string designfiletext(int s) {
    const DesignSlot& d = slot(s);
    std::string out;
    auto line = [&out](const std::string& v) {
        out += v;
        out += "\r\n";
    };
    line(quotedtext(d.title));
    line(quotedtext(d.designtitle));
    line(quotedtext(d.code));
    const Number* numbers[] = {&d.order, &d.Astop, &d.Apass, &d.Zin, &d.Zout, &d.r0,
                               &d.w0,    &d.w1,    &d.w2,    &d.w3,  &d.w4,   &d.bw,
                               &store.wA, &d.Ls,   &d.Cs,    &d.Cp,  &d.Qx,   &d.Rs,
                               &d.Fs,    &d.Fp,    &d.Fbw,   &d.dipolecount};
    for (const Number* n : numbers)
        line(numberline(*n));
    // Nothing beyond dipole 32 exists to be written.
    double count = d.dipolecount.value();
    for (int k = 1; k <= count && k <= MAXDIPOLE; ++k) {
        const Dipole& p = d.dip(k);
        line(std::to_string(p.type));
        for (double v : {p.R, p.C, p.L, p.Qu, p.K}) line(Str(v));
        line(quotedtext(p.Lcore));
        for (double v : {p.Lform, p.Lawg, p.Lturns, p.Llength, p.Ca, p.La, p.Qa, p.Kspare})
            line(Str(v));
        line(quotedtext(p.Lacore));
        for (double v : {p.Laform, p.Laawg, p.Laturns, p.Lalength, p.Ls, p.Cs, p.Cp, p.Rs, p.Qx})
            line(Str(v));
    }
    return out;
}

bool writedesignfile(const std::string& path, int s, std::string* why) {
    std::string reason;
    auto fail = [&](std::string r) {
        if (why) *why = std::move(r);
        return false;
    };
    std::string text = designfiletext(s);
    fs::path target(path);
    std::error_code ec;
    // A file marked read-only is not replaced, even by a user the system would let
    // rename over it.
    fs::file_status st = fs::status(target, ec);
    if (!ec && fs::is_directory(st)) return fail(std::make_error_code(std::errc::is_a_directory).message());
    if (!ec && fs::exists(st) &&
        (st.permissions() & (fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write)) ==
            fs::perms::none)
        return fail(std::make_error_code(std::errc::permission_denied).message());
    fs::path temp = target.parent_path() / ("." + target.filename().string() + ".saving");
    std::FILE* f = std::fopen(temp.c_str(), "wb");
    if (!f) return fail(std::strerror(errno));
    bool ok = std::fwrite(text.data(), 1, text.size(), f) == text.size() && std::fflush(f) == 0;
    if (!ok) reason = std::strerror(errno);
    if (std::fclose(f) != 0 && ok) {
        ok = false;
        reason = std::strerror(errno);
    }
    if (!ok) {
        fs::remove(temp, ec);
        return fail(reason);
    }
    fs::rename(temp, target, ec);
    if (ec) {
        reason = ec.message();
        fs::remove(temp, ec);
        return fail(reason);
    }
    return true;
}

void readdesign(std::string_view text, int s, const std::function<void()>& aftertitle) {
    FieldReader r(text);
    DesignSlot& d = slot(s);
    r.header(d, store.wA, aftertitle);
    double count = d.dipolecount.value();
    // A dipole number beyond the tables ends the reading.
    for (double k = 1; k <= count && k <= MAXDIPOLE; ++k) r.dipole(d.dip(static_cast<int>(k)));
}

bool readdesignfile(const std::string& path, int s, const std::function<void()>& aftertitle) {
    std::string text, why;
    if (!slurp(path, text, why)) return false;
    readdesign(text, s, aftertitle);
    return true;
}

std::string userdesigns() {
    std::error_code ec;
    fs::path dir = fs::path(desktop().userdatadir()) / "designs";
    bool fresh = !fs::exists(dir, ec);
    std::string made = designsdir();
    if (fresh && !desktop().programdir().empty()) {
        fs::path shipped = fs::path(desktop().programdir()) / "designs";
        for (fs::directory_iterator it(shipped, ec), end; !ec && it != end; it.increment(ec)) {
            if (it->path().extension() != ".sch") continue;
            std::error_code ce;
            fs::copy_file(it->path(), fs::path(made) / it->path().filename(),
                          fs::copy_options::skip_existing, ce);
        }
    }
    return made;
}

void openfilter_Click() {
    sethelp("Using the standard Windows file open dialog box above, select a filter file to be loaded.",
            "Only Two filters can be open at a time.", "",
            "When finished, select File New, do not close the window individually.");
    FileDialogRequest r = openrequest("Open Filter", userdesigns());
    if (!askfile(r)) return;
    const std::string text = chosenfile(r.filename);
    quiet([] {
        store.lastslot = static_cast<short>(store.lastslot + 1);
        store.curslot = store.lastslot;
    });
    quiet([] {
        setenabled("pSch", store.lastslot <= 0);
        setenabled("xSch", store.lastslot <= 0);
    });
    quiet([&] {
        int s = store.curslot;
        // The slot's schematic window is captioned with the title as soon as it is read.
        readdesign(text, s, [s] { quiet([s] { schematicwindow(s).caption = slot(s).title; }); });
    });
    quiet([] {
        const std::string& code = slot(store.curslot).code;
        std::string ending = code.size() >= 2 ? code.substr(code.size() - 2) : code;
        if (ending == "LP") flow.previouskind = 0;
        else if (ending == "HP") flow.previouskind = 1;
        else if (ending == "BP") flow.previouskind = 2;
        else if (ending == "BR") flow.previouskind = 3;
    });
    quiet(updatemenus);
    quiet([] {
        setenabled("savefilter", true);
        if (store.lastslot > 0) setenabled("openfilter", false);
        setenabled("printfilter", true);
    });
    quiet(schematicbuild);
}

void savefilter_Click() {
    sethelp("Using the standard Windows file Save dialog box above,",
            "select a name and directory for the filter file to be Saved.",
            "The schematic must have a .sch extension.",
            "Only a filter Designed or Entered can be saved.");
    FileDialogRequest r;
    r.save = true;
    r.title = "Save Filter";
    r.initdir = userdesigns();
    const std::string& code = slot(0).code;
    r.filename = code.empty() ? "*.sch" : code + ".sch";
    r.filter = "Designs(*.sch)|*.sch|All files(*.*)|*.*";
    if (!askfile(r)) return;
    std::string name = r.filename;
    bool saved = false;
    std::string why = "the name is too short to take the .sch ending";
    if (schname(r.filename, name)) quiet([&] { saved = writedesignfile(name, 0, &why); });
    // A save that wrote nothing says so and leaves the design unsaved, so that closing
    // it still asks.
    if (!saved) {
        MsgBox("The filter was not saved to\n" + name + "\n" + why, vbOKOnly | vbExclamation, "Save Filter");
        return;
    }
    frame.designsaved = true;
}

void delete_Click() {
    sethelp("Using the standard Windows file dialog box above,", "select a filter file to be Deleted.",
            "", "");
    FileDialogRequest r = openrequest("Delete Filter", "");
    if (!askfile(r)) return;
    if (MsgBox("Do you really want to delete\r" + r.filename, vbOKCancel | vbQuestion,
               "Should I Really") != vbOK)
        return;
    std::error_code ec;
    fs::remove(r.filename, ec);
}

void appenddesign(std::string_view text, const std::function<void()>& beforecount) {
    double n = 0;
    quiet([&] { n = slot(0).dipolecount.value(); });
    JoinHeader h;
    FieldReader f(text);
    f.header(h.scratch, h.wa);
    double m = h.scratch.dipolecount.value();
    Dipole source;
    f.dipole(source); // the file's source resistor is dropped
    // The file's dipoles 2, 3, ... go to n, n+1, ...: its dipole 2 replaces the load. The
    // last pass finds the end of the file and leaves its dipole as it was.
    quiet([&] {
        for (double k = n; k <= n + m - 1; ++k) {
            if (k > MAXDIPOLE) break;
            f.dipole(dipole(0, index(k)));
        }
    });
    if (beforecount) quiet(beforecount);
    quiet([&] { slot(0).dipolecount = joinedcount(n, m); });
    quiet([&] {
        DesignSlot& d = slot(0);
        d.title = d.title + "+" + h.scratch.title;
        d.designtitle = d.designtitle + "+" + h.scratch.designtitle;
    });
}

void insertdesign(std::string_view text) {
    double n = 0;
    quiet([&] { n = slot(0).dipolecount.value(); });
    JoinHeader h;
    FieldReader f(text);
    f.header(h.scratch, h.wa);
    double m = h.scratch.dipolecount.value();
    // Dipoles n down to 2 move up by m - 2, last first, all fields together; a move from
    // or to a number outside the tables faults and is skipped, so the walk may start
    // just above the tables.
    double shift = m - 2;
    double first = n > 40 ? 40 + (n - std::floor(n)) : n;
    for (double k = first; k >= 2; --k) {
        quiet([&] {
            Dipole moved = dipole(0, index(k));
            dipole(0, index(k + shift)) = moved;
        });
    }
    quiet([&] { slot(0).dipolecount = joinedcount(n, m); });
    // The file's dipoles 1 to m - 1 take numbers 1 to m - 1: its source replaces the
    // design's, its load stays unread.
    quiet([&] {
        for (double k = 1; k <= m - 1; ++k) {
            if (k > MAXDIPOLE) break;
            f.dipole(dipole(store.curslot, index(k)));
        }
    });
    quiet([&] {
        DesignSlot& d = slot(store.curslot);
        d.title = h.scratch.title + "+" + d.title;
    });
    quiet([&] {
        DesignSlot& d = slot(0);
        d.designtitle = h.scratch.designtitle + "+" + d.designtitle;
    });
}

void append_Click() {
    sethelp("Using the standard Windows file open dialog box above,",
            "select a filter file to be appended.",
            "This is primarily to design high-pass, low-pass type of broadband band-pass filters.",
            "It will append any filter even if the result doesn't make sense.");
    FileDialogRequest r = openrequest("Open Filter", "");
    if (!askfile(r)) return;
    const std::string text = chosenfile(r.filename);
    // The drawing is cleared while the dipole count is still the one drawn.
    appenddesign(text, [] { schematicclear(store.curslot); });
    frame.designsaved = false;
    quiet(schematicbuild);
}

void insert_Click() {
    sethelp("Using the standard Windows file open dialog box above,",
            "select a filter file to be inserted.",
            "This is primarily to design high-pass / low-pass type of broadband band-pass filters.",
            "It will insert any filter even if the result doesn't make sense.");
    FileDialogRequest r = openrequest("Open Filter", "");
    if (!askfile(r)) return;
    quiet([] { schematicclear(store.curslot); });
    const std::string text = chosenfile(r.filename);
    insertdesign(text);
    frame.designsaved = false;
    quiet(schematicbuild);
}

} // namespace zelk
