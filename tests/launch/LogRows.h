// The situations a run answered, read back from its HTML log: one row per answer.
#pragma once
#include <string>
#include <vector>

namespace lptest {

struct LogRow {
    int number = 0;
    std::vector<std::wstring> texts;  // the text arguments by place
    std::vector<long long> ints;
    std::vector<long long> uints;
};

// The rows of the newest log file (*.html) directly in directory.
std::vector<LogRow> ReadLogRows(const std::wstring& directory);
// The rows of one number.
std::vector<LogRow> RowsOf(const std::vector<LogRow>& rows, int number);
// The numbers in their order, for failure messages.
std::string Numbers(const std::vector<LogRow>& rows);

}  // namespace lptest
