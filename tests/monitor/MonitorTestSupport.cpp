#include "MonitorTestSupport.h"

#include <gtest/gtest.h>

namespace montest {

std::wstring TagText(int tag) {
    switch (tag) {
    case 4: return L"7.3.12.4711";
    case 7: return L"Launch <Panel>";
    case 9: return L"HOST-9";
    case 10: return L"";
    case 11: return L"alice & bob";
    case 12: return L"Monitor Test Caption";
    default: return L"tag-" + std::to_wstring(tag);
    }
}

std::unique_ptr<KYbpmData> MakeData(const Setup& setup) {
    auto data = std::make_unique<KYbpmData>(setup.criteria);
    EXPECT_TRUE(data->learnSelfResourceModule());
    EXPECT_TRUE(data->setSelfDX_FaultTolerance(2));
    EXPECT_TRUE(data->setCharSetExternal(2));
    if (setup.byteLimit) {
        uint32_t granted = 0;
        EXPECT_TRUE(data->setLogFileByteCountLimit(setup.byteLimit, granted));
    }
    for (int tag = 0; tag < 15; ++tag) {
        const std::wstring text = tag == 13 ? setup.tag13 : TagText(tag);
        if (!data->recordTag(text.c_str(), tag) && !data->isSelfSatisfied()) data->forgetSelfDX_Code();
    }
    EXPECT_TRUE(data->recordLogFileNomenclature(setup.logFile.c_str(), setup.templatePath.c_str(), setup.form));
    EXPECT_TRUE(data->setSituationMode(setup.mode));
    EXPECT_TRUE(data->setResourceModule(GetModuleHandleW(nullptr)));
    EXPECT_TRUE(data->setDescriptionFillersQty(8));
    EXPECT_TRUE(data->setArgsIntQty(5));
    EXPECT_TRUE(data->setArgsStrQty(5));
    EXPECT_TRUE(data->setArgsUIntQty(5));
    if (setup.affixes) {
        EXPECT_TRUE(data->setDescriptionAffixIDsQty(2));
        EXPECT_TRUE(data->setDescriptionAffixID_Min(27012));
    }
    EXPECT_TRUE(data->recordDialogBoxCaption(TagText(12).c_str()));
    EXPECT_TRUE(data->createPlugIns(0));
    EXPECT_TRUE(data->sizeMapOfDataForThreads(1));
    EXPECT_TRUE(data->isSelfSatisfied()) << data->getSelfDX_Code();
    return data;
}

MonitorPtr MakeMonitor(const Setup& setup) {
    auto data = MakeData(setup);
    MonitorPtr monitor(KYbpm::create(data.get()));
    EXPECT_TRUE(monitor) << "self code " << data->getSelfDX_Code();
    return monitor;
}

std::vector<std::string> SituationRows(const std::string& log) {
    std::vector<std::string> rows;
    const std::string open = "<tr class=\"situation\"";
    for (size_t at = log.find(open); at != std::string::npos; at = log.find(open, at + 1)) {
        const size_t end = log.find("</tr>", at);
        rows.push_back(log.substr(at, end == std::string::npos ? std::string::npos : end + 5 - at));
    }
    return rows;
}

std::string Attribute(const std::string& row, const std::string& name) {
    const std::string key = " " + name + "=\"";
    const size_t start = row.find(key);
    if (start == std::string::npos) return "<missing>";
    const size_t from = start + key.size();
    const std::string raw = row.substr(from, row.find('"', from) - from);
    std::string out;
    for (size_t i = 0; i < raw.size(); ++i) {
        static const std::pair<const char*, char> entities[] = {
            {"&quot;", '"'}, {"&amp;", '&'}, {"&lt;", '<'}, {"&gt;", '>'}, {"&#39;", '\''}};
        bool decoded = false;
        for (const auto& [entity, c] : entities) {
            const std::string e = entity;
            if (raw.compare(i, e.size(), e) == 0) {
                out += c;
                i += e.size() - 1;
                decoded = true;
                break;
            }
        }
        if (!decoded) out += raw[i];
    }
    return out;
}

size_t CountOf(const std::string& text, const std::string& part) {
    size_t count = 0;
    for (size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + part.size())) ++count;
    return count;
}

}  // namespace montest
