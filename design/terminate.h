// The terminate window: asks how an even-order elliptic design, which cannot meet two
// arbitrary terminations without mutual inductance, should be terminated. Each button
// sets `termchoice` ("Zin", "Zout", "BOTH") and closes the window; closing it otherwise
// leaves `termchoice` empty.
#pragma once

#include "core/window.h"

namespace zelk {

class Terminate : public Window {
  public:
    Terminate();
    void reset() override;
    void activate() override;

    // Controls: Label1 (the question), Label2 (the note on the stop-band edge),
    // Command1 "Use Zin", Command2 "Uze Zout", Command3 "Use Both".
    void Command_Click(int which);

  private:
    void build();
};

inline Terminate terminatewindow;

} // namespace zelk
