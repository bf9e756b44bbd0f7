// The menu commands of the table families: each names its table file and base title.
#include "core/commands.h"
#include "synthesis/tables.h"

namespace zelk {

namespace {

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

const bool reg = registercommand("Bessel", Bessel_Click, CommandKind::Design) &&
                 registercommand("gaussian1", gaussian1_Click, CommandKind::Design) &&
                 registercommand("Gaussian6", Gaussian6_Click, CommandKind::Design) &&
                 registercommand("gaussian12", gaussian12_Click, CommandKind::Design) &&
                 registercommand("legendre", legendre_Click, CommandKind::Design) &&
                 registercommand("linearphase05", linearphase05_Click, CommandKind::Design) &&
                 registercommand("linearphase5", linearphase5_Click, CommandKind::Design);

} // namespace

} // namespace zelk
