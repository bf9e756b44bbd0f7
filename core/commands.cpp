#include "core/commands.h"

#include "core/desktop.h"
#include "core/designstore.h"
#include "core/hostmath.h"
#include "core/framestate.h"

namespace zelk {

namespace {
CommandTables installed;
std::vector<Command>& extras() {
    static std::vector<Command> t;
    return t;
}
} // namespace

void installcommandtables(const CommandTables& t) { installed = t; }

bool registercommand(std::string name, void (*run)(), CommandKind kind) {
    for (Command& c : extras())
        if (c.name == name) {
            c.run = run;
            c.kind = kind;
            return true;
        }
    extras().push_back({std::move(name), run, kind});
    return true;
}

const Command* findcommand(std::string_view name) {
    if (installed.commands)
        for (const Command& c : *installed.commands)
            if (c.name == name) return &c;
    for (const Command& c : extras())
        if (c.name == name) return &c;
    return nullptr;
}

bool guarded(const std::function<void()>& fn, CommandKind kind) {
    // The store as the command found it, for the values a fault must not leave behind.
    const DesignStore before = store;
    try {
        fn();
        // A value that is no longer finite came from an operation the host would have
        // stopped with its overflow; the command ends as that fault would end it.
        if (!storefinite()) raisefault(6);
        return true;
    } catch (const RuntimeFault& f) {
        restorefinite(before);
        MsgBox("Run-time error '" + std::to_string(f.number) + "':\n\n" + f.description,
               vbOKOnly | vbCritical, "ZELK Filter Design");
        try {
            if (kind == CommandKind::Design) {
                newfilter_Click();
            } else if (kind == CommandKind::Edit && restoreafterfault) {
                restoreafterfault();
            }
        } catch (const RuntimeFault&) {
            // The recovery itself faulted: the store is left as it stands.
        }
        restorefinite(before);
        return false;
    }
}

bool runcommand(const Command& c) { return guarded(c.run, c.kind); }

std::vector<MenuItem>& menuitems() {
    static std::vector<MenuItem> m;
    return m;
}

MenuItem& addmenu(std::string name, std::string caption, std::string parent, bool popup) {
    if (MenuItem* m = findmenu(name)) return *m;
    MenuItem m;
    m.name = std::move(name);
    m.caption = std::move(caption);
    m.parent = std::move(parent);
    m.popup = popup;
    menuitems().push_back(std::move(m));
    return menuitems().back();
}

MenuItem* findmenu(std::string_view name) {
    for (MenuItem& m : menuitems())
        if (m.name == name) return &m;
    return nullptr;
}

bool menuchecked(std::string_view name) {
    MenuItem* m = findmenu(name);
    return m && m->checked;
}

bool menuenabled(std::string_view name) {
    MenuItem* m = findmenu(name);
    return m && m->enabled;
}

void setenabled(std::string_view name, bool on) {
    if (MenuItem* m = findmenu(name)) m->enabled = on;
}

void setchecked(std::string_view name, bool on) {
    if (MenuItem* m = findmenu(name)) m->checked = on;
}

std::string dumptext(const std::string& s) {
    std::string o = "\"";
    for (size_t i = 0; i < s.size(); ++i) {
        char c = s[i];
        if (c == '"') o += "\"\"";
        else if (c == '\r' && i + 1 < s.size() && s[i + 1] == '\n') continue;
        else if (c == '\n' || c == '\r') o += "\\n";
        else o += c;
    }
    return o + "\"";
}

DumpHandler finddump(std::string_view what) {
    if (installed.dumps)
        for (const DumpEntry& d : *installed.dumps)
            if (what == d.what) return d.handler;
    return nullptr;
}

ExportHandler findexport(std::string_view kind) {
    if (installed.exports)
        for (const ExportEntry& e : *installed.exports)
            if (kind == e.kind) return e.handler;
    return nullptr;
}

} // namespace zelk
