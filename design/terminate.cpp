#include "design/terminate.h"

#include "core/designflow.h"
#include "core/designstore.h"

namespace zelk {

namespace {
} // namespace

Terminate::Terminate() : Window("terminate", "Termination") { build(); }

void Terminate::reset() {
    controls.clear();
    loaded = visible = false;
    focusname.clear();
    focusindex = -1;
    build();
}

void Terminate::build() {
    clientwidth = 420;
    clientheight = 200;
    Control& q = add(ControlKind::Label, "Label1", -1,
                     "This filter may not be able to meet both your \n"
                     "input and output impedance specifications.\n"
                     "If this should be true, do you want to use Zin, \n"
                     "or Zout as the design impedance or try to use \n"
                     "Both if possible?");
    q.left = 10;
    q.top = 10;
    q.width = 400;
    q.height = 80;
    Control& note = add(ControlKind::Label, "Label2", -1,
                        "The resultant stop-band frequency will be set higher than your specification "
                        "in order to avoid using inductors with mutual intuctance.");
    note.left = 10;
    note.top = 95;
    note.width = 400;
    note.height = 50;
    struct Button {
        const char* name;
        const char* caption;
        const char* tooltip;
    };
    static const Button buttons[3] = {{"Command1", "Use Zin", "Use Zin as design impedance"},
                                      {"Command2", "Uze Zout", "Use Zout as design impedance"},
                                      {"Command3", "Use Both", "Use both if possible"}};
    for (int i = 0; i < 3; ++i) {
        Control& b = add(ControlKind::Button, buttons[i].name, -1, buttons[i].caption);
        b.tooltip = buttons[i].tooltip;
        b.onclick = [this, i](int) { Command_Click(i); };
        b.left = 10 + 137 * i;
        b.top = 155;
        b.width = 127;
        b.height = 30;
    }
}

void Terminate::activate() { flow.termchoice.clear(); }

void Terminate::Command_Click(int which) {
    static const char* const choices[3] = {"Zin", "Zout", "BOTH"};
    if (which < 0 || which > 2) return;
    flow.termchoice = choices[which];
    hide();
}

} // namespace zelk
