// How the driver and its menu probe inside the program speak: the request the
// driver leaves in the program's memory for the probe's entry point, the status the
// probe's thread ends with, and the records it writes back into a named section of
// shared memory that the driver has made (its name carries the driver's process id,
// so that drivers run side by side do not meet).
#pragma once
#include <windows.h>
#include "tools/lpdriver/probe/MenuItemRecord.h"
#include <cstdint>
#include <string>
#include <vector>

namespace lpdriver {

// Fixed-width fields: the driver writes it, the probe reads it in another process.
struct MenuProbeRequest {
    uint64_t frame = 0;            // the window whose menu bar is read
    uint32_t driverProcessId = 0;  // names the section
    uint32_t capacity = 0;         // the section's size in bytes
};

// The exit code of the probe's thread.
enum MenuProbeStatus : DWORD {
    kProbeRead = 0,       // the records are in the section
    kProbeNoChannel = 1,  // the section could not be opened
    kProbeNoWindow = 2,   // the frame is gone
    kProbeNoMenu = 3,     // the frame has no menu bar
    kProbeFull = 4,       // the records do not fit the section
    kProbeFailed = 5,     // anything else (no memory)
};

class MenuProbeChannel {
public:
    static constexpr const wchar_t* kLibraryName = L"lpmenuprobe.dll";
    static constexpr const char* kEntryName = "LpMenuProbeRun";
    static constexpr uint32_t kCapacity = 1u << 20;

    static std::wstring SectionName(DWORD driverProcessId);
    // False when the records do not fit; the section then says nothing.
    static bool Encode(const std::vector<MenuItemRecord>& records, void* section, size_t capacity);
    // False when the section does not hold what Encode writes.
    static bool Decode(const void* section, size_t capacity, std::vector<MenuItemRecord>& records);
    // A status in words, for the driver's error line.
    static std::wstring Explain(DWORD status);
};

}  // namespace lpdriver
