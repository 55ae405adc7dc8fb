#include "setup/ProfileFile.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/ShiftedCodePage.h"
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

}  // namespace
}  // namespace tvn2x
