#include "setup/ProfileRules.h"

namespace tvn2x {
namespace {

TEST(ProfileRules, EveryCallAnswersAsTheTableSays)
{
    const std::vector<Rule> rules = Rules(TVN_TEST_DATA "/profile-rules.tsv");
    ASSERT_GT(rules.size(), 190u);
    for (const Rule& rule : rules)
        EXPECT_EQ(rule.expected, AnswerTo(rule))
            << rule.id << ": " << rule.call << "(" << rule.arguments << ") on " << rule.file << "  " << rule.note;
}

}  // namespace
}  // namespace tvn2x
