#include "core/designflow.h"

namespace zelk {

std::string kindtitle(int kind) {
    switch (kind) {
    case 0: return " Low-Pass";
    case 1: return " High-Pass";
    case 2: return " Band-Pass";
    case 3: return " Band-Reject";
    default: return "";
    }
}

std::string kindcode(int kind) {
    switch (kind) {
    case 0: return "LP";
    case 1: return "HP";
    case 2: return "BP";
    case 3: return "BR";
    default: return "";
    }
}

} // namespace zelk
