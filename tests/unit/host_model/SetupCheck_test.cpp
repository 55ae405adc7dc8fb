#include "host_model/SetupCheck.h"

#include "host_model/TestFiles.h"

namespace tvn2x {
namespace {

using testing::HasSubstr;

const std::string identity = "[Application]\r\nName=TVN Host\r\nVersion=2.0\r\n[Hardware]\r\nModel=2x\r\nMode=4\r\n";
const std::string twoChannels =
    "[Frequency List]\r\nCount=2\r\nFrequency   01=474.0000000\r\nUser Field  01=K21\r\nSymbol Rate 01=6.900\r\n"
    "Frequency   02=482.0000000\r\nUser Field  02=K22\r\nSymbol Rate 02=6.900\r\n";

int32_t Check(const std::string& content)
{
    return CheckSetupFile(content, L"net.ini", L"TVN Host");
}

std::wstring RefusalOf(const std::string& content)
{
    return Refusal([&] { Check(content); });
}

TEST(SetupCheck, AWholeSetupPassesWithItsNumberOfChannels)
{
    EXPECT_EQ(Check(identity + twoChannels), 2);
    EXPECT_EQ(Check("[APPLICATION]\nNAME = TVN Host\n[frequency list]\ncount=1\nfrequency   01=3\nsymbol rate 01=1"),
              1);
    std::string unicode = "\xFF\xFE";
    for (const char each : identity + twoChannels) {
        unicode.append({each, '\0'});
    }
    EXPECT_EQ(Check(unicode), 2);
    EXPECT_EQ(Check(identity + twoChannels + std::string(5 << 20, '\n')), 2) << "however long it is";
}

TEST(SetupCheck, SaysWhyAFileIsNoSetup)
{
    EXPECT_THAT(RefusalOf(""), HasSubstr(L"net.ini: the file is empty. Make a setup with"));
    EXPECT_THAT(RefusalOf(std::string("MZ\0\3", 4)), HasSubstr(L"line 1: binary data: this is no setup"));
    EXPECT_THAT(RefusalOf("some text"), HasSubstr(L"lacks the product's name in [Application]"));
    EXPECT_THAT(RefusalOf(identity), HasSubstr(L"lacks the section [Frequency List]"));
    EXPECT_THAT(RefusalOf(TestFile("plans/at-Kabelsignal")), HasSubstr(L"is a channel plan, not a setup"));
}

TEST(SetupCheck, NamesAnotherProductAndAnotherReceiver)
{
    EXPECT_THAT(RefusalOf("[Application]\nName=Other\n" + twoChannels),
                HasSubstr(L"net.ini, line 2: the setup belongs to \"Other\", this host opens those of \"TVN Host\""));
    EXPECT_THAT(RefusalOf("[Application]\nName=TVN Host\n[Hardware]\nModel=3x\n" + twoChannels),
                HasSubstr(L"line 4: the setup is for receivers of model \"3x\""));
}

TEST(SetupCheck, FindsAListThatIsCutOff)
{
    const std::string whole = identity + twoChannels;
    const std::string cut = whole.substr(0, whole.find("Symbol Rate 02"));
    EXPECT_THAT(RefusalOf(cut),
                HasSubstr(L"net.ini, line 8: the list has 2 channels, but \"Symbol Rate 02\" is missing"));
    EXPECT_THAT(RefusalOf(identity + "[Frequency List]\n"), HasSubstr(L"net.ini: \"Count\" is missing"));
}

TEST(SetupCheck, NamesLineAndLimitsOfANumberThatCannotBeMeasured)
{
    const struct
    {
        std::string list;
        const wchar_t* reason;
    } cases[] = {
        {"Count=0\n", L"line 8: \"Count\" is \"0\"; it has to be a number from 1 to 1000000"},
        {"Count=2147483647\n", L"it has to be a number from 1 to 1000000"},
        {"Count=1\nFrequency   01=abc\nSymbol Rate 01=6.9\n", L"line 9: \"Frequency   01\" is \"abc\""},
        {"Count=1\nFrequency   01=2.9\nSymbol Rate 01=6.9\n", L"is \"2.9\"; it has to be a number from 3 to 1000"},
        {"Count=1\nFrequency   01=3\nSymbol Rate 01=7.1\n", L"\"Symbol Rate 01\" is \"7.1\""},
        {"Count=1\nFrequency   01=3\nSymbol Rate 01=7\n[Static Settings]\nMaximum Settling Time (sec)=0\n",
         L"line 12: \"Maximum Settling Time (sec)\" is \"0\""},
    };
    for (const auto& c : cases) {
        EXPECT_THAT(RefusalOf(identity + "[Frequency List]\n" + c.list), HasSubstr(c.reason));
    }
}

}  // namespace
}  // namespace tvn2x
