#pragma once

#include <gtest/gtest.h>

#include <fstream>
#include <regex>
#include <string>
#include <vector>

namespace tvn2x {

/// Of a page of the documentation the lines that a pattern fits, row by row what its groups stand for: what a page
/// tells can be held against what it tells of.
inline std::vector<std::vector<std::string>> PageRows(const std::string& page, const std::string& pattern)
{
    std::ifstream lines(TVN_TEST_DATA "/../../docs/" + page);
    const std::regex row(pattern);
    std::vector<std::vector<std::string>> rows;
    std::smatch groups;
    for (std::string line; std::getline(lines, line);) {
        if (std::regex_match(line, groups, row)) {
            rows.emplace_back(groups.begin() + 1, groups.end());
        }
    }
    EXPECT_FALSE(rows.empty()) << page;
    return rows;
}

}  // namespace tvn2x
