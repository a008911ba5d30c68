#include "platform/user_dialogs.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "platform/debug_output.h"
#include "platform/dialog_program.h"
#include "support/temp_folder.h"

namespace {

// A program in a folder of its own.
std::string MakeProgram(const TempFolder& folder, const std::string& script) {
    folder.write("ask", "#!/bin/sh\n" + script);
    std::filesystem::permissions(folder.file("ask"), std::filesystem::perms{0700});
    return folder.file("ask");
}

}  // namespace

TEST(UserDialogs, GiveTheAnswerOfAnInstalledHandler) {
    std::string seen;
    MessageBoxHandler before = SetMessageBoxHandler(
        [&](std::string_view text, std::string_view caption, MessageButtons buttons) {
            seen = std::string(caption) + ": " + std::string(text);
            return buttons == MessageButtons::OkCancel ? MessageAnswer::Ok : MessageAnswer::Cancel;
        });
    EXPECT_EQ(ShowMessageBox("Erase?", "VORN", MessageButtons::OkCancel), MessageAnswer::Ok);
    EXPECT_EQ(seen, "VORN: Erase?");
    EXPECT_EQ(ShowMessageBox("Bad", "VORN", MessageButtons::Ok), MessageAnswer::Cancel);
    SetMessageBoxHandler(std::move(before));

    FileDialogHandler dialogBefore = SetFileDialogHandler(
        [](std::string_view pattern) { return "chosen by " + std::string(pattern); });
    EXPECT_EQ(AskForFile("Load", "*.vorn"), "chosen by *.vorn");
    SetFileDialogHandler(std::move(dialogBefore));
}

TEST(UserDialogs, AreCancelledWithALineWhereThereIsNoDisplay) {
    const DebugCapture capture;
    EXPECT_EQ(ShowMessageBox("Erase?", "VORN", MessageButtons::OkCancel), MessageAnswer::Cancel);
    EXPECT_EQ(capture.messages().size(), 1u);
    EXPECT_NE(capture.text().find("Erase?"), std::string::npos);
    EXPECT_FALSE(AskForFile("Load", "*.vorn"));
    EXPECT_EQ(capture.messages().size(), 2u);
}

TEST(DialogProgram, GivesWhatTheProgramPrints) {
    const TempFolder folder;
    const std::string program = MakeProgram(folder, "echo \"/a folder/$1\"\n");
    const DialogResult result = RunDialogProgram({program, "demo; rm $HOME 'x'.vorn"});
    EXPECT_EQ(result.end, DialogEnd::Chosen);
    EXPECT_EQ(result.answer, "/a folder/demo; rm $HOME 'x'.vorn");
}

TEST(DialogProgram, TakesAFailingStatusOrNoAnswerForACancel) {
    const TempFolder folder;
    EXPECT_EQ(RunDialogProgram({MakeProgram(folder, "echo x; exit 1\n")}).end,
              DialogEnd::Cancelled);
    EXPECT_EQ(RunDialogProgram({MakeProgram(folder, "exit 0\n")}).end, DialogEnd::Cancelled);
    EXPECT_EQ(RunDialogProgram({MakeProgram(folder, "echo x; kill -9 $$\n")}).end,
              DialogEnd::Cancelled);
}

TEST(DialogProgram, KnowsWhenTheProgramIsNotThere) {
    EXPECT_EQ(RunDialogProgram({"no-such-dialog-program"}).end, DialogEnd::NotThere);
}
