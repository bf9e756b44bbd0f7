// The path of one LC design from its menu command to a finished dipole table: the steps
// that every design command runs in the same order (take a slot, function selector,
// design prompt by kind, getQu, title, normalised stop-band ratio, prototype,
// realisation, scale transform, schematic).
#pragma once

#include <string>

#include "core/designflow.h"

namespace zelk {

// One LC family as the flow runs it: family letter of the code ("B", "C", "E"), base
// title ("Butterworth"), the response sketch of its low-pass prompt (the other kinds
// follow in order: 1 gives 1, 2, 3, 4), its prototype and its realisation.
struct LCFamily {
    std::string letter;
    std::string basetitle;
    int firstpicture = 1;
    void (*prototype)() = nullptr;
    void (*realize)() = nullptr;
};

// Steps 2 to 4: takes the next slot, writes the family letter into its code and shows the
// function selector modally. False when the selector was cancelled (clearall has run).
bool takeslotandselect(const std::string& letter);

// Step 5: shows the response sketch of the kind, completes the code and runs the prompt of
// the kind (getdesign2, getdesign2, getdesign4b, getdesign4). False when the prompt was
// cancelled; newfilter_Click has then run.
bool kindprompt(const LCFamily& family);

// Sets title = base title + the kind's words.
void kindtitleset(const std::string& basetitle);

// Every part value of dipoles 1 to dipolecount of slot curslot must be finite; a value
// that is not raises the host's "Overflow" fault, so that a Design command is abandoned.
void checkfinite();

// Step 10: marks the design unsaved and shows the schematic (after checkfinite).
void finishdesign();

// The whole flow for an LC family (steps 2 to 10; the caller sets the help lines of
// step 1 first).
void lcdesign(const LCFamily& family);

// The menu commands.
void butterworth_Click();
void chebyshev_Click();

} // namespace zelk
