// Design files (".sch"): the one persistent form of a filter, one value per line, and
// the five file commands of the FILE and UTILITIES menus that write, read, delete and
// join them. The commands register themselves by their control names: `openfilter`,
// `savefilter`, `delete`, `append`, `insert`.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "core/designstore.h"

namespace zelk {

// The text of slot s as a design file: the 25 header lines (always the form with a
// design title) and 25 lines per dipole, each line ended by CR LF. Field 16 is the
// shared wA.
std::string designfiletext(int s);

// Writes slot s to `path` through a temporary file in the same folder that is then
// renamed over the old file, so that a failed save leaves the earlier file whole.
// False when nothing could be written, with the system's reason in `why`.
bool writedesignfile(const std::string& path, int s, std::string* why = nullptr);

// Reads a design file's text into slot s, the way the file commands read: one comma- or
// line-delimited item per field, quotes stripped from texts, the header form told by
// the length of the second text (3 characters or fewer: no design title, and the item
// is the code). wA is overwritten. Reading ends silently where the text ends: fields
// that get no item keep their values. A dipole number above 32 stops the reading.
// `aftertitle` runs right after the title is read.
void readdesign(std::string_view text, int s, const std::function<void()>& aftertitle = {});

// Reads the design file at `path` into slot s; a file that cannot be opened changes
// nothing. False when it could not be opened.
bool readdesignfile(const std::string& path, int s, const std::function<void()>& aftertitle = {});

// The joins of append and insert, on the text of the file to be joined. appenddesign puts
// the file's dipoles 2 to m behind dipole n - 1 of slot 0 (its source and the design's
// load go), running `beforecount` just before the dipole count becomes n + m - 2;
// insertdesign moves dipoles n..2 up by m - 2 and puts the file's dipoles 1 to m - 1
// ahead (the design's source and the file's load go). Titles are joined with "+".
void appenddesign(std::string_view text, const std::function<void()>& beforecount = {});
void insertdesign(std::string_view text);

// The file commands.
void openfilter_Click();
void savefilter_Click();
void delete_Click();
void append_Click();
void insert_Click();

// The user's design folder, made on first use and then given the example designs
// that ship beside the program ("designs" under programdir), so that a new user has
// something to open at once.
std::string userdesigns();

} // namespace zelk
