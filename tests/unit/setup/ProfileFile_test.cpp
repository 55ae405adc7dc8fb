#include "setup/ProfileFile.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "setup/ProfileStore.h"
#include "support/MemoryFiles.h"
#include "support/ShiftedCodePage.h"
#include "support/TestTable.h"
#include "util/FileText.h"

using namespace std::string_literals;

namespace tvn2x {
namespace {

TEST(ProfileFile, NoTextCanForgeAKeyASectionOrALine)
{
    const std::string content = "[a]\r\nk=1\r\n";
    ProfileFile profile(content);
    for (const std::string& text : {"x\r\n[b]"s, "x\ny=1"s, "\r"s, "x\0y"s, std::string(32768, 'v')}) {
        EXPECT_FALSE(profile.Write("a", "k", text));
        EXPECT_FALSE(profile.Write("a", text, "1"));
        EXPECT_FALSE(profile.Write(text, "k", "1"));
        EXPECT_FALSE(profile.DeleteSection(text));
    }
    EXPECT_EQ(content, profile.Render());
    for (const char* const key : {";k", "[k"}) {
        EXPECT_TRUE(profile.Write("b", key, "1"));
        EXPECT_FALSE(profile.Find("b", key)) << "what reads as no key is none before it is read, too";
    }
    for (const std::string& value : {std::string(32767, 'v'), "[b]"s, "b=2"s, ";"s, "="s, "]"s, "[b"s}) {
        ASSERT_TRUE(profile.Write("a", "k", value));
        EXPECT_EQ(value, *ProfileFile(profile.Render()).Find("a", "k"));
        EXPECT_EQ(1u, ProfileFile(profile.Render()).GetSection("a").size());
    }
}

TEST(ProfileFile, ALetterOrABracketInsideACharacterIsNone)
{
    const ShiftedCodePage shifted;
    ProfileFile names("[s]\n\x83\x41=1\n", shifted);
    EXPECT_FALSE(names.Find("s", file_text::FromWide(L"\u30C2"))) << "\"A\" and \"a\" are no two cases of a letter";
    EXPECT_EQ("1", names.GetString("S", file_text::FromWide(L"\u30A2"), ""));
    EXPECT_EQ((std::vector<std::string>{"s"}), ProfileFile("[s]\n[\x83\x5D\n", shifted).GetBracketedLines());
}

TEST(ProfileFile, WhatAChangeHasTakenOutIsInNobodysWay)
{
    const ShiftedCodePage shifted;
    ProfileFile profile("[a]\nk=\x83\n", shifted);
    const std::string lacked = file_text::FromWide(L"\u041C");
    EXPECT_FALSE(profile.Write("a", "m", lacked)) << "a byte without a meaning keeps the file from UTF-16";
    EXPECT_TRUE(profile.Write("a", "k", "1"));
    EXPECT_TRUE(profile.Write("a", "m", lacked));
}

TEST(ProfileFile, HalfAUnitAtTheEndStaysThere)
{
    ProfileFile profile("\xFF\xFE[\0a\0]\0\n\0x"s);
    EXPECT_EQ("\xFF\xFE[\0a\0]\0\n\0x"s, profile.Render());
    EXPECT_TRUE(profile.Write("a", "k", "1"));
    EXPECT_EQ("\xFF\xFE[\0a\0]\0\n\0k\0=\0001\0\n\0x"s, profile.Render());
}

TEST(ProfileFile, AFileThatBecomesUtf16HasItsCharactersAtOnce)
{
    const ShiftedCodePage shifted;
    const std::string stoodForBytes = file_text::FromWide(L"\u7E8A");
    // The second of two places of a character: it would not come back as the same bytes.
    ProfileFile profile("[a]\nk=1\n\xED\x40=\xED\x40\n", shifted);
    EXPECT_FALSE(profile.Find("a", stoodForBytes));
    EXPECT_TRUE(profile.Write("a", "k", "2") && profile.Write("a", "m", file_text::FromWide(L"\u041C")));
    EXPECT_EQ(stoodForBytes, profile.GetString("a", stoodForBytes, ""));
    EXPECT_EQ(profile.GetSection("a"), ProfileFile(profile.Render(), shifted).GetSection("a"));
}

TEST(ProfileFile, AKeyIsChangedWhereItWasJustAdded)
{
    ProfileFile profile("[a]\r\n");
    for (const char* const value : {"1", "2"}) {
        EXPECT_TRUE(profile.Write("a", "k", value) && profile.Write("b", "k", value));
    }
    EXPECT_EQ("[a]\r\nk=2\r\n[b]\r\nk=2\r\n", profile.Render());
    EXPECT_TRUE(profile.DeleteSection("b"));
    EXPECT_EQ("[a]\r\nk=2\r\n", profile.Render()) << "what was written before it goes is kept";
}

/// What would cost more than a fixed amount of work per byte would take minutes here.
TEST(ProfileFile, WritesToALargeFileTakeLinearTime)
{
    constexpr size_t size = 400'000;
    std::string distinct;
    for (int i = 0; distinct.size() < size; ++i) {
        distinct += "[" + std::to_string(i) + "]\nk=1\nK=2\n";
    }
    ProfileFile profile(distinct);
    for (int i = 0; i < 1000; ++i) {
        EXPECT_TRUE(profile.Write(std::to_string(i), "k", std::nullopt));
        EXPECT_EQ("2", *profile.Find(std::to_string(i), "k"));
    }
    const auto key = [](int i) { return "k" + std::to_string(i % 5000); };
    std::string repeated = "[s]\n";
    for (int i = 0; i < 15000; ++i) {
        repeated += key(i) + "=" + std::to_string(i) + "\n";
    }
    ProfileFile shrinking(repeated);
    for (int i = 0; i < 15000; ++i) {
        ASSERT_EQ(std::to_string(i), *shrinking.Find("S", key(i)));
        shrinking.Write("s", key(i), std::nullopt);
    }
    EXPECT_EQ("[s]\n", shrinking.Render());
}

/// The text of a cell in quotes; none where it is in none.
std::optional<std::string> TextOf(const std::string& cell)
{
    return cell.starts_with('"') ? std::optional(CellText(cell)) : std::nullopt;
}

std::string Joined(const std::vector<std::string>& names)
{
    std::string all;
    for (const std::string& name : names) {
        all += (&name == names.data() ? "" : std::string(1, '\0')) + name;
    }
    return all;
}

/// One row is a file, one call and its answer: a value, a list with a NUL between its entries, or the whole file behind
/// a write.
TEST(ProfileRules, EveryCallAnswersAsTheTableSays)
{
    const std::vector<std::vector<std::string>> rules = TestTable("profile-rules.tsv", 7);
    EXPECT_EQ(rules.size(), 194u);
    for (const std::vector<std::string>& cells : rules) {
        const std::wstring path = L"C:\\data\\rules.ini";
        MemoryFiles files;
        if (const auto content = TextOf(cells[1])) {
            files.Put(path, *content);
        }
        ProfileStore store(files);
        store.Bind(path);
        const auto given = [&](size_t cell) { return file_text::FromBytes(*TextOf(cells[cell]), SystemCodePage()); };
        const std::string& call = cells[2];
        if (call == "number") {
            const auto otherwise = static_cast<uint32_t>(std::stoll(cells[5]));
            EXPECT_EQ(std::to_string(store.Profile().GetInt(given(3), given(4), otherwise)), cells[6]) << cells[0];
        } else if (call == "write" || call == "delete section") {
            const auto text = TextOf(cells[5]) ? std::optional(given(5)) : std::nullopt;
            EXPECT_TRUE(call == "write" ? store.Write(given(3), given(4), text) : store.DeleteSection(given(3)));
            EXPECT_EQ(files.Exists(path) ? std::optional(files.Content(path)) : std::nullopt, TextOf(cells[6]))
                << cells[0];
        } else {
            const std::string answer = call == "value"
                                           ? std::string(store.Profile().GetString(given(3), given(4), given(5)))
                                       : call == "lines" ? Joined(store.Profile().GetSection(given(3)))
                                                         : Joined(store.Profile().GetSectionNames());
            EXPECT_EQ(file_text::ToBytes(answer, SystemCodePage()), TextOf(cells[6])) << cells[0];
        }
    }
}

const std::wstring path = L"C:\\data\\net.ini";

TEST(ProfileStore, AStrangersChangeIsKeptWheneverItComesBeforeTheFileIsReplaced)
{
    // At 0 each change has a stamp of its own. At the even second it has the stamp that the file had before; only the
    // bytes tell then, and nobody can look at those in the step of renaming.
    for (const uint64_t now : {uint64_t{0}, uint64_t{4'000'000'000}}) {
        int moment = 0;
        for (bool meddled = true; meddled; ++moment) {
            MemoryFiles files;
            files.now = now;
            files.Put(path, "[s]\nk=1\n");
            ProfileStore store(files);
            store.Bind(path);
            meddled = false;
            int operation = 0;
            bool isRenaming = false;
            files.before = [&](FileOperation kind) {
                isRenaming = isRenaming || kind == FileOperation::rename;
                if (operation++ == moment && (now == 0 || !isRenaming)) {
                    meddled = true;
                    files.Put(path, "[s]\nk=7\n");
                }
            };
            EXPECT_TRUE(store.Write("s", "n", "2"));
            EXPECT_EQ(files.Content(path), meddled ? "[s]\nk=7\nn=2\n" : "[s]\nk=1\nn=2\n") << now << " " << moment;
        }
        EXPECT_GT(moment, 5) << now;
    }
}

TEST(ProfileStore, AFileThatNeverRestsOrIsTakenIsNotReplaced)
{
    MemoryFiles files;
    ProfileStore store(files);
    store.Bind(path);
    int changes = 0;
    files.before = [&](FileOperation) { files.Put(path, "[s]\nk=" + std::to_string(++changes) + "\n"); };
    EXPECT_FALSE(store.Write("s", "n", "2"));
    EXPECT_EQ(files.Content(path), "[s]\nk=" + std::to_string(changes) + "\n");
    EXPECT_EQ(files.Paths().size(), 1u) << "no temporary stays";
    EXPECT_LT(changes, 200) << "there is an end to it";

    files.before = {};
    files.FailOn(FileOperation::exclude, 1, FileFault::inUse);
    EXPECT_FALSE(store.Write("s", "n", "2"));
    EXPECT_EQ(files.Content(path), "[s]\nk=" + std::to_string(changes) + "\n");
    EXPECT_TRUE(store.Write("s", "n", "2"));
}

TEST(ProfileStore, AStampIsTrustedOnceNoSecondWriteCanHaveLeftItWhateverTheClockDoes)
{
    constexpr uint64_t second = 1'000'000'000;
    MemoryFiles files;
    ProfileStore store(files);
    const auto value = [&] { return std::string(*store.Profile().Find("s", "k")); };
    const auto reads = [&] {
        const int before = files.Count(FileOperation::read);
        value();
        return files.Count(FileOperation::read) - before;
    };
    // Of the machine's clock behind the file's time, and then back again.
    struct
    {
        uint64_t ahead, behind, setBack;
    } const cases[] = {{0, 0, 0}, {1, 0, 0}, {0, 100, 0}, {0, 0, 50}, {0, 100, 50}, {100, 0, 0}};
    for (const auto& [ahead, behind, setBack] : cases) {
        files.now = 1000 * second;
        files.Put(path, "[s]\nk=1\n");
        files.now += (ahead - behind) * second;
        store.Bind(path);
        EXPECT_EQ(value(), "1");
        const bool old = ahead > 1;
        EXPECT_EQ(reads(), old ? 0 : 1);
        if (!old) {
            const uint64_t now = std::exchange(files.now, 1000 * second);
            files.Put(path, "[s]\nk=2\n");  // within the tick of the write before
            files.now = now;
            EXPECT_EQ(value(), "2");
        }
        files.now -= setBack * second;
        EXPECT_EQ(reads(), old ? 0 : 1);
        files.now += 2 * second;
        value();
        EXPECT_EQ(reads(), 0) << ahead << " " << behind << " " << setBack;
        files.now -= 500 * second;
        EXPECT_EQ(reads(), 0) << "what is trusted stays so";
        files.Put(path, "[s]\nk=3\n");
        EXPECT_EQ(value(), "3");
    }
}

}  // namespace
}  // namespace tvn2x
