// The test's side of lpdriver.exe: runs one driver command with its standard
// output on a pipe and gives back the exit code and the `key=value` lines, with
// the driver's escapes (\\ \t \n \r) undone.
#pragma once
#include <windows.h>
#include <map>
#include <string>
#include <vector>

namespace lpdriver {

struct DriverAnswer {
    bool started = false;
    bool finished = false;  // false: the driver outlived the limit and was ended
    DWORD exitCode = 0;
    std::vector<std::wstring> lines;  // as printed, escapes still in place

    bool Has(const std::wstring& key) const;
    // The value of the first line with that key, unescaped; empty when there is none.
    std::wstring Value(const std::wstring& key) const;
    std::vector<std::wstring> Values(const std::wstring& key) const;
    // Lines whose value is several cells apart by tabs (row=, headings=): the cells, unescaped.
    std::vector<std::vector<std::wstring>> Cells(const std::wstring& key) const;
    // Lines of several `name=value` fields apart by tabs (hwnd= of windows, button=,
    // control=): each as a map from field name to unescaped value.
    std::vector<std::map<std::wstring, std::wstring>> Records(const std::wstring& key) const;
    // A line whose value is a point "x,y" (origin=, from=, to=, point=): false when the
    // line is missing or is not two whole numbers.
    bool Point(const std::wstring& key, POINT& point) const;
    // The pos=<row>\t<x>,<y> lines of `listview --positions`, by row.
    std::map<int, POINT> Positions() const;
    // Every line, for the message of a failed check.
    std::wstring Text() const;
};

class DriverClient {
public:
    // lpdriver.exe beside the running test program.
    DriverClient();
    explicit DriverClient(std::wstring driverPath) : m_path(std::move(driverPath)) {}

    DriverAnswer Run(const std::vector<std::wstring>& arguments, DWORD limitMs = 60000) const;

    static std::wstring Unescape(const std::wstring& text);
    static std::wstring Quote(const std::wstring& word);
    static std::wstring WindowText(HWND window);
    static bool ParsePoint(const std::wstring& text, POINT& point);

private:
    std::wstring m_path;
};

}  // namespace lpdriver
