#pragma once

#include <string>
#include <utility>
#include <vector>

namespace tvn2x {

/// Something of the product that the machine's registry names.
struct RegisteredItem
{
    std::wstring name;     ///< a class's, or a type library's
    int bits = 0;          ///< of the programs that see it
    bool isUsers = false;  ///< the present user's alone; the machine's otherwise
    std::wstring file;
    std::wstring version;  ///< of the file, empty where it cannot be read
    std::wstring fault;    ///< why the file does not serve, empty where it does
};

/// Something that is wrong, and what to do about it.
struct Complaint
{
    std::wstring what;
    std::wstring remedy;
};

/// What a look at an installation has found.
struct Diagnosis
{
    std::vector<std::pair<std::wstring, std::wstring>> facts;  ///< name and value, in the order to tell them
    std::vector<RegisteredItem> items;
    std::vector<Complaint> complaints;

    bool IsHealthy() const { return complaints.empty(); }
};

/// In words: facts, what is registered, and each complaint with its remedy.
std::wstring DiagnosisText(const Diagnosis& diagnosis, int32_t maxWidth);

/// As one JSON object, its end of line included: "healthy", "facts" by name, "registered", "complaints".
std::string DiagnosisJson(const Diagnosis& diagnosis);

}  // namespace tvn2x
