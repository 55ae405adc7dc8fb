#include "setup/ProfileStore.h"

#include <algorithm>
#include <utility>

namespace tvn2x {

void ProfileStore::Bind(std::wstring path)
{
    path_ = std::move(path);
    Abandon();
}

void ProfileStore::Abandon()
{
    loaded_ = false;
    batch_ = false;
    changes_.clear();
    log_.clear();
}

const ProfileFile& ProfileStore::Profile()
{
    if (!loaded_ || (!batch_ && !(files_.Stamp(path_) == stamp_)))
        Load();
    return profile_;
}

bool ProfileStore::Readable()
{
    Profile();
    return fault_ == FileFault::none;
}

void ProfileStore::Load()
{
    std::string content;
    stamp_ = FileStamp();
    fault_ = files_.Read(path_, content, stamp_);
    if (fault_ == FileFault::missing)
        fault_ = FileFault::none;
    profile_ = fault_ == FileFault::none ? ProfileFile(std::move(content)) : ProfileFile();
    loaded_ = true;
}

bool ProfileStore::Write(std::string_view section, std::string_view key, std::optional<std::string_view> value)
{
    return Record(section, key, value);
}

bool ProfileStore::DeleteSection(std::string_view section)
{
    return Record(section, std::nullopt, std::nullopt);
}

bool ProfileStore::Record(std::string_view section, Text key, Text value)
{
    const bool single = !batch_;
    if (single)
        BeginBatch();
    try {
        const bool applied = Apply(section, key, value);
        if (applied) {
            const auto log = [this](Text text) {
                log_.append(text.value_or(""));
                return text ? static_cast<int32_t>(text->size()) : -1;
            };
            changes_.push_back({log(section), log(key), log(value)});
        }
        return single ? CommitBatch() && applied : applied;
    } catch (...) {
        // Out of memory: what is half done must not reach the file with a later write.
        Abandon();
        throw;
    }
}

bool ProfileStore::Apply(std::string_view section, Text key, Text value)
{
    return key ? profile_.Write(section, *key, value) : profile_.DeleteSection(section);
}

void ProfileStore::BeginBatch()
{
    Profile();
    batch_ = true;
}

bool ProfileStore::CommitBatch()
{
    try {
        const bool committed = Commit();
        Abandon();
        return committed;
    } catch (...) {
        Abandon();
        throw;
    }
}

bool ProfileStore::Commit()
{
    if (changes_.empty())
        return true;
    if (fault_ == FileFault::none && !(files_.Stamp(path_) == stamp_) && !Replay())
        return false;
    if (fault_ == FileFault::none && (profile_.Changed() || !stamp_.exists))
        fault_ = ReplaceContent(files_, path_, profile_.Render());
    return fault_ == FileFault::none;
}

/// Reads the file that another program has written, and makes our changes in it. False where one cannot be made.
bool ProfileStore::Replay()
{
    const ProfileFile old = std::move(profile_);
    Load();
    size_t at = 0;
    const auto take = [&](int32_t length) -> std::optional<std::string> {
        if (length < 0)
            return std::nullopt;
        const std::string_view text = std::string_view(log_).substr(at, static_cast<size_t>(length));
        at += text.size();
        return profile_.IsUnicode() == old.IsUnicode() ? std::string(text) : profile_.Encode(old.Decode(text));
    };
    return std::all_of(changes_.begin(), changes_.end(), [&](const Change& change) {
        const std::optional<std::string> section = take(change.section);
        const std::optional<std::string> key = take(change.key);
        const std::optional<std::string> value = take(change.value);
        return Apply(*section, key, value);
    });
}

}  // namespace tvn2x
