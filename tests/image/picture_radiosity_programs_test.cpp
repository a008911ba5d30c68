// The programs of the radiosity renderer: what is told about them, and what the node is without
// one.
#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "image/radiosity_fixture.h"
#include "platform/debug_output.h"
#include "support/broken_shaders.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

// A program by its name, and what tells its source from the others.
struct Program {
    std::string name, with, without;
    bool needed = true;
};
const std::vector<Program> kPrograms = {
    {"radiosityPrepare", "environmentPlace", "#define ADDITIVE"},
    {"radiosityPrepareAdditive", "#define ADDITIVE", "", false},
    {"radiosityCompose", "uniform sampler2D refData", ""},
    {"aoShader", "eyeSpaceNormal", "#define LIGHT"},
    {"giShader", "#define LIGHT", ""},
    {"dofShader", "samplingWidth", ""},
};

class RadiosityProgramsTest : public RadiosityTest {};

}  // namespace

TEST_F(RadiosityProgramsTest, AreToldByTheirNames) {
    const DebugCapture capture;
    add<Renderer>("other");
    const std::string linked = " Successfully linked.\n";
    EXPECT_THAT(capture.messages(),
                ElementsAre("radiosityPrepare", linked, "radiosityPrepareAdditive", linked,
                            "radiosityCompose", linked, "aoShader", linked, "giShader", linked,
                            "dofShader", linked));
}

TEST_F(RadiosityProgramsTest, TellTheDriversWordsUnderTheirNamesWhenTheyFail) {
    for (const Program& program : kPrograms) {
        SCOPED_TRACE(program.name);
        const BrokenShaders broken(program.with, program.without);
        const DebugCapture capture;
        add<Renderer>("without " + program.name);
        ASSERT_EQ(broken.count(), 1);
        const std::vector<std::string> messages = capture.messages();
        ASSERT_EQ(messages.size(), 2 * kPrograms.size());
        for (std::size_t i = 0; i < kPrograms.size(); ++i) {
            EXPECT_EQ(messages[2 * i], kPrograms[i].name);
            if (kPrograms[i].name == program.name) {
                EXPECT_THAT(messages[2 * i + 1], Not(IsEmpty()));
                EXPECT_NE(messages[2 * i + 1], " Successfully linked.\n");
            } else {
                EXPECT_EQ(messages[2 * i + 1], " Successfully linked.\n");
            }
        }
    }
}

TEST_F(RadiosityProgramsTest, AreAnErrorOfTheNodeWhenOneFailsUnlessItIsTheAdditiveOne) {
    for (const Program& program : kPrograms) {
        SCOPED_TRACE(program.name);
        const DebugCapture quiet;
        const BrokenShaders broken(program.with, program.without);
        Renderer& other = add<Renderer>("without " + program.name);
        EXPECT_EQ(broken.count(), 1);
        EXPECT_EQ(other.hasError, program.needed);
        EXPECT_EQ(other.programsLinked(), !program.needed);
    }
}

// The node says that it has an error, and goes on with the programs that it has.
TEST_F(RadiosityProgramsTest, AreLeftOutOfAFrameWhenTheyFail) {
    buildRoom();
    for (const Program& program : kPrograms) {
        SCOPED_TRACE(program.name);
        const DebugCapture quiet;
        const BrokenShaders broken(program.with, program.without);
        Renderer& other = add<Renderer>("without " + program.name);
        link(geometry, other, Renderer::kGeometryPort);
        other.aoEnable = other.giEnable = true;
        set(other, "DOF", {0.2f});
        set(other, "GI:Ambiance", {0});
        draw(other, {900, 400, 64, 64});
        EXPECT_EQ(other.images[0], other.dofBuffer);
        const bool hasSurfaces =
            texelOf(*other.prepareBuffer, 930, 430, Renderer::kEyeNormal).b != 0;
        EXPECT_EQ(hasSurfaces, program.name != "radiosityPrepare");
    }
}
