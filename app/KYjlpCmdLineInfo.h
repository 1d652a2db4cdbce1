// The program's command line: which use the program serves (list window, one
// launch, the framework's file commands) and the options that shape it. The
// option words come from the resource library, so a translation of lp.dll also
// translates the grammar.
#pragma once
#include <windows.h>
#include <memory>
#include <string>
#include <vector>

#include "app/LAUNCH_INFO.h"

class KYjlpApp;

// The framework's own command-line record, into which ours can be copied.
struct CommandLineInfo {
    enum Shell { FileNew = 0, FileOpen = 1, FilePrint = 2, FilePrintTo = 3, FileDDE = 4,
                 AppUnregister = 6, FileNothing = -1 };
    std::wstring m_strFileName, m_strPrinterName, m_strDriverName, m_strPortName;
    int m_nShellCommand = FileNew;
    bool m_bShowSplash = true;
    bool m_bRunEmbedded = false;
    bool m_bRunAutomated = false;
};

class KYjlpCmdLineInfo {
public:
    // Shell commands of this program (the framework's values are in CommandLineInfo).
    enum ShellCommand { kNothing = 0, kLaunchNodeManager = 1, kUnregister = 2, kDDE = 3,
                        kNew = 4, kOpen = 5, kPrint = 6, kPrintTo = 7, kLaunchProgram = 8 };
    // Keyword slots, loaded from string kKeywordBase + index.
    enum Keyword { kLeaders = 0, kClassic = 1, kLaunch = 2, kNodeManager = 3,
                   kNodeManagerWithValue = 4, kPrinterMode = 5, kPrinterAll = 6,
                   kPrinterNone = 7, kPrinterDefault = 8, kPreferenceSet = 9, kKeywordCount = 10 };
    static constexpr UINT kKeywordBase = 24583;

    explicit KYjlpCmdLineInfo(KYjlpApp& app);
    virtual ~KYjlpCmdLineInfo();
    KYjlpCmdLineInfo(const KYjlpCmdLineInfo&) = delete;
    KYjlpCmdLineInfo& operator=(const KYjlpCmdLineInfo&) = delete;

    virtual bool CopyToStandardInfo(CommandLineInfo& info) const;
    virtual void ReleaseLaunchInfo();
    virtual bool ParseCommandLine(int argc, wchar_t** argv);
    virtual bool ValidateCommandLine();
    virtual bool ParseNodeManagerOption(int argc, wchar_t** argv, int& index, bool withValue);
    virtual bool ParseClassicOption(int argc, wchar_t** argv, int& index);
    virtual bool ParseLaunchOption(int argc, wchar_t** argv, int& index);
    virtual bool ParsePreferenceSetOption(int argc, wchar_t** argv, int& index);
    virtual bool ParsePrinterModeOption(int argc, wchar_t** argv, int& index);

    bool IsOptionLeader(const wchar_t* argument) const;
    // Whether an argument is the option word or value keyword (case aside).
    static bool IsSameWord(const wchar_t* argument, const std::wstring& keyword);

    std::unique_ptr<LAUNCH_INFO> m_pLaunchInfo;
    std::vector<std::wstring> m_astrKeywords;
    std::wstring m_strFileName, m_strPrinterName, m_strDriverName, m_strPortName;
    bool m_bPreferenceSetGiven = true;
    std::wstring m_strPreferenceSet;
    int m_nPrinterStartMode = 0;
    int m_nShellCommand = kNew;
    bool m_bClassic = false;
    bool m_bRunAutomated = false;
    bool m_bRunEmbedded = false;
    bool m_bShowSplash = true;

private:
    void LoadKeywords();
    bool StatusClean() const;
    void AddSituation(int number) const;
    int FirstSituation() const;
    // The option value with environment variables expanded and, unless told
    // otherwise, leading blanks skipped.
    std::wstring ExpandValue(const wchar_t* argument, bool skipBlanks = true) const;
    HeapString Duplicate(const std::wstring& text) const;
    void NewLaunchInfo(int shellCommandRequired);
    void FillNodeManagerRecord();
    bool DispatchOption(const std::wstring& word, int argc, wchar_t** argv, int& index);

    KYjlpApp& m_app;
};
