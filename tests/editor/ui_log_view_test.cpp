#include "editor/ui_log_view.h"

#include <gmock/gmock.h>

using testing::ElementsAre;

TEST(LogLines, AreMadeOfMessagesThatNeedNotEndThem) {
    EXPECT_THAT(LinesOf({"one", " two\n", "three\nfour", "\n", "\n", "fi\tve"}),
                ElementsAre("one two", "three", "four", "fi ve"));
}

TEST(LogLines, FaultsAreToldFromNews) {
    EXPECT_TRUE(IsFaultLine("Graphics\\Sky.png: cannot be read"));
    EXPECT_TRUE(IsFaultLine("ERROR: Unable to init the UI master."));
    EXPECT_TRUE(IsFaultLine("Glow.node: its shader does not compile"));
    EXPECT_FALSE(IsFaultLine("Glow Successfully linked."));
    EXPECT_FALSE(IsFaultLine("Saved .\\demo.vorn"));
}

TEST(LogLines, TheStripLeavesRoutineOut) {
    EXPECT_TRUE(IsRoutineLine("Texture Memory Consumed (non MM): 13.84Mb"));
    EXPECT_TRUE(IsRoutineLine("Wipe Successfully linked."));
    EXPECT_TRUE(IsRoutineLine("Load Script from File: Wipe"));
    EXPECT_FALSE(IsRoutineLine("Saved .\\demo.vorn"));
}
