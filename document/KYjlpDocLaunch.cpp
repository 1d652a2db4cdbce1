// The checks of a target before the shell is asked to start it: the program's
// own answer to what the shell would do, so that the user gets a specific
// message instead of a shell dialog.
#include <shlobj.h>
#include <shlwapi.h>
#include <sys/stat.h>

#include <cstdio>
#include <cstdlib>
#include <cwchar>

#include "app/KYjlpApp.h"
#include "document/KYjlpDoc.h"
#include "document/SituationReport.h"

namespace {
constexpr DWORD kFolderTarget = 1804;  // a folder cannot be an item

// What ValidateTarget gathered for its report: texts by position behind the path.
struct TargetReport {
    std::wstring text[4];
    void Put(int position, std::wstring value) { text[position] = std::move(value); }
};

bool IsGoodBinaryType(DWORD type) { return type == SCS_32BIT_BINARY || type == SCS_64BIT_BINARY; }

// The situation of a document whose handler was not found, with what its report quotes.
int HandlerSituation(DWORD code, const wchar_t* handler, TargetReport& report) {
    switch (code) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
        report.Put(1, lpreport::CodeText(code));
        return 27574;
    case ERROR_ACCESS_DENIED:
        report.Put(1, handler);
        return 27576;
    case ERROR_BAD_FORMAT:
        return 27572;
    case SE_ERR_NOASSOC:
        return 27577;
    default:
        report.Put(1, handler);
        report.Put(2, lpreport::CodeText(code));
        return 27573;
    }
}
}  // namespace

bool KYjlpDoc::CheckTargetQuiet(const wchar_t* path, DWORD* error) {
    SHFILEINFOW scratch{};
    bool isDocument = false;
    return CheckTargetFile(path, error, &scratch, &isDocument);
}

bool KYjlpDoc::CheckTargetFile(const wchar_t* path, DWORD* error, SHFILEINFOW* scratch, bool* isDocument) {
    if (const TargetCheckMemo::TargetFile* kept = m_checks.FindTarget(path); kept && scratch) {
        memset(scratch, 0, sizeof *scratch);
        if (error) *error = kept->error;
        if (isDocument) *isDocument = kept->isDocument;
        return kept->passed;
    }
    DWORD found = 0;
    bool document = false;
    const bool passed = CheckTargetFileNow(path, &found, scratch, &document);
    if (path && scratch) m_checks.KeepTarget(path, {passed, found, document});
    if (error) *error = found;
    if (isDocument) *isDocument = document;
    return passed;
}

bool KYjlpDoc::BinaryTypeOf(const wchar_t* file, DWORD* type) {
    if (const TargetCheckMemo::BinaryType* kept = m_checks.FindBinary(file)) {
        *type = kept->type;
        SetLastError(kept->error);
        return kept->known;
    }
    SetLastError(0);
    const bool known = GetBinaryTypeW(file, type) != FALSE;
    const DWORD error = GetLastError();
    m_checks.KeepBinary(file, {known, *type, error});
    SetLastError(error);
    return known;
}

bool KYjlpDoc::CheckTargetFileNow(const wchar_t* path, DWORD* error, SHFILEINFOW* scratch, bool* isDocument) {
    DWORD dummyError = 0;
    bool dummyDocument = false;
    if (!error) error = &dummyError;
    if (!isDocument) isDocument = &dummyDocument;
    *error = 0;
    if (!path || !scratch) {
        *error = ERROR_INVALID_PARAMETER;
        return false;
    }
    // Asked twice on purpose: the shell's first answer about a file on a slow
    // share may be an error that the second does not repeat.
    DWORD_PTR exeType = 0;
    bool clean = false;
    for (int pass = 0; pass < 2 && !clean; ++pass) {
        memset(scratch, 0, sizeof *scratch);
        SetLastError(0);
        exeType = SHGetFileInfoW(path, 0, scratch, sizeof *scratch, SHGFI_EXETYPE);
        *error = GetLastError();
        clean = *error == 0;
    }
    bool passed = false;
    if (clean) {
        memset(scratch, 0, sizeof *scratch);
        if (!SHGetFileInfoW(path, 0, scratch, sizeof *scratch, SHGFI_ATTRIBUTES)) {
            *error = GetLastError();
        } else if (scratch->dwAttributes & SFGAO_FOLDER) {
            *error = kFolderTarget;
        } else {
            *isDocument = exeType == 0;
            passed = true;
            if (*isDocument) {
                FILE* file = _wfopen(path, L"r");
                if (file) fclose(file);
                else {
                    passed = false;
                    *error = ERROR_ACCESS_DENIED;
                }
            }
        }
    } else if (*error == ERROR_ACCESS_DENIED) {
        passed = PassAccessDenied(path, isDocument, error);
    }
    if (!passed && *error == 0) *error = 1;
    return passed;
}

// A target that the shell may not read may still be runnable: its mode decides.
bool KYjlpDoc::PassAccessDenied(const wchar_t* path, bool* isDocument, DWORD* error) {
    struct _stat64i32 status{};
    if (_wstat64i32(path, &status) != 0) return false;
    if (status.st_mode & _S_IFDIR) {
        // Wine's shell refuses the question of a folder's executable type with
        // "access denied", twice, so that a folder comes here instead of meeting
        // the folder attribute above. It is given 1804 as there, on purpose:
        // keeping 5 would tell the user of a refused access, not of a folder.
        *error = kFolderTarget;
        return false;
    }
    DWORD type = 0;
    *isDocument = !GetBinaryTypeW(path, &type);
    bool passes = *isDocument ? (status.st_mode & (_S_IREAD | _S_IWRITE)) != 0
                              : (status.st_mode & _S_IEXEC) != 0;
    if (passes) *error = 0;
    return passes;
}

bool KYjlpDoc::CheckStartDirectory(const wchar_t* dir, DWORD* error) {
    DWORD dummy = 0;
    if (!error) error = &dummy;
    *error = 0;
    try {
        if (IsBlankText(dir)) throw static_cast<int>(ERROR_INVALID_PARAMETER);
        const size_t length = wcslen(dir);
        const wchar_t last = dir[length - 1];
        const bool separated = last == L'\\' || last == L'/';
        // The pattern: the directory, a separator where it has none, "*.*" and its end.
        if (length + (separated ? 0 : 1) + 4 > MAX_PATH) throw static_cast<int>(ERROR_FILENAME_EXCED_RANGE);
        wchar_t pattern[MAX_PATH] = {};
        wcscpy(pattern, dir);
        if (!separated) wcscat(pattern, wcschr(dir, L'/') ? L"/" : L"\\");
        wcscat(pattern, L"*.*");
        WIN32_FIND_DATAW found{};
        ky::UniqueFind find(FindFirstFileW(pattern, &found));
        if (!find) throw static_cast<int>(GetLastError());
    } catch (int code) {
        *error = code ? static_cast<DWORD>(code) : 1;
    } catch (...) {
        *error = 1;
    }
    return *error == 0;
}

bool KYjlpDoc::ValidateTargetQuiet(const wchar_t* path, wchar_t** startDir) {
    SHFILEINFOW scratch{};
    bool isDocument = false;
    try {
        return ValidateTarget(path, &scratch, startDir, &isDocument);
    } catch (...) {
        return false;
    }
}

void KYjlpDoc::CheckItemStartDirectory(const wchar_t* path, wchar_t** startDir) {
    DWORD error = 0;
    if (CheckStartDirectory(*startDir, &error)) return;
    int situation = error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND ? 27198
                  : error == ERROR_ACCESS_DENIED                                  ? 27199
                                                                                  : 27197;
    // Not fatal: the item goes on without a start directory, and is told once.
    lpreport::Tell(situation, path, *startDir, lpreport::CodeText(error));
    std::free(*startDir);
    *startDir = nullptr;
}

// The program that opens the document path: 0 with its path in m_wszHandler, else an error code.
DWORD KYjlpDoc::FindHandler(const wchar_t* path, const wchar_t* startDir) {
    wmemset(m_wszHandler, 0, MAX_PATH);
    auto result = reinterpret_cast<INT_PTR>(FindExecutableW(path, startDir, m_wszHandler));
    if (result > 32) {
        DWORD error = 0;
        return CheckTargetQuiet(m_wszHandler, &error) ? 0 : error;
    }
    if (result != SE_ERR_NOASSOC) return result > 0 ? static_cast<DWORD>(result) : 1;
    std::wstring extension = path;
    size_t dot = extension.rfind(L'.');
    extension = dot == std::wstring::npos ? std::wstring() : extension.substr(dot);
    DWORD size = MAX_PATH;
    SetLastError(0);
    HRESULT hr = AssocQueryStringW(ASSOCF_INIT_IGNOREUNKNOWN, ASSOCSTR_EXECUTABLE, extension.c_str(),
                                   L"Open", m_wszHandler, &size);
    if (SUCCEEDED(hr)) return 0;
    DWORD error = GetLastError();
    return error ? error : SE_ERR_NOASSOC;
}

bool KYjlpDoc::ValidateTarget(const wchar_t* path, SHFILEINFOW* scratch, wchar_t** startDir, bool* isDocument) {
    lpreport::Forget();
    SetLastError(0);
    if (!path || !scratch) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return false;
    }
    bool localDocument = false;
    wchar_t* noDirectory = nullptr;
    if (!isDocument) isDocument = &localDocument;
    if (!startDir) startDir = &noDirectory;
    KYjlpApp* app = TheApp();
    uint32_t mask = app ? app->m_nItemFillMask : kCheckBinary | kCheckStartDir;
    TargetReport report;
    int number = 0;
    try {
        DWORD error = 0;
        if (!CheckTargetFile(path, &error, scratch, isDocument)) {
            if (error != ERROR_ACCESS_DENIED) report.Put(1, lpreport::CodeText(error));
            throw error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND ? 27209
                : error == ERROR_ACCESS_DENIED                                  ? 27212
                                                                                : 27208;
        }
        if ((mask & kCheckStartDir) && !IsBlankText(*startDir)) CheckItemStartDirectory(path, startDir);
        const wchar_t* file = path;
        if (*isDocument) {
            if (DWORD code = FindHandler(path, *startDir)) throw HandlerSituation(code, m_wszHandler, report);
            file = m_wszHandler;
        }
        if (mask & kCheckBinary) {
            DWORD type = 0;
            if (!BinaryTypeOf(file, &type) || !IsGoodBinaryType(type)) {
                report.Put(1, lpreport::CodeText(GetLastError()));
                report.Put(2, lpreport::CodeText(type, 24643));
                if (!*isDocument) throw 27578;
                report.Put(3, file);  // the handler is at fault, not the document
                throw 27579;
            }
        }
        return true;
    } catch (int n) {
        number = n;
    } catch (...) {
        number = 27581;
        report.Put(1, lpreport::CodeText(GetLastError()));
    }
    lpreport::RecordFirst(number);
    if (!lpreport::IsNormal()) {
        lpreport::Arg(path, 0);
        for (int i = 1; i < 4; ++i)
            if (!report.text[i].empty()) lpreport::Arg(report.text[i], i);
        lpreport::RespondAndForget();
    }
    SetLastError(0);
    return false;
}
