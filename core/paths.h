// Where the program's files live on the user's machine. The tables the program ships
// sit under programdir; files the program writes (designs, user crystal sets) go under
// the user's data folder, with the shipped files as the fallback for reading.
#pragma once

#include <string>

namespace zelk {

// Maps a path literal of the system ("\tables\bessel.tbl", "\designs") to a real path.
// For reading, a file present in the user's data folder wins over the shipped one.
std::string mappath(const std::string& literal, bool forwriting = false);
// The folder of the user's designs, made if missing.
std::string designsdir();

} // namespace zelk
