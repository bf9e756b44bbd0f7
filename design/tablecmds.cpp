// The table family commands: each names its table file and base title, then the flow
// of a table design (prompt by kind, Q, title, record, layout, scale, schematic).
#include "design/tablecmds.h"

#include <cmath>

#include "core/designflow.h"
#include "core/designstore.h"
#include "core/desktop.h"
#include "core/framestate.h"
#include "design/lcflow.h"
#include "design/specprompts.h"
#include "entry/panel.h"
#include "synthesis/tables.h"
#include "synthesis/transforms.h"

namespace zelk {

namespace {

// The design of a table family: called with file 1 open and title set to the base title.
void tabledesign() {
    DesignSlot& s = slot(store.curslot);
    s.Astop = 0;
    s.Apass = 3;
    frame.designsaved = false;
    const int kind = flow.functionkind;
    if (kind < 0 || kind > 3) raisefault(5);
    s.code = "T" + kindcode(kind);
    panelimage(31 + kind);
    switch (kind) {
    case 0:
    case 1: getdesign2a(); break;
    case 2: getdesign4c(); break;
    default: getdesign4a(); break;
    }
    if (store.cancelled) {
        newfilter_Click();
        closetablefile();
        return;
    }
    getQu();
    kindtitleset(s.title);
    if (kind < 2) {
        s.w0 = s.w1;
    } else {
        s.w0 = std::sqrt(s.w1 * s.w2);
        flow.Qratio = hdiv(s.w0, s.w2 - s.w1);
    }
    if (s.order > 10) {
        MsgBox("Maximum order is 10.", vbOKOnly | vbExclamation, "WARNING");
        newfilter_Click();
        closetablefile();
        return;
    }
    gettabledata();
    tablerealize();
    scaletransform();
    finishdesign();
}

} // namespace

void tablecommand(const std::string& helpline, const std::string& file, const std::string& basetitle) {
    store.help1 = helpline;
    showhelplines();
    if (!takeslotandselect("T")) return;
    opentablefile(file);
    slot(store.curslot).title = basetitle;
    tabledesign();
}

void Bessel_Click() { tablecommand("Bessel Filter", "\\tables\\bessel.tbl", "Bessel"); }
void gaussian1_Click() { tablecommand("*Gaussian", "\\tables\\gaussian.tbl", "Gaussian"); }
void Gaussian6_Click() {
    tablecommand("*Transitional Gaussian to 6 db", "\\tables\\gauss6.tbl", "Transitional Gaussian");
}
void gaussian12_Click() {
    tablecommand("*Transitional Gaussian to 12 db", "\\tables\\gauss12.tbl", "Transitional Gaussian");
}
void legendre_Click() { tablecommand("*Legendre", "\\tables\\legendre.tbl", "Legendre"); }
void linearphase05_Click() {
    tablecommand("*Linear Phase (.05 degree ripple)", "\\tables\\linph05.tbl", "Linear Phase (.05 degree)");
}
void linearphase5_Click() {
    tablecommand("*Linear Phase (.5 degree ripple)", "\\tables\\linph5.tbl", "Linear Phase (.5 degree)");
}

} // namespace zelk
