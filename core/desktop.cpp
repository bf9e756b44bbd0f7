#include "core/desktop.h"

#include "core/hostmath.h"

namespace zelk {

namespace {
Desktop* current = nullptr;
}

Desktop& desktop() {
    if (!current) raisefault(91);
    return *current;
}

void setdesktop(Desktop* d) { current = d; }

} // namespace zelk
