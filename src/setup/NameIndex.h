#pragma once

#include <algorithm>
#include <cstdint>
#include <vector>

namespace tvn2x::profile {

/// Hash of a name to the place where it stands, eight bytes a slot and at most two thirds of the slots in use. The
/// names themselves stay where they are: the caller compares.
class NameIndex
{
public:
    static constexpr uint32_t nowhere = 0xFFFFFFFF;

    /// A name: its hash, and where the caller has it.
    struct Slot
    {
        uint32_t hash = 0;
        uint32_t place = nowhere;
    };

    /// The slot of a hash for whose place `same` is true, null where there is none. Valid until the next Add.
    template <class Same>
    Slot* Find(uint32_t hash, Same&& same)
    {
        if (slots_.empty()) {
            return nullptr;
        }
        for (size_t at = Home(hash); slots_[at].place != nowhere; at = Next(at)) {
            if (slots_[at].hash == hash && same(slots_[at].place)) {
                return &slots_[at];
            }
        }
        return nullptr;
    }

    /// Adds a name that is not there yet.
    void Add(uint32_t hash, uint32_t place)
    {
        if ((used_ + 1) * 3 > slots_.size() * 2) {
            Resize(std::max<size_t>(fewestSlots, slots_.size() * 2));
        }
        Free(hash) = {hash, place};
        ++used_;
    }

    /// Makes room for so many names at once, so that adding them never has the old slots beside the new ones.
    void Reserve(size_t names)
    {
        if (names * 3 > slots_.size() * 2) {
            Resize(names + names / 2 + fewestSlots);
        }
    }

    void Clear()
    {
        slots_ = {};
        used_ = 0;
    }

private:
    static constexpr size_t fewestSlots = 16;

    size_t Home(uint32_t hash) const { return static_cast<size_t>(uint64_t{hash} * slots_.size() >> 32); }
    size_t Next(size_t at) const { return at + 1 == slots_.size() ? 0 : at + 1; }

    Slot& Free(uint32_t hash)
    {
        size_t at = Home(hash);
        while (slots_[at].place != nowhere) {
            at = Next(at);
        }
        return slots_[at];
    }

    void Resize(size_t size)
    {
        std::vector<Slot> old(size);
        old.swap(slots_);
        for (const Slot& slot : old) {
            if (slot.place != nowhere) {
                Free(slot.hash) = slot;
            }
        }
    }

    std::vector<Slot> slots_;
    size_t used_ = 0;
};

}  // namespace tvn2x::profile
