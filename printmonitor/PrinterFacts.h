// What the library knows of one printer of the session, before it becomes a
// CLIENT_PRINTER_INFO record for a holder.
#pragma once
#include <string>

namespace kypm {

struct PrinterFacts {
    std::wstring name;
    std::wstring port;
    std::wstring driver;
    std::wstring manufacturer;
    bool isDefault = false;
    bool isFixed = false;
};

}  // namespace kypm
