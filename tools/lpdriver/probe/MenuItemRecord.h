// One command item of a program's menu bar as a test reads it: its command id, the
// names that lead to it, its own text, and the state the program's update handlers
// gave it when its submenu was about to open.
#pragma once
#include <windows.h>
#include <string>

namespace lpdriver {

struct MenuItemRecord {
    UINT id = 0;
    std::wstring path;  // "File/Printers/Name": the plain names, without '&' or shortcut
    std::wstring text;  // the item's text as the menu holds it ("E&xit\tAlt+F4")
    bool enabled = false;
    bool checked = false;
};

}  // namespace lpdriver
