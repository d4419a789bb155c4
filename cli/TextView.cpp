#include "TextView.h"

#include <algorithm>
#include <cctype>

namespace vagentctl {
namespace {

using nlohmann::ordered_json;

std::string Scalar(const ordered_json& value) {
    if (value.is_string()) {
        return value.get<std::string>();
    }
    if (value.is_array()) {
        std::string joined;
        for (const ordered_json& item : value) {
            joined += (joined.empty() ? "" : ", ") + Scalar(item);
        }
        return joined;
    }
    return value.dump(-1, ' ', false, ordered_json::error_handler_t::replace);
}

// Columns line up by characters, not bytes: UTF-8 continuation bytes do not
// count.
std::size_t Width(const std::string& text) {
    return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char c) {
        return (static_cast<unsigned char>(c) & 0xC0) != 0x80;
    }));
}

std::string Upper(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    return text;
}

std::vector<std::vector<std::string>> TableCells(const ordered_json& records) {
    std::vector<std::vector<std::string>> rows(1);
    for (const auto& column : records.front().items()) {
        rows.front().push_back(Upper(column.key()));
    }
    for (const ordered_json& record : records) {
        std::vector<std::string> row;
        for (const auto& column : records.front().items()) {
            row.push_back(record.contains(column.key()) ? Scalar(record[column.key()]) : "");
        }
        rows.push_back(row);
    }
    return rows;
}

std::vector<std::string> Table(const ordered_json& records) {
    const std::vector<std::vector<std::string>> rows = TableCells(records);
    std::vector<std::size_t> widths(rows.front().size(), 0);
    for (const auto& row : rows) {
        for (std::size_t i = 0; i < row.size(); ++i) {
            widths[i] = std::max(widths[i], Width(row[i]));
        }
    }
    std::vector<std::string> lines;
    for (const auto& row : rows) {
        std::string line;
        for (std::size_t i = 0; i < row.size(); ++i) {
            const bool last = i + 1 == row.size();
            line += row[i] + (last ? "" : std::string(widths[i] - Width(row[i]) + 2, ' '));
        }
        // An empty last cell leaves no padding behind.
        lines.push_back(line.substr(0, line.find_last_not_of(' ') + 1));
    }
    return lines;
}

bool IsRecordList(const ordered_json& value) {
    return value.is_array() && !value.empty() && value.front().is_object();
}

}  // namespace

std::vector<std::string> TextLines(const ordered_json& result) {
    if (result.is_null()) {
        return {"ok"};
    }
    if (IsRecordList(result)) {
        return Table(result);
    }
    if (result.is_array()) {
        std::vector<std::string> lines;
        for (const ordered_json& item : result) {
            lines.push_back(Scalar(item));
        }
        return lines.empty() ? std::vector<std::string>{"(none)"} : lines;
    }
    if (result.is_object()) {
        std::vector<std::string> lines;
        for (const auto& entry : result.items()) {
            lines.push_back(entry.key() + ": " + Scalar(entry.value()));
        }
        return lines;
    }
    return {Scalar(result)};
}

}  // namespace vagentctl
