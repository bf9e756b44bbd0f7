// The dispatch of commands: the shell installs its one command table (control name ->
// routine) here, and the menu model holds the captions, enabled and checked states that
// the frame logic sets. The desktop and
// the batch runner both run commands through runcommand, which turns a run-time fault
// into a message box and leaves the store as the command's own cancel path would.
#pragma once

#include <functional>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace zelk {

// What a command does when a run-time fault ends it.
enum class CommandKind {
    Plain,  // a message box, nothing more
    Design, // a design command: the design is abandoned through newfilter_Click
    Edit,   // an edit: the undo snapshot taken by the edit is restored
};

struct Command {
    std::string name;
    void (*run)();
    CommandKind kind;
};

// Batch output: "dump WHAT ARGS" and "export KIND WINDOW FILE" handlers, served by the
// folders that own the data. A handler returns false for arguments it cannot serve.
using DumpHandler = bool (*)(const std::vector<std::string>& args, std::ostream& out);
using ExportHandler = bool (*)(const std::vector<std::string>& args, std::ostream& err);
struct DumpEntry {
    const char* what;
    DumpHandler handler;
};
struct ExportEntry {
    const char* kind;
    ExportHandler handler;
};

// The tables the shell installs at reset.
struct CommandTables {
    const std::vector<Command>* commands = nullptr;
    const std::vector<DumpEntry>* dumps = nullptr;
    const std::vector<ExportEntry>* exports = nullptr;
};
void installcommandtables(const CommandTables& t);

// A command by control name: the installed table first, then any added at run time.
const Command* findcommand(std::string_view name);
// Adds a command at run time (tests add commands of their own); a name of the table is
// served by the table.
bool registercommand(std::string name, void (*run)(), CommandKind kind = CommandKind::Plain);

// Runs a command; a run-time fault shows the host's box ("Run-time error '11':",
// "Division by zero") and, by the command's kind, abandons the design or restores the
// edit's undo snapshot. Returns false when the command faulted.
bool runcommand(const Command& c);
// Runs any routine under the same fault handling.
bool guarded(const std::function<void()>& fn, CommandKind kind = CommandKind::Plain);

// What an edit that faults calls to put the design back (set by the undo store).
inline void (*restoreafterfault)() = nullptr;

// The menu model: items in menu order. Top-level menus have an empty parent.
struct MenuItem {
    std::string name;
    std::string caption;
    std::string parent;
    bool enabled = true;
    bool checked = false;
    bool visible = true;
    bool popup = false; // an item of the schematic's edit pop-up
};

std::vector<MenuItem>& menuitems();
// Adds an item at the end of the menu order.
MenuItem& addmenu(std::string name, std::string caption, std::string parent, bool popup = false);
MenuItem* findmenu(std::string_view name);
// Checked/enabled of an item; an unknown item reads as off.
bool menuchecked(std::string_view name);
bool menuenabled(std::string_view name);
void setenabled(std::string_view name, bool on);
void setchecked(std::string_view name, bool on);

// A text as batch dumps write it: in double quotes, a quote doubled, every host line
// break (CR, LF or CR LF) written as \n.
std::string dumptext(const std::string& s);

DumpHandler finddump(std::string_view what);
ExportHandler findexport(std::string_view kind);

} // namespace zelk
