// The HELP and WINDOW menus and the calculator: the program's own help pages, the
// installation check window, the about box and the child window arrangements.
#pragma once

#include <string>
#include <vector>

#include "core/window.h"

namespace zelk {

// The main help page, looked for in the folder saved under "zkhelplocation" and then in
// the help folder beside the tables.
inline constexpr const char* HELPFILE = "zkhelp.html";

// The full path of an installed help page (the folder as above), or "" when not found.
std::string helppagepath(const std::string& page);

// The desktop calculators looked for on PATH, in order of preference.
const std::vector<std::string>& calculatorcandidates();
// The first calculator found in the folders of `path` (a PATH-style list), or "".
std::string findcalculator(const std::string& path);

// The installation check window: what the program finds where it looks for its files.
class Trouble : public Window {
  public:
    Trouble();
    void reset() override;
    void activate() override { draw(); }
    void resized() override { draw(); }
    // The report lines, as drawn.
    std::vector<std::string> lines() const;
    void draw();

  private:
    void build();
};
inline Trouble trouble;

void helper_Click();
void calculator_Click();
void aboutfilter_Click();
void troubleshoot_Click();
void update_Click();
void homepage_Click();
void installcalc_Click();
// The WINDOW menu: cascade (0), tile horizontally (1), vertically (2), arrange icons (3).
void arrange_Click(int code);

} // namespace zelk
