#include "setup/ProfileFile.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

namespace tvn2x {
namespace {

std::string Written(const std::string& content, const std::string& section, const std::string& key,
                    std::optional<std::string_view> value)
{
    ProfileFile profile(content);
    EXPECT_TRUE(profile.Write(section, key, value));
    return profile.Render();
}

/// The lines of a file that are not blank, whatever they end with.
std::vector<std::string> Lines(const std::string& content)
{
    std::vector<std::string> lines;
    profile::LineScanner scanner(content);
    profile::Line line;
    while (scanner.Next(line)) {
        if (!profile::Trim(line.Text(content)).empty())
            lines.emplace_back(line.Text(content));
    }
    return lines;
}

TEST(ProfileFile, BytesThatNoWriteTouchesStayAsTheyWere)
{
    const std::vector<std::string> files{
        "",
        "no section, no line end",
        "; head\r\n\r\nx=1\r\n [ a ] tail\r\n  k  =  1 ; c\r\n\r\n\r\n[b",
        std::string("\0\x01\xFF\r\r\n\n\r=\n[\n]\n=\0=", 17),
        "\xEF\xBB\xBF[s]\nk=v",
        "\xFF\xFE",
        std::string("\xFF\xFE[\0s\0]\0\r\0\n\0\x3D\xD8k\0=\0\x00\xDC\x3D\xD8\x00\xDEv", 25),
    };
    for (const std::string& file : files) {
        ProfileFile profile(file);
        EXPECT_EQ(file, profile.Render());
        profile.Write("none", "none", std::nullopt);
        EXPECT_EQ(file, profile.Render());
        EXPECT_FALSE(profile.Changed());
    }
    EXPECT_EQ("; head\r\n[a]\n\tk =1\nm=9\n; tail\n\n[b]",
              Written("; head\r\n[a]\n\tk =1\nm = 2\n; tail\n\n[b]", "A", "M", "9"));
}

TEST(ProfileFile, NewLinesEndLikeMostOfTheFileAndJoinTheirSection)
{
    EXPECT_EQ("[a]\nk=1\nn=2\n\n[b]\n", Written("[a]\nk=1\n\n[b]\n", "a", "n", "2"));
    EXPECT_EQ("[a]\rn=2\r[b]\r", Written("[a]\r[b]\r", "a", "n", "2"));
    EXPECT_EQ("[a]\r\nn=2\r\n", Written("[a]", "a", "n", "2"));
    EXPECT_EQ("junk\r\n[a]\r\nn=2\r\n", Written("junk", "a", "n", "2"));
    EXPECT_EQ("[a]\nk=1\r\nn=2\n[b]\n", Written("[a]\nk=1\r\n[b]\n", "a", "n", "2"));
    EXPECT_EQ("[a]\nk=2\r\nm=1", Written("[a]\nk=1\r\nm=1", "a", "k", "2"));
}

TEST(ProfileFile, NoTextCanForgeAKeyASectionOrALine)
{
    const std::string content = "[a]\r\nk=1\r\n";
    ProfileFile profile(content);
    const std::string nul("x\0y", 3);
    const std::string tooLong(32768, 'v');
    for (const std::string& text : {std::string("x\r\n[b]"), std::string("x\ny=1"), std::string("\r"), nul, tooLong}) {
        EXPECT_FALSE(profile.Write("a", "k", text));
        EXPECT_FALSE(profile.Write("a", text, "1"));
        EXPECT_FALSE(profile.Write(text, "k", "1"));
        EXPECT_FALSE(profile.DeleteSection(text));
        EXPECT_FALSE(profile.WriteSection("a", {text}));
    }
    EXPECT_EQ(content, profile.Render());
    const std::string longest(32767, 'v');
    EXPECT_TRUE(profile.Write("a", "k", longest));
    EXPECT_EQ(longest, *ProfileFile(profile.Render()).Find("a", "k"));
    for (const char* const value : {"[b]", "b=2", ";", "=", "]", "[b"}) {
        ASSERT_TRUE(profile.Write("a", "k", value));
        EXPECT_EQ(value, *ProfileFile(profile.Render()).Find("a", "k"));
        EXPECT_EQ(1u, ProfileFile(profile.Render()).GetSection("a").size());
    }
}

TEST(ProfileFile, AnswersBeforeRenderingAsTheRenderedFileDoes)
{
    std::mt19937 random(20240315);
    const std::vector<std::string> names{"a", "B", "b ", "", "k k", ";c", "x=y", "[z", "p]q", "\te"};
    const std::vector<std::string> values{"", "1", " 2 ", "\"q\"", "a=b", "[s]", ";", "-12", "x y"};
    const std::vector<std::string> pieces{"[a]", "[ B ]", "[",  "a=1",  "B = 2", "k k", "=v",      ";c=3",
                                          "  ",  "\r\n",  "\n", "\r\n", "\r",    "\n",  "a = 'x'", "junk\x01"};
    const auto pick = [&](const std::vector<std::string>& from) { return from[random() % from.size()]; };
    for (int round = 0; round < 3000; ++round) {
        std::string content;
        for (size_t i = random() % 14; i > 0; --i)
            content += pick(pieces);
        ProfileFile profile(content);
        for (size_t step = random() % 8; step > 0; --step) {
            const std::string section = pick(names);
            ProfileFile fresh(profile.Render());
            if (random() % 12 == 0) {
                profile.DeleteSection(section);
                fresh.DeleteSection(section);
            } else {
                const std::string key = pick(names);
                const std::string value = pick(values);
                const auto written = random() % 3 == 0 ? std::nullopt : std::optional<std::string_view>(value);
                profile.Write(section, key, written);
                fresh.Write(section, key, written);
            }
            ASSERT_EQ(Lines(fresh.Render()), Lines(profile.Render())) << testing::PrintToString(content);
        }
        const ProfileFile again(profile.Render());
        for (const std::string& section : names) {
            ASSERT_EQ(again.GetSection(section), profile.GetSection(section)) << content;
            for (const std::string& key : names)
                ASSERT_EQ(again.Find(section, key), profile.Find(section, key))
                    << testing::PrintToString(content) << section << "|" << key << "\n"
                    << testing::PrintToString(profile.Render());
        }
    }
}

TEST(ProfileFile, AUnicodeFileTakesEveryCharacterAndTheCodePageItsOwn)
{
    const std::wstring text = L"\u041C\u00FC \u20AC";
    ProfileFile unicode(std::string("\xFF\xFE"));
    unicode.Write("s", "k", unicode.Encode(text));
    const ProfileFile again(unicode.Render());
    EXPECT_TRUE(again.IsUnicode());
    EXPECT_EQ(text, again.Decode(*again.Find("S", "K")));
    ProfileFile plain;
    plain.Write("s", "k", plain.Encode(text));
    EXPECT_EQ(L"?\u00FC \u20AC", plain.Decode(*ProfileFile(plain.Render()).Find("s", "k")));
}

/// Files of the worst shapes: what would cost more than a fixed amount of work per byte would take minutes here.
TEST(ProfileFile, EveryShapeOfALargeFileTakesLinearTime)
{
    constexpr size_t size = 4'000'000;
    const std::vector<std::string> shapes{
        "\n", "\r", "a", "[", "=\n", "a\n", "[\n", ";\n", std::string(1, '\0'), " ", "\r\r\n", "k=1\r", "[s]\n=\n"};
    for (const std::string& shape : shapes) {
        std::string content = "[s]\r";
        while (content.size() < size)
            content += shape;
        ProfileFile profile(content);
        profile.Find("s", "k");
        profile.Write("s", "new", "1");
        profile.Write("t", "new", "1");
        EXPECT_GE(profile.Render().size(), content.size());
    }
    std::string distinct;
    for (int i = 0; distinct.size() < size; ++i)
        distinct += "[" + std::to_string(i) + "]\nk=1\nK=2\n";
    ProfileFile profile(distinct);
    for (int i = 0; i < 1000; ++i) {
        EXPECT_TRUE(profile.Write(std::to_string(i), "k", std::nullopt));
        EXPECT_EQ("2", *profile.Find(std::to_string(i), "k"));
    }
}

TEST(ProfileFile, DuplicatesOfManyKeysAreRemovedOneAfterTheOther)
{
    constexpr int keys = 20000;
    std::string content = "[s]\n";
    for (int copy = 0; copy < 3; ++copy)
        for (int i = 0; i < keys; ++i)
            content += "k" + std::to_string(i) + "=" + std::to_string(copy) + "\n";
    ProfileFile profile(content);
    for (int copy = 0; copy < 3; ++copy) {
        for (int i = 0; i < keys; ++i) {
            const std::string key = "K" + std::to_string(i);
            ASSERT_EQ(std::to_string(copy), *profile.Find("s", key));
            profile.Write("s", key, std::nullopt);
        }
    }
    EXPECT_EQ("[s]\n", profile.Render());
}

}  // namespace
}  // namespace tvn2x
