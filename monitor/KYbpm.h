// The program monitor: holds the current situation, fills its text from the
// resource module, answers it (message box and/or log) as the behaviour
// criteria and the situation mode say, and writes the run's HTML log.
#pragma once
#include <windows.h>
#include <cstdint>
#include <memory>
#include <string>

class KYbpmData;
class KYbpmEngine;

// The argument position meaning "the next free one".
inline constexpr int KYbpm_NEXT_POSITION = 0x7fffffff;

// Answers of canRespondToSituations.
enum class KYbpm_FUZZY_CHOICE { No = 0, Yes = 1, Unsure = 2 };

// Bits of the behaviour criteria (64 bits; the registry value holds the low 32).
namespace KYbpmCriteria {
inline constexpr int64_t kUnattended = 0x00000001;    // never a modal box; questions take their default
inline constexpr int64_t kNoLog = 0x00000002;         // write no log entries at all
inline constexpr int64_t kSessionLog = 0x00200000;    // in a session: answered situations go to the event log
inline constexpr int64_t kInSession = 0x80000000;     // the program runs inside a server session
}  // namespace KYbpmCriteria

class KYbpm {
public:
    static KYbpm* create(KYbpmData* data);
    static void destroy(KYbpm** monitor, int reserved, bool nullIt);

    void recordSituationID(int number);
    bool recordArgument(int32_t value, int position = KYbpm_NEXT_POSITION);
    bool recordArgument(uint32_t value, int position = KYbpm_NEXT_POSITION);
    // DWORD and LONG are long types here: without these they would match neither exactly.
    bool recordArgument(unsigned long value, int position = KYbpm_NEXT_POSITION) {
        return recordArgument(static_cast<uint32_t>(value), position);
    }
    bool recordArgument(long value, int position = KYbpm_NEXT_POSITION) {
        return recordArgument(static_cast<int32_t>(value), position);
    }
    bool recordArgument(const char* text, int position = KYbpm_NEXT_POSITION);
    bool recordArgument(const wchar_t* text, int position = KYbpm_NEXT_POSITION);
    bool recordArgument(const std::wstring& text, int position = KYbpm_NEXT_POSITION) {
        return recordArgument(text.c_str(), position);
    }

    // Records the number and the arguments (int, unsigned, narrow or wide
    // text, each to the next free place of its kind) and answers at once.
    template <typename... Args>
    bool respondToSituation(int number, int reserved, const Args&... args) {
        (void)reserved;
        recordSituationID(number);
        (recordArgument(args), ...);
        return respondToSituation();
    }
    // For reports the program composes whole (its message-box paths): the text,
    // caption (null: the monitor's) and box style (0: the class's) shown and
    // logged for the recorded situation instead of the ones made from its number.
    void recordPresentation(const wchar_t* text, const wchar_t* caption, UINT style);
    // Answers the recorded situation; false when it was not taken (then the caller forgets it).
    bool respondToSituation();
    void forgetSituation();
    bool isSituationNormal() const;
    int getSituationID() const;
    int getSituationsCount() const;
    KYbpm_FUZZY_CHOICE canRespondToSituations() const;
    int getDisplayDlgBoxResult() const;
    HWND getDisplayDlgBoxParent() const;
    void setDisplayDlgBoxParent(HWND parent);
    const wchar_t* getTag(int tag) const;
    void setResourceModule(HMODULE module);
    bool setBehaviorCriteria(int64_t criteria);
    void forgetSelfDX_Code();
    // The monitor's own failure code since the last forget (a log write that failed).
    int getSelfDX_Code() const;

    // The full text of the current situation as it is shown and logged
    // (the code line and the filled description); empty when none stands.
    std::wstring describeSituation() const;

    ~KYbpm();

private:
    explicit KYbpm(std::unique_ptr<KYbpmEngine> engine);
    std::unique_ptr<KYbpmEngine> m_engine;
};
