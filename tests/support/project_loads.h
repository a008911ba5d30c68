// Loads projects that tests put together, and collects what the engine says and asks.
#pragma once

#include <gmock/gmock.h>

#include "platform/debug_output.h"
#include "platform/user_dialogs.h"
#include "support/core_nodes.h"
#include "support/project_file.h"
#include "support/temp_folder.h"

class ProjectTest : public ::testing::Test {
  protected:
    ProjectTest() {
        before_ = SetMessageBoxHandler([this](auto text, auto caption, MessageButtons buttons) {
            boxes_.push_back(std::string(caption) + ": " + std::string(text) +
                             (buttons == MessageButtons::OkCancel ? " [OK, Cancel]" : " [OK]"));
            return answer_;
        });
    }
    ~ProjectTest() override { SetMessageBoxHandler(before_); }

    // Loads bytes from a file a.vorn; clears the scene first.
    bool load(std::string_view bytes) { return loadInto(engine_, bytes, true, ""); }
    bool merge(std::string_view bytes, const std::string& prefix) {
        return loadInto(engine_, bytes, false, prefix);
    }
    bool loadInto(Engine& engine, std::string_view bytes, bool clear, const std::string& prefix) {
        folder_.write("a.vorn", bytes);
        const DebugCapture debug;
        const bool result = engine.load(folder_.file("a.vorn"), clear, prefix);
        said_ = debug.messages();
        return result;
    }
    std::string saved(Engine& engine) {
        EXPECT_TRUE(engine.save(folder_.file("saved.vorn")));
        return folder_.read("saved.vorn");
    }
    // The one line that is expected for a damaged file.
    std::string complaint(const std::string& reason) const {
        return folder_.file("a.vorn") + ": " + reason + "\n";
    }

    TempFolder folder_;
    TestEngine engine_;
    std::vector<std::string> said_;
    std::vector<std::string> boxes_;
    MessageAnswer answer_ = MessageAnswer::Ok;

  private:
    MessageBoxHandler before_;
};
