#include "app/KYjlpCmdLineInfo.h"

#include <cwctype>
#include <new>

#include "app/KYjlpApp.h"
#include "brander/KYpbr.h"
#include "foundation/KYstdPgmStat.h"
#include "framework/ResourceModule.h"
#include "monitor/KYbpmLocalizeHelpers.h"

namespace {
const wchar_t* SkipNonGraphic(const wchar_t* p) {
    while (*p && !std::iswgraph(*p)) ++p;
    return p;
}
}  // namespace

// Option words are no language: compared character for character, case aside,
// so that the server's locale (the Turkish dotless i) or characters a language
// passes over (a soft hyphen) never change what an option is.
bool KYjlpCmdLineInfo::IsSameWord(const wchar_t* argument, const std::wstring& keyword) {
    return argument && CompareStringOrdinal(argument, -1, keyword.c_str(), -1, TRUE) == CSTR_EQUAL;
}

KYjlpCmdLineInfo::KYjlpCmdLineInfo(KYjlpApp& app) : m_app(app) {}

KYjlpCmdLineInfo::~KYjlpCmdLineInfo() { ReleaseLaunchInfo(); }

void KYjlpCmdLineInfo::ReleaseLaunchInfo() { m_pLaunchInfo.reset(); }

bool KYjlpCmdLineInfo::StatusClean() const {
    return !m_app.m_pStatus || m_app.m_pStatus->IsClean();
}

int KYjlpCmdLineInfo::FirstSituation() const {
    return m_app.m_pStatus ? static_cast<int>(m_app.m_pStatus->FirstSituation()) : 0;
}

void KYjlpCmdLineInfo::AddSituation(int number) const {
    if (m_app.m_pStatus && m_app.m_pStatus->Data())
        m_app.m_pStatus->Data()->AddSituation(static_cast<uint32_t>(number),
                                              KYstdPgmStat_DATA::kAfterLast);
}

bool KYjlpCmdLineInfo::IsOptionLeader(const wchar_t* argument) const {
    if (!argument || !*argument) return false;
    return m_astrKeywords.at(kLeaders).find(argument[0]) != std::wstring::npos;
}

void KYjlpCmdLineInfo::LoadKeywords() {
    try {
        m_astrKeywords.assign(kKeywordCount, std::wstring());
    } catch (...) {
        throw 27150;
    }
    try {
        for (int i = 0; i < kKeywordCount; ++i) {
            // A missing word would make an empty option match: the grammar is incomplete.
            if (!fw::LoadResString(kKeywordBase + i, m_astrKeywords[i]) || m_astrKeywords[i].empty())
                throw 27149;
        }
    } catch (int) {
        throw;
    } catch (...) {
        throw 27149;
    }
}

bool KYjlpCmdLineInfo::ParseCommandLine(int argc, wchar_t** argv) {
    if (m_app.m_pStatus) m_app.m_pStatus->ClearStatus();
    try {
        if (argc < 1) throw 27157;
        if (!argv) throw 27158;
        if (argc >= 2) {
            LoadKeywords();
            wmemset(m_app.m_wszScratch1, 0, KYjlpApp::kScratchChars);
            int index = 1;
            while (index < argc) {
                const wchar_t* argument = argv[index];
                if (!IsOptionLeader(argument)) throw 27151;
                ++index;
                if (!DispatchOption(argument + 1, argc, argv, index)) throw FirstSituation();
            }
            if (!ValidateCommandLine()) throw FirstSituation();
        }
    } catch (int number) {
        if (number != 0 && FirstSituation() != number) AddSituation(number);
    } catch (...) {
        AddSituation(27139);
    }
    if (!StatusClean()) ReleaseLaunchInfo();
    return StatusClean();
}

bool KYjlpCmdLineInfo::DispatchOption(const std::wstring& word, int argc, wchar_t** argv,
                                      int& index) {
    // The fixed order of comparison: a translation may make one word the prefix of another.
    static constexpr Keyword kOrder[] = {kNodeManager, kNodeManagerWithValue, kLaunch,
                                         kPrinterMode, kClassic, kPreferenceSet};
    for (Keyword k : kOrder) {
        if (!IsSameWord(word.c_str(), m_astrKeywords[k])) continue;
        switch (k) {
        case kNodeManager: return ParseNodeManagerOption(argc, argv, index, false);
        case kNodeManagerWithValue: return ParseNodeManagerOption(argc, argv, index, true);
        case kLaunch: return ParseLaunchOption(argc, argv, index);
        case kPrinterMode: return ParsePrinterModeOption(argc, argv, index);
        case kClassic: return ParseClassicOption(argc, argv, index);
        default: return ParsePreferenceSetOption(argc, argv, index);
        }
    }
    throw 27148;
}

bool KYjlpCmdLineInfo::ValidateCommandLine() {
    try {
        if (m_nShellCommand == kNew && !m_strFileName.empty()) m_nShellCommand = kOpen;
        if (m_bRunAutomated || m_bRunEmbedded) m_bShowSplash = false;
        if (m_pLaunchInfo) {
            // A launch shows no window: the Classic desktop and a launch exclude each other.
            m_bClassic = false;
            m_bShowSplash = false;
            m_strPreferenceSet.clear();
        }
        if (!m_strPreferenceSet.empty()) m_bPreferenceSetGiven = true;
    } catch (...) {
        AddSituation(27159);
    }
    return StatusClean();
}

std::wstring KYjlpCmdLineInfo::ExpandValue(const wchar_t* argument, bool skipBlanks) const {
    wchar_t* buffer = m_app.m_wszScratch1;
    wmemset(buffer, 0, KYjlpApp::kScratchChars);
    if (!KYbpmLocalizeHelpers::expandEnvironmentVarStrsW(argument, buffer, nullptr, nullptr,
                                                         KYjlpApp::kScratchChars))
        throw 27153;
    std::wstring value = skipBlanks ? SkipNonGraphic(buffer) : buffer;
    wmemset(buffer, 0, KYjlpApp::kScratchChars);
    return value;
}

HeapString KYjlpCmdLineInfo::Duplicate(const std::wstring& text) const {
    HeapString copy(_wcsdup(text.c_str()));
    if (!copy) throw 27152;
    return copy;
}

void KYjlpCmdLineInfo::NewLaunchInfo(int shellCommandOfOption) {
    if (m_nShellCommand == shellCommandOfOption) throw 27147;
    if (m_nShellCommand != kNew) throw 27146;
    if (m_pLaunchInfo) throw 27145;
    m_pLaunchInfo.reset(new (std::nothrow) LAUNCH_INFO());
    if (!m_pLaunchInfo) throw 27144;
}

void KYjlpCmdLineInfo::FillNodeManagerRecord() {
    std::wstring name;
    if (m_app.m_pBrander) {
        wmemset(m_app.m_wszScratch1, 0, KYjlpApp::kScratchChars);
        name = m_app.m_pBrander->loadText(KYpbr::kNodeManagerName, m_app.m_wszScratch1,
                                          static_cast<int>(KYjlpApp::kScratchChars));
        wmemset(m_app.m_wszScratch1, 0, KYjlpApp::kScratchChars);
    }
    if (name.empty() || !std::iswgraph(*SkipNonGraphic(name.c_str()))) name = L"Node Manager";
    m_pLaunchInfo->pszName = Duplicate(name);

    wchar_t module[MAX_PATH];
    DWORD length = GetModuleFileNameW(nullptr, module, MAX_PATH);
    if (length == 0 || length >= MAX_PATH) throw 27142;
    wchar_t drive[_MAX_DRIVE], dir[_MAX_DIR];
    if (_wsplitpath_s(module, drive, _MAX_DRIVE, dir, _MAX_DIR, nullptr, 0, nullptr, 0) != 0)
        throw 27143;
    std::wstring path = std::wstring(drive) + dir + L"nm.exe";
    if (path.size() >= KYjlpApp::kScratchChars) throw 27143;
    m_pLaunchInfo->pszPath = Duplicate(path);

    std::wstring type;
    if (!fw::LoadResString(24620, type) || type.empty()) type = L"Application";
    m_pLaunchInfo->pszClass = Duplicate(type);
}

bool KYjlpCmdLineInfo::ParseNodeManagerOption(int argc, wchar_t** argv, int& index, bool withValue) {
    try {
        NewLaunchInfo(kLaunchNodeManager);
        FillNodeManagerRecord();
        if (withValue) {
            if (index >= argc) throw 27155;
            const wchar_t* value = argv[index];
            if (value && *value) {
                // The value is taken as it stands, even when it looks like an option.
                std::wstring copy = SkipNonGraphic(value);
                if (copy.size() >= KYjlpApp::kScratchChars) throw 27141;
                if (!copy.empty()) m_pLaunchInfo->pszArguments = Duplicate(copy);
            }
            ++index;
        }
    } catch (int number) {
        if (number) AddSituation(number);
    } catch (...) {
        AddSituation(27140);
    }
    if (StatusClean()) m_nShellCommand = kLaunchNodeManager;
    return StatusClean();
}

bool KYjlpCmdLineInfo::ParseLaunchOption(int argc, wchar_t** argv, int& index) {
    try {
        if (m_nShellCommand == kLaunchProgram) throw 27147;
        if (m_nShellCommand != kNew) throw 27146;
        if (argc < 2 || !argv || index < 1 || index + 1 > argc) throw 27154;
        NewLaunchInfo(kLaunchProgram);
        m_pLaunchInfo->pszName = Duplicate(ExpandValue(argv[index++], false));
        if (index < argc) {
            // Position-bound: the arguments slot takes its value even if it starts with a
            // leader; an empty argument keeps the place without a value.
            if (argv[index] && *argv[index]) m_pLaunchInfo->pszArguments = Duplicate(ExpandValue(argv[index]));
            ++index;
        }
        if (index < argc && !IsOptionLeader(argv[index])) {
            if (argv[index] && *argv[index])
                m_pLaunchInfo->nWindowState = _wtoi(ExpandValue(argv[index]).c_str());
            ++index;
        }
        if (index < argc && !IsOptionLeader(argv[index])) {
            m_pLaunchInfo->pszDirectory = Duplicate(ExpandValue(argv[index] ? argv[index] : L""));
            ++index;
        }
    } catch (int number) {
        if (number) AddSituation(number);
    } catch (...) {
        AddSituation(27140);
    }
    if (StatusClean()) m_nShellCommand = kLaunchProgram;
    return StatusClean();
}

bool KYjlpCmdLineInfo::ParseClassicOption(int, wchar_t**, int&) {
    m_bClassic = true;
    return StatusClean();
}

bool KYjlpCmdLineInfo::ParsePreferenceSetOption(int argc, wchar_t** argv, int& index) {
    m_bPreferenceSetGiven = false;
    try {
        if (index < argc && !IsOptionLeader(argv[index])) {
            if (argv[index] && *argv[index]) {
                m_strPreferenceSet = ExpandValue(argv[index], false);
                m_bPreferenceSetGiven = true;
            }
            ++index;
        }
    } catch (int number) {
        if (number) AddSituation(number);
    } catch (...) {
        AddSituation(27140);
    }
    return StatusClean();
}

bool KYjlpCmdLineInfo::ParsePrinterModeOption(int argc, wchar_t** argv, int& index) {
    m_nPrinterStartMode = 0;
    try {
        if (index < argc && !IsOptionLeader(argv[index])) {
            const wchar_t* value = argv[index];
            if (value && *value) {
                if (IsSameWord(value, m_astrKeywords.at(kPrinterAll)))
                    m_nPrinterStartMode = 1;
                else if (IsSameWord(value, m_astrKeywords.at(kPrinterNone)))
                    m_nPrinterStartMode = 0;
                else if (IsSameWord(value, m_astrKeywords.at(kPrinterDefault)))
                    m_nPrinterStartMode = 2;
                else
                    AddSituation(27156);
            }
            ++index;
        }
    } catch (...) {
        AddSituation(27140);
    }
    if (!StatusClean()) {
        // An unknown mode costs only the value: the user still gets the panel.
        m_nPrinterStartMode = 0;
        if (m_app.m_pStatus) m_app.m_pStatus->ClearStatus();
    }
    return true;
}

bool KYjlpCmdLineInfo::CopyToStandardInfo(CommandLineInfo& info) const {
    static constexpr int kMap[] = {CommandLineInfo::FileNothing, -2, CommandLineInfo::AppUnregister,
                                   CommandLineInfo::FileDDE, CommandLineInfo::FileNew,
                                   CommandLineInfo::FileOpen, CommandLineInfo::FilePrint,
                                   CommandLineInfo::FilePrintTo, -2};
    if (m_nShellCommand < 0 || m_nShellCommand > kLaunchProgram || kMap[m_nShellCommand] == -2)
        return false;
    info.m_strFileName = m_strFileName;
    info.m_strPrinterName = m_strPrinterName;
    info.m_strDriverName = m_strDriverName;
    info.m_strPortName = m_strPortName;
    info.m_nShellCommand = kMap[m_nShellCommand];
    info.m_bShowSplash = m_bShowSplash;
    info.m_bRunEmbedded = m_bRunEmbedded;
    info.m_bRunAutomated = m_bRunAutomated;
    return true;
}
