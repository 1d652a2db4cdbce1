// A library of ours loaded into another process for as long as the driver needs it:
// LoadLibraryW run there on a thread of its own (CreateRemoteThread), exported
// functions started there the same way, and FreeLibrary there at the end. Addresses
// in the other process come from the driver's own load of the same module: the
// offset of a function in its module is the same in both processes.
#pragma once
#include <windows.h>
#include "foundation/UniqueHandle.h"
#include <cstdint>
#include <string>

namespace lpdriver {

class RemoteLibrary {
public:
    // Loads the library (a full path) into the process that owns the window.
    RemoteLibrary(HWND window, const std::wstring& path);
    // Unloads it, unless a thread of ours may still run in it there.
    ~RemoteLibrary();
    RemoteLibrary(const RemoteLibrary&) = delete;
    RemoteLibrary& operator=(const RemoteLibrary&) = delete;

    // Runs the exported thread function on a new thread of the process with the
    // argument (an address there) and answers the thread's exit code.
    DWORD Call(const char* exportName, LPARAM argument, DWORD limitMs);

private:
    DWORD RunThread(uintptr_t start, LPARAM argument, DWORD limitMs);
    // Where the function at this address of the driver lies in the other process.
    uintptr_t RemoteAddressOf(const void* local) const;
    uintptr_t RemoteBaseOf(const std::wstring& moduleName) const;

    ky::UniqueHandle m_process;
    ky::UniqueHModule m_local;
    std::wstring m_name;
    uintptr_t m_remoteBase = 0;
    // A thread of ours that did not end in time may still run the library's code.
    bool m_busy = false;
};

}  // namespace lpdriver
