// The program monitor's binding: the session test, the log directory, file name
// and template, the assertiveness level, and the monitor's creation.
#include <shlobj.h>

#include "app/KYjlpApp.h"
#include "brander/KYpbr.h"
#include "framework/ResourceModule.h"
#include "monitor/KYbpm.h"
#include "monitor/KYbpmData.h"
#include "monitor/KYbpmDataQRW.h"
#include "monitor/KYbpmLocalizeHelpers.h"

namespace {
const wchar_t kServerKey[] = L"SOFTWARE\\Veltran\\Corvane\\AppServer";
constexpr uint32_t kMaxAssertiveness = 10;

bool EndsWithSeparator(const std::wstring& s) {
    return !s.empty() && (s.back() == L'\\' || s.back() == L'/');
}

// The monitor's failures from its own data object carry its self code.
[[noreturn]] void FailWithSelfCode(KYbpmData& data, int& selfCode, int number) {
    selfCode = data.getSelfDX_Code();
    throw number;
}
}  // namespace

// The questions whose answer the program compares with yes (6) or cancel (2):
// their class lives here, so that a translated text cannot make them plain boxes.
// Unattended, each takes the default answer given here.
void KYjlpApp::RecordSituationKinds(KYbpmData& data) {
    struct Question {
        int number;
        UINT buttons;
        bool defaultSecond;
    };
    static constexpr Question kQuestions[] = {
        {27664, MB_YESNO, true},        // delete a client printer: not unless asked
        {27737, MB_OKCANCEL, false},    // disconnect, session without a time-out
        {27738, MB_OKCANCEL, false},    // disconnect, session with a time-out
        {27774, MB_YESNO, false},       // log off
    };
    for (const Question& q : kQuestions)
        data.recordSituationKind(q.number, KYbpmDirective{.kind = KYbpmKind::Question,
                                                          .buttons = q.buttons,
                                                          .defaultSecond = q.defaultSecond});
}

bool KYjlpApp::EstablishProgramMonitor(uint32_t form) {
    try {
        if (m_pMonitor) throw 0;
        if (m_nFailure) throw m_nFailure;
        DetectSession();
        if (!EstablishProductBrander()) throw m_nFailure ? m_nFailure : 27692;
        if (!LoadTagTable()) {
            if (m_astrTags.size() != kTagCount) throw m_nFailure ? m_nFailure : 27725;
            m_nFailure = 0;
        }
        std::wstring logFile;
        if (m_bStandalone && !BuildLogFileName(logFile, form))
            throw m_nFailure ? m_nFailure : 27715;
        std::wstring templatePath;
        if (!BuildLogTemplatePath(templatePath)) {
            templatePath.clear();
            m_nFailure = 0;
        }
        m_nLogForm = form == 0 ? form : m_nLogForm;
        BuildMonitor(logFile, templatePath);
    } catch (int number) {
        LatchServiceFailure(number, 27699);
    } catch (...) {
        LatchFailure(27699);
    }
    if (m_nFailure) {
        if (m_pBrander) KYpbr::destroy();
        m_pBrander = nullptr;
        m_strBranderName.clear();
        if (m_pMonitor) KYbpm::destroy(&m_pMonitor, 0, true);
    }
    if (m_pMonitor) m_astrTags.clear();  // from now on the monitor answers for the tags
    wmemset(m_wszScratch1, 0, kScratchChars);
    return m_nFailure == 0;
}

void KYjlpApp::BuildMonitor(const std::wstring& logFile, const std::wstring& templatePath) {
    const int64_t criteria = m_bStandalone ? 0 : (KYbpmCriteria::kInSession | KYbpmCriteria::kSessionLog);
    KYbpmData data(criteria);
    if (!data.learnSelfResourceModule()) FailWithSelfCode(data, m_nMonitorSelfCode, 27701);
    data.setSelfDX_FaultTolerance(2);
    data.setCharSetExternal(2);
    if (m_bStandalone) {
        uint32_t granted = 0;
        if (!data.setLogFileByteCountLimit(KYbpmDataQRW::obtainLogFileByteCountLimit(), granted))
            data.forgetSelfDX_Code();
    }
    for (int tag = 0; tag < kTagCount; ++tag) {
        std::wstring text;
        if (static_cast<size_t>(tag) < m_astrTags.size()) text = m_astrTags[tag];
        if (!data.recordTag(text.c_str(), tag) && !data.isSelfSatisfied()) data.forgetSelfDX_Code();
    }
    if (!data.recordLogFileNomenclature(logFile.c_str(), templatePath.c_str(), m_nLogForm))
        FailWithSelfCode(data, m_nMonitorSelfCode, 27701);
    if (m_bStandalone) {
        uint32_t level = 0;
        if (!ObtainAssertiveness(level)) {
            level = 0;
            m_nFailure = 0;
        }
        data.setSituationMode(level);
    }
    if (!data.setResourceModule(fw::ResourceModule()) || !data.setDescriptionFillersQty(8) ||
        !data.setArgsIntQty(5) || !data.setArgsStrQty(5) || !data.setArgsUIntQty(5))
        FailWithSelfCode(data, m_nMonitorSelfCode, 27701);
    if (!data.setDescriptionAffixIDsQty(2) || !data.setDescriptionAffixID_Min(27012))
        FailWithSelfCode(data, m_nMonitorSelfCode, 27701);
    RecordCaption(data);
    RecordSituationKinds(data);
    if (!data.createPlugIns(0)) FailWithSelfCode(data, m_nMonitorSelfCode, 27701);
    try {
        KYbpmDataQRW::updateBehaviorCriteria(&data);
        data.sizeMapOfDataForThreads(1);
        m_pMonitor = KYbpm::create(&data);
    } catch (...) {
        FailWithSelfCode(data, m_nMonitorSelfCode, 27700);
    }
    if (!m_pMonitor) FailWithSelfCode(data, m_nMonitorSelfCode, 27700);
}

void KYjlpApp::RecordCaption(KYbpmData& data) {
    if (m_astrTags.size() <= 12) return;
    const std::wstring& caption = m_astrTags[12];
    if (caption.find_first_not_of(L" \t\r\n") == std::wstring::npos) return;
    if (!data.recordDialogBoxCaption(caption.c_str())) {
        if (!data.isSelfSatisfied()) data.forgetSelfDX_Code();
        data.recordDialogBoxCaption(nullptr);
    }
}

bool KYjlpApp::ObtainLogDirectory() {
    if (!m_strLogDirectory.empty()) return true;
    try {
        if (m_nFailure) throw m_nFailure;
        if (int number = LogDirectoryFromRegistry(); number != 0) {
            // Whatever was wrong with the configured directory, the log goes beside the program.
            m_nFailure = 0;
            if (int fallback = FallbackLogDirectory(); fallback != 0) throw fallback;
        }
    } catch (int number) {
        LatchFailure(number);
    } catch (...) {
        LatchFailure(27702);
    }
    return m_nFailure == 0;
}

int KYjlpApp::LogDirectoryFromRegistry() {
    ky::UniqueHKey key;
    if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, kServerKey, 0, KEY_READ, key.put()) != ERROR_SUCCESS)
        return 27695;
    wmemset(m_wszScratch1, 0, kScratchChars);
    DWORD type = 0, size = static_cast<DWORD>((kScratchChars - 1) * sizeof(wchar_t));
    if (RegQueryValueExW(key.get(), L"LogDirectory", nullptr, &type,
                         reinterpret_cast<BYTE*>(m_wszScratch1), &size) != ERROR_SUCCESS ||
        (type != REG_SZ && type != REG_EXPAND_SZ))
        return 27714;
    std::wstring raw = m_wszScratch1;
    if (raw.find_first_not_of(L" \t") == std::wstring::npos) return 27710;
    wmemset(m_wszScratch1, 0, kScratchChars);
    if (!KYbpmLocalizeHelpers::expandEnvironmentVarStrsW(raw.c_str(), m_wszScratch1, m_wszScratch2,
                                                         nullptr, kScratchChars))
        return 27711;
    std::wstring directory = m_wszScratch1;
    wmemset(m_wszScratch1, 0, kScratchChars);
    wmemset(m_wszScratch2, 0, kScratchChars);
    if (!EndsWithSeparator(directory)) directory += L'\\';
    if (directory.size() >= kScratchChars) return 27712;
    if (int number = TestAndCreateLogDirectory(directory)) return number;
    m_strLogDirectory = directory;
    return 0;
}

int KYjlpApp::TestAndCreateLogDirectory(const std::wstring& directory) {
    WIN32_FIND_DATAW found;
    ky::UniqueFind find(FindFirstFileW((directory + L"*.*").c_str(), &found));
    std::wstring bare = directory.substr(0, directory.size() - 1);
    DWORD attributes = GetFileAttributesW(bare.c_str());
    // A file of that name is no directory, whatever the search said.
    if (attributes != INVALID_FILE_ATTRIBUTES && !(attributes & FILE_ATTRIBUTE_DIRECTORY))
        return 27705;
    if (find) return 0;
    DWORD error = GetLastError();
    if (error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND ||
        attributes == INVALID_FILE_ATTRIBUTES) {
        // More than the one folder on purpose: missing parents are made too, so that
        // a LogDirectory below a folder that does not exist yet still gets its log.
        int rc = SHCreateDirectoryExW(nullptr, bare.c_str(), nullptr);
        return rc == ERROR_SUCCESS || rc == ERROR_ALREADY_EXISTS ? 0 : 27704;
    }
    if (error == ERROR_DIRECTORY) return 27705;
    return attributes & FILE_ATTRIBUTE_DIRECTORY ? 0 : 27703;
}

int KYjlpApp::FallbackLogDirectory() {
    std::wstring program;
    if (!GetTagText(program, 5)) return 27707;
    wchar_t drive[_MAX_DRIVE] = {}, dir[_MAX_DIR] = {};
    if (_wsplitpath_s(program.c_str(), drive, _MAX_DRIVE, dir, _MAX_DIR, nullptr, 0, nullptr, 0) != 0)
        return 27707;
    std::wstring parent = dir;
    if (parent.size() <= 1) return 27708;  // a program in a root directory has no parent
    parent.pop_back();
    size_t cut = parent.find_last_of(L"\\/");
    parent.erase(cut == std::wstring::npos ? 0 : cut + 1);
    std::wstring logName;
    if (!fw::LoadResString(24648, logName) || logName.empty()) return 27709;
    std::wstring directory = std::wstring(drive) + parent + logName;
    if (!EndsWithSeparator(directory)) directory += L'\\';
    if (directory.size() >= kScratchChars) return 27706;
    if (int number = TestAndCreateLogDirectory(directory)) return number;
    m_strLogDirectory = directory;
    // Remember the place for the administrator; a failure to write is forgiven.
    ky::UniqueHKey key;
    if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, kServerKey, 0, KEY_SET_VALUE, key.put()) == ERROR_SUCCESS)
        RegSetValueExW(key.get(), L"LogDirectory", 0, REG_EXPAND_SZ,
                       reinterpret_cast<const BYTE*>(directory.c_str()),
                       static_cast<DWORD>((directory.size() + 1) * sizeof(wchar_t)));
    return 0;
}

bool KYjlpApp::BuildLogFileName(std::wstring& out, uint32_t form) {
    try {
        if (m_nFailure) throw m_nFailure;
        out.clear();
        if (!ObtainLogDirectory()) throw m_nFailure ? m_nFailure : 27702;
        wchar_t module[MAX_PATH] = {}, base[_MAX_FNAME] = {};
        GetModuleFileNameW(nullptr, module, MAX_PATH);
        _wsplitpath_s(module, nullptr, 0, nullptr, 0, base, _MAX_FNAME, nullptr, 0);
        std::wstring baseName = base[0] ? std::wstring(base) : fw::ResString(24578);
        SYSTEMTIME t;
        GetLocalTime(&t);
        std::wstring user;
        GetTagText(user, 11);
        const wchar_t* extension = form == 0 ? L"html" : form == 1 ? L"txt" : L"Unknown";
        wchar_t name[kScratchChars] = {};
        int n = _snwprintf(name, kScratchChars - 1, L"%s%s_%s_%4d-%02d-%02d_%02d-%02d-%02d-%03d.%s",
                           m_strLogDirectory.c_str(), user.c_str(), baseName.c_str(), t.wYear,
                           t.wMonth, t.wDay, t.wHour, t.wMinute, t.wSecond, t.wMilliseconds,
                           extension);
        if (n <= 0) throw 27715;
        out = name;
    } catch (int number) {
        LatchFailure(number);
    } catch (...) {
        LatchFailure(27715);
    }
    return m_nFailure == 0;
}

bool KYjlpApp::BuildLogTemplatePath(std::wstring& out) {
    try {
        if (m_strLogDirectory.empty() && !ObtainLogDirectory()) throw m_nFailure ? m_nFailure : 27719;
        std::wstring folder, file;
        if (!fw::LoadResString(24651, folder)) throw 27723;
        if (folder.find_first_not_of(L" \t") == std::wstring::npos) throw 27722;
        std::wstring path = m_strLogDirectory + folder;
        if (!EndsWithSeparator(path)) path += L'/';
        if (path.size() >= kScratchChars) throw false;
        UINT fileId = m_bStandalone ? 24649 : 24650;
        if (!fw::LoadResString(fileId, file)) throw 27721;
        if (file.find_first_not_of(L" \t") == std::wstring::npos) throw 27720;
        out = path + file;
    } catch (int number) {
        LatchFailure(number);
        return false;
    } catch (bool) {
        return false;
    } catch (...) {
        LatchFailure(27719);
        return false;
    }
    return m_nFailure == 0;
}

bool KYjlpApp::ObtainAssertiveness(uint32_t& out) {
    out = 0;
    try {
        ky::UniqueHKey key;
        if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, kServerKey, 0, KEY_ALL_ACCESS, key.put()) != ERROR_SUCCESS)
            throw 27694;
        DWORD type = 0, value = 0, size = sizeof value;
        LONG rc = RegQueryValueExW(key.get(), L"PM_Assertiveness", nullptr, &type,
                                   reinterpret_cast<BYTE*>(&value), &size);
        if (rc == ERROR_SUCCESS && type == REG_DWORD && size == sizeof value && value <= kMaxAssertiveness) {
            out = value;
            return true;
        }
        // An unusable level is corrected in the registry, so the administrator sees what counts.
        DWORD zero = 0;
        RegSetValueExW(key.get(), L"PM_Assertiveness", 0, REG_DWORD,
                       reinterpret_cast<const BYTE*>(&zero), sizeof zero);
    } catch (int number) {
        LatchFailure(number);
        return false;
    } catch (...) {
        LatchFailure(27698);
        return false;
    }
    return true;
}
