#include "tables/draws/bootstrap.h"

#include <gtest/gtest.h>

#include "project/data.h"
#include "shell/settings.h"
#include "support/session.h"

namespace tarven {
namespace {

/// Cells (1,1), (1,2), (2,1), (2,2).
CellStore Store(const std::vector<std::int32_t>& counts) {
    CellStore store;
    store.N = 2;
    store.codes = {1, 1, 1, 2, 2, 1, 2, 2};
    store.counts = counts;
    return store;
}

TEST(Bootstrap, DrawsEachCaseEquallyOften) {
    const CellStore store = Store({10, 0, 30, 60});
    RandomStream stream{9};
    double drawn[3][3] = {};
    for (int k = 0; k < 400; ++k) {
        const CellStore sample = Bootstrap_sample(store, 100, stream);
        EXPECT_EQ(Cases_of(sample), 100);
        for (std::int64_t cell = 1; cell <= sample.Ncells(); ++cell)
            drawn[sample.Cell(cell)[0]][sample.Cell(cell)[1]] +=
                sample.counts[static_cast<std::size_t>(cell - 1)];
    }
    EXPECT_EQ(drawn[1][2], 0);
    // Four standard errors of binomial counts out of 40000.
    EXPECT_NEAR(drawn[1][1], 4000, 240);
    EXPECT_NEAR(drawn[2][1], 12000, 367);
    EXPECT_NEAR(drawn[2][2], 24000, 392);
}

TEST(Bootstrap, RepeatsFromTheSameSeedAndGoesOnFromTheLastDraw) {
    const CellStore store = Store({5, 5, 5, 5});
    RandomStream one{9}, other{9};
    const CellStore first = Bootstrap_sample(store, 20, one);
    EXPECT_EQ(first, Bootstrap_sample(store, 20, other));
    EXPECT_NE(first, Bootstrap_sample(store, 20, one));
    EXPECT_EQ(Bootstrap_sample(Store({0, 0, 0, 0}), 20, one).Ncells(), 0);
}

/// The commands QV7 to QV9.
class BootstrapCommands : public SessionTest {};

TEST_F(BootstrapCommands, ATestBetweenTwoSamplesDoesNotRepeatTheFirst) {
    Copy_example("titanic");
    Run({"OPE titanic"});
    const CellStore original = The_data.TABdata;
    ASSERT_GT(original.Ncells(), 0);
    RandomStream stream;
    Set_seed(stream, The_settings.Seed);
    const CellStore first = Bootstrap_sample(original, 100, stream);
    const CellStore second = Bootstrap_sample(original, 100, stream);
    Run({"QV7 100", "QV8"});
    EXPECT_EQ(The_data.TABdata, first);
    Run({"TAB SCG", "HYP SC", "EXA 50", "TES", "QV8"});
    EXPECT_EQ(The_data.TABdata, second);
    Run({"QV9"});
    EXPECT_EQ(The_data.TABdata, original);
}

}  // namespace
}  // namespace tarven
