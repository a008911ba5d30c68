// The commands of the editor: which button means which, layout, transport.
#include "core/engine.h"
#include "editor/ui_button.h"
#include "editor/ui_engine.h"
#include "editor/ui_panel.h"
#include "editor/ui_text_box.h"

// The order tells which command a sender means.
void UI_Engine::OnCommand(UI_Object* sender, int argument) {
    if (sender == nullptr) return;
    if (doFileCommand(sender) || doTransportCommand(sender)) return;
    if (doLayoutCommand(sender, argument) || argument != 0) return;
    if (sender == settingsApplyButton) OnValueEdited(sender);
    for (const auto& [id, panel] : openPanels) {
        if (panel != sender || panel == nullptr) continue;
        ClosePanel(panel);
        return;
    }
}

bool UI_Engine::doFileCommand(const UI_Object* sender) {
    if (sender == saveButton) {
        Save();
    } else if (sender == loadButton) {
        Reload();
    } else if (sender == importButton) {
        Import();
    } else if (sender == hideEditorButton) {
        HideEditor();
    } else if (sender == newButton) {
        New();
    } else if (sender == undoButton) {
        Undo();
    } else if (sender == showEditorButton) {
        ShowEditor();
    } else {
        return false;
    }
    return true;
}

bool UI_Engine::doTransportCommand(const UI_Object* sender) {
    if (sender == playButton) {
        TogglePlay();
    } else if (sender == stopButton) {
        Stop();
    } else if (sender == stepForwardButton) {
        Step(1);
    } else if (sender == stepBackButton) {
        Step(-1);
    } else {
        return false;
    }
    return true;
}

bool UI_Engine::doLayoutCommand(const UI_Object* sender, int argument) {
    const UI_Object* const buttons[] = {layoutButton0, layoutButton1, layoutButton2};
    for (int mode = 0; mode < 3; ++mode) {
        if (sender != buttons[mode]) continue;
        if (argument == 0) SetLayoutMode(mode);
        return true;
    }
    return false;
}

// An empty folder of music or data becomes the project's own.
void UI_Engine::OnValueEdited(UI_Object* sender) {
    if (sender == nullptr || sender != settingsApplyButton) return;
    const auto takeFolder = [this](std::string& text, ValueString& value, UI_TextBox* box) {
        if (!text.empty()) return;
        text = engine->projectFolder;
        box->value = value;
        box->TakeValue();
    };
    takeFolder(engine->musicFile, musicFileValue, pathBox1);
    takeFolder(engine->dataFolder, dataFolderValue, pathBox2);
    SetStatus("The project is saved as " + ProjectPath() + ".vorn");
}

// --- transport

void UI_Engine::TogglePlay() {
    playing = !playing;
    if (playButton != nullptr) playButton->keyed = playing;
    if (playing) frameTimer.Reset(0.0f);
    engine->music->seek(static_cast<double>(engine->time));
    // No frame has shown the clock's new place yet, and the engine's time is the old one.
    if (seekUnseen_) engine->music->seek(static_cast<double>(editorTime));
    if (playing) {
        engine->music->play();
    } else {
        engine->music->pause();
    }
}

// The clock runs on from 0 when it ran before.
void UI_Engine::Stop() {
    SeekTo(0.0f);
}

void UI_Engine::Step(int steps) {
    const int index = stepRateIndex >= 0 && stepRateIndex < 4 ? stepRateIndex : 3;
    SeekTo(editorTime + static_cast<float>(steps) / static_cast<float>(kStepRates[index]));
}

void UI_Engine::SeekTo(float seconds) {
    editorTime = seconds > 0.0f ? seconds : 0.0f;  // also what is no number
    seekUnseen_ = true;
    engine->music->seek(static_cast<double>(editorTime));
}
