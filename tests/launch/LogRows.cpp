#include "tests/launch/LogRows.h"

#include <windows.h>

#include "foundation/UniqueHandle.h"
#include "tests/support/TestSupport.h"

namespace lptest {

namespace {
std::string Attribute(const std::string& row, const std::string& name) {
    std::string key = " " + name + "=\"";
    size_t start = row.find(key);
    if (start == std::string::npos) return {};
    start += key.size();
    return row.substr(start, row.find('"', start) - start);
}

std::string Unescape(std::string text) {
    static const std::pair<const char*, const char*> kEntities[] = {
        {"&quot;", "\""}, {"&#39;", "'"}, {"&lt;", "<"}, {"&gt;", ">"}, {"&amp;", "&"}};
    for (const auto& [entity, plain] : kEntities)
        for (size_t at = text.find(entity); at != std::string::npos; at = text.find(entity, at + 1))
            text.replace(at, strlen(entity), plain);
    return text;
}

// A JSON array of strings, as the monitor writes it.
std::vector<std::wstring> StringArray(const std::string& json) {
    std::vector<std::wstring> out;
    std::string current;
    bool inside = false;
    for (size_t i = 0; i < json.size(); ++i) {
        char c = json[i];
        if (!inside) {
            if (c == '"') inside = true;
            continue;
        }
        if (c == '\\' && i + 1 < json.size()) {
            char e = json[++i];
            if (e == 'n') current += '\n';
            else if (e == 't') current += '\t';
            else if (e == 'u' && i + 4 < json.size()) {
                current += static_cast<char>(std::stoi(json.substr(i + 1, 4), nullptr, 16));
                i += 4;
            } else current += e;
        } else if (c == '"') {
            out.push_back(Widen(current));
            current.clear();
            inside = false;
        } else {
            current += c;
        }
    }
    return out;
}

std::vector<long long> NumberArray(const std::string& json) {
    std::vector<long long> out;
    size_t i = 0;
    while ((i = json.find_first_of("-0123456789", i)) != std::string::npos) {
        size_t used = 0;
        out.push_back(std::stoll(json.substr(i), &used));
        i += used;
    }
    return out;
}
}  // namespace

std::vector<LogRow> ReadLogRows(const std::wstring& directory) {
    std::wstring newest;
    FILETIME newestTime{};
    WIN32_FIND_DATAW found{};
    ky::UniqueFind find(FindFirstFileW((directory + L"*.html").c_str(), &found));
    if (find) {
        do {
            if (newest.empty() || CompareFileTime(&found.ftLastWriteTime, &newestTime) > 0) {
                newest = found.cFileName;
                newestTime = found.ftLastWriteTime;
            }
        } while (FindNextFileW(find.get(), &found));
    }
    std::vector<LogRow> rows;
    if (newest.empty()) return rows;
    std::string html = ReadFile(directory + newest);
    const std::string marker = "<tr class=\"situation\"";
    for (size_t at = html.find(marker); at != std::string::npos; at = html.find(marker, at + 1)) {
        std::string row = html.substr(at, html.find('>', at) - at);
        LogRow entry;
        entry.number = std::atoi(Attribute(row, "data-number").c_str());
        entry.texts = StringArray(Unescape(Attribute(row, "data-args-text")));
        entry.ints = NumberArray(Unescape(Attribute(row, "data-args-int")));
        entry.uints = NumberArray(Unescape(Attribute(row, "data-args-uint")));
        rows.push_back(std::move(entry));
    }
    return rows;
}

std::vector<LogRow> RowsOf(const std::vector<LogRow>& rows, int number) {
    std::vector<LogRow> out;
    for (const LogRow& row : rows)
        if (row.number == number) out.push_back(row);
    return out;
}

std::string Numbers(const std::vector<LogRow>& rows) {
    std::string out;
    for (const LogRow& row : rows) out += std::to_string(row.number) + " ";
    return out;
}

}  // namespace lptest
