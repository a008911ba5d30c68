#include "core/node_script.h"

#include <gmock/gmock.h>

#include <random>

#include "core/shader_library.h"
#include "platform/debug_output.h"

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class NodeScriptTest : public ::testing::Test {
  protected:
    NodeScriptTest() { shaderLibrary["A library shader"] = ""; }
    ~NodeScriptTest() override { shaderLibrary.erase("A library shader"); }

    NodeScript parse(std::string_view text) {
        const DebugCapture debug;
        NodeScript script;
        EXPECT_TRUE(parseScript(text, "x.node", script));
        said_ = debug.messages();
        return script;
    }
    ShaderParam param(const std::string& line) {
        const NodeScript script = parse(line);
        EXPECT_EQ(script.params.size(), 1u);
        return script.params.empty() ? ShaderParam() : script.params[0];
    }
    std::vector<std::string> said_;
};

TEST_F(NodeScriptTest, ReadsAWholeScript) {
    const NodeScript script = parse(
        "Type Image\n"
        "Name \"Soft Blur\", \"Filters\"\n"
        "Input 0, \"Source\", \"rgba\"\n"
        "Input 1, \"Mask\", \"geometry\"\n"
        "Param 0, \"Radius\", float, 0, 10, 2.5\n"
        "Source\n#version 330 core\nvoid main() {}\n");
    EXPECT_EQ(script.name, "Soft Blur");
    EXPECT_EQ(script.category, "Filters");
    EXPECT_THAT(script.inputNames, ElementsAre("Source", "Mask"));
    EXPECT_THAT(script.inputKinds, ElementsAre(1, 0));
    ASSERT_EQ(script.params.size(), 1u);
    EXPECT_EQ(script.params[0].label, "Radius");
    EXPECT_EQ(script.source, "\n#version 330 core\nvoid main() {}\n");
    EXPECT_THAT(said_, IsEmpty());
}

TEST_F(NodeScriptTest, IsEmptyForAnEmptyFile) {
    const NodeScript script = parse("");
    EXPECT_EQ(script.name, "");
    EXPECT_EQ(script.source, "");
    EXPECT_THAT(script.inputNames, IsEmpty());
    EXPECT_THAT(script.params, IsEmpty());
    EXPECT_THAT(said_, IsEmpty());
}

TEST_F(NodeScriptTest, HasAnEmptySourceWithNeitherSourceNorSourceLib) {
    EXPECT_EQ(parse("Name \"a\" \"b\"").source, "");
}

TEST_F(NodeScriptTest, TakesAllBytesAfterSourceAsTheyAre) {
    const std::string_view text("Source  \r\n\tName \"x\" \"y\"\n\xFF\x01\n", 25);
    const NodeScript script = parse(text);
    EXPECT_EQ(script.source, text.substr(6));
    EXPECT_EQ(script.name, "");
}

TEST_F(NodeScriptTest, CopiesTheSourceOfTheLibrary) {
    shaderLibrary["A"] = "the text of A";
    const NodeScript script = parse("SourceLib A, Name \"n\", \"c\"");
    shaderLibrary.erase("A");
    EXPECT_EQ(script.source, "the text of A");
    EXPECT_EQ(script.name, "n") << "parsing goes on after it";
    EXPECT_THAT(said_, IsEmpty());
}

TEST_F(NodeScriptTest, ClearsTheSourceForANameThatTheLibraryLacks) {
    shaderLibrary["A"] = "the text of A";
    const NodeScript script = parse("SourceLib A\nSourceLib Nothing");
    shaderLibrary.erase("A");
    EXPECT_EQ(script.source, "");
    EXPECT_THAT(said_, ElementsAre("x.node: no library shader \"Nothing\"\n"));
}

TEST_F(NodeScriptTest, PartsTokensAtAnyWhiteSpaceAndDropsOneComma) {
    EXPECT_EQ(parse("\t\v\f\r\n  Name, \"a\", \"b\"").name, "a");
    const ShaderParam p = param("Param\n0,\n\"x\",\nfloat\t1\n2,\r\n3,");
    EXPECT_EQ(p.min, 0.0f) << "a string must stand on its line: the rest was read as tokens";
    EXPECT_EQ(parse("Name,, \"a\", \"b\"").name, "") << "only one comma is dropped";
}

TEST_F(NodeScriptTest, PassesOverWhatItDoesNotKnow) {
    const NodeScript script = parse("# a remark name Name \"a\", \"b\" Colour 1 2 3 source");
    EXPECT_EQ(script.name, "a");
    EXPECT_EQ(script.source, "") << "keywords keep their case";
    EXPECT_THAT(said_, IsEmpty());
}

TEST_F(NodeScriptTest, TakesTheTokenAfterTypeWhateverItIs) {
    EXPECT_EQ(parse("Type Name \"a\", \"b\"").name, "");
}

TEST_F(NodeScriptTest, SplitsATokenOfMoreThan255Bytes) {
    EXPECT_EQ(parse(std::string(255, 'x') + "Name \"a\", \"b\"").name, "a");
    EXPECT_EQ(parse(std::string(254, 'x') + "Name \"a\", \"b\"").name, "");
}

TEST_F(NodeScriptTest, LeavesAStringEmptyWithoutAQuoteAndReadsTheRestAsTokens) {
    const NodeScript script = parse("Name bare Input 0, \"a\", \"rgba\"");
    EXPECT_EQ(script.name, "");
    EXPECT_EQ(script.category, "");
    EXPECT_THAT(script.inputNames, ElementsAre("a"));
}

TEST_F(NodeScriptTest, EndsAStringAfter255Bytes) {
    const std::string text(255, 'n');
    EXPECT_EQ(parse("Name \"" + text + "\", \"b\"").name, text);
    EXPECT_EQ(parse("Name \"" + text + "more\", \"b\"").name, text);
    EXPECT_EQ(parse("Name \"never closed").name, "never closed");
}

TEST_F(NodeScriptTest, EatsOneCharacterAfterAString) {
    const NodeScript script = parse("Name \"a\"Nonsense \"b\"\nInput 0, \"p\"X \"rgba\"");
    EXPECT_EQ(script.category, "") << "\"onsense\" follows the one that was eaten";
    EXPECT_THAT(script.inputNames, ElementsAre("p"));
    EXPECT_THAT(script.inputKinds, ElementsAre(1));
}

TEST_F(NodeScriptTest, TakesOnlyRgbaForTheSecondPicture) {
    const NodeScript script = parse(
        "Input 0, \"a\", \"rgba\" Input 1, \"b\", \"geometry\" Input 2, \"c\", \"normaldepth\" "
        "Input 3, \"d\", \"property\" Input 4, \"e\", \"RGBA\" Input 5, \"f\", \"\" Input 6, "
        "\"g\"");
    EXPECT_THAT(script.inputKinds, ElementsAre(1, 0, 0, 0, 0, 0, 0));
}

TEST_F(NodeScriptTest, FilesKindsInTheOrderOfTheLinesAndNamesByTheirPorts) {
    const NodeScript script = parse("Input 2, \"c\", \"rgba\"\nInput 0, \"a\", \"geometry\"\n");
    EXPECT_THAT(script.inputNames, ElementsAre("a", "", "c"));
    EXPECT_THAT(script.inputKinds, ElementsAre(1, 0));
}

TEST_F(NodeScriptTest, RefusesInputsThatTheVertexStageHasNoCoordinatesFor) {
    std::string text;
    for (int port = -1; port < 12; ++port) {
        text += "Input " + std::to_string(port) + ", \"p" + std::to_string(port) + "\", \"rgba\"\n";
    }
    const NodeScript script = parse(text + "Input 2000000000, \"x\", \"rgba\"\n");
    EXPECT_EQ(script.inputNames.size(), 8u);
    EXPECT_EQ(script.inputNames[7], "p7");
    EXPECT_EQ(script.inputKinds.size(), 8u);
    EXPECT_THAT(said_, ElementsAre("x.node: input -1 is outside 0 to 7\n"));
}

TEST_F(NodeScriptTest, ReadsFloats) {
    const ShaderParam p = param("Param 0, \"Radius\", float, -1.5, 10e1, .25");
    EXPECT_EQ(p.type, 2);
    EXPECT_EQ(p.label, "Radius");
    EXPECT_EQ(p.min, -1.5f);
    EXPECT_EQ(p.max, 100.0f);
    EXPECT_EQ(p.defaultValue, 0.25f);
    EXPECT_TRUE(p.animatable);
    EXPECT_FALSE(param("Param 0, \"Radius\", floatEvolution, 0, 1, 0.5").animatable);
    EXPECT_EQ(param("Param 0, \"Radius\", floatEvolution, 0, 1, 0.5").type, 2);
}

TEST_F(NodeScriptTest, ReadsIntegersAsFloats) {
    const ShaderParam p = param("Param 0, \"Steps\", int, 1, 9, 4");
    EXPECT_EQ(p.type, 3);
    EXPECT_EQ(p.min, 1.0f);
    EXPECT_EQ(p.max, 9.0f);
    EXPECT_EQ(p.defaultValue, 4.0f);
}

TEST_F(NodeScriptTest, ReadsOptions) {
    const ShaderParam p = param("Param 0, \"Mode\", option, 3, \"first one\", \"b\", \"c\", 2");
    EXPECT_EQ(p.type, 4);
    EXPECT_THAT(p.options, ElementsAre("first one", "b", "c"));
    EXPECT_EQ(p.optionValue, 2);
}

TEST_F(NodeScriptTest, ReadsDirectionsPositionsAndColours) {
    const NodeScript script = parse(
        "Param 0, \"D\", direction, 1, -2\nParam 1, \"P\", position, 0.5, 0.25\n"
        "Param 2, \"C\", color, 0.1, 0.2, 0.3, 0.4\n");
    ASSERT_EQ(script.params.size(), 3u);
    EXPECT_EQ(script.params[0].type, 5);
    EXPECT_THAT(script.params[0].direction, ElementsAre(1, -2));
    EXPECT_EQ(script.params[1].type, 6);
    EXPECT_THAT(script.params[1].position, ElementsAre(0.5f, 0.25f));
    EXPECT_EQ(script.params[2].type, 7);
    EXPECT_THAT(script.params[2].color, ElementsAre(0.1f, 0.2f, 0.3f, 0.4f));
}

TEST_F(NodeScriptTest, FillsTheNumbersBeforeAParameterWithEmptyOnes) {
    const NodeScript script = parse("Param 3, \"x\", float, 0, 1, 0.5");
    ASSERT_EQ(script.params.size(), 4u);
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(script.params[i].type, 0);
        EXPECT_EQ(script.params[i].label, "");
    }
    EXPECT_EQ(script.params[3].type, 2);
}

TEST_F(NodeScriptTest, LeavesAParameterOfAnUnknownTypeWithoutOne) {
    const NodeScript script = parse("Param 0, \"x\", bool, 1\nParam 1, \"y\", int, 0, 1, 1");
    ASSERT_EQ(script.params.size(), 2u);
    EXPECT_EQ(script.params[0].type, 0);
    EXPECT_EQ(script.params[0].label, "x");
    EXPECT_EQ(script.params[1].type, 3);
}

TEST_F(NodeScriptTest, TakesNonsenseInPlaceOfANumberForZero) {
    const ShaderParam p = param("Param zero, \"x\", float, low, high");
    EXPECT_EQ(p.type, 2);
    EXPECT_EQ(p.max, 0.0f);
    EXPECT_EQ(p.defaultValue, 0.0f);
}

TEST_F(NodeScriptTest, RefusesParameterNumbersThatAreTooLargeOrNegative) {
    for (const char* number : {"256", "2000000000", "-1", "99999999999999999999"}) {
        const NodeScript script =
            parse("Param " + std::string(number) + ", \"x\", float, 0, 1, 0\nName \"n\", \"c\"");
        EXPECT_THAT(script.params, IsEmpty());
        EXPECT_EQ(script.name, "n") << "parsing goes on after it";
        EXPECT_EQ(said_.size(), 1u);
    }
    EXPECT_EQ(parse("Param 255, \"x\", float, 0, 1, 0").params.size(), 256u);
    EXPECT_THAT(said_, IsEmpty());
}

TEST_F(NodeScriptTest, BelievesNoCountOfOptions) {
    EXPECT_LE(param("Param 0, \"x\", option, 2000000000, \"a\", \"b\", 1").options.size(), 256u);
    std::string many = "Param 0, \"x\", option, 2000000000";
    for (int i = 0; i < 1000; ++i) many += ", \"o\"";
    EXPECT_LE(param(many).options.size(), 256u);
    EXPECT_EQ(said_.size(), 1u);
    EXPECT_THAT(param("Param 0, \"x\", option, -5, 1").options, IsEmpty());
}

TEST_F(NodeScriptTest, CutsASourceThatIsTooLong) {
    const std::string text = "Source" + std::string(10 << 20, '\n');
    EXPECT_EQ(parse(text).source.size(), 20480u);
    EXPECT_THAT(said_, ElementsAre("x.node: the source is longer than 20480 bytes and was cut\n"));
    EXPECT_EQ(parse(std::string_view(text).substr(0, 6 + 20480)).source.size(), 20480u);
    EXPECT_THAT(said_, IsEmpty());
}

TEST_F(NodeScriptTest, SurvivesAnyBytes) {
    std::mt19937 random(5);
    const char* words[] = {"Type ",  "Source ",   "SourceLib ", "Name ",  "Input ",    "Param ",
                           "option", "direction", "color, ",    "float ", "\"text\",", "\"",
                           "7, ",    "-3 ",       "1e99 ",      "\n",     ",",         "position "};
    for (int round = 0; round < 5000; ++round) {
        std::string text;
        for (auto i = random() % 60; i > 0; --i) {
            if (random() % 5 == 0)
                text += static_cast<char>(random());
            else
                text += words[random() % std::size(words)];
        }
        const NodeScript script = parse(text);
        EXPECT_LE(script.inputNames.size(), 8u);
        EXPECT_LE(script.params.size(), 256u);
        EXPECT_LE(said_.size(), 1u);
    }
}

}  // namespace
