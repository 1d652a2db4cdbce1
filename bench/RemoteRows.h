// The rows of the watched program's list read from outside: through memory
// placed in the program, since the list view writes its texts where the
// request points.
#pragma once
#include <windows.h>

#include <string>

#include "bench/WatchedProgram.h"
#include "tools/lpdriver/RemoteBuffer.h"

namespace bench {

class RemoteRows {
public:
    RemoteRows(WatchedProgram& program, double limitMs);

    // The column with that heading, -1 when there is none (or the list has no header).
    int FindColumn(const std::wstring& heading);
    // The row whose first cell is name (without regard to case), -1 when there is none.
    int FindRow(const std::wstring& name);
    std::wstring Cell(int row, int column);

private:
    std::wstring ReadText();

    WatchedProgram& m_program;
    HWND m_list;
    double m_limitMs;
    lpdriver::RemoteBuffer m_buffer;
};

}  // namespace bench
