// The commands, each given as the user gives it: a press of its button or its keys.
#include "authoring_fixture.h"

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

using UiCommandTest = AuthoringTest;

TEST_F(UiCommandTest, SaveLeavesTheProjectAndAStampedPair) {
    makeScene();
    edit();
    press(ui.saveButton);
    EXPECT_THAT(filesOf(".vorn"), UnorderedElementsAre("work.vorn", "work2026-2-9-24-60-7.vorn"));
    EXPECT_THAT(filesOf(".vorngui"),
                UnorderedElementsAre("work.vorngui", "work2026-2-9-24-60-7.vorngui"));
    EXPECT_EQ(folder.read("work.vorn"), folder.read("work2026-2-9-24-60-7.vorn"));
    EXPECT_EQ(folder.read("work.vorngui"), folder.read("work2026-2-9-24-60-7.vorngui"));
    EXPECT_THAT(ui.backupHistory,
                ElementsAre(".\\work2026-2-9-24-60-7.vorngui", ".\\work2026-2-9-24-60-7.vorn"));
    EXPECT_THAT(questions, IsEmpty());
}

TEST_F(UiCommandTest, SaveWritesTheValuesOfTimeZero) {
    makeScene();
    edit();
    engine.update(0);
    node("a").size = 1;
    engine.addAnimation("a", "Size");
    engine.update(10);
    node("a").size = 3;
    engine.setKeyframe("a", "Size");
    ui.editorTime = 10;
    ctrlKey('S');
    EXPECT_EQ(engine.time, 10);
    Engine other(types(), nullptr);
    ASSERT_TRUE(other.load("work.vorn", true, ""));
    EXPECT_EQ(dynamic_cast<TestNode&>(*other.findNode("a")).size, 1);
}

TEST_F(UiCommandTest, SaveTakesTheBoxesPlacesAndKeepsThem) {
    makeScene();
    edit();
    ui.nodeCanvas->boxOf("a")->SetPosition(320, ui.nodeCanvas->y + 75);
    press(ui.saveButton);
    EXPECT_EQ(ui.nodePositions.find("a")->x, 320);
    EXPECT_EQ(ui.nodePositions.find("a")->y, 75);
    // However often: a box must not wander.
    for (int i = 0; i < 3; ++i) {
        press(ui.loadButton);
        press(ui.saveButton);
    }
    EXPECT_EQ(ui.nodeCanvas->boxOf("a")->x, 320);
    EXPECT_EQ(ui.nodeCanvas->boxOf("a")->y, ui.nodeCanvas->y + 75);
}

TEST_F(UiCommandTest, SaveGoesBesideTheProjectWhenItsFolderIsOfAnotherMachine) {
    makeScene();
    engine.projectFolder = "c:\\temp\\K4409\\";
    edit();
    press(ui.saveButton);
    EXPECT_TRUE(exists("work.vorn"));
    EXPECT_EQ(engine.projectFolder, ".");
    EXPECT_THAT(said.text(), HasSubstr("The folder \"c:\\temp\\K4409\\\" is not here."));
}

TEST_F(UiCommandTest, ASaveThatFailsSaysSoAndKeepsNoBackup) {
    makeScene();
    edit();
    engine.projectName = "no\\such\\folder";
    press(ui.saveButton);
    EXPECT_THAT(ui.backupHistory, IsEmpty());
    EXPECT_THAT(said.text(), HasSubstr("cannot be written"));
    EXPECT_FALSE(ui.MayQuit() && questions.empty()) << "the work is still unsaved";
}

TEST_F(UiCommandTest, ReloadBringsBackWhatWasSaved) {
    makeScene();
    edit();
    node("a").size = 2;
    press(ui.saveButton);
    node("a").size = 4;
    engine.deleteNode("b");
    ui.Rebuild(UI_Engine::Boxes::Capture);
    press(ui.loadButton);
    EXPECT_THAT(questions, ElementsAre("Load and clear scene?"));
    EXPECT_EQ(node("a").size, 2);
    EXPECT_NE(ui.nodeCanvas->boxOf("b"), nullptr);
}

TEST_F(UiCommandTest, ARefusedReloadChangesNothing) {
    makeScene();
    edit();
    press(ui.saveButton);
    node("a").size = 4;
    ui.nodeCanvas->boxOf("a")->SetPosition(321, 654);
    ui.nodeCanvas->capturePlaces();
    answer = MessageAnswer::Cancel;
    ctrlKey('O');
    EXPECT_EQ(questions.size(), 1u);
    EXPECT_EQ(node("a").size, 4);
    EXPECT_EQ(ui.nodeCanvas->boxOf("a")->x, 321);
    EXPECT_EQ(ui.nodePositions.find("a")->x, 321);
}

TEST_F(UiCommandTest, ReloadWithoutAFileAsksNothingAndKeepsTheScene) {
    makeScene();
    edit();
    press(ui.loadButton);
    EXPECT_THAT(questions, IsEmpty());
    EXPECT_EQ(engine.nodes.size(), 3u);
}

TEST_F(UiCommandTest, AProgressThatDrawsDuringAReloadMeetsNoNodeThatHasGone) {
    makeScene();
    engine.addAnimation("a", "Size");
    edit();
    ui.OpenPanel("a");
    press(ui.saveButton);
    int draws = 0;
    engine.showLoadProgress = [&](double) {
        ui.DrawFrame();
        ++draws;
    };
    press(ui.loadButton);
    EXPECT_GT(draws, 0);
    frame();
    ui.DrawFrame();
}

TEST_F(UiCommandTest, AFileThatIsNoProjectLeavesAnEmptySceneThatHoldsTogether) {
    makeScene();
    edit();
    ui.OpenPanel("a");
    folder.write("work.vorn", "something else");
    press(ui.loadButton);
    EXPECT_EQ(engine.nodes.size(), 0u);
    EXPECT_THAT(ui.propertiesPanel->children, IsEmpty());
    EXPECT_THAT(ui.outputs, IsEmpty());
    EXPECT_EQ(ui.selectedOutput, -1);
    frame();
    ui.DrawFrame();
}

TEST_F(UiCommandTest, ImportAddsPrefixedNodesBesideTheOthers) {
    makeScene();
    edit();
    press(ui.saveButton);
    std::filesystem::create_directory(folder.path() / "other");
    for (const char* ending : {".vorn", ".vorngui"}) {
        std::filesystem::copy_file(folder.path() / (std::string("work") + ending),
                                   folder.path() / "other" / (std::string("part") + ending));
    }
    ui.nodePositions["a"] = {500, 40};
    ui.nodeCanvas->rebuildBoxes();
    chosenFile = (folder.path() / "other" / "part.vorn").string();
    press(ui.importButton);
    EXPECT_THAT(patterns, ElementsAre("*.vorn"));
    EXPECT_THAT(questions, IsEmpty());
    ASSERT_NE(engine.findNode("part-b"), nullptr);
    EXPECT_EQ(engine.findNode("part-b")->getInput(0), engine.findNode("part-a"));
    EXPECT_NE(ui.nodeCanvas->boxOf("part-a"), nullptr);
    EXPECT_EQ(ui.nodePositions.find("a")->x, 500) << "what was there stays";
    EXPECT_EQ(ui.outputs.size(), 2u);
}

TEST_F(UiCommandTest, ACancelledImportLeavesEverything) {
    makeScene();
    edit();
    ctrlKey('I');
    EXPECT_EQ(patterns.size(), 1u);
    EXPECT_EQ(engine.nodes.size(), 3u);
}

TEST_F(UiCommandTest, AnImportOfANameWithoutADotDoesNothing) {
    makeScene();
    edit();
    folder.write("part", "");
    chosenFile = "part";
    press(ui.importButton);
    EXPECT_EQ(engine.nodes.size(), 3u);
}

TEST_F(UiCommandTest, NewAsksAndThenErases) {
    makeScene();
    engine.addAnimation("a", "Size");
    edit();
    ui.OpenPanel("a");
    ASSERT_EQ(ui.imagePanel->pins.size(), 1u);
    press(ui.newButton);
    EXPECT_THAT(questions, ElementsAre("Erase all data and content?"));
    EXPECT_EQ(engine.nodes.size(), 0u);
    EXPECT_THAT(ui.nodeCanvas->boxes(), IsEmpty());
    EXPECT_THAT(ui.propertiesPanel->children, IsEmpty());
    EXPECT_THAT(ui.imagePanel->pins, IsEmpty());
    EXPECT_THAT(ui.keyTimeline->tracks, IsEmpty());
    EXPECT_EQ(ui.keyTimeline->ChosenTrack(), nullptr);
    EXPECT_EQ(ui.selectedOutput, -1);
    frame();
    ui.DrawFrame();
}

TEST_F(UiCommandTest, ACancelledNewLeavesEverything) {
    makeScene();
    edit();
    answer = MessageAnswer::Cancel;
    ctrlKey('N');
    EXPECT_EQ(questions.size(), 1u);
    EXPECT_EQ(engine.nodes.size(), 3u);
}

TEST_F(UiCommandTest, UndoGoesBackSaveBySave) {
    makeScene();
    edit();
    for (const float size : {1.0f, 2.0f, 3.0f}) {
        node("a").size = size;
        ++localTime.tm_sec;
        press(ui.saveButton);
    }
    EXPECT_EQ(ui.backupHistory.size(), 6u);
    node("a").size = 4;
    for (const float size : {3.0f, 2.0f, 1.0f}) {
        press(ui.undoButton);
        EXPECT_EQ(node("a").size, size);
    }
    EXPECT_THAT(ui.backupHistory, IsEmpty());
    EXPECT_EQ(filesOf(".vorn").size(), 4u) << "backups stay on the disk";
    press(ui.undoButton);
    EXPECT_EQ(node("a").size, 1);
}

TEST_F(UiCommandTest, UndoWithoutASaveOrWithOneEntryDoesNothing) {
    makeScene();
    edit();
    press(ui.undoButton);
    ui.backupHistory = {"work.vorn"};
    press(ui.undoButton);
    EXPECT_EQ(ui.backupHistory.size(), 1u);
    EXPECT_EQ(engine.nodes.size(), 3u);
    EXPECT_THAT(questions, IsEmpty());
}

TEST_F(UiCommandTest, ARefusedUndoCanBeAskedForAgain) {
    makeScene();
    edit();
    press(ui.saveButton);
    answer = MessageAnswer::Cancel;
    ctrlKey('Z');
    EXPECT_EQ(ui.backupHistory.size(), 2u);
    std::filesystem::remove(folder.path() / "work2026-2-9-24-60-7.vorn");
    ctrlKey('Z');
    EXPECT_THAT(ui.backupHistory, IsEmpty()) << "a backup that has gone is passed over";
    EXPECT_EQ(engine.nodes.size(), 3u);
}

TEST_F(UiCommandTest, PlayAndPauseMoveTheMusicAlong) {
    edit();
    engine.update(2);
    soundNotes.calls.clear();
    press(ui.playButton);
    EXPECT_TRUE(ui.playing);
    EXPECT_TRUE(ui.playButton->keyed);
    EXPECT_THAT(soundNotes.calls, ElementsAre("play"));
    soundNotes.calls.clear();
    key(kKeySpace);
    EXPECT_FALSE(ui.playing);
    EXPECT_FALSE(ui.playButton->keyed);
    EXPECT_THAT(soundNotes.calls, ElementsAre("position 2000", "pause"));
}

TEST_F(UiCommandTest, AHeldSpaceTogglesOnce) {
    edit();
    hold(kKeySpace, 5, 5);
    EXPECT_TRUE(ui.playing);
    send(kMessageKeyUp, 5, 5, kKeySpace);
    send(kMessageKeyDown, 5, 5, kKeySpace);
    EXPECT_FALSE(ui.playing);
}

TEST_F(UiCommandTest, StopGoesToTheStartAndPlaysOn) {
    edit();
    press(ui.playButton);
    ui.editorTime = 12;
    press(ui.stopButton);
    EXPECT_EQ(ui.editorTime, 0);
    EXPECT_TRUE(ui.playing);
}

// The engine shows the clock's place only with the next frame.
TEST_F(UiCommandTest, PlayRightAfterStopPlaysTheMusicFromTheStart) {
    edit();
    press(ui.playButton);
    ui.editorTime = 30;
    engine.update(30);
    press(ui.playButton);
    soundNotes.calls.clear();
    press(ui.stopButton);
    key(kKeySpace);
    EXPECT_THAT(soundNotes.calls,
                ElementsAre("position 0", "position 30000", "position 0", "play"));
    key(kKeySpace);
    frame();
    soundNotes.calls.clear();
    key(kKeySpace);
    EXPECT_THAT(soundNotes.calls, ElementsAre("position 0", "play"));
}

TEST_F(UiCommandTest, StepsAreOfTheChosenRateAndEndAtZero) {
    edit();
    ui.editorTime = 1;
    press(ui.stepForwardButton);
    EXPECT_FLOAT_EQ(ui.editorTime, 1.1f);
    key(kKeyLeft);
    EXPECT_FLOAT_EQ(ui.editorTime, 1.0f);
    ui.editorTime = 0.05f;
    press(ui.stepBackButton);
    EXPECT_EQ(ui.editorTime, 0);
    for (const int rate : {60, 30, 15, 10}) {
        ui.editorTime = 2;
        ui.stepRateIndex = rate == 60 ? 0 : rate == 30 ? 1 : rate == 15 ? 2 : 3;
        key(kKeyRight);
        EXPECT_FLOAT_EQ(ui.editorTime, 2 + 1 / static_cast<float>(rate));
    }
}

TEST_F(UiCommandTest, StepsPastTheDemosEndAreNotHeldBack) {
    edit();
    ui.editorTime = 500;
    key(kKeyRight);
    EXPECT_GT(ui.editorTime, 500);
}

TEST_F(UiCommandTest, LayoutButtonsTakeArgumentZeroOnly) {
    edit();
    press(ui.layoutButton1);
    EXPECT_EQ(ui.layoutMode, 1);
    EXPECT_TRUE(ui.nodeCanvas->hidden);
    EXPECT_FALSE(ui.keyTimeline->hidden);
    EXPECT_TRUE(ui.layoutButton1->keyed);
    EXPECT_FALSE(ui.layoutButton0->keyed);
    ui.OnCommand(ui.layoutButton2, 1);
    EXPECT_EQ(ui.layoutMode, 1);
    press(ui.layoutButton2);
    EXPECT_TRUE(ui.nodeCanvas->hidden);
    EXPECT_TRUE(ui.keyTimeline->hidden);
    EXPECT_TRUE(ui.layoutButton2->keyed);
    press(ui.layoutButton0);
    EXPECT_FALSE(ui.nodeCanvas->hidden);
    EXPECT_TRUE(ui.keyTimeline->hidden);
}

TEST_F(UiCommandTest, AnUnknownLayoutModeLeavesWhatIsSeen) {
    edit();
    ui.SetLayoutMode(7);
    EXPECT_FALSE(ui.nodeCanvas->hidden);
    EXPECT_TRUE(ui.keyTimeline->hidden);
    EXPECT_FALSE(ui.layoutButton0->keyed);
}

TEST_F(UiCommandTest, HideLeavesThePictureAndAWayBack) {
    edit();
    press(ui.layoutButton1);
    EXPECT_TRUE(ui.restorePanel->hidden);
    press(ui.hideEditorButton);
    EXPECT_FALSE(ui.restorePanel->hidden);
    EXPECT_TRUE(ui.topPanel->hidden && ui.leftPanel->hidden && ui.rightPanel->hidden &&
                ui.propertiesPanel->hidden);
    EXPECT_TRUE(ui.nodeCanvas->hidden && ui.keyTimeline->hidden);
    EXPECT_TRUE(ui.layoutButton0->hidden && ui.layoutButton1->hidden && ui.layoutButton2->hidden);
    press(ui.showEditorButton);
    EXPECT_TRUE(ui.restorePanel->hidden);
    EXPECT_FALSE(ui.topPanel->hidden || ui.leftPanel->hidden || ui.rightPanel->hidden ||
                 ui.propertiesPanel->hidden);
    EXPECT_TRUE(ui.nodeCanvas->hidden);
    EXPECT_FALSE(ui.keyTimeline->hidden);
    EXPECT_FALSE(ui.layoutButton0->hidden);
}

TEST_F(UiCommandTest, AChoiceOfLayoutWhileTheEditorIsHiddenShowsNothing) {
    edit();
    ui.HideEditor();
    ui.SetLayoutMode(kLayoutKeyTimeline);
    EXPECT_TRUE(ui.nodeCanvas->hidden && ui.keyTimeline->hidden);
    EXPECT_GT(ui.imagePanel->width, 1900) << "the picture keeps the whole screen";
    ui.SetLayoutMode(kLayoutNodeCanvas);
    EXPECT_TRUE(ui.nodeCanvas->hidden && ui.keyTimeline->hidden);
    ui.ShowEditor();
    EXPECT_FALSE(ui.nodeCanvas->hidden);
}

TEST_F(UiCommandTest, GivingUpBringsAHiddenEditorBack) {
    edit();
    ui.HideEditor();
    EXPECT_TRUE(ui.GiveUp());
    EXPECT_TRUE(ui.restorePanel->hidden);
    EXPECT_FALSE(ui.topPanel->hidden);
    EXPECT_FALSE(ui.GiveUp());
}

TEST_F(UiCommandTest, ApplyGivesEmptyFoldersTheProjectsOwn) {
    edit();
    engine.musicFile = "";
    engine.dataFolder = ".\\data\\";
    press(ui.settingsApplyButton);
    EXPECT_EQ(engine.musicFile, ".");
    EXPECT_EQ(ui.pathBox1->buffer, ".");
    EXPECT_EQ(*ui.musicFileValue.data, ".");
    EXPECT_EQ(engine.dataFolder, ".\\data\\");
    engine.dataFolder = "";
    ui.OnValueEdited(ui.saveButton);
    EXPECT_EQ(engine.dataFolder, "") << "no other sender does it";
    ui.OnValueEdited(ui.settingsApplyButton);
    EXPECT_EQ(ui.pathBox2->buffer, ".");
}

TEST_F(UiCommandTest, KeysAreTheTextBoxsWhileItIsTypedInto) {
    edit();
    const UI_TextBox& box = *ui.pathBox1;
    click(box.x + box.width / 2, box.y + 10);
    ASSERT_TRUE(box.focused);
    send(kMessageKeyDown, 5, 5, kKeySpace);
    EXPECT_FALSE(ui.playing);
    send(kMessageKeyDown, 5, 5, kKeyControl);
    send(kMessageKeyDown, 5, 5, 'S');
    EXPECT_FALSE(exists("work.vorn"));
}

TEST_F(UiCommandTest, CtrlSOverAValueSavesAndAnimatesNothing) {
    makeScene();
    edit();
    ui.OpenPanel("a");
    const UI_Object& row = *static_cast<UI_Panel&>(*ui.propertiesPanel->children[0]).children[2];
    ctrlKey('S', row.x + 20, row.y + 9);
    EXPECT_TRUE(exists("work.vorn"));
    EXPECT_THAT(engine.allTracks(), IsEmpty());
}

TEST_F(UiCommandTest, QuittingAsksOnlyWhenWorkWouldBeLost) {
    makeScene();
    EXPECT_TRUE(ui.MayQuit()) << "a player has nothing to lose";
    edit();
    EXPECT_TRUE(ui.MayQuit());
    EXPECT_THAT(questions, IsEmpty());
    node("a").size = 4;
    answer = MessageAnswer::Cancel;
    EXPECT_FALSE(ui.MayQuit());
    EXPECT_THAT(questions, ElementsAre("There is unsaved work. Quit without saving?"));
    answer = MessageAnswer::Ok;
    EXPECT_TRUE(ui.MayQuit());
    press(ui.saveButton);
    questions.clear();
    EXPECT_TRUE(ui.MayQuit());
    EXPECT_THAT(questions, IsEmpty());
    ui.nodeCanvas->boxOf("a")->SetPosition(700, 800);
    answer = MessageAnswer::Cancel;
    EXPECT_FALSE(ui.MayQuit()) << "places of boxes are work too";
}
