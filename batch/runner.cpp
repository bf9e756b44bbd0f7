#include "batch/runner.h"

#include <algorithm>
#include <fstream>
#include <optional>
#include <sstream>

#include "core/commands.h"
#include "core/designstore.h"
#include "core/hostmath.h"
#include "shell/frame.h"

namespace zelk {

namespace {


std::string numbertext(const Number& n) {
    switch (n.kind()) {
    case Number::Kind::Empty: return "";
    case Number::Kind::Text: return dumptext(n.textvalue());
    default: return roundtrip(n.value());
    }
}

const char* buttonsname(int b) {
    static const char* names[] = {"OK", "OKCancel", "AbortRetryIgnore", "YesNoCancel", "YesNo", "RetryCancel"};
    return b >= 0 && b < 6 ? names[b] : "OK";
}

} // namespace

void dumpslot(int s, std::ostream& out) {
    const DesignSlot& d = slot(s);
    out << "title = " << dumptext(d.title) << '\n';
    out << "designtitle = " << dumptext(d.designtitle) << '\n';
    out << "code = " << dumptext(d.code) << '\n';
    const std::pair<const char*, const Number*> numbers[] = {
        {"order", &d.order}, {"Astop", &d.Astop}, {"Apass", &d.Apass}, {"Zin", &d.Zin},
        {"Zout", &d.Zout},   {"r0", &d.r0},       {"w0", &d.w0},       {"w1", &d.w1},
        {"w2", &d.w2},       {"w3", &d.w3},       {"w4", &d.w4},       {"bw", &d.bw},
        {"wA", &store.wA},   {"Ls", &d.Ls},       {"Cs", &d.Cs},       {"Cp", &d.Cp},
        {"Qx", &d.Qx},       {"Rs", &d.Rs},       {"Fs", &d.Fs},       {"Fp", &d.Fp},
        {"Fbw", &d.Fbw},     {"dipolecount", &d.dipolecount}};
    for (auto& [name, n] : numbers) out << name << " = " << numbertext(*n) << '\n';
    // The dipoles in use; a count beyond the tables (a misread file) shows the 32 there are.
    int count = std::min(d.count(), MAXDIPOLE);
    for (int k = 1; k <= count; ++k) {
        const Dipole& p = d.dip(k);
        auto r = [](double v) { return roundtrip(v); };
        out << "dipole " << k << " type=" << p.type << " R=" << r(p.R) << " C=" << r(p.C)
            << " L=" << r(p.L) << " Qu=" << r(p.Qu) << " K=" << r(p.K) << " Lcore=" << dumptext(p.Lcore)
            << " Lform=" << r(p.Lform) << " Lawg=" << r(p.Lawg) << " Lturns=" << r(p.Lturns)
            << " Llength=" << r(p.Llength) << " Ca=" << r(p.Ca) << " La=" << r(p.La)
            << " Qa=" << r(p.Qa) << " Kspare=" << r(p.Kspare) << " Lacore=" << dumptext(p.Lacore)
            << " Laform=" << r(p.Laform) << " Laawg=" << r(p.Laawg) << " Laturns=" << r(p.Laturns)
            << " Lalength=" << r(p.Lalength) << " Ls=" << r(p.Ls) << " Cs=" << r(p.Cs)
            << " Cp=" << r(p.Cp) << " Rs=" << r(p.Rs) << " Qx=" << r(p.Qx) << '\n';
    }
}

BatchRunner::BatchRunner(std::ostream& out, std::ostream& err) : out_(out), err_(err) {
    setdesktop(&desk);
    resetall();
    designframe_load();
}

BatchRunner::~BatchRunner() { setdesktop(nullptr); }

int BatchRunner::runtext(const std::string& text) {
    std::istringstream in(text);
    return run(in);
}

int BatchRunner::run(std::istream& script) {
    std::string line;
    try {
        while (std::getline(script, line)) {
            ++lineno_;
            runline(line);
        }
        for (const QueuedAnswer& a : desk.queue) {
            if (a.optional) continue;
            throw BatchStop{2, "the answer for " + a.window + " on line " + std::to_string(a.line) +
                                   " was never asked for"};
        }
    } catch (const BatchStop& stop) {
        err_ << "zelkfilter-batch: line " << lineno_ << ": " << stop.message << '\n';
        return stop.status;
    } catch (const RuntimeFault& f) {
        err_ << "zelkfilter-batch: line " << lineno_ << ": run-time error " << f.number << ": "
             << f.description << '\n';
        return 1;
    }
    return 0;
}

void BatchRunner::runline(const std::string& raw) {
    std::string line = raw;
    if (!line.empty() && line.back() == '\r') line.pop_back();
    size_t first = line.find_first_not_of(" \t");
    if (first == std::string::npos || line[first] == '#') return;
    line = line.substr(first);

    if (line[0] == '>') {
        bool optional = line.size() > 1 && line[1] == '?';
        std::string rest = line.substr(optional ? 2 : 1);
        size_t colon = rest.find(':');
        if (colon == std::string::npos) throw BatchStop{1, "an answer line needs WINDOW: ACTIONS"};
        std::string window = rest.substr(0, colon);
        window.erase(0, window.find_first_not_of(" \t"));
        window.erase(window.find_last_not_of(" \t") + 1);
        bool ok;
        std::vector<std::string> actions = tokenize(rest.substr(colon + 1), ok);
        if (!ok || window.empty()) throw BatchStop{1, "cannot parse the answer line"};
        if (window != "msgbox" && window != "filedialog" && !findwindow(window))
            throw BatchStop{1, "unknown window " + window};
        desk.queue.push_back({window, actions, optional, commands_, lineno_});
        return;
    }

    bool ok;
    std::vector<std::string> tokens = tokenize(line, ok);
    if (!ok || tokens.empty()) throw BatchStop{1, "cannot parse the line"};
    const std::string& verb = tokens[0];
    if (verb == "dump") return dump(tokens);
    if (verb == "export") return exportfile(tokens);
    if (verb == "event") return event(tokens);
    if (verb == "option") return option(tokens);
    if (tokens.size() != 1) throw BatchStop{1, "unknown command " + verb};
    runcommandline(verb);
}

void BatchRunner::runcommandline(const std::string& name) {
    const Command* c = findcommand(name);
    if (!c) throw BatchStop{1, "unknown command " + name};
    if (MenuItem* m = findmenu(name); m && !m->enabled)
        throw BatchStop{1, "command " + name + " is disabled"};
    long serial = commands_++;
    runcommand(*c);
    // Optional answers queued before this command that nobody took are dropped.
    for (auto it = desk.queue.begin(); it != desk.queue.end();) {
        if (it->optional && it->serial <= serial) it = desk.queue.erase(it);
        else ++it;
    }
}

void BatchRunner::dump(const std::vector<std::string>& t) {
    if (t.size() < 2) throw BatchStop{1, "dump needs what to dump"};
    const std::string& what = t[1];
    if (what == "slot") {
        if (t.size() != 3 || t[2].find_first_not_of("0123456789") != std::string::npos)
            throw BatchStop{1, "dump slot needs a slot number"};
        std::optional<long long> s = readinteger(t[2], 0, MAXSLOT);
        if (!s) throw BatchStop{1, "no slot " + t[2]};
        dumpslot(static_cast<int>(*s), out_);
    } else if (what == "helplines") {
        out_ << store.help1 << '\n' << store.help2 << '\n' << store.help3 << '\n' << store.help4 << '\n';
    } else if (what == "menus") {
        for (const MenuItem& m : menuitems())
            out_ << m.name << " enabled=" << (m.enabled ? 1 : 0) << " checked=" << (m.checked ? 1 : 0)
                 << " caption=" << dumptext(m.caption) << '\n';
    } else if (what == "messages") {
        for (const MessageRecord& m : desk.messages)
            out_ << "msgbox title=" << dumptext(m.title) << " buttons=" << buttonsname(m.buttons)
                 << " answer=" << m.answer << " text=" << dumptext(m.text) << '\n';
    } else if (DumpHandler h = finddump(what)) {
        std::vector<std::string> args;
        for (size_t i = 2; i < t.size(); ++i) args.push_back(unquote(t[i]));
        if (!h(args, out_)) throw BatchStop{1, "cannot dump " + what + " with these arguments"};
    } else {
        throw BatchStop{1, "unknown dump " + what};
    }
    out_.flush();
}

void BatchRunner::exportfile(const std::vector<std::string>& t) {
    if (t.size() < 3) throw BatchStop{1, "export needs a kind and a file"};
    ExportHandler h = findexport(t[1]);
    if (!h) throw BatchStop{1, "unknown export " + t[1]};
    std::vector<std::string> args;
    for (size_t i = 2; i < t.size(); ++i) args.push_back(unquote(t[i]));
    if (!h(args, err_)) throw BatchStop{1, "export " + t[1] + " failed"};
}

void BatchRunner::event(const std::vector<std::string>& t) {
    if (t.size() < 3) throw BatchStop{1, "event WINDOW CONTROL EVENT [ARGS]"};
    Window* w = findwindow(t[1]);
    if (!w) throw BatchStop{1, "unknown window " + t[1]};
    if (!w->loaded) throw BatchStop{1, "window " + t[1] + " is not open"};
    long serial = commands_++;
    auto fire = [&] {
        if (t.size() == 3 && t[2].find('=') != std::string::npos) {
            desk.apply(*w, t[2]);
            return;
        }
        if (t.size() < 4) throw BatchStop{1, "event needs an event name"};
        std::string name;
        int index;
        if (!splitname(t[2], name, index) || !w->find(name, index))
            throw BatchStop{1, "window " + t[1] + " has no control " + t[2]};
        const std::string& ev = t[3];
        if (ev == "click") w->click(name, index);
        else if (ev == "dblclick") w->dblclick(name, index);
        else if (ev == "gotfocus") w->focus(name, index);
        else if (ev == "mousedown" || ev == "mousemove" || ev == "mouseup") {
            // Buttons 1, 2 and 4 and their sums; the position a finite number each.
            std::optional<long long> button = t.size() == 7 ? readinteger(t[4], 0, 7) : std::nullopt;
            std::optional<double> x = t.size() == 7 ? readnumber(t[5]) : std::nullopt;
            std::optional<double> y = t.size() == 7 ? readnumber(t[6]) : std::nullopt;
            if (!button || !x || !y) throw BatchStop{1, ev + " needs BUTTON X Y (numbers)"};
            int kind = ev == "mousedown" ? 0 : ev == "mousemove" ? 1 : 2;
            w->mouse(name, index, kind, static_cast<int>(*button), 0, *x, *y);
        } else throw BatchStop{1, "unknown event " + ev};
    };
    guarded(fire);
    for (auto it = desk.queue.begin(); it != desk.queue.end();) {
        if (it->optional && it->serial <= serial) it = desk.queue.erase(it);
        else ++it;
    }
}

void BatchRunner::option(const std::vector<std::string>& t) {
    if (t.size() == 3 && (t[1] == "seed" || t[1] == "passes")) {
        if (t[2].empty() || t[2].size() > 18 || t[2].find_first_not_of("0123456789") != std::string::npos)
            throw BatchStop{1, "option " + t[1] + " needs a whole number"};
        if (t[1] == "seed") desk.seeded = true, desk.seed = std::stoull(t[2]);
        else if ((desk.passes = std::stol(t[2])) < 1) throw BatchStop{1, "option passes needs 1 or more"};
        return;
    }
    if (t.size() != 3 || (t[2] != "on" && t[2] != "off")) throw BatchStop{1, "option NAME on|off"};
    MenuItem* m = findmenu(t[1]);
    const Command* c = findcommand(t[1]);
    if (!m || !c) throw BatchStop{1, "unknown option " + t[1]};
    bool want = t[2] == "on";
    if (m->checked != want) {
        long serial = commands_++;
        (void)serial;
        runcommand(*c);
    }
}

} // namespace zelk
