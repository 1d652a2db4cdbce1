// Resources and identity: lp.dll beside the program, the brander, the identity
// tags, the help file, and the two message-box paths of last resort.
#include <io.h>
#include <lmcons.h>

#include <cwctype>

#include "app/KYjlpApp.h"
#include "brander/KYpbr.h"
#include "foundation/KYstdPgmStat.h"
#include "framework/FrameWnd.h"
#include "framework/HtmlHelp.h"
#include "framework/ResourceModule.h"
#include "monitor/KYbpm.h"
#include "monitor/KYbpmLocalizeHelpers.h"
#include "monitor/KYbpmSysInfoEnvOp.h"

namespace {
bool IsBlank(const std::wstring& s) { return s.find_first_not_of(L" \t\r\n") == std::wstring::npos; }
}  // namespace

int KYjlpApp::LocateResources() {
    int number = 0;
    try {
        std::wstring exeBuild;
        if (!GetTagText(exeBuild, 4)) throw 27031;
        if (int n = LoadResourceLibrary()) throw n;
        if (m_bShell) {
            std::wstring libraryBuild;
            if (!GetTagText(libraryBuild, 4)) throw 27030;
        }
        // A library of another build is used as it is: its texts are still the best there are.
        if (m_pMonitor) m_pMonitor->setResourceModule(fw::ResourceModule());
        if (m_pStatus && m_pStatus->Data()) m_pStatus->Data()->SetResources(fw::ResourceModule());
    } catch (int n) {
        number = n;
    } catch (...) {
        number = 27043;
    }
    return number;
}

int KYjlpApp::LoadResourceLibrary() {
    try {
        ky::UniqueHModule library;
        if (int n = LoadLibraryNearExe(L"lp.dll", library, 27049)) return n;
        m_hResourceLibrary = std::move(library);
        fw::SetResourceModule(m_hResourceLibrary.get());
    } catch (...) {
        return 27049;
    }
    return 0;
}

int KYjlpApp::LoadLibraryNearExe(const wchar_t* name, ky::UniqueHModule& module, int base) {
    int code = 0;
    try {
        if (!name || IsBlank(name)) throw 3;
        std::wstring directory;
        GetTagText(directory, 5);
        wmemset(m_wszScratch1, 0, kScratchChars);
        int n = _snwprintf(m_wszScratch1, kScratchChars - 1, L"%s%s", directory.c_str(), name);
        if (n < 1) throw 4;
        // Beside the program first; failing that, the system's search order.
        const wchar_t* path = _waccess(m_wszScratch1, 0) == 0 ? m_wszScratch1 : name;
        SetLastError(0);
        module.reset(LoadLibraryExW(path, nullptr, 0));
        if (!module) throw 2;
    } catch (int c) {
        code = c;
    } catch (...) {
        code = 1;
    }
    wmemset(m_wszScratch1, 0, kScratchChars);
    if (code >= 1 && code <= 5) {
        SetLastError(0);
        return base + code - 1;
    }
    return 0;
}

bool KYjlpApp::EstablishProductBrander() {
    if (m_pBrander && !m_strBranderName.empty()) return m_nFailure == 0;
    try {
        if (m_nFailure) throw m_nFailure;
        m_pBrander = KYpbr::create(2);
        if (!m_pBrander) throw 27693;
        m_strBranderName = L"ebr4";
    } catch (int number) {
        LatchServiceFailure(number, 27692);
    } catch (...) {
        LatchFailure(27692);
    }
    if (m_nFailure) {
        if (m_pBrander) KYpbr::destroy();
        m_pBrander = nullptr;
        m_strBranderName.clear();
    }
    return m_nFailure == 0;
}

bool KYjlpApp::GetTagText(std::wstring& out, int tag) {
    out.clear();
    const wchar_t* text = m_pMonitor ? m_pMonitor->getTag(tag) : nullptr;
    if (text && *text) {
        out = text;
    } else if (tag >= 0 && static_cast<size_t>(tag) < m_astrTags.size()) {
        out = m_astrTags[tag];
    } else if (!ObtainTagValue(out, tag)) {
        out = fw::ResString(24578);
    }
    return !IsBlank(out);
}

bool KYjlpApp::ObtainTagValue(std::wstring& out, int tag, wchar_t* buffer, size_t capacity) {
    out.clear();
    if (!buffer) {
        buffer = m_wszScratch1;
        capacity = kScratchChars;
    }
    if (capacity == 0) return false;
    try {
        wmemset(buffer, 0, capacity);
        const UINT cap = static_cast<UINT>(capacity);
        HMODULE resources = fw::ResourceModule();
        switch (tag) {
        case 0: case 1: case 2: case 3:
            if (m_pBrander) m_pBrander->loadText(tag, buffer, static_cast<int>(cap));
            break;
        case 4:
        case 13:
            KYbpmLocalizeHelpers::obtainVersionQRW(buffer, cap, tag, resources);
            break;
        case 5: {
            wchar_t module[MAX_PATH] = {}, drive[_MAX_DRIVE] = {}, dir[_MAX_DIR] = {};
            GetModuleFileNameW(nullptr, module, MAX_PATH);
            _wsplitpath_s(module, drive, _MAX_DRIVE, dir, _MAX_DIR, nullptr, 0, nullptr, 0);
            _snwprintf(buffer, cap - 1, L"%s%s", drive, dir);
            break;
        }
        case 6:
            KYbpmLocalizeHelpers::extractModuleVerValueSFI_OrigFNm(resources, buffer, cap, nullptr,
                                                                   L"StringFileInfo", L'\\');
            break;
        case 7:
        case 12:
            if (m_pBrander) m_pBrander->loadText(KYpbr::kTitle, buffer, static_cast<int>(cap));
            if (IsBlank(buffer)) {
                if (tag == 7)
                    lstrcpynW(buffer, fw::ResString(57344).c_str(), static_cast<int>(cap));
                else
                    KYbpmLocalizeHelpers::extractModuleVerValueSFI_OrigFNm(
                        resources, buffer, cap, nullptr, L"StringFileInfo", L'\\');
            }
            break;
        case 8:
        case 9: {
            KYbpmSysInfoEnvOp info;
            info.getDataPair(tag == 8 ? 6 : 5, nullptr, buffer, 0, cap);
            break;
        }
        case 10:
            break;  // reserved: always blank
        case 11: {
            DWORD size = cap;
            if (!GetUserNameW(buffer, &size)) buffer[0] = L'\0';
            break;
        }
        case 14:
            if (m_pBrander) m_pBrander->loadText(KYpbr::kSupport, buffer, static_cast<int>(cap));
            break;
        default:
            return false;
        }
        out = buffer;
    } catch (...) {
        out.clear();
        m_nFailure = 0;
    }
    if (buffer == m_wszScratch1) wmemset(m_wszScratch1, 0, kScratchChars);
    return !IsBlank(out);
}

bool KYjlpApp::LoadTagTable() {
    try {
        if (m_nFailure) throw m_nFailure;
        if (!m_pBrander) throw false;
        std::wstring unknown;
        if (!fw::LoadResString(24578, unknown) || unknown.empty()) throw false;
        m_astrTags.clear();
        try {
            m_astrTags.resize(kTagCount);
        } catch (...) {
            throw 27726;
        }
        wchar_t buffer[1024];
        for (int tag = 0; tag < kTagCount; ++tag) {
            std::wstring text;
            if (!ObtainTagValue(text, tag, buffer, 1024)) text = unknown;
            try {
                m_astrTags[tag] = text;
            } catch (...) {
                m_astrTags[tag].clear();
            }
        }
    } catch (int number) {
        LatchFailure(number);
    } catch (bool) {
        return false;
    } catch (...) {
        LatchFailure(27725);
    }
    if (m_nFailure) m_astrTags.clear();
    return m_nFailure == 0;
}

int KYjlpApp::SetUpHelpFile(const wchar_t* path) {
    int number = 0;
    try {
        if (!path) throw 27060;
        std::wstring file;
        try {
            file = path;
        } catch (...) {
            throw 27057;
        }
        file.erase(0, file.find_first_not_of(L" \t"));
        if (file.empty()) throw 27056;
        file.erase(file.find_last_not_of(L" \t") + 1);
        if (_waccess(file.c_str(), 0) != 0) throw 27058;
        m_nHelpKind = 0;
        wchar_t extension[_MAX_EXT] = {};
        _wsplitpath_s(file.c_str(), nullptr, 0, nullptr, 0, nullptr, 0, extension, _MAX_EXT);
        if (IsBlank(extension)) throw 27059;
        if (lstrcmpiW(extension, fw::ResString(24595).c_str()) == 0)
            m_nHelpKind = 1;
        else if (lstrcmpiW(extension, fw::ResString(24596).c_str()) == 0)
            m_nHelpKind = 2;
        else
            throw 27061;
        if (lstrcmpiW(m_strHelpFilePath.c_str(), file.c_str()) != 0) {
            try {
                m_strHelpFilePath = file;
            } catch (...) {
                throw 27057;
            }
        }
    } catch (int n) {
        number = n;
    } catch (...) {
        number = 27054;
    }
    m_nHelpSituation = number;
    if (number) m_nHelpKind = 0;
    return number;
}

bool KYjlpApp::CloseWinHelp() {
    // Compiled help windows belong to this process: they go with the frame.
    fw::CloseHtmlHelp();
    if (m_bWinHelpUsed && MainWindow() && *MainWindow() &&
        WinHelpW(MainWindow()->Handle(), m_strHelpFilePath.c_str(), HELP_QUIT, 0))
        m_bWinHelpUsed = false;
    return !m_bWinHelpUsed;
}
