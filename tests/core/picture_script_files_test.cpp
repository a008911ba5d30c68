// Files of node scripts that come, go and change their names while the program runs: which types
// are on offer, and which file is that of a node.
#include "script_reload_fixture.h"

namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

TEST_F(ScriptReloadTest, ANewScriptIsOfferedInItsPlace) {
    write("a.node", text("Early", "", "vec4(1)"));
    write("c.node", text("Late", "", "vec4(1)"));
    EXPECT_EQ(take("c.node").told, ".\\Scripts\\c.node: new node type \"Late\"");
    take("a.node");
    EXPECT_THAT(engine_.typeNames, ElementsAre("Early", "Test", "Late", "Picture"));
    EXPECT_EQ(engine_.scripts.at(2).category, "cat");
    EXPECT_TRUE(engine_.createNode("l", "Late"));
    expectPicture(node("l"), {1, 1, 1, 1});
}

TEST_F(ScriptReloadTest, ACopyOfAScriptIsToldAsOneAndLeavesTheNodesToTheirs) {
    write("a.node", text("Test", "", "vec4(0, 0, 1, 1)"));
    EXPECT_EQ(take("a.node").told, ".\\Scripts\\a.node: another script of the type \"Test\"");
    write("a.node", text("Copy", "", "vec4(0, 0, 1, 1)"));
    EXPECT_EQ(take("a.node").told, ".\\Scripts\\a.node: taken up");
    EXPECT_THAT(engine_.typeNames, ElementsAre("Copy", "Test", "Picture"));
    expectPicture(node(), {0.25f, 0, 0, 1});
}

TEST_F(ScriptReloadTest, WhatEditorsLeaveBesideAFileIsNoNewScript) {
    for (const char* name : {"b.node~", ".b.node", "#b.node#", ".b.node.swp", "b.node.bak"}) {
        write(name, text("Copy", "", "vec4(1)"));
        EXPECT_EQ(take(name).told, "") << name;
    }
    EXPECT_THAT(engine_.typeNames, ElementsAre("Test", "Picture"));
}

TEST_F(ScriptReloadTest, AFileWithoutANameLeavesEverythingAsItWas) {
    const std::size_t before = BadFileCount();
    EXPECT_EQ(save("").told, ".\\Scripts\\b.node: cannot be taken up: it has no Name");
    write("c.node", "Type x\n");
    EXPECT_EQ(take("c.node").told, ".\\Scripts\\c.node: cannot be taken up: it has no Name");
    EXPECT_EQ(BadFileCount(), before + 2);
    EXPECT_THAT(engine_.typeNames, ElementsAre("Test", "Picture"));
    EXPECT_FALSE(node().hasError);
    expectPicture(node(), {0.25f, 0, 0, 1});
}

TEST_F(ScriptReloadTest, AFileThatCannotBeReadLeavesEverythingAsItWas) {
    std::filesystem::remove(folder_.file("Scripts/b.node"));
    std::filesystem::create_directory(folder_.file("Scripts/b.node"));
    EXPECT_EQ(take().told, ".\\Scripts\\b.node: cannot be read, or is longer than 16 MB");
    expectPicture(node(), {0.25f, 0, 0, 1});
}

TEST_F(ScriptReloadTest, ADeletedFileLeavesNodesAndTypeAsTheyAre) {
    const std::string before = said_.text();
    EXPECT_EQ(lose("b.node").told,
              ".\\Scripts\\b.node: has gone; its type and its 1 node stay till the end");
    EXPECT_EQ(said_.text().substr(before.size()),
              ".\\Scripts\\b.node: has gone; its type and its 1 node stay till the end\n");
    EXPECT_EQ(lose("never.node").told, "");
    EXPECT_FALSE(node().hasError);
    EXPECT_THAT(engine_.typeNames, ElementsAre("Test", "Picture"));
    expectPicture(node(), {0.25f, 0, 0, 1});
}

TEST_F(ScriptReloadTest, ACopyTakesOverTheNodesOfAFileThatGoesLater) {
    write("z.node", folder_.read("Scripts/b.node"));
    take("z.node");
    EXPECT_EQ(lose("b.node").told,
              ".\\Scripts\\b.node: has gone; its type and its 1 node go on with "
              ".\\Scripts\\z.node");
    EXPECT_THAT(engine_.typeNames, ElementsAre("Test", "Picture"));
    EXPECT_EQ(engine_.scripts.front().fileName, ".\\Scripts\\z.node");
    write("z.node", text("Test", "", "vec4(0, 1, 0, 1)"));
    EXPECT_EQ(take("z.node").told, ".\\Scripts\\z.node: taken up by 1 node");
    expectPicture(node(), {0, 1, 0, 1});
    EXPECT_EQ(lose("z.node").told,
              ".\\Scripts\\z.node: has gone; its type and its 1 node stay till the end");
}

TEST_F(ScriptReloadTest, NodesTakeUpTheTextOfTheCopyThatTakesThemOver) {
    *floats("A") = 0.5f;
    write("z.node", text("Test", "Param 0, \"A\", float, 0, 1, 0\n", "vec4(0, A, 0, 1)"));
    take("z.node");
    save(broken());
    const ScriptChanges changes = lose("b.node");
    EXPECT_EQ(changes.told, ".\\Scripts\\z.node: mended, and taken up by 1 node");
    EXPECT_FALSE(changes.anyFault);
    EXPECT_EQ(engine_.scripts.size(), 1u);
    EXPECT_FALSE(node().hasError);
    expectPicture(node(), {0, 0.5f, 0, 1});
    engine_.createNode("t", "Test");
    EXPECT_FALSE(node("t").hasError) << "the faults went with their file";
}

TEST_F(ScriptReloadTest, NodesRunOnWhenTheCopyThatTakesThemOverDoesNotCompile) {
    write("z.node", broken());
    take("z.node");
    EXPECT_THAT(lose("b.node").told, HasSubstr("z.node: its shader does not compile: line 7"));
    EXPECT_TRUE(node().hasError);
    expectPicture(node(), {0.25f, 0, 0, 1});
    engine_.createNode("t", "Test");
    EXPECT_TRUE(node("t").hasError);
    expectPicture(node("t"), {0.25f, 0, 0, 1});
    write("z.node", text("Test", "", "vec4(0, 1, 0, 1)"));
    take("z.node");
    EXPECT_FALSE(node().hasError);
    expectPicture(node(), {0, 1, 0, 1});
}

TEST_F(ScriptReloadTest, NodesRunOnWithTheFaultsOfACopyThatRanBefore) {
    write("a.node", text("Test", "", "vec4(0, 0, 1, 1)"));
    take("a.node");
    engine_.createNode("t", "Test");
    write("a.node", broken());
    take("a.node");
    EXPECT_FALSE(node("s").hasError);
    lose("b.node");
    ASSERT_FALSE(node("s").faults().empty());
    EXPECT_THAT(node("s").faults().front(), HasSubstr("nothing"));
    expectPicture(node("s"), {0.25f, 0, 0, 1});
    expectPicture(node("t"), {0, 0, 1, 1});
    write("a.node", text("Test", "", "vec4(0, 1, 0, 1)"));
    EXPECT_EQ(take("a.node").told, ".\\Scripts\\a.node: mended, and taken up by 2 nodes");
    expectPicture(node("s"), {0, 1, 0, 1});
    expectPicture(node("t"), {0, 1, 0, 1});
}

TEST_F(ScriptReloadTest, ACopyWithoutNodesGoesFromTheListWithItsFile) {
    write("a.node", text("Test", "", "vec4(0, 0, 1, 1)"));
    take("a.node");
    const ShaderProgram* program = node().program.get();
    EXPECT_EQ(lose("a.node").told,
              ".\\Scripts\\a.node: has gone; its type goes on with .\\Scripts\\b.node");
    EXPECT_THAT(engine_.typeNames, ElementsAre("Test", "Picture"));
    EXPECT_EQ(node().program.get(), program);
}

TEST_F(ScriptReloadTest, AFileWithAnotherNameGoesToItsPlaceInTheList) {
    write("c.node", text("Late", "", "vec4(1)"));
    take("c.node");
    std::filesystem::rename(folder_.file("Scripts/b.node"), folder_.file("Scripts/z.node"));
    engine_.takeScriptFiles({{"b.node", true}, {"z.node", false}});
    EXPECT_THAT(engine_.typeNames, ElementsAre("Late", "Test", "Picture"));
    write("y.node", text("Later", "", "vec4(1)"));
    take("y.node");
    EXPECT_THAT(engine_.typeNames, ElementsAre("Late", "Later", "Test", "Picture"));
}

TEST_F(ScriptReloadTest, NodesGoWithAFileThatIsGivenAnotherName) {
    std::filesystem::rename(folder_.file("Scripts/b.node"), folder_.file("Scripts/z.node"));
    const ScriptChanges changes = engine_.takeScriptFiles({{"b.node", true}, {"z.node", false}});
    EXPECT_EQ(changes.told, ".\\Scripts\\b.node: is now .\\Scripts\\z.node");
    EXPECT_THAT(engine_.typeNames, ElementsAre("Test", "Picture"));
    write("z.node", text("Test", "", "vec4(0, 1, 0, 1)"));
    take("z.node");
    expectPicture(node(), {0, 1, 0, 1});
}

TEST_F(ScriptReloadTest, NodesFollowTheNameOfTheirType) {
    save(text("Better", "Param 0, \"A\", float, 0, 1, 0\n", "vec4(A)"));
    EXPECT_THAT(engine_.typeNames, ElementsAre("Better", "Picture"));
    EXPECT_EQ(*engine_.nodeTypes.find("s"), "Better");
    ASSERT_TRUE(engine_.save("again.vorn"));
    engine_.clearScene();
    ASSERT_TRUE(engine_.load("again.vorn", true, ""));
    EXPECT_EQ(*floats("A"), 0.25f);
}

TEST_F(ScriptReloadTest, ANameThatAnotherTypeHasIsNotTakenUp) {
    EXPECT_EQ(save(text("Picture", "", "vec4(1)")).told,
              ".\\Scripts\\b.node: cannot be taken up: there is another type \"Picture\"");
    EXPECT_EQ(*engine_.nodeTypes.find("s"), "Test");
    expectPicture(node(), {0.25f, 0, 0, 1});
}

TEST_F(ScriptReloadTest, NamesMoveAlongARowOfFilesAtOnce) {
    write("c.node", text("Other", "", "vec4(0, 0, 1, 1)"));
    write("d.node", text("Third", "", "vec4(1)"));
    engine_.takeScriptFiles({{"c.node", false}, {"d.node", false}});
    engine_.createNode("o", "Other");
    const std::size_t before = BadFileCount();
    write("b.node", text("Other", "", "vec4(0, 1, 0, 1)"));
    write("c.node", text("Third", "", "vec4(0, 1, 1, 1)"));
    write("d.node", text("Fourth", "", "vec4(1)"));
    engine_.takeScriptFiles({{"b.node", false}, {"c.node", false}, {"d.node", false}});
    EXPECT_EQ(BadFileCount(), before);
    EXPECT_THAT(engine_.typeNames, ElementsAre("Other", "Third", "Fourth", "Picture"));
    EXPECT_EQ(*engine_.nodeTypes.find("s"), "Other");
    EXPECT_EQ(*engine_.nodeTypes.find("o"), "Third");
    expectPicture(node("s"), {0, 1, 0, 1});
    expectPicture(node("o"), {0, 1, 1, 1});
}

TEST_F(ScriptReloadTest, TwoFilesExchangeTheirNames) {
    write("c.node", text("Other", "", "vec4(0, 0, 1, 1)"));
    take("c.node");
    engine_.createNode("o", "Other");
    write("b.node", text("Other", "", "vec4(0, 1, 0, 1)"));
    write("c.node", text("Test", "", "vec4(0, 1, 1, 1)"));
    EXPECT_FALSE(engine_.takeScriptFiles({{"b.node", false}, {"c.node", false}}).anyFault);
    EXPECT_THAT(engine_.typeNames, ElementsAre("Other", "Test", "Picture"));
    EXPECT_EQ(*engine_.nodeTypes.find("s"), "Other");
    EXPECT_EQ(*engine_.nodeTypes.find("o"), "Test");
    expectPicture(node("s"), {0, 1, 0, 1});
    expectPicture(node("o"), {0, 1, 1, 1});
}

TEST_F(ScriptReloadTest, NamesDoNotMoveWhereTheLastOneIsTaken) {
    write("c.node", text("Other", "", "vec4(0, 0, 1, 1)"));
    take("c.node");
    const std::size_t before = BadFileCount();
    write("b.node", text("Other", "", "vec4(1)"));
    write("c.node", text("Picture", "", "vec4(1)"));
    const ScriptChanges changes = engine_.takeScriptFiles({{"b.node", false}, {"c.node", false}});
    EXPECT_TRUE(changes.anyFault);
    EXPECT_EQ(BadFileCount(), before + 2);
    EXPECT_THAT(engine_.typeNames, ElementsAre("Test", "Other", "Picture"));
    expectPicture(node(), {0.25f, 0, 0, 1});
}

TEST_F(ScriptReloadTest, OnlyOneFileGetsANameThatTwoWant) {
    write("c.node", text("Other", "", "vec4(1)"));
    write("d.node", text("Third", "", "vec4(1)"));
    engine_.takeScriptFiles({{"c.node", false}, {"d.node", false}});
    const std::size_t before = BadFileCount();
    write("b.node", text("Third", "", "vec4(1)"));
    write("c.node", text("Third", "", "vec4(1)"));
    write("d.node", text("Fourth", "", "vec4(1)"));
    engine_.takeScriptFiles({{"b.node", false}, {"c.node", false}, {"d.node", false}});
    EXPECT_EQ(BadFileCount(), before + 1);
    EXPECT_THAT(engine_.typeNames, ElementsAre("Third", "Other", "Fourth", "Picture"));
}

}  // namespace
