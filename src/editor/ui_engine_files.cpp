// The commands of the editor that have to do with files: save, reload, import, new, undo; and what
// would be lost without a save.
#include <filesystem>
#include <fstream>
#include <functional>

#include "core/engine.h"
#include "editor/project_backup.h"
#include "editor/ui_authoring_screen.h"
#include "editor/ui_engine.h"
#include "editor/ui_node_canvas.h"
#include "editor/ui_panel.h"
#include "editor/ui_properties_column.h"
#include "editor/ui_text_box.h"
#include "platform/debug_output.h"
#include "platform/files.h"
#include "platform/user_dialogs.h"

namespace fs = std::filesystem;

namespace {

constexpr const char* kCaption = "VORN";
constexpr const char* kProjectEnding = ".vorn";
constexpr const char* kGuiEnding = ".vorngui";

bool CanBeRead(const std::string& name) {
    std::error_code error;
    const fs::path path = ResolvePath(name);
    return fs::is_regular_file(path, error) && std::ifstream(path).good();
}

bool IsFolder(const std::string& name) {
    std::error_code error;
    return !name.empty() && fs::is_directory(ResolvePath(name), error);
}

std::tm MachineTime() {
    const std::time_t now = std::time(nullptr);
    std::tm parts{};
    localtime_r(&now, &parts);
    return parts;
}

// The stamp of a time, or of the next second that no backup has yet: none is ever replaced.
std::string FreeStamp(const std::string& basePath, std::tm time) {
    for (;;) {
        const std::string stamp = BackupStamp(time);
        const std::string backup = basePath + stamp;
        if (!FileExists(backup + kProjectEnding) && !FileExists(backup + kGuiEnding)) return stamp;
        ++time.tm_sec;
        std::mktime(&time);  // minutes, hours and days follow
    }
}

}  // namespace

// A folder of another machine, as files bring it along, stands for the one in which the project was
// opened. What the user types stays.
std::string UI_Engine::projectFolder() const {
    const std::string& folder = engine->projectFolder;
    const bool kept = IsFolder(folder) || (folderTyped_ && !folder.empty());
    return kept ? folder : ".";
}

std::string UI_Engine::ProjectPath() const {
    return projectFolder() + "\\" + engine->projectName;
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

// --- save

UI_Engine::SavedPair UI_Engine::savePair(const std::string& basePath, DelayedFlush* later) {
    const std::string project = basePath + kProjectEnding, gui = basePath + kGuiEnding;
    const SavedPair saved = {engine->save(project, later),
                             SaveGui(gui, guiState(), boxFlags(), later)};
    if (!saved.project) ReportBadFile(project, "cannot be written");
    if (!saved.gui) ReportBadFile(gui, "cannot be written");
    return saved;
}

// False, with a message, when there is no such folder.
bool UI_Engine::takeProjectFolder() {
    const std::string folder = projectFolder();
    if (!IsFolder(folder)) {
        tellFault("Not saved: there is no folder \"" + folder +
                  "\". Make it, or type another one at the left.");
        return false;
    }
    if (folder == engine->projectFolder) return true;
    DebugOutput("The folder \"" + engine->projectFolder +
                "\" is not here.\nThe project goes beside its file.\n");
    engine->projectFolder = folder;
    return true;
}

// A file that is not the project's own is replaced only when the user says so.
bool UI_Engine::mayReplace(const std::string& project) {
    if (!FileExists(project)) return true;
    std::error_code error;
    if (!ownFile_.empty() && fs::equivalent(ResolvePath(project), ownFile_, error)) return true;
    if (ShowMessageBox(project + " exists. Replace it?", kCaption, MessageButtons::OkCancel) ==
        MessageAnswer::Ok) {
        return true;
    }
    tellFault("Not saved. Another name can be typed at the left.");
    return false;
}

void UI_Engine::noteOwnFile(const std::string& project) {
    std::error_code error;
    ownFile_ = fs::absolute(ResolvePath(project), error);
}

void UI_Engine::Save() {
    if (nodeCanvas != nullptr) nodeCanvas->CapturePositions();
    if (!takeProjectFolder()) return;
    const std::string path = ProjectPath();
    if (!mayReplace(path + kProjectEnding)) return;
    const SavedPair saved = savePair(path, nullptr);
    if (saved.project) noteOwnFile(path + kProjectEnding);
    if (saved.project && saved.gui) noteSaved();
    // Nothing that was there before is at stake: the disk may take its time.
    const std::string backup = path + FreeStamp(path, localTime ? localTime() : MachineTime());
    const SavedPair kept = savePair(backup, &backupFlush_);
    if (kept.project) {
        backupHistory.push_back(backup + kGuiEnding);
        backupHistory.push_back(backup + kProjectEnding);
    }
    tellSaved(path, saved, backup, kept);
}

void UI_Engine::tellSaved(const std::string& path, SavedPair saved, const std::string& backup,
                          SavedPair kept) {
    if (!saved.project) {
        tellFault("Not saved: " + path + kProjectEnding + " cannot be written" +
                  (kept.project ? ". A backup of it is " + backup + kProjectEnding : ""));
    } else if (!saved.gui) {
        tellFault("Saved " + path + kProjectEnding + ", but not the places of its boxes: " + path +
                  kGuiEnding + " cannot be written");
    } else if (!kept.project || !kept.gui) {
        tellFault("Saved " + path + kProjectEnding + ", but without a whole backup: " + backup +
                  (kept.project ? kGuiEnding : kProjectEnding) + " cannot be written");
    } else {
        const std::string text = "Saved " + path + kProjectEnding;
        DebugOutput(text + "\n");
        SetStatus(text);
    }
}

// --- load

// A load may show its progress, and with it the screen.
bool UI_Engine::load(const std::string& projectFile, bool clearScene, const std::string& prefix) {
    loading_ = true;
    const bool loaded = engine->load(projectFile, clearScene, prefix);
    loading_ = false;
    if (loaded) folderTyped_ = false;
    return loaded;
}

UI_Engine::SceneLoad UI_Engine::replaceScene(const std::string& projectFile,
                                             const std::string& guiFile) {
    if (!CanBeRead(projectFile)) {
        tellFault((FileExists(projectFile) ? "Cannot read " : "There is no ") + projectFile);
        return SceneLoad::Missing;
    }
    const bool loaded = load(projectFile, true, "");
    // A file that is no project is found out after the scene has been cleared.
    if (!loaded && !engine->nodes.empty()) return SceneLoad::Refused;
    const std::vector<std::string> open = closeAllPanels();
    LoadGui(guiFile, GuiLoad::Replace, "", guiState());
    finishLoad();
    for (const std::string& id : open) OpenPanel(id);
    if (!presentationMode) nodeCanvas->frameAll();
    if (loaded) return SceneLoad::Loaded;
    ownFile_.clear();  // an empty scene is not what is in it
    tellFault(projectFile + " is no project; the scene is empty");
    return SceneLoad::NoProject;
}

void UI_Engine::Reload() {
    const std::string path = ProjectPath();
    const SceneLoad result = replaceScene(path + kProjectEnding, path + kGuiEnding);
    if (result != SceneLoad::Loaded) return;
    noteOwnFile(path + kProjectEnding);
    noteSaved();
    SetStatus("Loaded " + path + kProjectEnding);
}

// Both files are looked for beside each other; the boxes come to lie beside those that are there.
void UI_Engine::Import() {
    const std::optional<std::string> chosen = AskForFile("Import a project", "*.vorn");
    ImportNames names;
    if (!chosen || !SplitImportPath(*chosen, names)) return;
    if (nodeCanvas != nullptr) nodeCanvas->capturePlaces();
    const std::string project = names.base + kProjectEnding;
    const std::string pathBefore = ProjectPath();
    if (!load(project, false, names.prefix)) {
        tellFault(project + " cannot be imported");
        return;
    }
    LoadGui(names.base + kGuiEnding, GuiLoad::Merge, names.prefix, guiState());
    finishLoad();
    if (nodeCanvas != nullptr) nodeCanvas->frameAll();
    // A file brings its project's settings along.
    const std::string path = ProjectPath();
    SetStatus("Imported " + project + " as " + names.prefix + "*" +
              (path == pathBefore ? "" : ". The project is saved as " + path + kProjectEnding));
}

void UI_Engine::New() {
    const MessageAnswer answer =
        ShowMessageBox("Erase all data and content?", kCaption, MessageButtons::OkCancel);
    if (answer != MessageAnswer::Ok) return;
    closeAllPanels();
    engine->clearScene();
    ownFile_.clear();
    Rebuild(Boxes::Capture);
    RefreshTimeline();
    imagePanel->ClearPins();
    // What nodes to come have in common with those that went is at most their ids.
    master.displayNames.clear();
    nodeFolded.clear();
    SetStatus("Everything is erased. Tab on the canvas makes a node.");
}

// Back to the last save, then to the one before. The backups stay on the disk. What the user
// refuses can be asked for again; a backup that has gone, or is none, cannot.
void UI_Engine::Undo() {
    if (backupHistory.size() < 2) {
        SetStatus("There is no save to go back to");
        return;
    }
    const std::string project = backupHistory.back();
    const std::string gui = backupHistory[backupHistory.size() - 2];
    const SceneLoad result = replaceScene(project, gui);
    if (result == SceneLoad::Refused) return;
    backupHistory.resize(backupHistory.size() - 2);
    if (result != SceneLoad::Loaded) return;
    noteOwnFile(ProjectPath() + kProjectEnding);
    SetStatus("Back to " + project);
}

void UI_Engine::finishLoad() {
    if (presentationMode) return;
    renewSettingsDefaults();
    nodeCanvas->layoutDirty = true;
    Rebuild(Boxes::PlaceAnew);
    RefreshTimeline();
}

// A right click on a setting goes back to what the file has.
void UI_Engine::renewSettingsDefaults() {
    for (const auto& child : leftPanel->children) {
        auto* box = dynamic_cast<UI_TextBox*>(child.get());
        if (box != nullptr) box->value.defaultValue = *box->value.data;
    }
}

void UI_Engine::ProjectLoaded(const std::string& path) {
    const std::size_t ending = path.rfind('.');
    const std::size_t folder = path.find_last_of("\\/");
    const bool hasEnding =
        ending != std::string::npos && (folder == std::string::npos || ending > folder);
    LoadGui((hasEnding ? path.substr(0, ending) : path) + kGuiEnding, GuiLoad::Replace, "",
            guiState());
    noteOwnFile(path);
    folderTyped_ = false;
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
