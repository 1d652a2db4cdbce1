// Helpers shared by the Wine tests: real registry keys, real files, real child
// processes. Helpers that can fail take the caller's file and line (the LP_ macros)
// so that a failure points at the test, not at this file.
#pragma once
#include <windows.h>
#include <gtest/gtest.h>
#include <cstdint>
#include <string>
#include <vector>

namespace lptest {

inline constexpr const wchar_t* kServerKey = L"SOFTWARE\\Veltran\\Corvane\\AppServer";
inline constexpr const wchar_t* kCatalogueKey = L"SOFTWARE\\Veltran\\Corvane\\AppServer\\InstalledApps";
inline constexpr const wchar_t* kPreferencesKey = L"SOFTWARE\\Veltran\\Corvane\\LaunchPanel";

// Deletes a whole key tree (missing is fine).
void DeleteTree(HKEY root, const std::wstring& path);
// Creates the key (and its parents); fails the test on error.
void CreateKey(const char* file, int line, HKEY root, const std::wstring& path);
void SetString(const char* file, int line, HKEY root, const std::wstring& path,
               const std::wstring& name, const std::wstring& value, DWORD type = REG_SZ);
void SetDword(const char* file, int line, HKEY root, const std::wstring& path,
              const std::wstring& name, DWORD value);
void SetBinary(const char* file, int line, HKEY root, const std::wstring& path,
               const std::wstring& name, const void* data, DWORD size, DWORD type = REG_BINARY);
// Reads back a value: false when missing. type receives its kind.
bool GetValue(HKEY root, const std::wstring& path, const std::wstring& name,
              std::vector<BYTE>& data, DWORD* type = nullptr);
bool GetString(HKEY root, const std::wstring& path, const std::wstring& name, std::wstring& value);
bool GetDword(HKEY root, const std::wstring& path, const std::wstring& name, DWORD& value);
void DeleteValue(HKEY root, const std::wstring& path, const std::wstring& name);

#define LP_CREATE_KEY(...) ::lptest::CreateKey(__FILE__, __LINE__, __VA_ARGS__)
#define LP_SET_STRING(...) ::lptest::SetString(__FILE__, __LINE__, __VA_ARGS__)
#define LP_SET_DWORD(...) ::lptest::SetDword(__FILE__, __LINE__, __VA_ARGS__)
#define LP_SET_BINARY(...) ::lptest::SetBinary(__FILE__, __LINE__, __VA_ARGS__)

// A fresh, empty directory under the prefix's temp folder; removed with its content.
class TempDir {
public:
    TempDir();
    ~TempDir();
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;
    const std::wstring& path() const { return m_path; }  // ends with a backslash
    std::wstring operator/(const std::wstring& name) const { return m_path + name; }
private:
    std::wstring m_path;
};
void RemoveTree(const std::wstring& dir);
void WriteFile(const char* file, int line, const std::wstring& path, const std::string& content);
std::string ReadFile(const std::wstring& path);
bool FileExists(const std::wstring& path);
// The name of the first file that matches a pattern such as L"C:\\logs\\*.html"; empty when none.
std::wstring FirstMatch(const std::wstring& pattern);
bool CopyFileTo(const std::wstring& from, const std::wstring& to);
#define LP_WRITE_FILE(...) ::lptest::WriteFile(__FILE__, __LINE__, __VA_ARGS__)

// The folder that holds the program, lp.dll and the test programs (the folder of
// the running test executable).
std::wstring BinDir();

// A child process started with a command line and waited for with a limit.
struct RunResult {
    bool started = false;
    bool finished = false;   // false: killed at the time limit
    DWORD exitCode = 0;
};
RunResult RunProgram(const std::wstring& exe, const std::wstring& arguments, DWORD timeoutMs,
                     const std::wstring& directory = L"");

std::wstring Widen(const std::string& s);
std::string Narrow(const std::wstring& s);

// Resets the server and preference trees of this test: HKLM AppServer and
// HKCU LaunchPanel are removed, then the server key is made again, empty but for
// the values the tests always want (unattended monitor, log directory given).
class RegistryTest : public ::testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;
};

}  // namespace lptest
