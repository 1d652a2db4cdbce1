// One published application of the catalogue, as the registrar read it.
#pragma once
#include <windows.h>
#include <vector>

// Every string is the record's own heap copy (malloc), released with free; whoever
// takes a string over nulls the field here.
struct KYjutlRegistrar_FILE {
    wchar_t* pszAppName;         // name of the application's subkey
    wchar_t* pszExePath;         // ExePath, expanded; never null in a finished record
    wchar_t* pszFileType;        // type text of the executable, or null
    wchar_t* pszCmdLineOptions;  // CmdLineOptions after overrides, expanded, or null
    wchar_t* pszStartDirectory;  // StartDirectory after overrides, expanded, or null
    wchar_t* pszIconPath;        // IconPath, expanded, or null
    int iIconIndex;              // never negative
    int iStartState;             // 0, 1 or 2
};

// The catalogue in the order the registry listed the applications.
using KYjutlRegistrar_FILEList = std::vector<KYjutlRegistrar_FILE*>;

// Frees the six strings and zeroes all fields; the record itself stays.
void ReleaseRegistrarFile(KYjutlRegistrar_FILE& record) noexcept;
// Releases every record, empties the list and deletes it; the pointer becomes null.
void ReleaseRegistrarFileList(KYjutlRegistrar_FILEList*& list) noexcept;
