#include "host/setup/SetupCheck.h"

#include "support/TestFiles.h"

namespace tvn2x {
namespace {

const std::string identity = "[Application]\r\nName=TVN Host\r\nVersion=2.0\r\n[Hardware]\r\nModel=2x\r\nMode=4\r\n";
const std::string twoChannels =
    "[Frequency List]\r\nCount=2\r\nFrequency   01=474.0000000\r\nUser Field  01=K21\r\nSymbol Rate 01=6.900\r\n"
    "Frequency   02=482.0000000\r\nUser Field  02=K22\r\nSymbol Rate 02=6.900\r\n";

int32_t Check(const std::string& content)
{
    return CheckSetupFile(content, L"net.ini", L"TVN Host");
}

TEST(SetupCheck, PassesAWholeSetupAndSaysWhyAFileIsNoneOrOneOfAnotherProductOrReceiver)
{
    EXPECT_EQ(Check(identity + twoChannels), 2);
    EXPECT_EQ(Check(identity + twoChannels + std::string(5 << 20, '\n')), 2) << "however long it is";
    ExpectRefusals(Check, {{"", L"net.ini: the file is empty. Make a setup with"},
                           {std::string("MZ\0\3", 4), L"line 1: binary data: this is no setup"},
                           {"some text", L"lacks the product's name in [Application]"},
                           {identity, L"lacks the section [Frequency List]"},
                           {TestFile("plans/at-Kabelsignal"), L"is a channel plan, not a setup"},
                           {"[Application]\nName=Other\n" + twoChannels,
                            L"net.ini, line 2: the setup belongs to \"Other\", this host opens those of \"TVN Host\""},
                           {"[Application]\nName=TVN Host\n[Hardware]\nModel=3x\n" + twoChannels,
                            L"line 4: the setup is for receivers of model \"3x\""}});
}

TEST(SetupCheck, NamesLineAndLimitsOfANumberThatIsMissingOrCannotBeMeasured)
{
    const std::string list = identity + "[Frequency List]\n";
    const std::string whole = identity + twoChannels;
    ExpectRefusals(
        Check,
        {{whole.substr(0, whole.find("Symbol Rate 02")),
          L"net.ini, line 8: the list has 2 channels, but \"Symbol Rate 02\" is missing"},
         {list, L"net.ini: \"Count\" is missing"},
         {list + "Count=0\n", L"line 8: \"Count\" is \"0\"; it has to be a number from 1 to 1000000"},
         {list + "Count=2147483647\n", L"it has to be a number from 1 to 1000000"},
         {list + "Count=1\nFrequency   01=abc\nSymbol Rate 01=6.9\n", L"line 9: \"Frequency   01\" is \"abc\""},
         {list + "Count=1\nFrequency   01=2.9\nSymbol Rate 01=6.9\n",
          L"is \"2.9\"; it has to be a number from 3 to 1000"},
         {list + "Count=1\nFrequency   01=3\nSymbol Rate 01=7.1\n", L"\"Symbol Rate 01\" is \"7.1\""},
         {list + "Count=1\nFrequency   01=3\nSymbol Rate 01=7\n[Static Settings]\nMaximum Settling Time (sec)=0\n",
          L"line 12: \"Maximum Settling Time (sec)\" is \"0\""}});
}

}  // namespace
}  // namespace tvn2x
