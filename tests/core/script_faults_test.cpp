// The words of drivers about shaders, in one form.
#include "core/script_faults.h"

#include <gmock/gmock.h>

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(ScriptFaults, BeginWithTheLineWhateverTheDriver) {
    EXPECT_THAT(ScriptFaults("0:12(5): error: `foo' undeclared\n"),
                ElementsAre("line 12: error: `foo' undeclared"));
    EXPECT_THAT(ScriptFaults("0(12) : error C1503: undefined variable \"foo\"\n"),
                ElementsAre("line 12: error C1503: undefined variable \"foo\""));
    EXPECT_THAT(ScriptFaults("ERROR: 0:12: 'foo' : undeclared identifier\r\n"),
                ElementsAre("line 12: error: 'foo' : undeclared identifier"));
    EXPECT_THAT(ScriptFaults("WARNING: 0:3: 'bar' : not used"),
                ElementsAre("line 3: warning: 'bar' : not used"));
}

TEST(ScriptFaults, StayAsTheyAreWithoutALine) {
    EXPECT_THAT(ScriptFaults("error: no main\n\n  \n12 things\n0:\n0(\n0(1\n0:1(\nERROR: 0:"),
                ElementsAre("error: no main", "12 things", "0:", "0(", "0(1", "0:1(", "ERROR: 0:"));
    EXPECT_THAT(ScriptFaults(""), IsEmpty());
}

TEST(ScriptFaults, AreToldByTheFirstError) {
    EXPECT_EQ(FirstError({"line 2: warning: w", "line 3: error: e", "line 4: error: f"}),
              "line 3: error: e");
    EXPECT_EQ(FirstError({"In the source:", "ERROR: no main"}), "ERROR: no main");
    EXPECT_EQ(FirstError({"1 thing:", "Error: no main"}), "Error: no main");
    EXPECT_EQ(FirstError({"odd words"}), "odd words");
    EXPECT_EQ(FirstError({}), "");
    EXPECT_EQ(CompileFault("0:3(1): error: e\n"), "its shader does not compile: line 3: error: e");
    EXPECT_EQ(CompileFault(""), "its shader does not compile");
}

}  // namespace
