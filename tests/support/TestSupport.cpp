#include "tests/support/TestSupport.h"

#include <shlwapi.h>

#include <fstream>
#include <sstream>

#include "foundation/UniqueHandle.h"
#include "tests/support/ChildProcess.h"

namespace lptest {

namespace {

::testing::AssertionResult Fails(const char* what, const std::wstring& path, LONG rc) {
    return ::testing::AssertionFailure() << what << " " << Narrow(path) << " failed: " << rc;
}

void ExpectOk(const char* file, int line, const ::testing::AssertionResult& r) {
    if (!r) ADD_FAILURE_AT(file, line) << r.message();
}

::testing::AssertionResult SetRaw(HKEY root, const std::wstring& path, const std::wstring& name,
                                  DWORD type, const void* data, DWORD size) {
    ky::UniqueHKey key;
    LONG rc = RegCreateKeyExW(root, path.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr,
                              key.put(), nullptr);
    if (rc != ERROR_SUCCESS) return Fails("create key", path, rc);
    rc = RegSetValueExW(key.get(), name.c_str(), 0, type, static_cast<const BYTE*>(data), size);
    if (rc != ERROR_SUCCESS) return Fails("set value", path + L"\\" + name, rc);
    return ::testing::AssertionSuccess();
}

}  // namespace

std::wstring Widen(const std::string& s) {
    if (s.empty()) return {};
    int n = MultiByteToWideChar(CP_UTF8, 0, s.data(), static_cast<int>(s.size()), nullptr, 0);
    std::wstring w(n, L'\0');
    MultiByteToWideChar(CP_UTF8, 0, s.data(), static_cast<int>(s.size()), w.data(), n);
    return w;
}

std::string Narrow(const std::wstring& w) {
    if (w.empty()) return {};
    int n = WideCharToMultiByte(CP_UTF8, 0, w.data(), static_cast<int>(w.size()), nullptr, 0,
                                nullptr, nullptr);
    std::string s(n, '\0');
    WideCharToMultiByte(CP_UTF8, 0, w.data(), static_cast<int>(w.size()), s.data(), n, nullptr,
                        nullptr);
    return s;
}

void DeleteTree(HKEY root, const std::wstring& path) {
    RegDeleteTreeW(root, path.c_str());
    RegDeleteKeyW(root, path.c_str());
}

void CreateKey(const char* file, int line, HKEY root, const std::wstring& path) {
    ky::UniqueHKey key;
    LONG rc = RegCreateKeyExW(root, path.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr,
                              key.put(), nullptr);
    ExpectOk(file, line, rc == ERROR_SUCCESS ? ::testing::AssertionSuccess()
                                             : Fails("create key", path, rc));
}

void SetString(const char* file, int line, HKEY root, const std::wstring& path,
               const std::wstring& name, const std::wstring& value, DWORD type) {
    ExpectOk(file, line, SetRaw(root, path, name, type, value.c_str(),
                                static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t))));
}

void SetDword(const char* file, int line, HKEY root, const std::wstring& path,
              const std::wstring& name, DWORD value) {
    ExpectOk(file, line, SetRaw(root, path, name, REG_DWORD, &value, sizeof value));
}

void SetBinary(const char* file, int line, HKEY root, const std::wstring& path,
               const std::wstring& name, const void* data, DWORD size, DWORD type) {
    ExpectOk(file, line, SetRaw(root, path, name, type, data, size));
}

bool GetValue(HKEY root, const std::wstring& path, const std::wstring& name,
              std::vector<BYTE>& data, DWORD* type) {
    ky::UniqueHKey key;
    if (RegOpenKeyExW(root, path.c_str(), 0, KEY_READ, key.put()) != ERROR_SUCCESS) return false;
    DWORD size = 0, kind = 0;
    if (RegQueryValueExW(key.get(), name.c_str(), nullptr, &kind, nullptr, &size) != ERROR_SUCCESS)
        return false;
    data.assign(size, 0);
    if (RegQueryValueExW(key.get(), name.c_str(), nullptr, &kind, data.data(), &size) !=
        ERROR_SUCCESS)
        return false;
    data.resize(size);
    if (type) *type = kind;
    return true;
}

bool GetString(HKEY root, const std::wstring& path, const std::wstring& name, std::wstring& value) {
    std::vector<BYTE> data;
    DWORD type = 0;
    if (!GetValue(root, path, name, data, &type) || (type != REG_SZ && type != REG_EXPAND_SZ))
        return false;
    value.assign(reinterpret_cast<const wchar_t*>(data.data()), data.size() / sizeof(wchar_t));
    while (!value.empty() && value.back() == L'\0') value.pop_back();
    return true;
}

bool GetDword(HKEY root, const std::wstring& path, const std::wstring& name, DWORD& value) {
    std::vector<BYTE> data;
    DWORD type = 0;
    if (!GetValue(root, path, name, data, &type) || type != REG_DWORD || data.size() != 4)
        return false;
    memcpy(&value, data.data(), 4);
    return true;
}

void DeleteValue(HKEY root, const std::wstring& path, const std::wstring& name) {
    ky::UniqueHKey key;
    if (RegOpenKeyExW(root, path.c_str(), 0, KEY_SET_VALUE, key.put()) == ERROR_SUCCESS)
        RegDeleteValueW(key.get(), name.c_str());
}

TempDir::TempDir() {
    wchar_t base[MAX_PATH];
    GetTempPathW(MAX_PATH, base);
    static unsigned counter = 0;
    for (;;) {
        std::wstringstream name;
        name << base << L"lptest_" << GetCurrentProcessId() << L"_" << ++counter << L"\\";
        if (CreateDirectoryW(name.str().c_str(), nullptr)) {
            m_path = name.str();
            return;
        }
        if (GetLastError() != ERROR_ALREADY_EXISTS) throw std::runtime_error("no temp dir");
    }
}

TempDir::~TempDir() { RemoveTree(m_path); }

void RemoveTree(const std::wstring& dir) {
    std::wstring root = dir;
    if (!root.empty() && root.back() != L'\\') root += L'\\';
    WIN32_FIND_DATAW fd;
    ky::UniqueFind find(FindFirstFileW((root + L"*").c_str(), &fd));
    if (find) {
        do {
            std::wstring name = fd.cFileName;
            if (name == L"." || name == L"..") continue;
            std::wstring full = root + name;
            if (fd.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) {
                RemoveTree(full);
            } else {
                SetFileAttributesW(full.c_str(), FILE_ATTRIBUTE_NORMAL);
                DeleteFileW(full.c_str());
            }
        } while (FindNextFileW(find.get(), &fd));
    }
    find.reset();
    RemoveDirectoryW(root.c_str());
}

void WriteFile(const char* file, int line, const std::wstring& path, const std::string& content) {
    std::ofstream out(path.c_str(), std::ios::binary);
    out << content;
    if (!out) ADD_FAILURE_AT(file, line) << "cannot write " << Narrow(path);
}

std::string ReadFile(const std::wstring& path) {
    std::ifstream in(path.c_str(), std::ios::binary);
    std::stringstream s;
    s << in.rdbuf();
    return s.str();
}

bool FileExists(const std::wstring& path) {
    return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES;
}

std::wstring FirstMatch(const std::wstring& pattern) {
    WIN32_FIND_DATAW found;
    ky::UniqueFind find(FindFirstFileW(pattern.c_str(), &found));
    return find ? std::wstring(found.cFileName) : std::wstring();
}

bool CopyFileTo(const std::wstring& from, const std::wstring& to) {
    return CopyFileW(from.c_str(), to.c_str(), FALSE) != FALSE;
}

std::wstring BinDir() {
    wchar_t path[MAX_PATH];
    GetModuleFileNameW(nullptr, path, MAX_PATH);
    PathRemoveFileSpecW(path);
    return std::wstring(path) + L"\\";
}

RunResult RunProgram(const std::wstring& exe, const std::wstring& arguments, DWORD timeoutMs,
                     const std::wstring& directory) {
    RunResult result;
    ChildProcess program(exe, arguments, directory);  // ended at the limit by its destructor
    result.started = program.started();
    result.exitCode = program.Wait(timeoutMs);
    result.finished = result.started && result.exitCode != STILL_ACTIVE;
    return result;
}

void RegistryTest::SetUp() {
    DeleteTree(HKEY_LOCAL_MACHINE, kServerKey);
    DeleteTree(HKEY_CURRENT_USER, kPreferencesKey);
    LP_CREATE_KEY(HKEY_LOCAL_MACHINE, kServerKey);
}

void RegistryTest::TearDown() {
    DeleteTree(HKEY_LOCAL_MACHINE, kServerKey);
    DeleteTree(HKEY_CURRENT_USER, kPreferencesKey);
}

}  // namespace lptest
