#include <gtest/gtest.h>

#include <fstream>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include "setup/ProfileFile.h"
#include "setup/ProfileStore.h"
#include "support/MemoryFiles.h"
#include "util/FileText.h"

namespace tvn2x {
namespace {

/// The text of a C literal; none where there is no literal.
std::optional<std::string> TextOf(const std::string& literal)
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

std::string Joined(const std::vector<std::string>& names)
{
    std::string all;
    for (const std::string& name : names) {
        all += (&name == names.data() ? "" : std::string(1, '\0')) + name;
    }
    return all;
}

/// One row is a file, one call and its answer: a value, a list with a NUL between its entries, or the whole file behind
/// a write.
TEST(ProfileRules, EveryCallAnswersAsTheTableSays)
{
    std::ifstream table(TVN_TEST_DATA "/profile-rules.tsv");
    std::string line;
    std::getline(table, line);
    int rows = 0;
    for (; std::getline(table, line); ++rows) {
        std::istringstream row(line);
        std::vector<std::string> cells(7);
        for (std::string& cell : cells) {
            std::getline(row, cell, '\t');
        }
        const std::wstring path = L"C:\\data\\rules.ini";
        MemoryFiles files;
        if (const auto content = TextOf(cells[1])) {
            files.Put(path, *content);
        }
        ProfileStore store(files);
        store.Bind(path);
        const auto given = [&](size_t cell) { return file_text::FromBytes(*TextOf(cells[cell]), SystemCodePage()); };
        const std::string& call = cells[2];
        if (call == "number") {
            const auto otherwise = static_cast<uint32_t>(std::stoll(cells[5]));
            EXPECT_EQ(std::to_string(store.Profile().GetInt(given(3), given(4), otherwise)), cells[6]) << line;
        } else if (call == "write" || call == "delete section") {
            const auto text = TextOf(cells[5]) ? std::optional(given(5)) : std::nullopt;
            EXPECT_TRUE(call == "write" ? store.Write(given(3), given(4), text) : store.DeleteSection(given(3)));
            EXPECT_EQ(files.Exists(path) ? std::optional(files.Content(path)) : std::nullopt, TextOf(cells[6])) << line;
        } else {
            const std::string answer = call == "value"
                                           ? std::string(store.Profile().GetString(given(3), given(4), given(5)))
                                       : call == "lines" ? Joined(store.Profile().GetSection(given(3)))
                                                         : Joined(store.Profile().GetSectionNames());
            EXPECT_EQ(file_text::ToBytes(answer, SystemCodePage()), TextOf(cells[6])) << line;
        }
    }
    EXPECT_EQ(rows, 194);
}

}  // namespace
}  // namespace tvn2x
