#pragma once

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace tvn2x {

/// The text of a cell: of one in quotes what stands between them, with the escapes of C (octal ones have three digits).
inline std::string CellText(const std::string& cell)
{
    if (cell.empty() || cell[0] != '"') {
        return cell;
    }
    std::string text;
    for (size_t i = 1; i + 1 < cell.size(); ++i) {
        if (cell[i] != '\\') {
            text += cell[i];
            continue;
        }
        const char escaped = cell[++i];
        const size_t special = std::string("rnt\"\\").find(escaped);
        if (special != std::string::npos) {
            text += "\r\n\t\"\\"[special];
        } else {
            text += static_cast<char>(std::stoi(cell.substr(i, 3), nullptr, 8));
            i += 2;
        }
    }
    return text;
}

/// The rows of a table in tests/data below its heading, with so many cells each.
inline std::vector<std::vector<std::string>> TestTable(const std::string& name, size_t columns)
{
    std::ifstream file(std::string(TVN_TEST_DATA) + "/" + name);
    std::vector<std::vector<std::string>> rows;
    std::string line;
    std::getline(file, line);
    while (std::getline(file, line)) {
        std::istringstream cells(line);
        for (std::string& cell : rows.emplace_back(columns)) {
            std::getline(cells, cell, '\t');
        }
    }
    EXPECT_FALSE(rows.empty()) << name;
    return rows;
}

}  // namespace tvn2x
