// The menu bar of a program read from inside it: where the system keeps menus
// inside their process (Wine), the driver loads its probe (lpmenuprobe.dll, beside
// lpdriver.exe) into the program, lets it read the menu there and write the records
// into shared memory of the driver, and unloads it again.
#pragma once
#include <windows.h>
#include "tools/lpdriver/probe/MenuItemRecord.h"
#include <string>
#include <vector>

namespace lpdriver {

class MenuProbe {
public:
    // The frame's menu items as MenuWalker reads them, each submenu updated first.
    static std::vector<MenuItemRecord> Read(HWND frame);

private:
    static std::wstring LibraryPath();
};

}  // namespace lpdriver
