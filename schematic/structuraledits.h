// Structural edits of the ladder in slot 0: the commands of the schematic's edit pop-up
// that add, remove, merge, split or exchange dipoles. Dipoles alternate series (odd) and
// shunt (even) by number, so every edit moves the dipoles after it by two and fills the
// other place with a blank: 38 (open, shunt place) or 6 (wire, series place).
#pragma once

namespace zelk {

struct StructuralState {
    // From the replace command until a palette click has been served.
    bool replacing = false;
};
inline StructuralState structural;

// Dipoles dipolecount down to first move two places to the right, every field with them;
// first and first + 1 keep their old contents. The schematic is cleared before the count
// grows by two. A ladder of 31 or 32 dipoles ends in the subscript fault.
void shiftright2(int first);
// Dipoles first + 2 onwards move two places to the left, for n = first to dipolecount;
// the count shrinks by two. The caller clears the schematic first and sets skipclear.
void shiftleft2(int first);

// EDIT pop-up commands on the dipole in hand (schem.selecteddipole).
void insertdipoles_Click();
void replace_Click();
void equamp_Click();
void split_Click();
void splitC_Click();
void swap_Click();
void group_Click();
void ungroup_Click();
// The types that Ungroup splits into two dipoles.
bool ungroupable(int type);
void ungroupL_Click();
void ungroupR_Click();

// The palette click of a replace: the dipole in hand takes type `type` (the palette
// index) before its value panel opens, so a cancelled panel leaves the new type with
// the old values. The palettes call this once the replace command has shown them.
void replacedipole(int type);

} // namespace zelk
