#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "setup/ProfileCalls.h"
#include "setup/ProfileFile.h"
#include "setup/ProfileStore.h"
#include "support/MemoryFiles.h"

namespace tvn2x {

/// One row of the rules: a file, one call, what the call answers and what the file holds afterwards.
struct Rule
{
    std::string id, file, call, arguments, expected, windows, note;
};

inline std::vector<std::string> Split(const std::string& text, char separator)
{
    std::vector<std::string> parts(1);
    bool quoted = false;
    for (size_t i = 0; i < text.size(); ++i) {
        if (separator == ',' && text[i] == '\\') {
            parts.back() += text[i++];
        } else if (separator == ',' && text[i] == '"') {
            quoted = !quoted;
        } else if (text[i] == separator && !quoted) {
            parts.emplace_back();
            continue;
        }
        parts.back() += text[i];
    }
    return parts;
}

inline std::vector<Rule> Rules(const std::filesystem::path& table)
{
    std::ifstream file(table);
    std::vector<Rule> rules;
    std::string line;
    std::getline(file, line);
    while (std::getline(file, line)) {
        const std::vector<std::string> cells = Split(line, '\t');
        rules.push_back({cells[0], cells[1], cells[2], cells[3], cells[4], cells[5], cells[6]});
    }
    return rules;
}

/// A C literal with its quotes; "-" and NULL are no text.
inline ProfileCalls::Text Unescape(const std::string& literal)
{
    if (literal.empty() || literal[0] != '"')
        return std::nullopt;
    std::string text;
    for (size_t i = 1; i + 1 < literal.size(); ++i) {
        if (literal[i] != '\\') {
            text += literal[i];
            continue;
        }
        const char escaped = literal[++i];
        const size_t special = std::string("rnt\"\\").find(escaped);
        if (special != std::string::npos) {
            text += "\r\n\t\"\\"[special];
        } else {
            text += static_cast<char>(std::stoi(literal.substr(i, 3), nullptr, 8));
            i += 2;
        }
    }
    return text;
}

inline std::string Escape(const std::string& text)
{
    std::string literal = "\"";
    for (const char c : text) {
        const size_t special = std::string("\r\n\t\"\\").find(c);
        const auto byte = static_cast<unsigned char>(c);
        if (special != std::string::npos)
            literal.append("\\").push_back("rnt\"\\"[special]);
        else if (byte < 32 || byte > 126)
            literal.append({'\\', static_cast<char>('0' + byte / 64), static_cast<char>('0' + byte / 8 % 8),
                            static_cast<char>('0' + byte % 8)});
        else
            literal += c;
    }
    return literal + '"';
}

/// What our own engine answers.
inline std::string AnswerTo(const Rule& rule)
{
    const std::wstring path = L"C:\\data\\rules.ini";
    MemoryFiles files;
    if (const ProfileCalls::Text content = Unescape(rule.file))
        files.Put(path, *content);
    ProfileStore store(files);
    store.Bind(path);
    ProfileCalls calls(store);
    const std::vector<std::string> arguments = Split(rule.arguments, ',');
    const auto text = [&](size_t i) { return Unescape(arguments[i]); };
    const auto number = [&](size_t i) { return std::stoll(arguments[i]); };
    const auto answer = [](const ProfileAnswer& given) {
        return "ret=" + std::to_string(given.result) + " buf=" + Escape(given.buffer);
    };
    const auto written = [&](bool result) {
        return "ret=" + std::to_string(result ? 1 : 0) +
               " file=" + (files.Exists(path) ? Escape(files.Content(path)) : "-");
    };

    if (rule.call == "GetPrivateProfileStringA")
        return answer(calls.GetString(text(0), text(1), text(2), static_cast<size_t>(number(3))));
    if (rule.call == "GetPrivateProfileSectionA")
        return answer(calls.GetSection(text(0), static_cast<size_t>(number(1))));
    if (rule.call == "GetPrivateProfileSectionNamesA")
        return answer(calls.GetSectionNames(static_cast<size_t>(number(0))));
    if (rule.call == "GetPrivateProfileIntA")
        return "ret=" + std::to_string(calls.GetInt(text(0), text(1), static_cast<uint32_t>(number(2))));
    if (rule.call == "WritePrivateProfileStringA")
        return written(calls.WriteString(text(0), text(1), text(2)));
    if (rule.call == "WritePrivateProfileSectionA") {
        ProfileFile profile(files.Content(path));
        const std::string list = *text(1);
        std::vector<std::string_view> lines;
        for (size_t start = 0, stop; (stop = list.find('\0', start)) != std::string::npos; start = stop + 1)
            lines.push_back(std::string_view(list).substr(start, stop - start));
        const bool result = profile.WriteSection(*text(0), lines);
        files.Put(path, profile.Render());
        return written(result);
    }
    ADD_FAILURE() << "unknown call " << rule.call;
    return {};
}

}  // namespace tvn2x
