#include "setup/ProfileFile.h"

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

#include "support/ShiftedCodePage.h"
#include "util/FileText.h"

using namespace std::string_literals;

namespace tvn2x {
namespace {

TEST(ProfileFile, BytesThatNoWriteTouchesStayAsTheyWere)
{
    const std::string files[] = {"",
                                 "no section, no line end",
                                 "; head\r\n\r\nx=1\r\n [ a ] tail\r\n  k  =  1 ; c\r\n\r\n\r\n[b",
                                 "\0\x01\xFF\r\r\n\n\r=\n[\n]\n=\0="s,
                                 "\xEF\xBB\xBF[s]\nk=v",
                                 "\xFF\xFE",
                                 "\xFF\xFE[\0s\0]\0\r\0\n\0\x3D\xD8k\0=\0\x00\xDC\x3D\xD8\x00\xDEv"s};
    for (const std::string& file : files) {
        ProfileFile profile(file);
        EXPECT_EQ(file, profile.Render());
        profile.Write("none", "none", std::nullopt);
        EXPECT_EQ(file, profile.Render());
        EXPECT_FALSE(profile.Changed());
    }
}

TEST(ProfileFile, NoTextCanForgeAKeyASectionOrALine)
{
    const std::string content = "[a]\r\nk=1\r\n";
    ProfileFile profile(content);
    for (const std::string& text : {"x\r\n[b]"s, "x\ny=1"s, "\r"s, "x\0y"s, std::string(32768, 'v')}) {
        EXPECT_FALSE(profile.Write("a", "k", text));
        EXPECT_FALSE(profile.Write("a", text, "1"));
        EXPECT_FALSE(profile.Write(text, "k", "1"));
        EXPECT_FALSE(profile.DeleteSection(text));
        EXPECT_FALSE(profile.WriteSection("a", {text}));
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

TEST(ProfileFile, ATextThatTheCodePageLacksMakesItAUtf16FileCommentsAndAll)
{
    const ShiftedCodePage shifted;
    const std::string old = "; \x83\x5D\n\n[\x83\x5D\x81\x5B]\nk = \xED\x40 ; c\nm=\"1\"";
    const auto text = [](std::wstring_view wide) { return file_text::FromWide(wide); };
    const std::string section = text(L"\u30BE\u30FC");
    for (const int changed : {0, 1, 2}) {
        const std::string micro = text(L"dB\u00B5V");
        ProfileFile profile(old, shifted);
        ASSERT_EQ(text(L"\u30BE\u30FC"), profile.GetSectionNames()[0]) << "a bracket in a character is none";
        EXPECT_FALSE(profile.Find(section, text(L"\u00B5"))) << "what the code page lacks is not \"?\"";
        ASSERT_TRUE(profile.Write(section, "m", "2"));
        EXPECT_FALSE(profile.IsUnicode());
        EXPECT_EQ(old.substr(0, old.find("m=")) + "m=2\n", profile.Render());
        const std::array<std::string, 3> write = {changed == 0 ? micro : section, changed == 1 ? micro : "n",
                                                  changed == 2 ? micro : "3"};
        ASSERT_TRUE(profile.Write(write[0], write[1], write[2]));
        const std::string rendered = profile.Render();
        ASSERT_EQ("\xFF\xFE;", rendered.substr(0, 3));
        const ProfileFile again(rendered, SystemCodePage());
        EXPECT_EQ(write[2], again.GetString(write[0], write[1], ""));
        EXPECT_EQ(text(L"\u7E8A ; c"), again.GetString(section, "k", ""));
        EXPECT_EQ("2", again.GetString(section, "m", ""));
        EXPECT_EQ(L"; \u30BE\n\n[\u30BE\u30FC]\nk = \u7E8A ; c\nm=2\n",
                  file_text::ToWide(file_text::FromUtf16(std::string_view(rendered).substr(2)), shifted).substr(0, 24));
    }
    // A byte that is no character has no place in UTF-16; without it the file can follow.
    ProfileFile broken("[s]\r\nk=\x83\r\nm=1\r\n", shifted);
    EXPECT_FALSE(broken.Write("s", "m", text(L"\u00B5")));
    EXPECT_FALSE(broken.WriteSection("s", {"m=\u00B5"}));
    EXPECT_TRUE(broken.Write("s", "m", text(L"\u30BE")));
    EXPECT_EQ("[s]\r\nk=\x83\r\nm=\x83\x5D\r\n", broken.Render());
    EXPECT_TRUE(broken.Write("s", "k", std::nullopt));
    EXPECT_TRUE(broken.Write("s", "m", text(L"\u00B5")));
    EXPECT_TRUE(broken.IsUnicode());

    ProfileFile names("[s]\n\x83\x41=1\n", shifted);
    EXPECT_FALSE(names.Find("s", text(L"\u30C2"))) << "\"A\" and \"a\" inside characters are no two cases of a letter";
    EXPECT_EQ("1", names.GetString("S", text(L"\u30A2"), ""));
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
