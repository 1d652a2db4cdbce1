// Shared set-up of the registrar tests: a registrar for the test user, whose
// resource module is the test program (it carries the registrar's texts).
#pragma once
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "registrar/KYjutlRegistrar.h"
#include "tests/support/TestSupport.h"

namespace regtest {

inline constexpr const wchar_t* kStandardStore = L"SOFTWARE\\Veltran\\Corvane\\LaunchPanel\\Settings\\Standard";
inline constexpr const wchar_t* kClassicStore = L"SOFTWARE\\Veltran\\Corvane\\LaunchPanel\\Settings\\Classic";
inline constexpr const wchar_t* kPositionsKey =
    L"SOFTWARE\\Veltran\\Corvane\\LaunchPanel\\Settings\\Standard\\LV_ItemsScreenPos";

// Every value of a key and of its subkeys, by "subkey\name", with kind and bytes.
struct StoredValue {
    DWORD type = 0;
    std::vector<BYTE> data;
    bool operator==(const StoredValue&) const = default;
};
using StoreDump = std::map<std::wstring, StoredValue>;
StoreDump DumpKey(HKEY root, const std::wstring& path);
bool KeyExists(HKEY root, const std::wstring& path);
// The number of values and subkeys of a key (-1 when it doesn't exist).
int CountEntries(HKEY root, const std::wstring& path);

class RegistrarTest : public lptest::RegistryTest {
protected:
    // A registrar that has read everything once, as at start-up.
    std::unique_ptr<KYjutlRegistrar> Started(uint32_t mode = KYjutlRegistrar::kModeStandard);
    // A registrar with its resource module set and nothing read yet.
    std::unique_ptr<KYjutlRegistrar> Fresh(uint32_t mode = KYjutlRegistrar::kModeStandard);
    std::vector<std::wstring> m_groups;
};

std::wstring Repeat(wchar_t c, size_t count);

}  // namespace regtest
