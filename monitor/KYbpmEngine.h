// The inside of the program monitor: the standing situation, how its text is
// made, and how it is answered (message box, log file, event log).
#pragma once
#include <windows.h>
#include <cstdint>
#include <memory>
#include <string>

#include "monitor/KYbpm.h"
#include "monitor/KYbpmDirective.h"
#include "monitor/KYbpmEventLog.h"
#include "monitor/KYbpmLogFile.h"
#include "monitor/KYbpmSettings.h"
#include "monitor/KYbpmSituation.h"

class KYbpmEngine {
public:
    // Null with selfCode set when the log file cannot be made.
    static std::unique_ptr<KYbpmEngine> create(const KYbpmSettings& settings, int& selfCode);

    void recordSituationID(int number);
    bool recordInt(int32_t value, int position);
    bool recordUInt(uint32_t value, int position);
    bool recordText(const wchar_t* text, int position);
    bool recordNarrowText(const char* text, int position);
    bool respond();
    void forget();
    bool isNormal() const { return !m_situation.stands(); }
    int situationId() const { return m_situation.number(); }
    // How many situations stand: the one recorded and not yet answered or forgotten.
    int count() const { return m_situation.stands() ? 1 : 0; }
    KYbpm_FUZZY_CHOICE canRespond() const;
    int dlgBoxResult() const { return m_nDlgBoxResult; }
    HWND dlgBoxParent() const { return m_hParent; }
    void setDlgBoxParent(HWND parent) { m_hParent = parent; }
    const wchar_t* tag(int tag) const;
    void setResourceModule(HMODULE module);
    bool setCriteria(int64_t criteria);
    int selfCode() const { return m_nSelfCode; }
    void forgetSelfCode() { m_nSelfCode = 0; }
    void present(KYbpmSituation::Presentation presentation) { m_situation.present(std::move(presentation)); }
    std::wstring describe() const;

private:
    struct Composed {
        KYbpmDirective directive;
        std::wstring text;  // code line and description, code links included
        std::wstring caption;  // the caller's caption, else the monitor's
        UINT style = 0;        // the caller's box style, else the class's
    };

    explicit KYbpmEngine(const KYbpmSettings& settings) : m_settings(settings) {}
    Composed compose(const KYbpmSituation& situation) const;
    std::wstring codeLine(const KYbpmSituation& situation) const;
    std::wstring builtInDescription(const KYbpmSituation& situation) const;
    void addAffixes(const KYbpmSituation& situation, std::wstring& description) const;
    int showBox(const Composed& composed);
    HMODULE textModule() const;
    bool visibleAtLevel(KYbpmKind kind) const;
    const wchar_t* caption() const;
    bool log(const KYbpmSituation& situation, const Composed& composed, int answer, bool shown, bool boxed);

    KYbpmSettings m_settings;
    KYbpmSituation m_situation;
    std::unique_ptr<KYbpmLogFile> m_log;
    KYbpmEventLog m_eventLog;
    bool m_bBoxOpen = false;
    int m_nDlgBoxResult = 0;
    int m_nSelfCode = 0;
    HWND m_hParent = nullptr;
};
