#include "tests/printers/TestPrinterHost.h"

#include <gtest/gtest.h>

#include "monitor/KYbpm.h"
#include "monitor/KYbpmData.h"
#include "tests/support/TestSupport.h"

namespace {
constexpr int kTagCount = 15;
constexpr int kLoadFailed = 27622;
const wchar_t kProgramName[] = L"Launch Panel";

// The tags the engine and the monitor read: the program's name and the first
// field of its "Internal Error" codes; the others stay blank.
std::wstring TagText(int tag) {
    switch (tag) {
    case 7:
    case 12:
    case 14: return kProgramName;
    case 13: return L"1";
    default: return L"";
    }
}
}  // namespace

void TestPrinterHost::MonitorDeleter::operator()(KYbpm* monitor) const { KYbpm::destroy(&monitor, 0, true); }

TestPrinterHost::TestPrinterHost(KYjlpPrinterCfg& engine, const std::wstring& logFile)
    : m_engine(engine), m_event(::CreateEventW(nullptr, FALSE, FALSE, nullptr)) {
    EXPECT_TRUE(m_event) << "the watch event";
    m_resources.reset(::LoadLibraryExW((lptest::BinDir() + L"lp.dll").c_str(), nullptr, 0));
    EXPECT_TRUE(m_resources) << "lp.dll beside the test program";
    MakeMonitor(logFile);
}

TestPrinterHost::~TestPrinterHost() = default;

// The monitor as the program makes it, but unattended: every situation the
// engine answers becomes a row of the log and no box is ever shown.
void TestPrinterHost::MakeMonitor(const std::wstring& logFile) {
    KYbpmData data(KYbpmCriteria::kUnattended);
    EXPECT_TRUE(data.learnSelfResourceModule());
    data.setSelfDX_FaultTolerance(2);
    data.setCharSetExternal(2);
    for (int tag = 0; tag < kTagCount; ++tag) {
        const std::wstring text = TagText(tag);
        if (!data.recordTag(text.c_str(), tag) && !data.isSelfSatisfied()) data.forgetSelfDX_Code();
    }
    EXPECT_TRUE(data.recordLogFileNomenclature(logFile.c_str(), L"", 0));
    EXPECT_TRUE(data.setResourceModule(m_resources.get()));
    EXPECT_TRUE(data.setDescriptionFillersQty(8));
    EXPECT_TRUE(data.setArgsIntQty(5));
    EXPECT_TRUE(data.setArgsStrQty(5));
    EXPECT_TRUE(data.setArgsUIntQty(5));
    EXPECT_TRUE(data.setDescriptionAffixIDsQty(2));
    EXPECT_TRUE(data.setDescriptionAffixID_Min(27012));
    EXPECT_TRUE(data.recordDialogBoxCaption(kProgramName));
    EXPECT_TRUE(data.createPlugIns(0));
    EXPECT_TRUE(data.sizeMapOfDataForThreads(1));
    EXPECT_TRUE(data.isSelfSatisfied()) << "monitor self code " << data.getSelfDX_Code();
    m_monitor.reset(KYbpm::create(&data));
    EXPECT_TRUE(m_monitor) << "monitor self code " << data.getSelfDX_Code();
}

int TestPrinterHost::LoadPrintMonitor() {
    ++m_loads;
    ::SetLastError(0);
    m_module.reset(::LoadLibraryW(m_libraryPath.c_str()));
    if (m_module) return 0;
    ::SetLastError(0);
    return kLoadFailed;
}

std::wstring TestPrinterHost::PrinterTagText(int tag) { return TagText(tag); }
