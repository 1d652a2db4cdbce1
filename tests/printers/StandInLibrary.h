// The test's own hold on a stand-in print monitor library: it loads the same
// file that the host loads for the engine, so that both see one module, and it
// reaches the StandIn_ exports that script the library and read back its calls.
// Helpers that can fail take the caller's file and line (the SI_ macros).
#pragma once
#include <windows.h>

#include <cstdint>
#include <string>

#include "foundation/UniqueHandle.h"

class StandInLibrary {
public:
    // The three builds of the stand-in, beside the test program.
    static constexpr const wchar_t* kScripted = L"StandInPrintMon.dll";
    static constexpr const wchar_t* kWithoutUpdate = L"StandInPrintMonNoUpdate.dll";
    static constexpr const wchar_t* kRefusing = L"StandInPrintMonRefusing.dll";

    // Loads the file from the test programs' folder and resets its script and counts.
    void Open(const char* file, int line, const std::wstring& name);
    void Close() { m_module.reset(); }
    const std::wstring& Path() const { return m_path; }

    // The printers of the next enumerations: "Printer 0" and up, the defaults as
    // a bit mask over the indexes, one with an empty name (or -1 for none).
    void SetPrinters(int32_t count, uint64_t defaults = 0, int32_t emptyNameIndex = -1);
    // The answer of one of the twelve entry points, by its export name.
    void SetResult(const char* exportName, int32_t result);
    int Calls(const char* exportName) const;
    int TotalCalls() const;
    int32_t LiveRecords() const;
    int32_t LastStartMode() const;
    HANDLE LastEvent() const;
    std::wstring LastName() const;

private:
    template <typename Fn>
    Fn Find(const char* name) const;

    ky::UniqueHModule m_module;
    std::wstring m_path;
};

#define SI_OPEN(library, name) (library).Open(__FILE__, __LINE__, name)
