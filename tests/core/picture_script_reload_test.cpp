// Node scripts that change while the program runs: what their nodes draw, keep and tell.
#include "script_reload_fixture.h"

#include "support/broken_shaders.h"

namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

TEST_F(ScriptReloadTest, ANodeDrawsByTheNewShader) {
    expectPicture(node(), {0.25f, 0, 0, 1});
    const Node* before = &node();
    const float* value = floats("A");
    const ScriptChanges changes =
        save(text("Test", "Param 0, \"A\", float, 0, 1, 0.25\n", "vec4(0, A, 0, 1)"));
    EXPECT_EQ(&node(), before);
    EXPECT_EQ(floats("A"), value) << "the same parameters stay where they are";
    EXPECT_THAT(changes.otherParams, IsEmpty());
    EXPECT_FALSE(changes.otherInputs);
    EXPECT_EQ(changes.told, ".\\Scripts\\b.node: taken up by 1 node");
    expectPicture(node(), {0, 0.25f, 0, 1});
}

TEST_F(ScriptReloadTest, AFileThatSaysTheSameChangesNothing) {
    const ShaderProgram* program = node().program.get();
    EXPECT_EQ(take().told, "");
    EXPECT_EQ(node().program.get(), program);
}

TEST_F(ScriptReloadTest, AllNodesOfTheScriptFollowEachWithItsOwnValues) {
    engine_.createNode("t", "Test");
    *floats("A", "s") = 0.5f;
    *floats("A", "t") = 0.75f;
    const ScriptChanges changes =
        save(text("Test", "Param 0, \"B\", float, 0, 1, 1\nParam 1, \"A\", float, 0, 9, 0\n",
                  "vec4(A, B, 0, 1)"));
    EXPECT_EQ(changes.otherParams.size(), 2u);
    expectPicture(node("s"), {0.5f, 1, 0, 1});
    expectPicture(node("t"), {0.75f, 1, 0, 1});
}

TEST_F(ScriptReloadTest, ValuesStayWithTheirNamesAndNewOnesGetTheirDefault) {
    save(text("Test",
              "Param 0, \"A\", float, 0, 1, 0\nParam 1, \"D\", direction, 1, 2\n"
              "Param 2, \"C\", color, 0, 0, 0, 1\nParam 3, \"O\", option, 2, \"x\", \"y\", 0\n",
              "C"));
    *floats("A") = 0.5f;
    floats("D")[1] = 7;
    floats("C")[2] = 0.125f;
    auto& option = dynamic_cast<ValueInt&>(*engine_.findValue(&node(), "O"));
    *option.data = 1;
    save(text(
        "Test",
        "Param 0, \"O\", option, 3, \"w\", \"x\", \"y\", 0\nParam 1, \"C\", color, 1, 1, 1, 1\n"
        "Param 2, \"D\", position, 5, 6\nParam 3, \"A\", int, 2, 3, 2\n"
        "Param 4, \"B\", float, 0, 1, 0.75\n",
        "vec4(C.b, B, 0, 1)"));
    EXPECT_THAT(valueNames(), ElementsAre("O", "C", "D", "A", "B"));
    EXPECT_EQ(*floats("A"), 0.5f);
    EXPECT_EQ(dynamic_cast<ValueFloat&>(*engine_.findValue(&node(), "A")).min, 2.0f);
    EXPECT_EQ(dynamic_cast<ValueFloat&>(*engine_.findValue(&node(), "A")).decimals, 0);
    EXPECT_EQ(floats("D")[1], 7.0f);
    const auto& moved = dynamic_cast<ValueInt&>(*engine_.findValue(&node(), "O"));
    EXPECT_EQ(*moved.data, 2) << "the choice goes with its text";
    EXPECT_EQ(*floats("B"), 0.75f);
    expectPicture(node(), {0.125f, 0.75f, 0, 1});
}

TEST_F(ScriptReloadTest, AChoiceThatIsNotOfferedAnyMoreBecomesTheDefault) {
    save(text("Test", "Param 0, \"O\", option, 3, \"x\", \"y\", \"z\", 0\n", "vec4(1)"));
    *dynamic_cast<ValueInt&>(*engine_.findValue(&node(), "O")).data = 2;
    save(text("Test", "Param 0, \"O\", option, 2, \"x\", \"y\", 1\n", "vec4(1)"));
    EXPECT_EQ(*dynamic_cast<ValueInt&>(*engine_.findValue(&node(), "O")).data, 1);
}

TEST_F(ScriptReloadTest, AParameterOfAnotherKindStartsFromItsDefault) {
    *floats("A") = 0.5f;
    engine_.addAnimation("s", "A");
    const std::string asColour =
        text("Test", "Param 0, \"A\", color, 0.5, 0.25, 0, 1\n", "vec4(1)");
    save(asColour.substr(0, asColour.find("uniform float A;")) +
         "uniform vec4 A; void main() { frag[0] = A; }\n");
    EXPECT_EQ(floats("A")[1], 0.25f);
    ASSERT_NE(track("s.A"), nullptr);
    EXPECT_EQ(track("s.A")->target, nullptr) << "its keys drive nothing";
    EXPECT_EQ(track("s.A")->keys().size(), 1u);
    expectPicture(node(), {0.5f, 0.25f, 0, 1});
}

TEST_F(ScriptReloadTest, KeysGoOnDrivingTheirParameters) {
    engine_.time = 0;
    engine_.addAnimation("s", "A");
    track("s.A")->setKeys({{0, 0, kKeyLinear}, {1, 1, kKeyLinear}});
    engine_.update(0.25f);
    EXPECT_EQ(*floats("A"), 0.25f);
    save(text("Test", "Param 0, \"B\", float, 0, 1, 0\nParam 1, \"A\", float, 0, 1, 0\n",
              "vec4(A, 0, 0, 1)"));
    EXPECT_EQ(track("s.A")->target, floats("A"));
    engine_.update(0.5f);
    EXPECT_EQ(*floats("A"), 0.5f);
    EXPECT_EQ(*floats("B"), 0.0f);
    expectPicture(node(), {0.5f, 0, 0, 1});
}

TEST_F(ScriptReloadTest, WhatComesBackHasItsValueAndItsKeys) {
    *floats("A") = 0.5f;
    engine_.addAnimation("s", "A");
    save(text("Test", "", "vec4(1)"));
    EXPECT_THAT(valueNames(), IsEmpty());
    EXPECT_EQ(track("s.A")->target, nullptr);
    engine_.update(1);
    save(text("Test", "Param 0, \"A\", float, 0, 1, 0\n", "vec4(A, 0, 0, 1)"));
    EXPECT_EQ(*floats("A"), 0.5f);
    EXPECT_EQ(track("s.A")->target, floats("A"));
    engine_.setKeyframe("s", "A");
    EXPECT_EQ(track("s.A")->keys().size(), 2u);
}

TEST_F(ScriptReloadTest, WhatPointsAtRetiredParametersIsGoodAsLongAsTheReportLives) {
    const float* before = floats("A");
    *floats("A") = 0.5f;
    const ScriptChanges changes = save(text("Test", "", "vec4(1)"));
    ASSERT_EQ(changes.retired.size(), 1u);
    EXPECT_EQ(*before, 0.5f);
    EXPECT_EQ(changes.retired[0].values.at(0)->name, "A");
}

TEST_F(ScriptReloadTest, LinksStayWithTheNamesOfInputs) {
    PictureNode& p = addPicture("p");
    PictureNode& q = addPicture("q");
    save(text("Test", "Input 0, \"First\", \"x\"\nInput 1, \"Second\", \"x\"\n", "vec4(1)"));
    engine_.connect("p", "s", 0);
    engine_.connect("q", "s", 1);
    const ScriptChanges changes = save(text(
        "Test", "Input 0, \"New\", \"x\"\nInput 1, \"Second\", \"x\"\nInput 2, \"First\", \"x\"\n",
        "vec4(1)"));
    EXPECT_TRUE(changes.otherInputs);
    EXPECT_THAT(node().inputNames, ElementsAre("New", "Second", "First"));
    EXPECT_EQ(node().inputCount, 3);
    EXPECT_THAT(node().inputs, ElementsAre(nullptr, &q, &p));
    EXPECT_THAT(p.consumers, ElementsAre(&node()));
    engine_.deleteNode("p");
    EXPECT_THAT(node().inputs, ElementsAre(nullptr, &q, nullptr));
}

TEST_F(ScriptReloadTest, ALinkWhoseInputGoesIsCutAndComesBackWithIt) {
    PictureNode& p = addPicture("p");
    PictureNode& q = addPicture("q");
    const std::string two =
        text("Test", "Input 0, \"First\", \"x\"\nInput 1, \"Second\", \"x\"\n", "vec4(1)");
    save(two);
    engine_.connect("p", "s", 0);
    engine_.connect("q", "s", 1);
    save(text("Test", "Input 0, \"Second\", \"x\"\n", "vec4(1)"));
    EXPECT_THAT(node().inputs, ElementsAre(&q));
    EXPECT_THAT(p.consumers, IsEmpty());
    save(two);
    EXPECT_THAT(node().inputs, ElementsAre(&p, &q));
    EXPECT_THAT(p.consumers, ElementsAre(&node()));
    save(text("Test", "", "vec4(1)"));
    EXPECT_EQ(node().inputCount, 0);
    engine_.deleteNode("q");
    save(two);
    EXPECT_THAT(node().inputs, ElementsAre(&p, nullptr));
}

TEST_F(ScriptReloadTest, ALinkOfANodeToItselfStays) {
    save(text("Test", "Input 0, \"First\", \"x\"\n", "vec4(1)"));
    engine_.connect("s", "s", 0);
    save(text("Test", "Input 0, \"Zeroth\", \"x\"\nInput 1, \"First\", \"x\"\n", "vec4(1)"));
    EXPECT_THAT(node().inputs, ElementsAre(nullptr, &node()));
    EXPECT_THAT(node().consumers, ElementsAre(&node()));
}

TEST_F(ScriptReloadTest, ItsPictureIsReadByTheSameConsumersAsBefore) {
    write("c.node",
          text("Copy", "Input 0, \"First\", \"x\"\n", "texture(First, texcoord_Input[0])"));
    take("c.node");
    engine_.createNode("copy", "Copy");
    engine_.connect("s", "copy", 0);
    expectPicture(node("copy"), {0.25f, 0, 0, 1});
    save(text("Test", "", "vec4(0, 0, 1, 1)"));
    expectPicture(node("copy"), {0, 0, 1, 1});
}

TEST_F(ScriptReloadTest, AnErrorLeavesTheNodeRunningAndNamesTheLineOfTheFile) {
    *floats("A") = 0.5f;
    const ScriptChanges changes = save(broken("Param 0, \"B\", float, 0, 1, 1\n\n\n"));
    EXPECT_TRUE(node().hasError);
    // Name, Param, two empty lines, Source, #version, in, out, uniform, main.
    ASSERT_FALSE(node().faults().empty());
    EXPECT_THAT(node().faults().front(), HasSubstr("line 10: error"));
    EXPECT_THAT(node().faults().front(), HasSubstr("nothing"));
    EXPECT_THAT(changes.told, HasSubstr("b.node: its shader does not compile: line 10: error"));
    EXPECT_THAT(said_.text(), HasSubstr(changes.told + "\n"));
    EXPECT_THAT(changes.otherParams, IsEmpty());
    EXPECT_THAT(valueNames(), ElementsAre("A")) << "what runs keeps its parameters";
    expectPicture(node(), {0.5f, 0, 0, 1});
}

TEST_F(ScriptReloadTest, TheErrorGoesWhenItIsMended) {
    *floats("A") = 0.5f;
    save(broken());
    save(text("Test", "Param 0, \"A\", float, 0, 1, 0\n", "vec4(0, A, 0, 1)"));
    EXPECT_FALSE(node().hasError);
    EXPECT_THAT(node().faults(), IsEmpty());
    EXPECT_THAT(said_.text(), HasSubstr("b.node: mended, and taken up by 1 node\n"));
    expectPicture(node(), {0, 0.5f, 0, 1});
}

TEST_F(ScriptReloadTest, TheErrorGoesWhenTheFileIsBackAsItWas) {
    const std::string good = folder_.read("Scripts/b.node");
    save(broken());
    EXPECT_TRUE(node().hasError);
    save(good);
    EXPECT_FALSE(node().hasError);
    expectPicture(node(), {0.25f, 0, 0, 1});
}

TEST_F(ScriptReloadTest, ANodeMadeWhileTheScriptIsBrokenRunsWhatRanBefore) {
    save(broken());
    engine_.createNode("t", "Test");
    EXPECT_TRUE(node("t").hasError);
    EXPECT_THAT(node("t").faults().front(), HasSubstr("nothing"));
    expectPicture(node("t"), {0.25f, 0, 0, 1});
    save(text("Test", "", "vec4(1)"));
    EXPECT_FALSE(node("t").hasError);
}

TEST_F(ScriptReloadTest, ANodeMadeWhenNoneRunsTellsTheFaultsOfTheFileAsItIs) {
    save(broken());
    engine_.deleteNode("s");
    save(text("Test", "", "vec4(worse)"));
    engine_.createNode("t", "Test");
    ASSERT_FALSE(node("t").faults().empty());
    EXPECT_THAT(node("t").faults().front(), HasSubstr("worse"));
}

TEST_F(ScriptReloadTest, AScriptThatNeverRanIsMended) {
    write("c.node", text("Other", "", "vec4(nothing)"));
    take("c.node");
    engine_.createNode("o", "Other");
    EXPECT_TRUE(node("o").hasError);
    EXPECT_THAT(node("o").faults().front(), HasSubstr("line 7: error"));
    write("c.node", text("Other", "Param 0, \"A\", float, 0, 1, 1\n", "vec4(worse)"));
    take("c.node");
    EXPECT_THAT(node("o").faults().front(), HasSubstr("worse"));
    write("c.node", text("Other", "Param 0, \"A\", float, 0, 1, 1\n", "vec4(A)"));
    take("c.node");
    EXPECT_FALSE(node("o").hasError);
    expectPicture(node("o"), {1, 1, 1, 1});
}

TEST_F(ScriptReloadTest, OneFaultIsToldOnceForAllNodes) {
    engine_.createNode("t", "Test");
    const std::size_t before = BadFileCount();
    save(broken());
    EXPECT_TRUE(node("s").hasError);
    EXPECT_TRUE(node("t").hasError);
    EXPECT_EQ(BadFileCount(), before + 1);
}

TEST_F(ScriptReloadTest, ANodeWhoseProgramFailsAloneKeepsItsLastOne) {
    engine_.createNode("t", "Test");
    *floats("A", "t") = 0.5f;
    write("b.node", text("Better", "Param 0, \"B\", float, 0, 1, 1\n", "vec4(0, B, 0, 1)"));
    {
        const BrokenShaders second("uniform vec4 C", "", 1);
        const ScriptChanges changes = take();
        EXPECT_EQ(second.count(), 1);
        EXPECT_TRUE(changes.anyFault);
        EXPECT_THAT(changes.told, HasSubstr("b.node: its shader does not compile"));
        EXPECT_EQ(changes.otherParams.size(), 1u);
    }
    EXPECT_FALSE(node("s").hasError);
    EXPECT_TRUE(node("t").hasError);
    EXPECT_THAT(node("t").faults(), Not(IsEmpty()));
    EXPECT_EQ(*engine_.nodeTypes.find("t"), "Better") << "its old type is none any more";
    EXPECT_THAT(valueNames("t"), ElementsAre("A"));
    expectPicture(node("s"), {0, 1, 0, 1});
    expectPicture(node("t"), {0.5f, 0, 0, 1});
    EXPECT_EQ(take().told, ".\\Scripts\\b.node: mended, and taken up by 2 nodes");
    EXPECT_FALSE(node("t").hasError);
    expectPicture(node("t"), {0, 1, 0, 1});
}

TEST_F(ScriptReloadTest, AProjectSavedAfterwardsIsThatOfALoad) {
    addPicture("p");
    write("c.node", text("Bare", "", "vec4(1)"));
    take("c.node");
    engine_.createNode("bare", "Bare");
    engine_.createNode("t", "Test");
    write("c.node",
          text("Bare", "Input 0, \"First\", \"x\"\nParam 0, \"A\", float, 0, 1, 1\n", "vec4(A)"));
    take("c.node");
    engine_.connect("p", "bare", 0);
    const std::vector<std::uint8_t> bytes = engine_.sceneBytes();
    ASSERT_TRUE(engine_.save("again.vorn"));
    engine_.clearScene();
    ASSERT_TRUE(engine_.load("again.vorn", true, ""));
    EXPECT_EQ(engine_.sceneBytes(), bytes);
}

}  // namespace
