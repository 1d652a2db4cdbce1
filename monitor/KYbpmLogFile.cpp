#include "monitor/KYbpmLogFile.h"

#include "monitor/KYbpmLogTemplate.h"
#include "monitor/KYbpmSelfCode.h"
#include "monitor/KYbpmSituation.h"
#include "monitor/KYbpmText.h"

namespace {

// A JSON array of one kind of arguments, by place; trailing empty places are left out.
template <typename Slots, typename Render>
std::wstring JsonArray(const Slots& slots, Render render) {
    size_t count = slots.size();
    while (count > 0 && !slots[count - 1]) --count;
    std::wstring out = L"[";
    for (size_t i = 0; i < count; ++i) {
        if (i) out += L',';
        out += slots[i] ? render(*slots[i]) : std::wstring(L"null");
    }
    return out + L"]";
}

std::wstring JsonString(const std::wstring& text) {
    std::wstring out = L"\"";
    for (wchar_t c : text) {
        if (c == L'"' || c == L'\\') {
            out += L'\\';
            out += c;
        } else if (c < 0x20) {
            wchar_t escape[8];
            swprintf(escape, 8, L"\\u%04x", static_cast<unsigned>(c));
            out += escape;
        } else {
            out += c;
        }
    }
    return out + L"\"";
}

std::wstring OneLine(const std::wstring& text) {
    std::wstring out;
    for (wchar_t c : text) {
        if (c == L'\r') continue;
        if (c == L'\n') out += L"\\n";
        else out += c == L'\t' ? L' ' : c;
    }
    return out;
}

}  // namespace

std::unique_ptr<KYbpmLogFile> KYbpmLogFile::open(const KYbpmSettings& settings, int& selfCode) {
    selfCode = KYbpmSelfCode::kNone;
    const uint32_t form = settings.logForm;
    if (settings.logFile.empty() || (form != KYbpmLogForm::kHtml && form != KYbpmLogForm::kText))
        return nullptr;
    ky::UniqueFile file(CreateFileW(settings.logFile.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr,
                                    CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file) {
        selfCode = KYbpmSelfCode::kLogCreate;
        return nullptr;
    }
    std::unique_ptr<KYbpmLogFile> log(new KYbpmLogFile(std::move(file), form, settings.logByteLimit));
    SYSTEMTIME started{};
    GetLocalTime(&started);
    std::string head;
    const auto& tags = settings.tags;
    if (form == KYbpmLogForm::kHtml) {
        const auto frame = KYbpmLogTemplate::load(settings.templatePath, tags, started);
        head = KYbpmText::ToUtf8(frame.head());
        log->m_tail = KYbpmText::ToUtf8(frame.tail());
        log->m_fullEntry = KYbpmText::ToUtf8(
            L"<tr class=\"log-full\"><td colspan=\"3\">The log has reached its size limit of " +
            std::to_wstring(log->m_nLimit) + L" bytes; later situations are not recorded.</td></tr>\n");
    } else {
        head = KYbpmText::ToUtf8(L"log\t" + OneLine(tags[7]) + L"\t" + OneLine(tags[11]) + L"\t" +
                                 OneLine(tags[9]) + L"\t" + OneLine(tags[4]) + L"\t" +
                                 KYbpmText::FormatTime(started, false) + L"\r\n" +
                                 L"time\tnumber\tkind\tanswer\tshown\tboxed\ttext\r\n");
        log->m_tail = KYbpmText::ToUtf8(L"end\r\n");
        log->m_fullEntry = KYbpmText::ToUtf8(L"full\t" + std::to_wstring(log->m_nLimit) +
                                             L"\tThe log has reached its size limit.\r\n");
    }
    if (!log->write(head)) {
        selfCode = KYbpmSelfCode::kLogWrite;
        return nullptr;
    }
    return log;
}

KYbpmLogFile::KYbpmLogFile(ky::UniqueFile file, uint32_t form, uint32_t limit)
    : m_file(std::move(file)), m_nForm(form), m_nLimit(limit) {}

KYbpmLogFile::~KYbpmLogFile() {
    write(m_tail);
}

bool KYbpmLogFile::write(const std::string& bytes) {
    DWORD written = 0;
    if (!bytes.empty() &&
        (!WriteFile(m_file.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr) ||
         written != bytes.size()))
        return false;
    m_nWritten += written;
    FlushFileBuffers(m_file.get());
    return true;
}

bool KYbpmLogFile::append(const KYbpmLogEntry& entry, int& selfCode) {
    if (m_bFull) return false;
    const std::string bytes = m_nForm == KYbpmLogForm::kHtml ? htmlRow(entry) : textLine(entry);
    // Room is always kept for the closing entry and the tail.
    if (m_nWritten + bytes.size() + m_fullEntry.size() + m_tail.size() > m_nLimit) {
        m_bFull = true;
        write(m_fullEntry);
        return false;
    }
    if (!write(bytes)) {
        selfCode = KYbpmSelfCode::kLogWrite;
        return false;
    }
    return true;
}

std::string KYbpmLogFile::htmlRow(const KYbpmLogEntry& entry) const {
    using KYbpmText::HtmlEscape;
    const KYbpmSituation& s = *entry.situation;
    const auto number = std::to_wstring(s.number());
    const auto text = [](const std::wstring& v) { return JsonString(v); };
    const auto integer = [](auto v) { return std::to_wstring(v); };
    std::wstring row = L"<tr class=\"situation\" data-number=\"" + number + L"\" data-time=\"" +
                       KYbpmText::FormatTime(entry.time, true) + L"\" data-kind=\"" + entry.kind +
                       L"\" data-answer=\"" + std::to_wstring(entry.answer) + L"\" data-shown=\"" +
                       (entry.shown ? L"1" : L"0") + L"\" data-boxed=\"" + (entry.boxed ? L"1" : L"0") +
                       L"\" data-args-int=\"" + HtmlEscape(JsonArray(s.ints(), integer)) +
                       L"\" data-args-uint=\"" + HtmlEscape(JsonArray(s.uints(), integer)) +
                       L"\" data-args-text=\"" + HtmlEscape(JsonArray(s.texts(), text)) + L"\">";
    row += L"<td class=\"time\">" + KYbpmText::FormatTime(entry.time, false) + L"</td><td class=\"number\">" +
           number + L"</td><td class=\"text\">" + KYbpmText::HtmlText(entry.text) + L"</td></tr>\n";
    return KYbpmText::ToUtf8(row);
}

std::string KYbpmLogFile::textLine(const KYbpmLogEntry& entry) const {
    const std::wstring line = KYbpmText::FormatTime(entry.time, false) + L"\t" +
                              std::to_wstring(entry.situation->number()) + L"\t" + entry.kind + L"\t" +
                              std::to_wstring(entry.answer) + L"\t" + (entry.shown ? L"1" : L"0") + L"\t" +
                              (entry.boxed ? L"1" : L"0") + L"\t" +
                              OneLine(KYbpmText::PlainText(entry.text)) + L"\r\n";
    return KYbpmText::ToUtf8(line);
}
