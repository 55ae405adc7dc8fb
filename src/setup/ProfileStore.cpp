#include "setup/ProfileStore.h"

#include <algorithm>
#include <functional>
#include <memory>
#include <utility>

namespace tvn2x {
namespace {

size_t HashOf(const std::string& content)
{
    return std::hash<std::string>()(content);
}

}  // namespace

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
    if (!loaded_ || (!batch_ && !IsCurrent())) {
        Load();
    }
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
    const FileStamp known = std::exchange(stamp_, FileStamp());
    const uint64_t begin = files_.Now();
    fault_ = files_.Read(path_, content, stamp_);
    if (fault_ == FileFault::missing) {
        fault_ = FileFault::none;
    }
    if (!(stamp_ == known)) {
        seen_ = files_.Now();
    }
    NoteAge(begin);
    hash_ = isYoung_ ? HashOf(content) : 0;
    profile_ = ProfileFile(fault_ == FileFault::none ? std::move(content) : std::string(), codePage_);
    loaded_ = true;
}

/// Whether the stamp may still stay the same when the file is written to again, at a time at which a read began. That
/// is over a tick after the last change, and a tick after the stamp was first seen whatever the clocks of the machine
/// and of the file say; where the clock is set back, the tick begins anew.
void ProfileStore::NoteAge(uint64_t begin)
{
    if (begin < seen_) {
        seen_ = files_.Now();
    }
    isYoung_ = stamp_.exists && begin < std::min(stamp_.modified, seen_) + TickOf(stamp_);
}

/// Whether the file still is as it was read. The bytes tell where the stamp does not.
bool ProfileStore::IsCurrent()
{
    if (!(files_.Stamp(path_) == stamp_)) {
        return false;
    }
    if (!isYoung_) {
        return true;
    }
    const uint64_t begin = files_.Now();
    std::string content;
    FileStamp stamp;
    if (files_.Read(path_, content, stamp) != FileFault::none || !(stamp == stamp_) || HashOf(content) != hash_) {
        return false;
    }
    NoteAge(begin);
    return true;
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
    if (single) {
        BeginBatch();
    }
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
    if (changes_.empty()) {
        return true;
    }
    if (fault_ != FileFault::none) {
        return false;
    }
    constexpr int attempts = 5;
    std::unique_ptr<FileLock> alone;
    FileFault fault = files_.Exclude(path_, alone);
    if (fault != FileFault::none) {
        return false;
    }
    for (int attempt = 0; attempt < attempts; ++attempt) {
        if (!IsCurrent() && (!Replay() || fault_ != FileFault::none)) {
            return false;
        }
        if (!profile_.Changed() && stamp_.exists) {
            return true;
        }
        fault = ReplaceFile();
        if (fault != FileFault::changed) {
            break;
        }
    }
    return fault == FileFault::none;
}

/// Puts the changed profile in the place of the file that it was made from, unless that has been changed too.
FileFault ProfileStore::ReplaceFile()
{
    Replacement replacement(files_);
    FileFault fault = replacement.Open(path_);
    if (fault == FileFault::none) {
        fault = replacement.Write(profile_.Render());
    }
    if (fault == FileFault::none) {
        fault = replacement.Finish();
    }
    if (fault == FileFault::none && isYoung_ && !IsCurrent()) {
        fault = FileFault::changed;
    }
    return fault == FileFault::none ? replacement.Commit(stamp_) : fault;
}

/// Reads the file that another program has written, and makes our changes in it. False where one cannot be made.
bool ProfileStore::Replay()
{
    Load();
    size_t at = 0;
    const auto take = [&](int32_t length) -> Text {
        if (length < 0) {
            return std::nullopt;
        }
        const std::string_view text = std::string_view(log_).substr(at, static_cast<size_t>(length));
        at += text.size();
        return text;
    };
    return std::all_of(changes_.begin(), changes_.end(), [&](const Change& change) {
        const Text section = take(change.section);
        const Text key = take(change.key);
        const Text value = take(change.value);
        return Apply(*section, key, value);
    });
}

}  // namespace tvn2x
