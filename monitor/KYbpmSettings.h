// Everything the monitor is told before it starts: gathered by KYbpmData and
// copied by KYbpm::create, so that the data object may go right after.
#pragma once
#include <windows.h>
#include <array>
#include <cstdint>
#include <map>
#include <string>

#include "monitor/KYbpmDirective.h"

namespace KYbpmLimits {
inline constexpr int kArgsPerKind = 5;               // signed, unsigned and text arguments each
inline constexpr int kTagCount = 15;                 // identity tags 0 to 14
inline constexpr uint32_t kMaxMode = 10;             // highest assertiveness level
inline constexpr uint32_t kMinLogBytes = 64u * 1024u;
inline constexpr uint32_t kDefaultLogBytes = 4u * 1024u * 1024u;
inline constexpr uint32_t kMaxLogBytes = 1024u * 1024u * 1024u;
inline constexpr int kMaxFillers = 64;
inline constexpr int kMaxAffixIds = 2;               // one before, one after the description
inline constexpr int kMaxPlugIns = 0;                // no plug-in is known to this monitor
inline constexpr int kMaxThreads = 64;
}  // namespace KYbpmLimits

// Log forms of recordLogFileNomenclature.
namespace KYbpmLogForm {
inline constexpr uint32_t kHtml = 0;
inline constexpr uint32_t kText = 1;
}  // namespace KYbpmLogForm

// Code pages of narrow text arguments (setCharSetExternal).
namespace KYbpmCharSet {
inline constexpr int kAnsi = 0;
inline constexpr int kOem = 1;
inline constexpr int kUtf8 = 2;
}  // namespace KYbpmCharSet

struct KYbpmSettings {
    int64_t criteria = 0;
    int faultTolerance = 0;
    int charSet = KYbpmCharSet::kAnsi;
    uint32_t logByteLimit = KYbpmLimits::kDefaultLogBytes;
    std::array<std::wstring, KYbpmLimits::kTagCount> tags;
    std::wstring logFile;
    std::wstring templatePath;
    uint32_t logForm = KYbpmLogForm::kHtml;
    uint32_t mode = 0;
    HMODULE resourceModule = nullptr;
    HMODULE selfModule = nullptr;
    int fillersQty = KYbpmLimits::kMaxFillers;
    int argsIntQty = KYbpmLimits::kArgsPerKind;
    int argsUIntQty = KYbpmLimits::kArgsPerKind;
    int argsStrQty = KYbpmLimits::kArgsPerKind;
    int affixIdsQty = 0;
    int affixIdMin = 0;
    std::wstring caption;
    // The class of the situations whose answer the program acts on, by number:
    // it wins over the directive of the text, so a translation cannot turn a
    // question into a plain box.
    std::map<int, KYbpmDirective> kinds;
    int plugIns = 0;
    int threads = 1;
};
