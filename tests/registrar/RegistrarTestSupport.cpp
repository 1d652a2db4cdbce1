#include "tests/registrar/RegistrarTestSupport.h"

#include "foundation/UniqueHandle.h"

namespace regtest {

namespace {

void DumpInto(HKEY key, const std::wstring& prefix, StoreDump& dump) {
    for (DWORD i = 0;; ++i) {
        wchar_t name[16384];
        DWORD chars = 16384, type = 0, size = 0;
        if (RegEnumValueW(key, i, name, &chars, nullptr, &type, nullptr, &size) != ERROR_SUCCESS) break;
        StoredValue value{type, std::vector<BYTE>(size)};
        chars = 16384;
        RegEnumValueW(key, i, name, &chars, nullptr, &type, value.data.data(), &size);
        dump[prefix + name] = value;
    }
    for (DWORD i = 0;; ++i) {
        wchar_t name[256];
        DWORD chars = 256;
        if (RegEnumKeyExW(key, i, name, &chars, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS)
            break;
        ky::UniqueHKey child;
        if (RegOpenKeyExW(key, name, 0, KEY_READ, child.put()) == ERROR_SUCCESS)
            DumpInto(child.get(), prefix + name + L"\\", dump);
    }
}

}  // namespace

StoreDump DumpKey(HKEY root, const std::wstring& path) {
    StoreDump dump;
    ky::UniqueHKey key;
    if (RegOpenKeyExW(root, path.c_str(), 0, KEY_READ, key.put()) == ERROR_SUCCESS)
        DumpInto(key.get(), L"", dump);
    return dump;
}

bool KeyExists(HKEY root, const std::wstring& path) {
    ky::UniqueHKey key;
    return RegOpenKeyExW(root, path.c_str(), 0, KEY_READ, key.put()) == ERROR_SUCCESS;
}

int CountEntries(HKEY root, const std::wstring& path) {
    ky::UniqueHKey key;
    if (RegOpenKeyExW(root, path.c_str(), 0, KEY_READ, key.put()) != ERROR_SUCCESS) return -1;
    DWORD subkeys = 0, values = 0;
    RegQueryInfoKeyW(key.get(), nullptr, nullptr, nullptr, &subkeys, nullptr, nullptr, &values, nullptr,
                     nullptr, nullptr, nullptr);
    return static_cast<int>(subkeys + values);
}

std::unique_ptr<KYjutlRegistrar> RegistrarTest::Fresh(uint32_t mode) {
    auto registrar = std::make_unique<KYjutlRegistrar>(mode, L"TESTDOM", L"alice", &m_groups);
    registrar->m_hInstance = GetModuleHandleW(nullptr);
    return registrar;
}

std::unique_ptr<KYjutlRegistrar> RegistrarTest::Started(uint32_t mode) {
    auto registrar = Fresh(mode);
    EXPECT_TRUE(registrar->Initialize(nullptr, nullptr, nullptr, nullptr))
        << "error " << registrar->m_uError << " detail " << registrar->m_uErrorDetail;
    return registrar;
}

std::wstring Repeat(wchar_t c, size_t count) { return std::wstring(count, c); }

}  // namespace regtest
