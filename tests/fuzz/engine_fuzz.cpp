// Any bytes as an initialisation file in one of three code pages, then any sequence of reads and writes: what was
// written reads back, lines that a write does not touch stay, also where the file becomes UTF-16, and the file in
// memory answers as the file that it would be written to.
//
// The file ends at the first byte 0x1E; the same byte ends each step. A step is one letter (w write, d delete a key,
// s delete a section) and up to three texts in UTF-8 with 0x1F between them.

#include <algorithm>
#include <array>
#include <cstdint>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

#include "Fuzz.h"
#include "setup/ProfileFile.h"
#include "text/Blanks.h"
#include "text/IniLines.h"
#include "util/Encoding.h"
#include "util/FileText.h"

namespace {

using namespace tvn2x;
using fuzz::PageFor;
using fuzz::Require;

using Lines = std::vector<std::wstring>;

Lines LinesOf(const std::string& rendered, bool withBlank, const CodePage& page)
{
    const bool isUnicode = rendered.starts_with("\xFF\xFE");
    const std::string text =
        isUnicode ? file_text::FromUtf16(std::string_view(rendered).substr(2, (rendered.size() - 2) & ~size_t{1}))
                  : file_text::FromBytes(rendered, page);
    Lines lines;
    ini::LineScanner scanner(text);
    for (ini::Line line; scanner.Next(line);) {
        if (withBlank || !TrimBlanks(line.Text(text)).empty()) {
            lines.push_back(file_text::ToWide(line.Text(text), page));
        }
    }
    return lines;
}

/// One stretch of lines is replaced by another; all others are the same.
void RequireOneChange(const Lines& before, const Lines& after, size_t mostGone, size_t mostNew)
{
    const auto [oldHead, newHead] = std::ranges::mismatch(before, after);
    const std::reverse_iterator oldEnd(oldHead), newEnd(newHead);
    const auto [oldTail, newTail] = std::mismatch(before.rbegin(), oldEnd, after.rbegin(), newEnd);
    Require(static_cast<size_t>(oldEnd - oldTail) <= mostGone, "no other line is gone");
    Require(static_cast<size_t>(newEnd - newTail) <= mostNew, "no other line is new");
}

void RequireSameAnswers(const ProfileFile& left, const ProfileFile& right, std::string_view section,
                        std::string_view key)
{
    Require(left.Find(section, key) == right.Find(section, key), "the value");
    const std::vector<std::string> names = left.GetSectionNames();
    Require(names == right.GetSectionNames(), "the sections");
    Require(left.GetBracketedLines() == right.GetBracketedLines(), "the section lines");
    for (size_t i = 0; i < std::min<size_t>(names.size(), 20); ++i) {
        Require(left.GetSection(names[i]) == right.GetSection(names[i]), "a section's lines");
    }
}

std::string_view NextPart(std::string_view& rest, char end)
{
    const size_t at = rest.find(end);
    const std::string_view part = rest.substr(0, at);
    rest.remove_prefix(at == std::string_view::npos ? rest.size() : at + 1);
    return part;
}

struct Step
{
    char kind;  ///< w, s or any other letter for d
    std::array<std::string, 3> text;
};

Step Decoded(std::string_view bytes)
{
    Step step{bytes.empty() ? 'd' : bytes.front(), {}};
    bytes.remove_prefix(std::min<size_t>(bytes.size(), 1));
    for (std::string& text : step.text) {
        text = file_text::FromWide(FromUtf8(NextPart(bytes, '\x1F')));
    }
    return step;
}

bool Apply(ProfileFile& profile, const Step& step)
{
    const auto& [section, key, value] = step.text;
    return step.kind == 's' ? profile.DeleteSection(section)
                            : profile.Write(section, key, step.kind == 'w' ? std::optional(value) : std::nullopt);
}

void RequireReadBack(const ProfileFile& profile, const Step& step)
{
    const std::string_view section = profile::TrimSpaces(step.text[0]);
    const std::string_view key = profile::TrimSpaces(step.text[1]);
    if (step.kind == 'w' && profile::IsPlainSection(section) && profile::IsPlainKey(key)) {
        Require(profile.Find(section, key) == ini::ReadableValue(TrimBlanks(step.text[2])), "it reads back");
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    std::string_view input(reinterpret_cast<const char*>(data), size);
    const std::string content(NextPart(input, '\x1E'));
    const CodePage& page = PageFor(size);
    ProfileFile profile(content, page);
    Require(profile.Render() == content, "an unchanged file is written as it was read");
    std::string rendered = content;
    for (int steps = 0; steps < 30 && !input.empty(); ++steps) {
        const Step step = Decoded(NextPart(input, '\x1E'));
        ProfileFile fresh(rendered, page);
        const Lines before = LinesOf(rendered, true, page);
        const bool done = Apply(profile, step);
        Require(done == Apply(fresh, step), "the same result");
        const std::string alone = fresh.Render();
        if (!done) {
            Require(alone == rendered, "a refused write changes nothing");
        } else {
            RequireReadBack(profile, step);
            RequireReadBack(fresh, step);
            RequireOneChange(before, LinesOf(alone, true, page), step.kind == 's' ? before.size() : 1,
                             step.kind == 'w' ? 2 : 0);
        }
        rendered = profile.Render();
        // Where a new line goes between blank ones may depend on what was written before it.
        Require(LinesOf(alone, false, page) == LinesOf(rendered, false, page),
                "the same lines in one go and one by one");
        const ProfileFile again(rendered, page);
        Require(again.Render() == rendered, "what was written is read and written the same");
        RequireSameAnswers(profile, again, step.text[0], step.text[1]);
    }
    return 0;
}
