#include "tests/printers/StandInLibrary.h"

#include <gtest/gtest.h>

#include "tests/support/TestSupport.h"

// A missing control export is a broken build of the stand-in: it fails the test
// and the reading answers -1 (or nothing), which no expectation takes for a count.
template <typename Fn>
Fn StandInLibrary::Find(const char* name) const {
    auto fn = m_module ? reinterpret_cast<Fn>(reinterpret_cast<void*>(::GetProcAddress(m_module.get(), name)))
                       : nullptr;
    if (!fn) ADD_FAILURE() << "the stand-in " << lptest::Narrow(m_path) << " does not export " << name;
    return fn;
}

void StandInLibrary::Open(const char* file, int line, const std::wstring& name) {
    m_path = lptest::BinDir() + name;
    m_module.reset(::LoadLibraryW(m_path.c_str()));
    if (!m_module) {
        ADD_FAILURE_AT(file, line) << "cannot load " << lptest::Narrow(m_path) << " (error " << ::GetLastError()
                                   << ")";
        return;
    }
    if (auto reset = Find<void (*)()>("StandIn_Reset")) reset();
}

void StandInLibrary::SetPrinters(int32_t count, uint64_t defaults, int32_t emptyNameIndex) {
    if (auto set = Find<void (*)(int32_t, uint64_t, int32_t)>("StandIn_SetPrinters"))
        set(count, defaults, emptyNameIndex);
}

void StandInLibrary::SetResult(const char* exportName, int32_t result) {
    if (auto set = Find<BOOL (*)(const char*, int32_t)>("StandIn_SetResult")) {
        EXPECT_TRUE(set(exportName, result)) << exportName << " is none of the twelve";
    }
}

int StandInLibrary::Calls(const char* exportName) const {
    auto calls = Find<int (*)(const char*)>("StandIn_CallCount");
    return calls ? calls(exportName) : -1;
}

int StandInLibrary::TotalCalls() const {
    auto total = Find<int (*)()>("StandIn_TotalCalls");
    return total ? total() : -1;
}

int32_t StandInLibrary::LiveRecords() const {
    auto live = Find<int32_t (*)()>("StandIn_LiveRecords");
    return live ? live() : -1;
}

int32_t StandInLibrary::LastStartMode() const {
    auto mode = Find<int32_t (*)()>("StandIn_LastStartMode");
    return mode ? mode() : -1;
}

HANDLE StandInLibrary::LastEvent() const {
    auto event = Find<HANDLE (*)()>("StandIn_LastEvent");
    return event ? event() : nullptr;
}

std::wstring StandInLibrary::LastName() const {
    auto name = Find<const wchar_t* (*)()>("StandIn_LastName");
    return name && name() ? name() : L"";
}
