// What the launch options of the command line gathered: the one program to start.
#pragma once
#include <cstdlib>
#include <memory>

// A heap copy of a text (as _wcsdup makes it); the launch path takes it over by moving it.
struct FreeDeleter {
    void operator()(void* p) const noexcept { std::free(p); }
};
using HeapString = std::unique_ptr<wchar_t, FreeDeleter>;

struct LAUNCH_INFO {
    HeapString pszName;       // item name, or the path of the program to launch
    HeapString pszPath;       // full path of nm.exe (Node Manager form only)
    HeapString pszClass;      // type text (Node Manager form only)
    HeapString pszArguments;  // arguments, or null
    HeapString pszDirectory;  // working directory, or null
    int nWindowState = -1;    // -1 until given
};
