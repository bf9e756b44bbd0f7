#include "entry/designtitle.h"

#include "core/commands.h"
#include "core/designstore.h"
#include "core/desktop.h"

namespace zelk {

namespace {
}

DesignTitle::DesignTitle() : Window("designtitle", "Design Title") { build(); }

void DesignTitle::reset() {
    controls.clear();
    loaded = visible = false;
    isup = false;
    build();
}

void DesignTitle::build() {
    clientwidth = 480;
    clientheight = 110;
    Control& l = add(ControlKind::Label, "Label1", -1, "Enter a title for this design:");
    l.left = 12;
    l.top = 10;
    l.width = 456;
    l.height = 20;
    Control& t = add(ControlKind::Text, "Text1");
    t.left = 12;
    t.top = 34;
    t.width = 456;
    t.height = 24;
    t.tooltip = "The title printed on the schematic";
    Control& b = add(ControlKind::Button, "Command1", -1, "OK");
    b.left = 388;
    b.top = 70;
    b.width = 80;
    b.height = 28;
    b.onclick = [this](int) { Command1_Click(); };
}

void DesignTitle::Command1_Click() {
    slot(store.curslot).designtitle = ctl("Text1").text;
    unload();
}

void designtitle_show() {
    DesignTitle& w = designtitlewindow;
    Control& t = w.ctl("Text1");
    t.text = "(" + desktop().date() + ") " + slot(store.curslot).title;
    t.selstart = 0;
    t.sellength = static_cast<int>(t.text.size());
    w.isup = true;
    w.showmodal();
    w.isup = false;
}

} // namespace zelk
