// The undo store: up to seven whole designs kept in slots 1 to 7 of the design table,
// slot 1 the newest. Every edit pushes the live design (slot 0) before it changes it;
// Undo pops the newest snapshot back into slot 0. With two filters open slot 1 holds the
// second filter, which is why edits and Undo are refused then.
#pragma once

namespace zelk {

struct UndoState {
    short undodepth = 0; // snapshots held, 0 to 7
    // Set by undopush, cleared when an edit command starts: a run-time fault of the edit
    // restores the design only when the edit had taken its snapshot.
    bool snapshottaken = false;
};
inline UndoState undostate;

inline constexpr short UNDOMAX = 7;

// Copies the live design down the stack (the oldest falls off at seven) and clears the
// inductor winding record of the live dipoles.
void undopush();
// Puts the newest snapshot back into slot 0; nothing on an empty stack.
void undopop();
// UTILITIES "Undo".
void undo_Click();
// The empty stack with the entry disabled and captioned "Undo" (File New, reset).
void undoreset();
// Called when an edit command starts.
void undobeginedit();
// What an edit that faults calls: the design as the edit's snapshot had it.
void undorestoreafterfault();

} // namespace zelk
