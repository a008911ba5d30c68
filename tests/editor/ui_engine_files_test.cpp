// Files of the authoring screen: what a save may replace, what it tells, and what a load, an import
// or an undo does with files that are missing, damaged or of another machine.
#include "authoring_fixture.h"
#include "core/keyframe_track.h"

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;
using testing::UnorderedElementsAre;

namespace {

class UiFilesTest : public AuthoringTest {
  protected:
    UI_TextBox& setting(std::size_t index) {
        return dynamic_cast<UI_TextBox&>(*ui.leftPanel->children[index]);
    }
    UI_TextBox& nameBox() { return setting(0); }
    UI_TextBox& folderBox() { return setting(1); }

    void typeInto(const UI_TextBox& box, const std::string& text) {
        click(box.x + box.width / 2, box.y + 10);
        ASSERT_TRUE(box.focused);
        while (!box.buffer.empty()) send(kMessageKeyDown, 5, 5, kKeyBack);
        for (const char c : text) send(kMessageCharacter, 5, 5, c);
        send(kMessageKeyUp, 5, 5, kKeyReturn);
        ASSERT_FALSE(box.focused);
    }
    void rightClick(const UI_Object& widget) {
        send(kMessageRightDown, widget.x + 20, widget.y + 10);
        send(kMessageRightUp, widget.x + 20, widget.y + 10);
    }
    // A pair of files with one node "n", in the working folder.
    void makeProject(const std::string& name, const std::string& innerName) {
        Engine other(types(), nullptr);
        other.init();
        other.projectFolder = ".";
        other.projectName = innerName;
        other.createNode("n", "Node");
        ASSERT_TRUE(other.save(name + ".vorn"));
        OrderedMap<std::string, Vec2> places;
        places["n"] = {10, 20};
        std::map<std::string, std::string> names = {{"n", "Named"}};
        OrderedMap<std::string, bool> folded;
        ASSERT_TRUE(SaveGui(name + ".vorngui", {places, names, folded}, {}));
    }
    void openAsProgramDoes(const std::string& name) {
        ASSERT_TRUE(engine.load(name, true, ""));
        ui.ProjectLoaded(name);
        questions.clear();
    }
    static bool lastMessageIsFault() { return RecentDebugOutput().back().fault; }
};

}  // namespace

// --- where a save goes

TEST_F(UiFilesTest, ATypedFolderThatDoesNotExistIsNotReplacedByAnother) {
    makeScene();
    edit();
    typeInto(folderBox(), ".\\takes");
    press(ui.saveButton);
    EXPECT_THAT(filesOf(".vorn"), IsEmpty());
    EXPECT_EQ(engine.projectFolder, ".\\takes");
    EXPECT_THAT(ui.StatusText(), HasSubstr("Not saved: there is no folder \".\\takes\""));
    EXPECT_TRUE(lastMessageIsFault());
    answer = MessageAnswer::Cancel;
    EXPECT_FALSE(ui.MayQuit()) << "the work is still unsaved";
    std::filesystem::create_directory(folder.path() / "takes");
    press(ui.saveButton);
    EXPECT_TRUE(exists("takes/work.vorn"));
}

TEST_F(UiFilesTest, AFolderThatAFileBroughtAlongIsOnceMoreOneAfterALoad) {
    makeProject("work", "work");
    edit();
    typeInto(folderBox(), ".\\takes");
    engine.projectFolder = "c:\\temp\\K4409\\";
    openAsProgramDoes("work.vorn");
    engine.projectFolder = "c:\\temp\\K4409\\";
    press(ui.saveButton);
    EXPECT_EQ(engine.projectFolder, ".");
    EXPECT_EQ(ui.StatusText(), "Saved .\\work.vorn");
}

TEST_F(UiFilesTest, ReloadFindsTheProjectWhereSavePutsIt) {
    makeProject("work", "work");
    engine.projectFolder = "c:\\temp\\K4409\\";
    edit();
    press(ui.loadButton);
    EXPECT_NE(engine.findNode("n"), nullptr);
    EXPECT_EQ(ui.StatusText(), "Loaded .\\work.vorn");
}

// --- what a save may replace

TEST_F(UiFilesTest, AProjectThatNamesAnotherDoesNotReplaceThatUnasked) {
    makeProject("work", "work");
    makeProject("copy", "work");
    const std::string before = folder.read("work.vorn");
    openAsProgramDoes("copy.vorn");
    edit();
    engine.createNode("more", "Node");
    answer = MessageAnswer::Cancel;
    press(ui.saveButton);
    EXPECT_THAT(questions, ElementsAre(".\\work.vorn exists. Replace it?"));
    EXPECT_EQ(folder.read("work.vorn"), before);
    EXPECT_THAT(ui.StatusText(), HasSubstr("Not saved"));
    EXPECT_TRUE(lastMessageIsFault());
    answer = MessageAnswer::Ok;
    press(ui.saveButton);
    EXPECT_THAT(questions, SizeIs(2));
    EXPECT_NE(folder.read("work.vorn"), before);
    press(ui.saveButton);
    EXPECT_THAT(questions, SizeIs(2)) << "it is the project's own now";
}

TEST_F(UiFilesTest, TheProjectsOwnFileIsReplacedUnasked) {
    makeProject("work", "work");
    openAsProgramDoes("work.vorn");
    edit();
    engine.createNode("more", "Node");
    press(ui.saveButton);
    EXPECT_THAT(questions, IsEmpty());
    press(ui.loadButton);
    questions.clear();
    press(ui.saveButton);
    EXPECT_THAT(questions, IsEmpty());
    ++localTime.tm_sec;
    press(ui.undoButton);
    questions.clear();
    press(ui.saveButton);
    EXPECT_THAT(questions, IsEmpty()) << "what an undo brings back was saved there";
}

TEST_F(UiFilesTest, AnImportsNameReplacesNoFileUnasked) {
    makeProject("part", "part");
    makeScene();
    edit();
    press(ui.saveButton);
    chosenFile = "part.vorn";
    press(ui.importButton);
    EXPECT_THAT(ui.StatusText(), HasSubstr("The project is saved as .\\part.vorn"));
    EXPECT_THAT(questions, IsEmpty());
    answer = MessageAnswer::Cancel;
    press(ui.saveButton);
    EXPECT_THAT(questions, ElementsAre(".\\part.vorn exists. Replace it?"));
}

TEST_F(UiFilesTest, AfterNewTheFirstSaveOverAFileAsks) {
    makeScene();
    edit();
    press(ui.saveButton);
    press(ui.newButton);
    questions.clear();
    press(ui.saveButton);
    EXPECT_THAT(questions, ElementsAre(".\\work.vorn exists. Replace it?"));
    press(ui.saveButton);
    EXPECT_THAT(questions, SizeIs(1));
}

TEST_F(UiFilesTest, ABrokenFileThatWasOpenedIsNotReplacedUnasked) {
    makeScene();
    edit();
    press(ui.saveButton);
    folder.write("work.vorn", "something else");
    press(ui.loadButton);
    questions.clear();
    answer = MessageAnswer::Cancel;
    press(ui.saveButton);
    EXPECT_THAT(questions, SizeIs(1));
    EXPECT_EQ(folder.read("work.vorn"), "something else");
}

// --- backups

TEST_F(UiFilesTest, SavesWithinOneSecondLeaveABackupEach) {
    makeScene();
    edit();
    localTime.tm_sec = 58;
    for (const float size : {1.0f, 2.0f, 3.0f}) {
        node("a").size = size;
        press(ui.saveButton);
    }
    EXPECT_THAT(filesOf(".vorn"),
                UnorderedElementsAre("work.vorn", "work2026-2-9-24-60-58.vorn",
                                     "work2026-2-9-24-60-59.vorn", "work2026-2-10-1-1-0.vorn"));
    EXPECT_THAT(ui.backupHistory, SizeIs(6));
    for (const float size : {3.0f, 2.0f, 1.0f}) {
        press(ui.undoButton);
        EXPECT_EQ(node("a").size, size);
    }
}

TEST_F(UiFilesTest, ABackupOfAnEarlierRunIsNotReplaced) {
    folder.write("work2026-2-9-24-60-7.vorngui", "theirs");
    makeScene();
    edit();
    press(ui.saveButton);
    EXPECT_EQ(folder.read("work2026-2-9-24-60-7.vorngui"), "theirs");
    EXPECT_TRUE(exists("work2026-2-9-24-60-8.vorn"));
    EXPECT_TRUE(exists("work2026-2-9-24-60-8.vorngui"));
}

TEST_F(UiFilesTest, UndoPassesOverABackupThatIsNoProject) {
    makeScene();
    edit();
    node("a").size = 1;
    press(ui.saveButton);
    node("a").size = 2;
    ++localTime.tm_sec;
    press(ui.saveButton);
    folder.write("work2026-2-9-24-60-8.vorn", "something else");
    press(ui.undoButton);
    EXPECT_EQ(ui.StatusText(), ".\\work2026-2-9-24-60-8.vorn is no project; the scene is empty");
    EXPECT_TRUE(lastMessageIsFault());
    ASSERT_THAT(ui.backupHistory, SizeIs(2));
    press(ui.undoButton);
    EXPECT_EQ(node("a").size, 1);
    EXPECT_THAT(ui.backupHistory, IsEmpty());
}

TEST_F(UiFilesTest, ASaveAfterAnUndoThatLeftNothingAsksBeforeItReplaces) {
    makeScene();
    edit();
    press(ui.saveButton);
    const std::string whole = folder.read("work.vorn");
    folder.write("work2026-2-9-24-60-7.vorn", "something else");
    press(ui.undoButton);
    ASSERT_EQ(engine.findNode("a"), nullptr);
    answer = MessageAnswer::Cancel;
    press(ui.saveButton);
    EXPECT_THAT(questions.back(), HasSubstr("work.vorn exists. Replace it?"));
    EXPECT_EQ(folder.read("work.vorn"), whole);
}

TEST_F(UiFilesTest, UndoPassesOverABackupThatIsNoProjectInAnEmptySceneToo) {
    makeScene();
    edit();
    press(ui.saveButton);
    folder.write("work2026-2-9-24-60-7.vorn", "something else");
    press(ui.newButton);
    press(ui.undoButton);
    EXPECT_THAT(ui.backupHistory, IsEmpty());
    EXPECT_THAT(ui.StatusText(), HasSubstr("is no project"));
}

// --- what a save tells

TEST_F(UiFilesTest, ASaveThatWorkedIsNoFault) {
    makeScene();
    edit();
    engine.projectName = "terror";
    press(ui.saveButton);
    EXPECT_EQ(ui.StatusText(), "Saved .\\terror.vorn");
    EXPECT_THAT(said.text(), HasSubstr("Saved .\\terror.vorn\n"));
    EXPECT_FALSE(lastMessageIsFault());
}

TEST_F(UiFilesTest, ASaveTellsThatOnlyTheSideFileFailed) {
    makeScene();
    edit();
    std::filesystem::create_directory(folder.path() / "work.vorngui");
    press(ui.saveButton);
    EXPECT_THAT(ui.StatusText(), HasSubstr("Saved .\\work.vorn, but not the places of its boxes"));
    EXPECT_TRUE(lastMessageIsFault());
    EXPECT_THAT(ui.backupHistory, SizeIs(2));
}

TEST_F(UiFilesTest, ASaveTellsThatOnlyTheBackupFailed) {
    makeScene();
    edit();
    // With the stamp behind it the name is longer than names of files may be.
    engine.projectName = std::string(240, 'n');
    press(ui.saveButton);
    EXPECT_TRUE(exists(engine.projectName + ".vorn"));
    EXPECT_THAT(ui.StatusText(), HasSubstr(".vorn, but without a whole backup"));
    EXPECT_TRUE(lastMessageIsFault());
    EXPECT_THAT(ui.backupHistory, IsEmpty());
    EXPECT_TRUE(ui.MayQuit());
    EXPECT_THAT(questions, IsEmpty()) << "the work is saved";
}

TEST_F(UiFilesTest, ASaveThatFailedTellsWhereTheBackupIs) {
    makeScene();
    edit();
    std::filesystem::create_directory(folder.path() / "work.vorn");
    press(ui.saveButton);
    EXPECT_THAT(ui.StatusText(), HasSubstr("Not saved: .\\work.vorn cannot be written. A backup of "
                                           "it is .\\work2026-2-9-24-60-7.vorn"));
    EXPECT_THAT(ui.backupHistory, SizeIs(2));
}

// --- what is not there, or is something else

TEST_F(UiFilesTest, ReloadTellsThatAFileIsNoProject) {
    makeScene();
    edit();
    folder.write("work.vorn", "something else");
    press(ui.loadButton);
    EXPECT_EQ(ui.StatusText(), ".\\work.vorn is no project; the scene is empty");
    EXPECT_TRUE(lastMessageIsFault());
    EXPECT_THAT(engine.nodes, SizeIs(0));
}

TEST_F(UiFilesTest, ReloadTellsThatThereIsNoFile) {
    makeScene();
    edit();
    press(ui.loadButton);
    EXPECT_EQ(ui.StatusText(), "There is no .\\work.vorn");
    EXPECT_TRUE(lastMessageIsFault());
}

TEST_F(UiFilesTest, AMissingSideFileLeavesPlacesAndNamesAndTheReloadCounts) {
    makeScene();
    edit();
    press(ui.saveButton);
    std::filesystem::remove(folder.path() / "work.vorngui");
    ui.nodeCanvas->boxOf("a")->SetPosition(320, ui.nodeCanvas->y + 75);
    ui.nodeCanvas->capturePlaces();
    ui.master.displayNames["a"] = "Sky";
    ui.nodeFolded["b"] = true;
    node("a").size = 9;
    press(ui.loadButton);
    EXPECT_NE(node("a").size, 9);
    EXPECT_EQ(ui.StatusText(), "Loaded .\\work.vorn");
    EXPECT_EQ(ui.nodeCanvas->boxOf("a")->x, 320);
    EXPECT_EQ(ui.nodeCanvas->boxOf("a")->y, ui.nodeCanvas->y + 75);
    EXPECT_EQ(ui.master.DisplayNameOf("a"), "Sky");
    EXPECT_TRUE(*ui.nodeFolded.find("b"));
}

TEST_F(UiFilesTest, AMissingSideFileLeavesPlacesAndNamesAndTheUndoCounts) {
    makeScene();
    edit();
    press(ui.saveButton);
    std::filesystem::remove(folder.path() / "work2026-2-9-24-60-7.vorngui");
    ui.master.displayNames["a"] = "Sky";
    node("a").size = 9;
    press(ui.undoButton);
    EXPECT_NE(node("a").size, 9);
    EXPECT_EQ(ui.StatusText(), "Back to .\\work2026-2-9-24-60-7.vorn");
    EXPECT_EQ(ui.master.DisplayNameOf("a"), "Sky");
    EXPECT_THAT(ui.backupHistory, IsEmpty());
}

TEST_F(UiFilesTest, AMissingSideFileLeavesPlacesAndNamesAndTheImportCounts) {
    makeProject("part", "work");
    std::filesystem::remove(folder.path() / "part.vorngui");
    makeScene();
    edit();
    ui.master.displayNames["a"] = "Sky";
    chosenFile = "part.vorn";
    press(ui.importButton);
    EXPECT_NE(engine.findNode("part-n"), nullptr);
    EXPECT_NE(ui.nodeCanvas->boxOf("part-n"), nullptr);
    EXPECT_EQ(ui.StatusText(), "Imported part.vorn as part-*");
    EXPECT_EQ(ui.master.DisplayNameOf("a"), "Sky");
    EXPECT_FALSE(ui.master.displayNames.contains("part-n"));
}

TEST_F(UiFilesTest, AnImportThatFailsTakesNothingOfTheSideFile) {
    makeProject("part", "work");
    folder.write("part.vorn", "something else");
    makeScene();
    edit();
    const std::size_t places = ui.nodePositions.size();
    chosenFile = "part.vorn";
    press(ui.importButton);
    EXPECT_EQ(ui.StatusText(), "part.vorn cannot be imported");
    EXPECT_TRUE(lastMessageIsFault());
    EXPECT_EQ(ui.nodePositions.size(), places);
    EXPECT_FALSE(ui.master.displayNames.contains("part-n"));
    EXPECT_THAT(engine.nodes, SizeIs(3));
}

// --- settings

TEST_F(UiFilesTest, ARightClickOnASettingGoesBackToWhatTheLoadedFileHas) {
    makeProject("other", "other");
    makeScene();
    edit();
    engine.projectName = "other";
    press(ui.loadButton);
    typeInto(nameBox(), "third");
    ASSERT_EQ(engine.projectName, "third");
    rightClick(nameBox());
    EXPECT_EQ(engine.projectName, "other");
}
