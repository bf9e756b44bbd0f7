#include "core/desktop.h"

#include "core/surface.h"

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

bool Desktop::picture(Window& w, const std::string& format, std::string& bytes, std::string& why) {
    auto* rec = dynamic_cast<RecordingSurface*>(w.surface);
    if (format != "svg" || !rec) {
        why = "this desktop cannot draw " + format;
        return false;
    }
    bytes = rec->svg();
    return true;
}

} // namespace zelk
