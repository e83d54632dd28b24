#include "src/snmptables/fabric_lists.h"

#include <sstream>

#include "tests/support/switch_test.h"

namespace snmpmain {
namespace {

class KeyWalkTest : public SwitchTest {
  protected:
    // The keys of a list whose questions are answered by these words in turn: the first key, the
    // one behind it and so on. "#" fails.
    std::string Walk(const std::string& answers) {
        server.WithFabric([](sim::Fabric& fabric) { fabric.Find(0)->values.clear(); });
        std::string path = "Test.First";
        std::istringstream words(answers);
        for (std::string word; words >> word; path = "Test.Next." + word) {
            server.SetValue(0, path, word == "#" ? std::nullopt : std::optional(word));
        }
        KeyWalk walk({0, "Get.Test.First", "Get.Test.Next"});
        std::string keys;
        while (keys.size() < 100 && walk.Next() == 0) {
            keys += (keys.empty() ? "" : " ") + std::string(walk.Key().data());
        }
        EXPECT_FALSE(walk.Unanswered());
        return keys;
    }
};

TEST_F(KeyWalkTest, ListsEndHoweverTheyBreakOffOrLeadBack) {
    for (const auto& [answers, keys] :
         {std::pair("a b #", "a b"), std::pair("a b *end*", "a b"), std::pair("#", ""),
          std::pair("*end*", ""), std::pair("a a", "a"), std::pair("a b a", "a b"),
          std::pair("a b b", "a b")}) {
        EXPECT_EQ(Walk(answers), keys) << answers;
    }
    // It is noticed once it has come round again.
    EXPECT_LT(Walk("a b c d e f c").size(), 40u);
}

}  // namespace
}  // namespace snmpmain
