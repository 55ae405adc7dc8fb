#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <fstream>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "setup/ProfileFile.h"
#include "setup/ProfileStore.h"
#include "support/MemoryFiles.h"
#include "util/FileText.h"

namespace tvn2x {
namespace {

/// One row of the rules: a file, one call, what the call answers and what the file holds afterwards.
struct Rule
{
    std::string id, file, call, arguments, expected, note;
};

/// An argument of a call. A null text is a null pointer.
using RuleText = std::optional<std::string>;

std::vector<std::string> Split(const std::string& text, char separator)
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

std::vector<Rule> Rules(const std::string& table)
{
    std::ifstream file(table);
    std::vector<Rule> rules;
    std::string line;
    std::getline(file, line);
    while (std::getline(file, line)) {
        const std::vector<std::string> cells = Split(line, '\t');
        rules.push_back({cells[0], cells[1], cells[2], cells[3], cells[4], cells[6]});
    }
    return rules;
}

/// A C literal with its quotes; "-" and NULL are no text.
RuleText Unescape(const std::string& literal)
{
    if (literal.empty() || literal[0] != '"') {
        return std::nullopt;
    }
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

std::string Escape(const std::string& text)
{
    std::string literal = "\"";
    for (const char c : text) {
        const size_t special = std::string("\r\n\t\"\\").find(c);
        const auto byte = static_cast<unsigned char>(c);
        if (special != std::string::npos) {
            literal.append("\\").push_back("rnt\"\\"[special]);
        } else if (byte < 32 || byte > 126) {
            literal.append({'\\', static_cast<char>('0' + byte / 64), static_cast<char>('0' + byte / 8 % 8),
                            static_cast<char>('0' + byte % 8)});
        } else {
            literal += c;
        }
    }
    return literal + '"';
}

/// What our own engine answers where it stands in for the system's functions, with their buffers.
std::string AnswerTo(const Rule& rule)
{
    using Names = std::vector<std::string>;
    const std::wstring path = L"C:\\data\\rules.ini";
    MemoryFiles files;
    if (const RuleText content = Unescape(rule.file)) {
        files.Put(path, *content);
    }
    ProfileStore store(files);
    store.Bind(path);
    const ProfileFile& profile = store.Profile();
    const std::vector<std::string> arguments = Split(rule.arguments, ',');
    const auto text = [&](size_t i) {
        const RuleText given = Unescape(arguments[i]);
        return given ? RuleText(file_text::FromBytes(*given, SystemCodePage())) : given;
    };
    const auto number = [&] { return std::stoll(arguments.back()); };
    const auto bytes = [](std::string_view answer) {
        return file_text::ToBytes(std::string(answer), SystemCodePage());
    };
    const auto filled = [](std::string buffer, size_t nuls) {
        const std::string result = std::to_string(buffer.size());
        return "ret=" + result + " buf=" + Escape(buffer.append(nuls, '\0'));
    };
    const auto single = [&](const std::string& value) {
        const auto size = static_cast<size_t>(number());
        return filled(value.substr(0, size - std::min<size_t>(size, 1)), size == 0 ? 0 : 1);
    };
    // Names that are each ended by a NUL. A list that is too long is cut two characters short of the buffer.
    const auto list = [&](const Names& names, size_t nulsIfEmpty) {
        std::string all;
        for (const std::string& name : names) {
            all.append(bytes(name)).push_back('\0');
        }
        const auto size = static_cast<size_t>(number());
        const bool fits = all.size() < size && !all.empty();
        all.resize(fits ? all.size() : std::min(all.size(), size - 2));
        return filled(all, fits ? 1 : all.empty() ? nulsIfEmpty : 2);
    };
    const auto written = [&](bool result) {
        return "ret=" + std::to_string(result ? 1 : 0) +
               " file=" + (files.Exists(path) ? Escape(files.Content(path)) : "-");
    };

    const std::string& call = rule.call;
    if (call == "GetPrivateProfileSectionNamesA") {
        return list(profile.GetSectionNames(), 1);
    }
    const RuleText section = text(0);
    if (call == "GetPrivateProfileSectionA") {
        return section ? list(profile.GetSection(*section), 2) : filled("", 0);
    }
    const RuleText key = text(1);
    if (call == "GetPrivateProfileIntA") {
        return "ret=" +
               std::to_string(section && key ? profile.GetInt(*section, *key, static_cast<uint32_t>(number())) : 0);
    }
    if (call == "GetPrivateProfileStringA") {
        if (section && key) {
            return single(bytes(profile.GetString(*section, *key, text(2).value_or(""))));
        }
        Names names = section ? profile.GetSection(*section) : profile.GetSectionNames();
        for (std::string& name : names) {
            name.resize(std::min(name.size(), section ? name.find('=') : name.size()));
        }
        return names.empty() ? single(section ? text(2).value_or("") : "") : list(names, 1);
    }
    if (call == "WritePrivateProfileStringA") {
        return written(section && (key ? store.Write(*section, *key, text(2)) : store.DeleteSection(*section)));
    }
    if (call == "WritePrivateProfileSectionA") {
        ProfileFile changed(files.Content(path));
        std::vector<std::string_view> lines;
        for (std::string_view rest = *key; !rest.empty(); rest.remove_prefix(lines.back().size() + 1)) {
            lines.push_back(rest.substr(0, rest.find('\0')));
        }
        const bool result = changed.WriteSection(*section, lines);
        files.Put(path, changed.Render());
        return written(result);
    }
    ADD_FAILURE() << "unknown call " << call;
    return {};
}

TEST(ProfileRules, EveryCallAnswersAsTheTableSays)
{
    const std::vector<Rule> rules = Rules(TVN_TEST_DATA "/profile-rules.tsv");
    ASSERT_GT(rules.size(), 190u);
    for (const Rule& rule : rules) {
        EXPECT_EQ(rule.expected, AnswerTo(rule))
            << rule.id << ": " << rule.call << "(" << rule.arguments << ") on " << rule.file << "  " << rule.note;
    }
}

}  // namespace
}  // namespace tvn2x
