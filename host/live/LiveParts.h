#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "host/live/LiveState.h"

namespace tvn2x {

/// A part of the live page: an element by its identity, which takes the place of the one that the page has.
struct LivePart
{
    std::string id;
    std::string html;
};

/// The parts that have changed since a version, 0 for all, in the page's order: the verdict, what is done now (always),
/// what to look at, what has changed since the first pass, and a row for each channel. `age` is the state's in seconds.
std::vector<LivePart> LiveParts(const LiveState& state, uint64_t since, double age);

/// Of the table with the rows: its heads.
std::string LiveHeads(const LiveState& state);

/// What comes before a page's <main>. The title is markup.
std::string PageHead(const std::string& title);

/// What a channel is called in sentences and rows, as markup.
std::string NameOf(const LiveState& state, const LiveChannel& channel);

/// A point in time for a reader: "2026-11-21 13:59:05", local to the machine that measures.
std::string TimeElement(const std::wstring& utc);

}  // namespace tvn2x
