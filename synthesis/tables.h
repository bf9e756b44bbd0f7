// Table prototypes: the Bessel, Gaussian, transitional Gaussian, Legendre and linear-phase
// families take their normalised element lists from the .tbl files under the tables
// folder. A table command opens its file as the program's file 1; gettabledata (or
// getCRtabledata) reads one record from it into g and closes it; tablerealize lays the
// ladder out and moves one termination to the ratio that the record was computed for.
#pragma once

#include <fstream>
#include <string>

namespace zelk {

struct TableWork {
    double tabratio = 0; // termination ratio of the record last read (0 in the file reads 100)
    std::ifstream file1; // the table file while a table design reads it
};
inline TableWork tables;

// Opens a table file (a path literal such as "\tables\bessel.tbl") as file 1; a missing
// file is the host's "File not found" fault.
void opentablefile(const std::string& literal);
void closetablefile();

// Reads records from file 1 until one of the order of slot curslot fits its terminations
// (or end of file), leaving the last record read in g; closes the file.
void gettabledata();
// Reads records until the first of the order of slot curslot (no ratio test); closes.
void getCRtabledata();
// Lays g out as a Pi or T ladder, after moving Zout (or Zin) to the record's ratio.
void tablerealize();


} // namespace zelk
