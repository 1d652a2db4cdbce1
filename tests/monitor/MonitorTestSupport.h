// Shared set-up of the monitor tests: a monitor made the way the program makes
// it, with this test program as its resource module, and readers of its log.
#pragma once
#include <windows.h>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "monitor/KYbpm.h"
#include "monitor/KYbpmData.h"

namespace montest {

inline constexpr int64_t kUnattended = KYbpmCriteria::kUnattended;

struct Setup {
    int64_t criteria = kUnattended;
    uint32_t mode = 0;
    std::wstring logFile{};       // empty: no file, as inside a session
    std::wstring templatePath{};
    uint32_t form = 0;
    uint32_t byteLimit = 0;      // 0: the default
    bool affixes = true;
    const wchar_t* tag13 = L"42";
};

struct MonitorDeleter {
    void operator()(KYbpm* monitor) const { KYbpm::destroy(&monitor, 0, true); }
};
using MonitorPtr = std::unique_ptr<KYbpm, MonitorDeleter>;

// The identity tags the tests record (tag 10 stays blank, as in the program).
std::wstring TagText(int tag);
// Fills data the way the program's start-up does; returns the data for create.
std::unique_ptr<KYbpmData> MakeData(const Setup& setup);
MonitorPtr MakeMonitor(const Setup& setup);

// The <tr class="situation" ...> rows of an HTML log, one string each.
std::vector<std::string> SituationRows(const std::string& log);
// The value of attribute name in a row, with &quot; &amp; &lt; &gt; decoded.
std::string Attribute(const std::string& row, const std::string& name);
size_t CountOf(const std::string& text, const std::string& part);

}  // namespace montest
