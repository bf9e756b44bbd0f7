// The batch runner: runs a script of menu commands, queued answers for modal windows,
// events, options, dumps and exports on the scripted desktop.
#pragma once

#include <istream>
#include <ostream>
#include <string>

#include "batch/scripteddesktop.h"

namespace zelk {

class BatchRunner {
  public:
    // Resets every table of the program and starts the frame on a scripted desktop.
    BatchRunner(std::ostream& out, std::ostream& err);
    ~BatchRunner();

    ScriptedDesktop desk;

    // Runs a whole script; returns the exit status (0, 1 or 2).
    int run(std::istream& script);
    // Runs a script given as text (tests).
    int runtext(const std::string& text);

  private:
    std::ostream& out_;
    std::ostream& err_;
    long commands_ = 0;
    int lineno_ = 0;
    void runline(const std::string& line);
    void runcommandline(const std::string& name);
    void dump(const std::vector<std::string>& tokens);
    void exportfile(const std::vector<std::string>& tokens);
    void event(const std::vector<std::string>& tokens);
    void option(const std::vector<std::string>& tokens);
};

// Writes a slot in design-file order ("dump slot N").
void dumpslot(int s, std::ostream& out);

} // namespace zelk
