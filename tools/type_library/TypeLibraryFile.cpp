#include "TypeLibraryFile.h"

#include <algorithm>
#include <cstring>
#include <fstream>
#include <iterator>
#include <map>
#include <stdexcept>

namespace tvn2x::tools {
namespace {

constexpr int32_t word = 4;
constexpr int32_t none = -1;
constexpr int32_t signature = 0x5446534D;  // "MSFT"

namespace header {
enum Word
{
    magic = 0,
    identity = 2,
    locale = 4,
    flags = 5,
    version = 6,
    typeCount = 8,
    help = 9,
    nameCount = 12,
    nameLetters = 13,
    name = 14,
    helpFile = 15,
    importCount = 20
};
constexpr int32_t hasHelpLibrary = 0x100;
}  // namespace header

namespace segment {
enum Index
{
    types,
    importedTypes,
    importedFiles,
    implemented,
    identityHash,
    identities,
    nameHash,
    names,
    strings,
    descriptions,
    arrays,
    customData,
    customIdentities
};
// The order in the file, which is another one than that of the directory. The types come first.
constexpr Index order[] = {identityHash, identities, implemented,  importedTypes, importedFiles, nameHash,
                           names,        strings,    descriptions, arrays,        customData,    customIdentities};
}  // namespace segment

namespace type {
enum Word
{
    kind = 0,  // and its number in the upper half
    elements = 1,
    counts = 6,
    identity = 11,
    name = 13,
    help = 15,
    base = 21
};
constexpr int32_t bytes = 25 * word;
}  // namespace type

namespace function {
enum Word
{
    size = 0,
    flags = 4,
    parameters = 5,
    help = 7
};
constexpr size_t words = 6, parameterWords = 3;
constexpr int32_t hasDefaults = 0x1000;
}  // namespace function

// Sizes of records, in words.
constexpr size_t implementedWords = 4, identityWords = 6, importWords = 3, descriptionWords = 2, nameHeadWords = 3;
constexpr int32_t userDefined = 29;
// What a reference points at, in its two lowest bits: a type of this library, one of another, another library.
constexpr int32_t target = 3, importedType = 1, importedFile = 2;
constexpr int32_t identifiedByGuid = 0x10000;

[[noreturn]] void Refuse(const char* what)
{
    throw std::runtime_error(what);
}

size_t WordsOf(int32_t bytes)
{
    if (bytes < 0 || bytes % word != 0) {
        Refuse("a part of the library has no whole number of words");
    }
    return static_cast<size_t>(bytes) / word;
}

int32_t BytesOf(const std::vector<int32_t>& words)
{
    return static_cast<int32_t>(words.size()) * word;
}

std::vector<int32_t> Slice(const std::vector<int32_t>& words, size_t from, size_t count)
{
    if (from > words.size() || count > words.size() - from) {
        Refuse("the library ends too early");
    }
    const auto first = words.begin() + static_cast<ptrdiff_t>(from);
    return {first, first + static_cast<ptrdiff_t>(count)};
}

std::vector<int32_t> WordsOfFile(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(file), {}};
    std::vector<int32_t> words(WordsOf(static_cast<int32_t>(bytes.size())));
    std::memcpy(words.data(), bytes.data(), bytes.size());
    if (words.empty() || words.front() != signature) {
        Refuse("this is no type library of the form that the interface compiler writes");
    }
    return words;
}

void Append(std::vector<int32_t>& to, const auto& words)
{
    to.insert(to.end(), words.begin(), words.end());
}

bool IsOwnType(int32_t reference)
{
    return reference >= 0 && (reference & target) == 0;
}

/// The records of a segment that are still asked for, in the order of the asking.
class Kept
{
public:
    explicit Kept(const std::vector<int32_t>& from) : from_(from) {}

    /// Where the record that stood at `offset` stands now. `count` tells the words of a record by its first.
    int32_t Move(int32_t offset, size_t (*count)(const int32_t* record))
    {
        const auto [moved, isNew] = moved_.try_emplace(offset, BytesOf(words));
        if (isNew) {
            Append(words, Slice(from_, WordsOf(offset), count(&from_.at(WordsOf(offset)))));
        }
        return moved->second;
    }

    std::vector<int32_t> words;

private:
    const std::vector<int32_t>& from_;
    std::map<int32_t, int32_t> moved_;
};

}  // namespace

TypeLibraryFile::TypeLibraryFile(const std::filesystem::path& path)
{
    const Words file = WordsOfFile(path);
    size_t place = 0;
    const auto read = [&](auto& out) {
        const Words words = Slice(file, place, out.size());
        std::ranges::copy(words, out.begin());
        place += out.size();
    };
    read(header_);
    helpLibrary_.resize(header_[header::flags] & header::hasHelpLibrary ? 1 : 0);
    read(helpLibrary_);
    types_.resize(WordsOf(header_[header::typeCount] * word));
    place += types_.size();
    for (size_t i = 0; i < segments_.size(); ++i) {
        std::array<int32_t, 4> entry;
        read(entry);
        if (entry[1] != 0) {
            segments_[i] = Slice(file, WordsOf(entry[0]), WordsOf(entry[1]));
        }
        directory_[i] = {entry[2], entry[3]};
    }
    for (size_t i = 0; i < types_.size(); ++i) {
        Type& described = types_[i];
        const Words record = Slice(segments_[segment::types], i * described.record.size(), described.record.size());
        std::ranges::copy(record, described.record.begin());
        if (described.Count() == 0) {
            continue;
        }
        const size_t first = WordsOf(described.record[type::elements]);
        described.elements = Slice(file, first, 1 + WordsOf(file.at(first)) + 3 * described.Count());
    }
}

void TypeLibraryFile::Write(const std::filesystem::path& path) const
{
    std::array<Words, 15> segments = segments_;
    segments[segment::types].resize(types_.size() * (type::bytes / word));
    std::array<std::array<int32_t, 4>, 15> directory;
    for (size_t i = 0; i < directory.size(); ++i) {
        directory[i] = {none, BytesOf(segments[i]), directory_[i][0], directory_[i][1]};
    }
    auto end = static_cast<int32_t>(header_.size() + helpLibrary_.size() + types_.size() + directory.size() * 4) * word;
    const auto place = [&](size_t index) {
        directory[index][0] = segments[index].empty() ? none : end;
        end += BytesOf(segments[index]);
    };
    place(segment::types);
    std::ranges::for_each(segment::order, place);

    Words offsets, elements;
    auto record = segments[segment::types].begin();
    for (Type written : types_) {
        written.record[type::elements] = end + BytesOf(elements);
        offsets.push_back(static_cast<int32_t>(offsets.size()) * type::bytes);
        record = std::ranges::copy(written.record, record).out;
        Append(elements, written.elements);
    }

    Words file(header_.begin(), header_.end());
    Append(file, helpLibrary_);
    Append(file, offsets);
    for (const auto& entry : directory) {
        Append(file, entry);
    }
    Append(file, segments[segment::types]);
    for (const segment::Index index : segment::order) {
        Append(file, segments[index]);
    }
    Append(file, elements);
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.write(reinterpret_cast<const char*>(file.data()), BytesOf(file));
    if (!out.flush()) {
        Refuse("the library cannot be written");
    }
}

void TypeLibraryFile::ReferTo(const TypeLibraryFile& owner, const std::string& fileName)
{
    std::map<Identity, const Type*> owned;
    for (const Type& defined : owner.types_) {
        if (defined.IsInterface()) {
            owned[owner.IdentityAt(defined.record[type::identity])] = &defined;
        }
    }
    int32_t file = none;
    std::vector<int32_t> references;
    std::vector<Type> own;
    for (const Type& defined : types_) {
        if (defined.IsInterface() && owned.contains(IdentityAt(defined.record[type::identity]))) {
            file = file == none ? AddImportedFile(owner, fileName) : file;
            references.push_back(AddImportedType(defined, file) | importedType);
        } else {
            references.push_back(static_cast<int32_t>(own.size()) * type::bytes);
            own.push_back(defined);
        }
    }
    types_ = std::move(own);
    header_[header::typeCount] = static_cast<int32_t>(types_.size());
    Redirect(references);
    DropUnusedNames();
    DropUnusedStrings();
}

/// Gives each reference to a type of this library its new value, which stands at the type's former number.
void TypeLibraryFile::Redirect(const std::vector<int32_t>& references)
{
    const auto redirect = [&](int32_t& reference) {
        if (IsOwnType(reference)) {
            reference = references.at(static_cast<size_t>(reference / type::bytes));
        }
    };
    for (size_t i = 0; i < segments_[segment::implemented].size(); i += implementedWords) {
        redirect(segments_[segment::implemented][i]);
    }
    for (size_t i = 0; i < segments_[segment::identities].size(); i += identityWords) {
        redirect(segments_[segment::identities].at(i + 4));
    }
    Words& descriptions = segments_[segment::descriptions];
    for (size_t i = 0; i < descriptions.size(); i += descriptionWords) {
        if ((descriptions[i] & 0xFFFF) == userDefined) {
            redirect(descriptions.at(i + 1));
        }
    }
    Words& names = segments_[segment::names];
    for (size_t i = 0; i < names.size(); i += nameHeadWords + ((names.at(i + 2) & 0xFF) + 3) / word) {
        redirect(names[i]);
        // A name that only a type of another library has is no type's of this one.
        names[i] = IsOwnType(names[i]) ? names[i] : none;
    }
    for (size_t i = 0; i < types_.size(); ++i) {
        auto& record = types_[i].record;
        record[type::kind] = (record[type::kind] & 0xFFFF) | static_cast<int32_t>(i << 16);
        if (types_[i].IsInterface()) {
            redirect(record[type::base]);
        }
    }
}

void TypeLibraryFile::DropUnusedNames()
{
    Kept kept(segments_[segment::names]);
    ForEachName([&](int32_t& name, int32_t owner) {
        name = kept.Move(name, [](const int32_t* record) {
            return nameHeadWords + (static_cast<size_t>(record[2] & 0xFF) + 3) / word;
        });
        int32_t& firstOwner = kept.words[WordsOf(name)];
        firstOwner = firstOwner == none ? owner : firstOwner;
    });
    Words& hash = segments_[segment::nameHash];
    std::ranges::fill(hash, none);
    header_[header::nameCount] = header_[header::nameLetters] = 0;
    for (size_t i = 0; i < kept.words.size();) {
        const int32_t length = kept.words[i + 2] & 0xFF;
        int32_t& bucket = hash.at(static_cast<size_t>(kept.words[i + 2] >> 16) % hash.size());
        kept.words[i + 1] = std::exchange(bucket, static_cast<int32_t>(i) * word);
        header_[header::nameCount] += 1;
        header_[header::nameLetters] += length;
        i += nameHeadWords + (static_cast<size_t>(length) + 3) / word;
    }
    segments_[segment::names] = std::move(kept.words);
}

void TypeLibraryFile::DropUnusedStrings()
{
    Kept kept(segments_[segment::strings]);
    ForEachString([&](int32_t& text) {
        text = kept.Move(text, [](const int32_t* record) {
            const auto length = static_cast<size_t>(record[0] & 0xFFFF);
            return length < 3 ? 2 : (length + 5) / word;
        });
    });
    segments_[segment::strings] = std::move(kept.words);
}

void TypeLibraryFile::ForEachName(const std::function<void(int32_t& name, int32_t type)>& visit)
{
    const auto visitNamed = [&](int32_t& name, int32_t owner) {
        if (name != none) {
            visit(name, owner);
        }
    };
    visitNamed(header_[header::name], none);
    for (size_t t = 0; t < types_.size(); ++t) {
        Type& named = types_[t];
        const auto offset = static_cast<int32_t>(t) * type::bytes;
        visitNamed(named.record[type::name], offset);
        for (size_t i = 0; i < named.Count(); ++i) {
            visitNamed(named.elements[named.NamePlace(i)], offset);
        }
        for (size_t i = 0; i < named.Functions(); ++i) {
            const auto [first, count] = named.Function(i);
            const auto parameters = static_cast<size_t>(named.elements[first + function::parameters] & 0xFFFF);
            for (size_t p = 1; p <= parameters; ++p) {
                visitNamed(named.elements.at(first + count - p * function::parameterWords + 1), none);
            }
        }
    }
}

void TypeLibraryFile::ForEachString(const std::function<void(int32_t& text)>& visit)
{
    const auto visitText = [&](int32_t& text) {
        if (text != none) {
            visit(text);
        }
    };
    visitText(header_[header::help]);
    visitText(header_[header::helpFile]);
    std::ranges::for_each(helpLibrary_, visitText);
    for (Type& helped : types_) {
        visitText(helped.record[type::help]);
        for (size_t i = 0; i < helped.Functions(); ++i) {
            const auto [first, count] = helped.Function(i);
            const auto parameters = static_cast<size_t>(helped.elements[first + function::parameters] & 0xFFFF);
            const bool hasDefaults = helped.elements[first + function::flags] & function::hasDefaults;
            if (count - parameters * (function::parameterWords + hasDefaults) > function::help) {
                visitText(helped.elements[first + function::help]);
            }
        }
    }
}

TypeLibraryFile::Identity TypeLibraryFile::IdentityAt(int32_t offset) const
{
    const Words words = Slice(segments_[segment::identities], WordsOf(offset), 4);
    return {words[0], words[1], words[2], words[3]};
}

/// The offset of an identity that stands for `reference`.
int32_t TypeLibraryFile::AddIdentity(const Identity& identity, int32_t reference)
{
    std::array<uint16_t, 8> halves;
    std::memcpy(halves.data(), identity.data(), sizeof halves);
    size_t key = 0;
    for (const uint16_t half : halves) {
        key ^= half;
    }
    Words& hash = segments_[segment::identityHash];
    Words& identities = segments_[segment::identities];
    const int32_t offset = BytesOf(identities);
    Append(identities, identity);
    identities.push_back(reference);
    identities.push_back(std::exchange(hash.at(key % hash.size()), offset));
    return offset;
}

int32_t TypeLibraryFile::AddImportedFile(const TypeLibraryFile& owner, const std::string& fileName)
{
    const int32_t offset = BytesOf(segments_[segment::importedFiles]);
    const Identity identity = owner.IdentityAt(owner.header_[header::identity]);
    std::string text((fileName.size() + 2 + 3) / word * word, 'W');
    const auto length = static_cast<uint16_t>(fileName.size() << 2 | 1);
    std::memcpy(text.data(), &length, sizeof length);
    std::ranges::copy(fileName, text.begin() + sizeof length);
    Words letters(text.size() / word);
    std::memcpy(letters.data(), text.data(), text.size());

    Words& files = segments_[segment::importedFiles];
    Append(files, Identity{AddIdentity(identity, offset | importedFile), owner.header_[header::locale],
                           owner.header_[header::version], letters.front()});
    letters.erase(letters.begin());
    Append(files, letters);
    return offset;
}

/// The offset of a reference to a type of another library, whose identity this library already knows.
int32_t TypeLibraryFile::AddImportedType(const Type& defined, int32_t file)
{
    Words& imported = segments_[segment::importedTypes];
    const int32_t offset = BytesOf(imported);
    const int32_t number = header_[header::importCount]++;
    Append(imported,
           std::array{defined.Kind() << 24 | identifiedByGuid | number, file, defined.record[type::identity]});
    return offset;
}

int TypeLibraryFile::Type::Kind() const
{
    return record[type::kind] & 0xF;
}

bool TypeLibraryFile::Type::IsInterface() const
{
    constexpr int interfaceKind = 3, dispatchKind = 4;
    return Kind() == interfaceKind || Kind() == dispatchKind;
}

size_t TypeLibraryFile::Type::Functions() const
{
    return static_cast<size_t>(record[type::counts] & 0xFFFF);
}

size_t TypeLibraryFile::Type::Count() const
{
    return Functions() + static_cast<uint32_t>(record[type::counts]) / 0x10000;
}

std::pair<size_t, size_t> TypeLibraryFile::Type::Function(size_t index) const
{
    const size_t first = 1 + WordsOf(elements.at(NamePlace(index) + Count()));
    const size_t count = WordsOf(elements.at(first) & 0xFFFF);
    if (count < function::words + function::parameterWords * (elements.at(first + function::parameters) & 0xFFFF)) {
        Refuse("a function of the library is too short");
    }
    return {first, count};
}

size_t TypeLibraryFile::Type::NamePlace(size_t index) const
{
    return 1 + WordsOf(elements.front()) + Count() + index;
}

}  // namespace tvn2x::tools
