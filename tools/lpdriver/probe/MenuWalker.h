// Reads a menu bar item by item, each submenu first asked to update (WM_INITMENUPOPUP
// sent to the frame, as the system does before it shows the submenu) so that the
// program's update handlers set what is enabled and checked. Runs in the driver
// where the system lets one process read another's menus, and inside the program
// (the menu probe) where it does not.
#pragma once
#include <windows.h>
#include "tools/lpdriver/probe/MenuItemRecord.h"
#include <string>
#include <vector>

namespace lpdriver {

class MenuWalker {
public:
    // The command items of the menu, depth first in the menu's order; separators are
    // left out. Empty when the menu cannot be read from here.
    static std::vector<MenuItemRecord> Walk(HWND frame, HMENU menu);
    // An item's text as a path names it: '&' marks dropped ("&&" stays one '&'), the
    // shortcut after a tab cut off.
    static std::wstring PlainName(const std::wstring& text);

private:
    static void WalkInto(HWND frame, HMENU menu, const std::wstring& path, size_t depth,
                         std::vector<MenuItemRecord>& found);
};

}  // namespace lpdriver
