// The monitor's own failure codes ("self codes"): what went wrong inside the
// monitor itself, read by the program with getSelfDX_Code and shown after the
// code of 27700 or 27701.
#pragma once

namespace KYbpmSelfCode {
inline constexpr int kNone = 0;
inline constexpr int kNullInput = 1;        // a text or object that must be given was null
inline constexpr int kBlankInput = 2;       // a text that must say something was empty or blank
inline constexpr int kOutOfRange = 3;       // a number outside what the setting takes
inline constexpr int kModuleUnknown = 4;    // the monitor's own module could not be found
inline constexpr int kLogCreate = 5;        // the log file could not be created
inline constexpr int kLogWrite = 6;         // a write to the log file failed
inline constexpr int kNoMemory = 7;         // memory ran out while setting up
}  // namespace KYbpmSelfCode
