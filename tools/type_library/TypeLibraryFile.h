#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace tvn2x::tools {

/// A type library as the interface compiler writes it, in memory: a header, fifteen segments and the elements of each
/// type. All of it are 32-bit words, little-endian as this machine's, that name each other by their offset in a
/// segment. Where a file is not of that form, std::runtime_error or std::out_of_range says so.
class TypeLibraryFile
{
public:
    explicit TypeLibraryFile(const std::filesystem::path& path);
    void Write(const std::filesystem::path& path) const;

    /// Turns each interface that `owner` defines too, by its identity, from a definition into a reference to `owner`,
    /// which is recorded by its identity, its version and `fileName`. The names and help texts that only those
    /// definitions needed go with them.
    void ReferTo(const TypeLibraryFile& owner, const std::string& fileName);

private:
    using Words = std::vector<int32_t>;
    using Identity = std::array<int32_t, 4>;

    struct Type
    {
        std::array<int32_t, 25> record{};
        Words elements;  ///< size of the descriptions in bytes, these, then numbers, names and places of the elements

        int Kind() const;
        bool IsInterface() const;
        size_t Functions() const;
        size_t Count() const;  ///< functions and variables
        /// Where the description of a function begins in `elements`, and how many words it has.
        std::pair<size_t, size_t> Function(size_t index) const;
        /// The word of `elements` that holds an element's name.
        size_t NamePlace(size_t index) const;
    };

    /// Visits each word that holds the offset of a name; `type` is the one that owns it, -1 for a parameter's name and
    /// the library's.
    void ForEachName(const std::function<void(int32_t& name, int32_t type)>& visit);
    /// Visits each word that holds the offset of a help text or of a file's name.
    void ForEachString(const std::function<void(int32_t& text)>& visit);

    Identity IdentityAt(int32_t offset) const;
    int32_t AddIdentity(const Identity& identity, int32_t reference);
    int32_t AddImportedFile(const TypeLibraryFile& owner, const std::string& fileName);
    int32_t AddImportedType(const Type& defined, int32_t file);
    void Redirect(const std::vector<int32_t>& references);
    void DropUnusedNames();
    void DropUnusedStrings();

    std::array<int32_t, 21> header_{};
    Words helpLibrary_;  ///< one word where the header says that there is one
    std::array<Words, 15> segments_;
    std::array<std::array<int32_t, 2>, 15> directory_{};  ///< what the directory holds beside offset and length
    std::vector<Type> types_;
};

}  // namespace tvn2x::tools
