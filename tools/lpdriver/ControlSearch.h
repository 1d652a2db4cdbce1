// Finding a common control of another process: the first visible one of its class,
// the window given or among its descendants, else under the process's visible
// top-level windows; waited for until a time limit.
#pragma once
#include <windows.h>
#include "tools/lpdriver/ArgumentList.h"
#include "tools/lpdriver/OutputWriter.h"

namespace lpdriver {

struct ControlQuery {
    DWORD processId = 0;    // ProcessWindows::kAnyProcess for any
    HWND within = nullptr;  // --window, when given
    DWORD limitMs = 0;
    int minimumRows = 0;    // list views only: wait for at least these items
};

// The process from the first positional word, the limit from the positional word
// at `limitIndex`, the window from --window.
ControlQuery ParseControlQuery(const ArgumentList& args, size_t limitIndex);

// Waits for the control; on time-out prints timeout=1 and fails as "not found".
HWND AwaitControl(const ControlQuery& query, const wchar_t* className, OutputWriter& out);

}  // namespace lpdriver
