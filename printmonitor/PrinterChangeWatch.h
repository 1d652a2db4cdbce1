// Signals the holder's event when the session's printers or its default
// printer change. The spooler keeps its printers under
// HKLM\SYSTEM\CurrentControlSet\Control\Print\Printers and the user's default
// printer in the "Device" value of HKCU\...\Windows NT\CurrentVersion\Windows;
// the registry notifies the holder's event directly on a change of either, so
// the library runs no thread of its own and has nothing to stop at unload.
// A notification fires once: each later reading of the printers arms it again,
// before it reads, so that no change falls between two readings.
#pragma once
#include <windows.h>

#include "foundation/UniqueHandle.h"

namespace kypm {

class PrinterChangeWatch {
public:
    PrinterChangeWatch() = default;
    ~PrinterChangeWatch() { Stop(); }
    PrinterChangeWatch(const PrinterChangeWatch&) = delete;
    PrinterChangeWatch& operator=(const PrinterChangeWatch&) = delete;

    // Watches for this event from now on (the library keeps its own handle to
    // it); a null event ends the watch. False leaves the reason in the last error.
    bool Start(HANDLE event);
    // Arms both notifications again; nothing happens while no event is given.
    bool Rearm();
    void Stop();
    bool Active() const { return static_cast<bool>(m_event); }

private:
    bool Arm(HKEY key, bool subtree);

    ky::UniqueHandle m_event;
    ky::UniqueHKey m_printers;
    ky::UniqueHKey m_default;
};

}  // namespace kypm
