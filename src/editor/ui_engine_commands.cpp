// The commands of the editor: files, transport, layout.
#include <filesystem>
#include <functional>

#include "core/engine.h"
#include "editor/project_backup.h"
#include "editor/ui_button.h"
#include "editor/ui_engine.h"
#include "editor/ui_key_timeline.h"
#include "editor/ui_node_canvas.h"
#include "editor/ui_properties_column.h"
#include "editor/ui_text_box.h"
#include "platform/debug_output.h"
#include "platform/files.h"
#include "platform/user_dialogs.h"

namespace {

constexpr const char* kCaption = "VORN";
constexpr const char* kProjectEnding = ".vorn";
constexpr const char* kGuiEnding = ".vorngui";

bool IsFile(const std::string& name) {
    std::error_code error;
    return std::filesystem::is_regular_file(ResolvePath(name), error);
}

std::tm MachineTime() {
    const std::time_t now = std::time(nullptr);
    std::tm parts{};
    localtime_r(&now, &parts);
    return parts;
}

}  // namespace

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
    SetStatus("The project is saved as " + ProjectPath() + kProjectEnding);
}

// --- files

std::string UI_Engine::ProjectPath() const {
    return engine->projectFolder + "\\" + engine->projectName;
}

GuiState UI_Engine::guiState() {
    return {nodePositions, master.displayNames, nodeFolded};
}

// A box for each node, in the order of the boxes on the canvas.
std::vector<GuiFile::Box> UI_Engine::boxFlags() const {
    std::vector<GuiFile::Box> boxes;
    for (const auto& [id, node] : engine->nodes) {
        if (!node) continue;
        const bool* folded = nodeFolded.find(id);
        boxes.push_back({id, folded == nullptr || !*folded});
    }
    return boxes;
}

bool UI_Engine::savePair(const std::string& basePath) {
    const std::string project = basePath + kProjectEnding, gui = basePath + kGuiEnding;
    const bool projectSaved = engine->save(project);
    const bool guiSaved = SaveGui(gui, guiState(), boxFlags());
    if (!projectSaved) ReportBadFile(project, "cannot be written");
    if (!guiSaved) ReportBadFile(gui, "cannot be written");
    return projectSaved && guiSaved;
}

// A project that names a folder of another machine is saved where it was opened.
void UI_Engine::ensureProjectFolder() {
    std::error_code error;
    const std::string& folder = engine->projectFolder;
    if (!folder.empty() && std::filesystem::is_directory(ResolvePath(folder), error)) return;
    DebugOutput("The folder \"" + folder + "\" is not here.\nThe project goes beside its file.\n");
    engine->projectFolder = ".";
}

void UI_Engine::Save() {
    if (nodeCanvas != nullptr) nodeCanvas->CapturePositions();
    ensureProjectFolder();
    const std::string path = ProjectPath();
    const bool saved = savePair(path);
    if (saved) noteSaved();
    const std::string backup = path + BackupStamp(localTime ? localTime() : MachineTime());
    if (savePair(backup)) {
        backupHistory.push_back(backup + kGuiEnding);
        backupHistory.push_back(backup + kProjectEnding);
    }
    const std::string text = saved ? "Saved " + path + kProjectEnding
                                   : "Not saved: " + path + kProjectEnding + " cannot be written";
    DebugOutput(text + "\n");
    SetStatus(text);
}

// A load may show its progress, and with it the screen.
bool UI_Engine::load(const std::string& projectFile, bool clearScene, const std::string& prefix) {
    loading_ = true;
    const bool loaded = engine->load(projectFile, clearScene, prefix);
    loading_ = false;
    return loaded;
}

bool UI_Engine::replaceScene(const std::string& projectFile, const std::string& guiFile) {
    if (!IsFile(projectFile)) {
        SetStatus("There is no " + projectFile);
        return false;
    }
    const bool hadNodes = !engine->nodes.empty();
    const bool loaded = load(projectFile, true, "");
    // A file that is no project is found out after the scene has been cleared.
    const bool replaced = loaded || (hadNodes && engine->nodes.empty());
    if (!replaced) return false;
    const std::vector<std::string> open = closeAllPanels();
    LoadGui(guiFile, GuiLoad::Replace, "", guiState());
    finishLoad();
    for (const std::string& id : open) OpenPanel(id);
    if (!presentationMode) nodeCanvas->frameAll();
    return true;
}

void UI_Engine::Reload() {
    const std::string path = ProjectPath();
    if (!replaceScene(path + kProjectEnding, path + kGuiEnding)) return;
    noteSaved();
    SetStatus("Loaded " + path + kProjectEnding);
}

// Both files are looked for beside each other; the boxes come to lie beside those that are there.
// The project keeps its own name and folder: the next save must not go over the imported file.
void UI_Engine::Import() {
    const std::optional<std::string> chosen = AskForFile("Import a project", "*.vorn");
    ImportNames names;
    if (!chosen || !SplitImportPath(*chosen, names)) return;
    if (nodeCanvas != nullptr) nodeCanvas->capturePlaces();
    const std::string project = names.base + kProjectEnding;
    const std::string ownName = engine->projectName, ownFolder = engine->projectFolder;
    const bool loaded = load(project, false, names.prefix);
    engine->projectName = ownName;
    engine->projectFolder = ownFolder;
    LoadGui(names.base + kGuiEnding, GuiLoad::Merge, names.prefix, guiState());
    finishLoad();
    if (nodeCanvas != nullptr) nodeCanvas->frameAll();
    SetStatus(loaded ? "Imported " + project + " as " + names.prefix + "*"
                     : project + " cannot be imported");
}

void UI_Engine::New() {
    const MessageAnswer answer =
        ShowMessageBox("Erase all data and content?", kCaption, MessageButtons::OkCancel);
    if (answer != MessageAnswer::Ok) return;
    closeAllPanels();
    engine->clearScene();
    Rebuild(Boxes::Capture);
    RefreshTimeline();
    imagePanel->ClearPins();
    // What nodes to come have in common with those that went is at most their ids.
    master.displayNames.clear();
    nodeFolded.clear();
    SetStatus("Everything is erased. Tab on the canvas makes a node.");
}

// Back to the last save, then to the one before. The backups stay on the disk.
void UI_Engine::Undo() {
    if (backupHistory.size() < 2) {
        SetStatus("There is no save to go back to");
        return;
    }
    const std::string project = backupHistory.back();
    const std::string gui = backupHistory[backupHistory.size() - 2];
    // What the user refuses can be asked for again; a backup that has gone cannot.
    if (!replaceScene(project, gui) && IsFile(project)) return;
    backupHistory.resize(backupHistory.size() - 2);
    SetStatus("Back to " + project);
}

void UI_Engine::finishLoad() {
    if (presentationMode) return;
    nodeCanvas->layoutDirty = true;
    Rebuild(Boxes::PlaceAnew);
    RefreshTimeline();
}

void UI_Engine::ProjectLoaded(const std::string& path) {
    const std::size_t ending = path.rfind('.');
    const std::size_t folder = path.find_last_of("\\/");
    const bool hasEnding =
        ending != std::string::npos && (folder == std::string::npos || ending > folder);
    LoadGui((hasEnding ? path.substr(0, ending) : path) + kGuiEnding, GuiLoad::Replace, "",
            guiState());
    finishLoad();
}

// --- what would be lost

std::size_t UI_Engine::workFingerprint() {
    if (nodeCanvas != nullptr && !nodeCanvas->boxes().empty()) nodeCanvas->capturePlaces();
    const std::vector<std::uint8_t> scene = engine->sceneBytes();
    GuiFile gui;
    for (const auto& [id, place] : nodePositions) {
        if (engine->findNode(id) == nullptr) continue;
        gui.positions.push_back({id, place});
        gui.names.push_back({id, master.DisplayNameOf(id)});
    }
    gui.boxes = boxFlags();
    const std::vector<std::uint8_t> places = gui.toBytes();
    const auto hash = [](const std::vector<std::uint8_t>& bytes) {
        return std::hash<std::string_view>()(
            {reinterpret_cast<const char*>(bytes.data()), bytes.size()});
    };
    return hash(scene) * 31 + hash(places);
}

void UI_Engine::noteSaved() {
    savedFingerprint_ = workFingerprint();
}

bool UI_Engine::hasUnsavedWork() {
    return nodeCanvas != nullptr && !engine->nodes.empty() &&
           workFingerprint() != savedFingerprint_;
}

bool UI_Engine::MayQuit() {
    if (!hasUnsavedWork()) return true;
    return ShowMessageBox("There is unsaved work. Quit without saving?", kCaption,
                          MessageButtons::OkCancel) == MessageAnswer::Ok;
}

// --- transport

void UI_Engine::TogglePlay() {
    playing = !playing;
    if (playButton != nullptr) playButton->keyed = playing;
    if (playing) frameTimer.Reset(0.0f);
    engine->music->seek(static_cast<double>(engine->time));
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
    engine->music->seek(static_cast<double>(editorTime));
}
