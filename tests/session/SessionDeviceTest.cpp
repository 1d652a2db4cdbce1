// The session device stand-in, reached as the panel reaches it: \\.\Sorel opened
// for reading, the two buffered control codes sent with no input.
#include <gtest/gtest.h>

#include <cstring>
#include <iostream>
#include <string>

#include "foundation/UniqueHandle.h"
#include "tests/support/SessionStandIns.h"
#include "tests/support/TestSupport.h"

namespace lptest {
namespace {

constexpr DWORD kSessionCode = 0x80FF0044;
constexpr DWORD kClientFactsCode = 0x80FF00C4;
constexpr DWORD kClientFactsSize = 642;
constexpr size_t kAddressOffset = 512;

ky::UniqueFile OpenDevice() {
    return ky::UniqueFile(
        CreateFileW(L"\\\\.\\Sorel", GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
}

// One control code sent as the panel sends it; the bytes start as a pattern so
// that what the device leaves alone shows.
struct Answer {
    BOOL ok = FALSE;
    DWORD error = 0;
    DWORD returned = 0;
    BYTE bytes[kClientFactsSize];
};

Answer Send(const ky::UniqueFile& device, DWORD code, DWORD size) {
    Answer answer;
    memset(answer.bytes, 0xAB, sizeof answer.bytes);
    answer.ok = DeviceIoControl(device.get(), code, nullptr, 0, answer.bytes, size, &answer.returned,
                                nullptr);
    answer.error = answer.ok ? 0 : GetLastError();
    return answer;
}

std::wstring TextAt(const Answer& answer, size_t offset, size_t bytes) {
    const auto* text = reinterpret_cast<const wchar_t*>(answer.bytes + offset);
    return std::wstring(text, wcsnlen(text, bytes / sizeof(wchar_t)));
}

void ReportTimings(const SessionDevice& device) {
    const auto& t = device.timings();
    std::cout << "[ timings  ] create " << t.create << " ms, start " << t.start << " ms, stop "
              << t.stop << " ms, remove " << t.remove << " ms" << std::endl;
    ::testing::Test::RecordProperty("create_ms", std::to_string(t.create));
    ::testing::Test::RecordProperty("start_ms", std::to_string(t.start));
    ::testing::Test::RecordProperty("stop_ms", std::to_string(t.stop));
    ::testing::Test::RecordProperty("remove_ms", std::to_string(t.remove));
}

TEST(SessionDevice, AnswersBothCodesAsSet) {
    SessionDevice device;
    ASSERT_TRUE(device.Install());
    ASSERT_TRUE(device.SetClient(L"CLIENT-PC", L"10.20.30.40"));
    {
        ky::UniqueFile sorel = OpenDevice();
        ASSERT_TRUE(sorel) << "error " << GetLastError();
        Answer session = Send(sorel, kSessionCode, 16);
        EXPECT_TRUE(session.ok) << "error " << session.error;
        EXPECT_EQ(session.returned, 16u);
        Answer facts = Send(sorel, kClientFactsCode, kClientFactsSize);
        ASSERT_TRUE(facts.ok) << "error " << facts.error;
        EXPECT_EQ(facts.returned, kClientFactsSize);
        EXPECT_EQ(TextAt(facts, 0, kAddressOffset), L"CLIENT-PC");
        EXPECT_EQ(TextAt(facts, kAddressOffset, kClientFactsSize - kAddressOffset), L"10.20.30.40");
        EXPECT_EQ(facts.bytes[kAddressOffset - 1], 0) << "the name's field is cleared to its end";
        EXPECT_EQ(facts.bytes[kClientFactsSize - 1], 0) << "the address's field is cleared to its end";
    }
    EXPECT_TRUE(device.WaitForCloses(1, 5000));
    EXPECT_EQ(device.Opens(), 1u);
    EXPECT_EQ(device.Closes(), 1u);
    EXPECT_EQ(device.SessionRequests(), 1u);
    EXPECT_EQ(device.ClientFactsRequests(), 1u);
    EXPECT_EQ(device.OtherRequests(), 0u);
    ASSERT_TRUE(device.Remove());
    ReportTimings(device);
}

TEST(SessionDevice, DefaultsAreASessionWithAnEmptyClient) {
    SessionDevice device;
    ASSERT_TRUE(device.Install());
    ky::UniqueFile sorel = OpenDevice();
    ASSERT_TRUE(sorel);
    EXPECT_TRUE(Send(sorel, kSessionCode, 16).ok);
    Answer facts = Send(sorel, kClientFactsCode, kClientFactsSize);
    ASSERT_TRUE(facts.ok);
    EXPECT_EQ(TextAt(facts, 0, kAddressOffset), L"");
    EXPECT_EQ(TextAt(facts, kAddressOffset, kClientFactsSize - kAddressOffset), L"");
    Answer other = Send(sorel, 0x80FF0048, 16);
    EXPECT_FALSE(other.ok);
    EXPECT_EQ(other.error, DWORD(ERROR_INVALID_FUNCTION));
    EXPECT_EQ(device.OtherRequests(), 1u);
}

TEST(SessionDevice, RefusesWhenToldWithoutARestart) {
    SessionDevice device;
    ASSERT_TRUE(device.Install());
    ky::UniqueFile sorel = OpenDevice();
    ASSERT_TRUE(sorel);
    ASSERT_TRUE(device.SetInSession(false));
    Answer refused = Send(sorel, kSessionCode, 16);
    EXPECT_FALSE(refused.ok);
    EXPECT_EQ(refused.error, DWORD(ERROR_INVALID_FUNCTION));
    EXPECT_TRUE(Send(sorel, kClientFactsCode, kClientFactsSize).ok) << "the other code still answers";

    ASSERT_TRUE(device.SetClientFactsAnswered(false));
    ASSERT_TRUE(device.SetFailureStatus(0xC0000022));  // STATUS_ACCESS_DENIED
    Answer facts = Send(sorel, kClientFactsCode, kClientFactsSize);
    EXPECT_FALSE(facts.ok);
    EXPECT_EQ(facts.error, DWORD(ERROR_ACCESS_DENIED));
    EXPECT_EQ(facts.bytes[0], 0xAB) << "a refused request writes nothing";

    ASSERT_TRUE(device.SetInSession(true));
    EXPECT_TRUE(Send(sorel, kSessionCode, 16).ok);
    EXPECT_EQ(device.SessionRequests(), 2u);
    EXPECT_EQ(device.ClientFactsRequests(), 2u);
}

TEST(SessionDevice, TooLongClientTextsAreCutToTheirFields) {
    SessionDevice device;
    ASSERT_TRUE(device.Install());
    ASSERT_TRUE(device.SetClient(std::wstring(300, L'N'), std::wstring(100, L'A')));
    ky::UniqueFile sorel = OpenDevice();
    ASSERT_TRUE(sorel);
    Answer facts = Send(sorel, kClientFactsCode, kClientFactsSize);
    ASSERT_TRUE(facts.ok);
    EXPECT_EQ(TextAt(facts, 0, kAddressOffset), std::wstring(255, L'N'));
    EXPECT_EQ(TextAt(facts, kAddressOffset, kClientFactsSize - kAddressOffset), std::wstring(64, L'A'));
    Answer tooSmall = Send(sorel, kClientFactsCode, 386);
    EXPECT_FALSE(tooSmall.ok);
    EXPECT_EQ(tooSmall.error, DWORD(ERROR_INSUFFICIENT_BUFFER));
}

TEST(SessionDevice, GoesAwayWithItsService) {
    SessionDevice device;
    ASSERT_TRUE(device.Install());
    ASSERT_TRUE(OpenDevice());
    EXPECT_TRUE(SessionDevice::ServiceExists());
    ASSERT_TRUE(device.Remove());
    EXPECT_FALSE(device.installed());
    ky::UniqueFile sorel = OpenDevice();
    EXPECT_FALSE(sorel);
    EXPECT_EQ(GetLastError(), DWORD(ERROR_FILE_NOT_FOUND));
    EXPECT_FALSE(SessionDevice::ServiceExists());
    DWORD any = 0;
    EXPECT_FALSE(GetDword(HKEY_LOCAL_MACHINE, SessionDevice::ParametersKey(), L"Opens", any))
        << "the answers and counts go with the service";
    ReportTimings(device);
}

TEST(SessionDevice, InstallReplacesAServiceLeftBehind) {
    SessionDevice leftover;  // stands for a test that ended before removing its device
    ASSERT_TRUE(leftover.Install());
    ASSERT_TRUE(leftover.SetClient(L"OLD", L"1.1.1.1"));
    {
        SessionDevice device;
        ASSERT_TRUE(device.Install());
        ky::UniqueFile sorel = OpenDevice();
        ASSERT_TRUE(sorel);
        Answer facts = Send(sorel, kClientFactsCode, kClientFactsSize);
        ASSERT_TRUE(facts.ok);
        EXPECT_EQ(TextAt(facts, 0, kAddressOffset), L"") << "a fresh install answers its defaults";
        ReportTimings(device);
    }
    EXPECT_FALSE(OpenDevice());
    EXPECT_FALSE(SessionDevice::ServiceExists());
    EXPECT_TRUE(leftover.Remove()) << "removing what is gone already is no error";
}

}  // namespace
}  // namespace lptest
