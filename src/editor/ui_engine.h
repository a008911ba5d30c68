// The root of the editor: owns the widgets and the player's clock, and does what the editor's
// controls ask for. It has two screens. In presentation one bare image panel fills the picture and
// the program is a player. In authoring there are the toolbar, the picture, the node canvas, the
// key timeline and the panels; they are made when that screen is first shown. Main thread, with the
// OpenGL context.
#pragma once

#include <cstdint>
#include <ctime>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "core/ordered_map.h"
#include "core/value_object.h"
#include "editor/editor_timer.h"
#include "editor/gui_file.h"
#include "editor/ui_image_panel.h"
#include "editor/ui_master.h"
#include "editor/ui_object.h"
#include "gpu/gl_framebuffer.h"
#include "platform/files.h"

class Engine;
class Node;
class NodeCanvasHost;
class UI_Button;
class UI_KeyTimeline;
class UI_Label;
class UI_NodeCanvas;
class UI_Panel;
class UI_PropertiesColumn;
class UI_Selection;
class UI_TextBox;
struct AuthoringScreen;
struct FileChange;

// What shares the lower part of the authoring screen.
enum LayoutMode : int {
    kLayoutNodeCanvas = 0,
    kLayoutKeyTimeline = 1,
    kLayoutNeither = 2,
};

enum class ScreenKind { Presentation, Authoring };

class UI_Engine : public UI_Evt_ValueChanged {
  public:
    UI_Engine();
    ~UI_Engine() override;

    // False, with a line on the debug channel, when the widgets' resources cannot be made.
    bool Init(Engine* newEngine);
    // Each frame before the engine's update: advances the clock, and in authoring renews the labels
    // and takes up tracks that have come or gone.
    void BeginFrameUpdate();
    // Once, after the first frame: starts the clock and the music.
    void StartPlayback();
    // Each frame after the engine's update: draws all widgets into the target that is bound. While
    // a load of its own runs it draws nothing.
    void DrawFrame();

    // May come at any time; a gesture that is under way ends without effect.
    void ShowScreen(ScreenKind kind);
    // A project was loaded from this file: takes up the side-file beside it. Until another one is
    // loaded or saved, a save that would replace any other file asks first.
    void ProjectLoaded(const std::string& path);
    // Asks the user where work would be lost. False: the program is to go on.
    bool MayQuit();
    // Brings a hidden editor back, or closes what covers the screen, the sheet of keys or the list
    // of messages, or else gives up what is selected; false when there is nothing of the kind.
    bool GiveUp();

    // --- commands
    void Save();
    void Reload();
    void Import();
    void HideEditor();
    void ShowEditor();
    void New();
    void Undo();
    // Pauses or goes on, and moves the music to the engine's time.
    void TogglePlay();
    void Stop();
    // `steps` of the chosen rate, not below time 0.
    void Step(int steps);
    // Moves the clock, not below 0, and the music with it.
    void SeekTo(float seconds);
    void SetLayoutMode(int mode);
    // Where the project and its side-file are saved: "FOLDER\NAME", to which the endings come.
    std::string ProjectPath() const;

    // --- the graph on the screen
    // Makes the boxes, the list of outputs and their choice anew. Capture: boxes stay where they
    // are on the screen; else they go where nodePositions says.
    enum class Boxes { Capture, PlaceAnew };
    void Rebuild(Boxes boxes);
    // Nothing happens for an id without a node and for a panel that is open.
    void OpenPanel(const std::string& id);
    void ClosePanel(UI_Panel* panel);
    // Files of the folder Scripts were changed, made or deleted: hands them to the engine, and
    // makes panels and boxes of changed nodes anew. Between frames, in either screen.
    void TakeScriptFiles(const std::vector<FileChange>& files);
    // Hands the engine's tracks to the timeline.
    void RefreshTimeline();
    // A line that stays for some seconds.
    void SetStatus(std::string_view text);
    // The last such line; empty in a program that never showed the authoring screen.
    std::string StatusText() const;
    // What the gestures do that are possible where the pointer is, or that are under way.
    std::string HintOfMoment() const;

    // Reacts to settingsApplyButton only.
    void OnValueEdited(UI_Object* sender) override;
    void OnValueHook() override {}
    void OnCommand(UI_Object* sender, int argument) override;

    static constexpr int kStepRates[4] = {60, 30, 15, 10};  // steps a second

    UI_Master master;
    Engine* engine = nullptr;  // not owned
    bool presentationMode = true;
    float editorTime = 0.0f;  // seconds
    bool playing = false;
    EditorTimer frameTimer;

    // The widgets of the authoring screen, null before it is first shown. Panels own what is on
    // them.
    std::unique_ptr<UI_Panel> leftPanel, rightPanel, topPanel;
    std::unique_ptr<UI_PropertiesColumn> propertiesPanel;  // parent of the nodes' panels
    std::unique_ptr<UI_NodeCanvas> nodeCanvas;
    std::unique_ptr<UI_ImagePanel> imagePanel;  // in both screens
    std::unique_ptr<UI_KeyTimeline> keyTimeline;
    UI_Button* layoutButton0 = nullptr;
    UI_Button* layoutButton1 = nullptr;
    UI_Button* layoutButton2 = nullptr;
    UI_Button* stepForwardButton = nullptr;
    UI_Button* stepBackButton = nullptr;
    UI_Button* playButton = nullptr;
    UI_Button* stopButton = nullptr;
    UI_Label* timeLabel = nullptr;
    UI_Label* frameCostLabel = nullptr;
    UI_Button* saveButton = nullptr;
    UI_Button* loadButton = nullptr;
    UI_Button* importButton = nullptr;
    UI_Button* hideEditorButton = nullptr;
    UI_Button* newButton = nullptr;
    UI_Button* undoButton = nullptr;
    UI_Selection* outputSelector = nullptr;
    std::unique_ptr<UI_Panel> restorePanel;  // seen only while the editor is hidden
    UI_Button* settingsApplyButton = nullptr;
    UI_TextBox* pathBox1 = nullptr;  // of the music file
    UI_TextBox* pathBox2 = nullptr;  // of the data folder
    UI_Button* showEditorButton = nullptr;

    std::int32_t imageBackdrop = 0;     // backdrop colour of the image panel
    std::int32_t stepRateIndex = 3;     // of kStepRates
    std::uint32_t knownTrackCount = 0;  // tracks that the timeline was last made for
    int layoutMode = kLayoutNodeCanvas;
    std::int64_t selectedOutput = -1;  // of outputs; -1: none is on screen
    std::vector<Node*> outputs;
    ValueMultiInt outputChoice{"Output", ""};
    // Behind the text boxes of the project's settings; their texts are the engine's own.
    ValueString projectNameValue{"Name", ""};
    ValueString projectFolderValue{"Folder", ""};
    ValueString musicFileValue{"Music", ""};
    ValueString dataFolderValue{"Data folder", ""};
    ValueString lengthValue{"Length, s", ""};
    std::vector<std::string> backupHistory;  // side-file and project of each save, in turn
    OrderedMap<std::string, Vec2> nodePositions;
    std::map<std::string, UI_Panel*> openPanels;  // by node id; null: closed
    OrderedMap<std::string, bool> nodeFolded;     // true: the subtree behind the node is folded
    std::shared_ptr<GL_FrameBuffer> editorTarget;

    // What the program around the editor answers. All may be empty.
    std::function<std::string()> readClipboard;
    std::function<void(const std::string&)> writeClipboard;
    std::function<std::tm()> localTime;  // of the backups' stamps; empty: that of the machine

  private:
    friend struct AuthoringScreen;
    friend class CanvasHost;

    void showLoadingPicture();
    // --- the authoring screen: ui_engine_screen.cpp
    void makeAuthoringScreen();
    void makeTopPanel();
    void makeTransport();
    void makeChoices();
    void makeLeftPanel();
    void makeRightPanel();
    void makeRestorePanel();
    void makeCanvasAndTimeline();
    void registerWidgets();
    void applyLayoutMode();
    void placePicture();
    void endGestures();
    void enterAuthoring();
    void leaveAuthoring();
    UI_Button* addButton(UI_Panel& panel, const char* text, int x, int y, int width,
                         const char* tooltip);
    // On the toolbar at `left` (pixels), which becomes the place of the next one.
    UI_Button* addTopButton(int& left, const char* text, int width, const char* tooltip);
    UI_TextBox* addTextBox(ValueString& value, std::string& text, int y);
    void setEditorHidden(bool hide);
    void updateLabels();
    bool handleShortcut(const UI_Event& event);

    // A line in red, there and in the list of messages.
    void tellFault(const std::string& text);

    // --- commands: ui_engine_commands.cpp, ui_engine_files.cpp
    bool doFileCommand(const UI_Object* sender);
    bool doTransportCommand(const UI_Object* sender);
    bool doLayoutCommand(const UI_Object* sender, int argument);
    GuiState guiState();
    std::vector<GuiFile::Box> boxFlags() const;
    // What could be written of a project and its side-file.
    struct SavedPair {
        bool project = false, gui = false;
    };
    SavedPair savePair(const std::string& basePath, DelayedFlush* later);
    void tellSaved(const std::string& path, SavedPair saved, const std::string& backup,
                   SavedPair kept);
    std::string projectFolder() const;
    bool takeProjectFolder();
    bool mayReplace(const std::string& project);
    void noteOwnFile(const std::string& project);
    // Loads a pair of files over the scene.
    enum class SceneLoad {
        Loaded,
        NoProject,  // the file is none, and the scene is empty
        Refused,    // by the user
        Missing,    // there is no file that can be read
    };
    SceneLoad replaceScene(const std::string& projectFile, const std::string& guiFile);
    void finishLoad();
    void renewSettingsDefaults();
    bool load(const std::string& projectFile, bool clearScene, const std::string& prefix);
    void noteSaved();
    bool hasUnsavedWork();
    std::size_t workFingerprint();

    // --- the graph on the screen: ui_engine_graph.cpp
    void rebuildOutputs();
    void takeOutputChoice();
    void nodeGoes(const std::string& id);
    void graphChanged();
    std::vector<std::string> closeAllPanels();
    void bury(UI_Panel* panel);

    bool editorHidden_ = false;
    bool seekUnseen_ = false;  // the clock was moved since the last frame
    bool loading_ = false;     // a load runs: panels and outputs may point at nodes that have gone
    std::size_t savedFingerprint_ = 0;
    std::filesystem::path ownFile_;  // that was loaded or saved last; a save replaces it unasked
    bool folderTyped_ = false;       // the project's folder, not one that a file brought along
    DelayedFlush backupFlush_;
    std::unique_ptr<NodeCanvasHost> canvasHost_;
    std::unique_ptr<AuthoringScreen> screen_;
    // Panels that were closed; they die between events, since an event may be on its way through
    // them.
    std::vector<std::unique_ptr<UI_Object>> closedPanels_;
};
