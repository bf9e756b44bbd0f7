// The design prompts of the LC and table families: each fills the data panel
// with its rows and defaults from slot curslot, shows it, stores what was read, and
// repeats with what was typed until its check holds. A cancel leaves `cancelled` true.
#pragma once

namespace zelk {

void getdesign2();  // low-pass and high-pass
void getdesign4();  // band-reject
void getdesign4b(); // band-pass: centre, bandwidth, shape factor
void getdesign2a(); // table low-pass and high-pass
void getdesign4a(); // table band-reject
void getdesign4c(); // table band-pass
void getQu();       // inductor Q into flow.Qdesign

} // namespace zelk
