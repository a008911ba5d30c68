// The authoring screen: its widgets, where they stand, and the change between the two screens.
#include <algorithm>

#include "core/engine.h"
#include "editor/ui_authoring_screen.h"
#include "editor/ui_backdrop_choice.h"
#include "editor/ui_button.h"
#include "editor/ui_canvas_host.h"
#include "editor/ui_engine.h"
#include "editor/ui_hints.h"
#include "editor/ui_key_timeline.h"
#include "editor/ui_label.h"
#include "editor/ui_log_view.h"
#include "editor/ui_node_canvas.h"
#include "editor/ui_properties_column.h"
#include "editor/ui_selection.h"
#include "editor/ui_text_box.h"
#include "editor/ui_viewer_node.h"
#include "platform/debug_output.h"
#include "platform/program_folder.h"
#include "platform/window.h"

namespace {

// Pixels of the 1920 by 1080 screen: the toolbar along the top, the panels of the project on the
// left, the properties on the right, the picture between them over the canvas or the timeline, and
// the line of hints at the foot.
constexpr int kWidth = 1920, kHeight = 1080;
constexpr int kToolbar = 48, kFoot = 24, kGap = 4;
constexpr int kPropertiesWidth = 410;
constexpr int kPropertiesX = kWidth - kPropertiesWidth;
constexpr int kLeftWidth = 376;
constexpr int kTop = kToolbar + kGap, kBottom = kHeight - kFoot;
constexpr int kLowerY = 608;  // of the canvas and the timeline
constexpr int kLeftPanelHeight = 236;
constexpr int kButtonHeight = 30, kRow = 32;
constexpr int kButtonY = 9 + kGap;  // on the toolbar, which begins above the screen
constexpr int kPanelRowX = 5, kPanelRowWidth = kLeftWidth - 2 * kPanelRowX;
constexpr int kFirstRow = 22;

}  // namespace

// --- making

UI_Button* UI_Engine::addButton(UI_Panel& panel, const char* text, int x, int y, int width,
                                const char* tooltip) {
    auto* button = new UI_Button(text, x, y, width, kButtonHeight);
    button->tooltip = tooltip;
    button->listener = this;
    panel.AddChild(button);
    return button;
}

UI_Button* UI_Engine::addTopButton(int& left, const char* text, int width, const char* tooltip) {
    UI_Button* button = addButton(*topPanel, text, left, kButtonY, width, tooltip);
    left += width + kGap;
    return button;
}

UI_TextBox* UI_Engine::addTextBox(ValueString& value, std::string& text, int y) {
    value.data = &text;
    value.defaultValue = text;
    auto* box = new UI_TextBox(value, kPanelRowX, y, kPanelRowWidth);
    box->keyable = false;
    leftPanel->AddChild(box);
    return box;
}

void UI_Engine::makeAuthoringScreen() {
    master.TakeMissingFonts(ProgramFolder());
    screen_ = std::make_unique<AuthoringScreen>(*imagePanel, kWidth, kHeight, kFoot);
    makeTopPanel();
    makeTransport();
    makeChoices();
    makeLeftPanel();
    makeRightPanel();
    makeRestorePanel();
    propertiesPanel =
        std::make_unique<UI_PropertiesColumn>(kPropertiesX, kTop, kPropertiesWidth, kBottom - kTop);
    makeCanvasAndTimeline();
    screen_->gate.shortcuts = [this](const UI_Event& event) { return handleShortcut(event); };
    screen_->gate.overlays = [this](const UI_Event& event) {
        return screen_->log->HandleListEvent(event);
    };
    screen_->overlays.paint = [this] { screen_->log->DrawList(); };
    screen_->status.hint = [this] { return HintOfMoment(); };
}

void UI_Engine::makeTopPanel() {
    // A panel leaves out its upper two rows.
    topPanel = std::make_unique<UI_Panel>(0, -kGap, kWidth, kTop + kGap, false);
    int left = 8;
    newButton = addTopButton(left, "New", 52, "Erase everything and begin anew (Ctrl+N)");
    loadButton = addTopButton(left, "Reload", 64, "Load the project again from its file (Ctrl+O)");
    saveButton = addTopButton(left, "Save", 56,
                              "Save the project, with a stamped backup beside it (Ctrl+S)");
    importButton =
        addTopButton(left, "Import", 64, "Add another project's nodes to this one (Ctrl+I)");
    undoButton =
        addTopButton(left, "Undo", 56, "Back to the last save, then to the one before (Ctrl+Z)");
    left += 20;
    const auto addTool = [&](const char* text, int width, const char* tooltip,
                             UI_EditRelay& relay) {
        addTopButton(left, text, width, tooltip)->listener = &relay;
    };
    addTool("Add node", 84, "All node types (Tab on the canvas)", screen_->addNodePressed);
    addTool("Show all", 76, "Bring all nodes into view (Home)", screen_->framePressed);
    addTool("Arrange", 76, "Lay all nodes out in order; once more puts them back (L)",
            screen_->arrangePressed);
    screen_->addNodePressed.edited = [this] {
        SetLayoutMode(kLayoutNodeCanvas);
        nodeCanvas->openPalette(nodeCanvas->x + nodeCanvas->width / 3, nodeCanvas->y + 20);
    };
    screen_->framePressed.edited = [this] { nodeCanvas->frameAll(); };
    screen_->arrangePressed.edited = [this] {
        nodeCanvas->arrangeOrPutBack();
        SetStatus(screen_->canvasStatus);
    };
    left += 20;
    layoutButton0 = addTopButton(left, "Nodes", 64, "The node canvas below the picture");
    layoutButton1 = addTopButton(left, "Keys", 56, "The keyframes below the picture");
    layoutButton2 = addTopButton(left, "Picture", 68, "A larger picture, and neither of them");
    addTool("Help", 52, "A sheet of all keys and gestures (F1)", screen_->helpPressed);
    topPanel->children.back()->SetPosition(kWidth - 132, kButtonY - kGap);
    screen_->helpPressed.edited = [this] { screen_->keySheet.Open(); };
    hideEditorButton =
        addButton(*topPanel, "Hide", kWidth - 72, kButtonY, 64, "Only the picture, with its pins");
}

void UI_Engine::makeTransport() {
    int left = 820;
    stopButton = addTopButton(left, "Stop", 56, "Back to the start");
    stepBackButton = addTopButton(left, "<", 40, "One step back (Left)");
    playButton = addTopButton(left, "Play", 72, "Play and pause (Space)");
    stepForwardButton = addTopButton(left, ">", 40, "One step forward (Right)");
    timeLabel = new UI_Label("", left + 12, kButtonY, 120);
    timeLabel->textSize = 20;
    timeLabel->color = kColorKeyed;
    topPanel->AddChild(timeLabel);
    frameCostLabel = new UI_Label("", left + 136, kButtonY, 120);
    topPanel->AddChild(frameCostLabel);
}

void UI_Engine::makeChoices() {
    int right = kWidth - 132 - 20;
    const auto add = [&](const ValueInt& value, int width) {
        auto* choice = new UI_Selection(value, kButtonY, width);
        topPanel->AddChild(choice);
        choice->SetPosition(right - width, kButtonY - kGap);
        right -= width + kGap;
        return choice;
    };
    ValueInt rate("Steps/s", "");
    rate.data = &stepRateIndex;
    rate.defaultValue = stepRateIndex;
    for (const int perSecond : kStepRates) rate.options.push_back(std::to_string(perSecond));
    add(rate, 190);
    ValueInt output("Output", "");
    output.data = &outputChoice.value;
    outputSelector = add(output, 270);
    outputSelector->listener = &screen_->outputChosen;
    screen_->outputChosen.edited = [this] { takeOutputChoice(); };
}

void UI_Engine::makeLeftPanel() {
    leftPanel = std::make_unique<UI_Panel>(0, kTop, kLeftWidth, kLeftPanelHeight, false);
    leftPanel->title = "Project";
    int y = kFirstRow;
    const auto next = [&y] {
        y += kRow;
        return y - kRow;
    };
    addTextBox(projectNameValue, engine->projectName, next());
    addTextBox(projectFolderValue, engine->projectFolder, next())->listener =
        &screen_->folderEdited;
    screen_->folderEdited.edited = [this] { folderTyped_ = true; };
    pathBox1 = addTextBox(musicFileValue, engine->musicFile, next());
    pathBox2 = addTextBox(dataFolderValue, engine->dataFolder, next());
    addTextBox(lengthValue, engine->lengthText, next());
    settingsApplyButton = addButton(*leftPanel, "Apply", kPanelRowX + kPanelRowWidth - 90, next(),
                                    90, "Music and data without a folder take the project's");
}

void UI_Engine::makeRightPanel() {
    const int top = kTop + kLeftPanelHeight + kGap;
    rightPanel = std::make_unique<UI_Panel>(0, top, kLeftWidth, kLowerY - kGap - top, false);
    rightPanel->title = "Picture and messages";
    int y = kFirstRow;
    rightPanel->AddChild(new UI_BackdropChoice(imageBackdrop, kPanelRowX, y, kPanelRowWidth));
    y += kRow + 4;
    screen_->log = new UI_LogView(kPanelRowX, y, kPanelRowWidth, rightPanel->height - y - 6);
    rightPanel->AddChild(screen_->log);
}

void UI_Engine::makeRestorePanel() {
    restorePanel = std::make_unique<UI_Panel>(kWidth - 132, 8, 124, 46, false);
    showEditorButton = addButton(*restorePanel, "Show editor", 8, 8, 108, "Bring the editor back");
    restorePanel->hidden = true;
}

void UI_Engine::makeCanvasAndTimeline() {
    canvasHost_ = std::make_unique<CanvasHost>(*this);
    // At x 0: a side-file keeps a box's x as it is on the screen, and a load adds the canvas's.
    nodeCanvas = std::make_unique<UI_NodeCanvas>(*canvasHost_, 0, kLowerY, kPropertiesX - kGap,
                                                 kBottom - kGap - kLowerY);
    keyTimeline = std::make_unique<UI_KeyTimeline>(*engine, 0, kLowerY, kPropertiesX - kGap,
                                                   kBottom - kGap - kLowerY);
    keyTimeline->now = [this] { return editorTime; };
    keyTimeline->seek = [this](float seconds) { SeekTo(seconds); };
    keyTimeline->tell = [this](std::string_view text) { SetStatus(text); };
}

// Events go to the first that takes them, and what is drawn later lies over what is drawn before:
// the toolbar and the foot cover what the column of properties draws above and below itself.
void UI_Engine::registerWidgets() {
    UI_Object* const widgets[] = {
        &screen_->gate,     propertiesPanel.get(), &screen_->picture,  nodeCanvas.get(),
        keyTimeline.get(),  leftPanel.get(),       rightPanel.get(),   topPanel.get(),
        restorePanel.get(), &screen_->status,      &screen_->overlays, &screen_->keySheet,
    };
    for (UI_Object* widget : widgets) master.AddTopLevel(widget);
}

// --- the two screens

void UI_Engine::ShowScreen(ScreenKind kind) {
    if ((kind == ScreenKind::Presentation) == presentationMode) return;
    endGestures();
    if (kind == ScreenKind::Authoring) {
        enterAuthoring();
    } else {
        leaveAuthoring();
    }
}

void UI_Engine::enterAuthoring() {
    const bool first = screen_ == nullptr;
    if (first) makeAuthoringScreen();
    presentationMode = false;
    master.topLevel.clear();
    registerWidgets();
    imagePanel->bare = false;
    imagePanel->view = screen_->pictureView;
    setEditorHidden(editorHidden_);
    const bool placed =
        std::any_of(engine->nodes.begin(), engine->nodes.end(),
                    [this](const auto& entry) { return nodePositions.contains(entry.first); });
    Rebuild(first ? Boxes::PlaceAnew : Boxes::Capture);
    RefreshTimeline();
    updateLabels();
    playButton->keyed = playing;
    if (!first) return;
    if (!placed) nodeCanvas->arrange();
    nodeCanvas->frameAll();
    noteSaved();
}

void UI_Engine::leaveAuthoring() {
    presentationMode = true;
    screen_->pictureView = imagePanel->view;
    Mat4Identity(imagePanel->view);
    imagePanel->bare = true;
    imagePanel->SetPosition(0, 0);
    imagePanel->SetSize(kWidth, kHeight);
    master.topLevel.clear();
    master.AddTopLevel(imagePanel.get());
    outputs.clear();
    for (OutputNode* output : engine->outputs) {
        if (auto* viewer = dynamic_cast<UI_ViewerNode*>(output))
            viewer->target = engine->viewerTarget;
    }
}

// Whatever has the mouse hears that the buttons come up, far from every widget, and that typing is
// given up.
void UI_Engine::endGestures() {
    if (nodeCanvas != nullptr) nodeCanvas->cancel();
    constexpr int kFarAway = -30000;
    for (const UI_EventType type :
         {UI_EventType::KeyUp, UI_EventType::LeftUp, UI_EventType::MiddleUp}) {
        if (master.captured == nullptr) return;
        UI_Event event{type, kKeyEscape, kFarAway, kFarAway, false, false};
        master.captured->HandleEvent(&event);
    }
    master.captured = nullptr;
    master.capturedOnTop = false;
}

bool UI_Engine::GiveUp() {
    if (presentationMode) return false;
    if (editorHidden_) {
        ShowEditor();
        return true;
    }
    if (screen_->log->open || screen_->keySheet.isOpen()) {
        screen_->log->open = false;
        screen_->keySheet.Close();
        return true;
    }
    const bool picks = !nodeCanvas->selection().empty() || !keyTimeline->PickedIndices().empty();
    nodeCanvas->select({});
    keyTimeline->PickKeys({});
    return picks;
}

// --- what is seen

void UI_Engine::SetLayoutMode(int mode) {
    layoutMode = mode;
    applyLayoutMode();
}

void UI_Engine::applyLayoutMode() {
    if (screen_ == nullptr) return;
    for (UI_Button* button : {layoutButton0, layoutButton1, layoutButton2}) button->keyed = false;
    switch (layoutMode) {
        case kLayoutNodeCanvas:
            layoutButton0->keyed = true;
            break;
        case kLayoutKeyTimeline:
            layoutButton1->keyed = true;
            break;
        case kLayoutNeither:
            layoutButton2->keyed = true;
            break;
        default:
            return;
    }
    nodeCanvas->hidden = editorHidden_ || layoutMode != kLayoutNodeCanvas;
    keyTimeline->hidden = editorHidden_ || layoutMode != kLayoutKeyTimeline;
    placePicture();
}

void UI_Engine::placePicture() {
    if (editorHidden_) {
        screen_->picture.Place(0, 0, kWidth, kHeight);
        return;
    }
    const int left = kLeftWidth + kGap, right = kPropertiesX - kGap;
    const int bottom = layoutMode == kLayoutNeither ? kBottom - kGap : kLowerY - kGap;
    screen_->picture.Place(left, kTop, right - left, bottom - kTop);
}

void UI_Engine::HideEditor() {
    setEditorHidden(true);
}

void UI_Engine::ShowEditor() {
    setEditorHidden(false);
}

void UI_Engine::setEditorHidden(bool hide) {
    if (screen_ == nullptr) return;
    editorHidden_ = hide;
    restorePanel->hidden = !hide;
    topPanel->hidden = leftPanel->hidden = rightPanel->hidden = propertiesPanel->hidden = hide;
    for (UI_Button* button : {layoutButton0, layoutButton1, layoutButton2}) button->hidden = hide;
    screen_->log->open = screen_->log->open && !hide;
    screen_->status.hidden = hide;
    applyLayoutMode();
}

// --- keys and hints

bool UI_Engine::handleShortcut(const UI_Event& event) {
    if (event.ctrl) {
        switch (event.value) {
            case 'S':
                Save();
                return true;
            case 'O':
                Reload();
                return true;
            case 'N':
                New();
                return true;
            case 'I':
                Import();
                return true;
            case 'Z':
                Undo();
                return true;
            default:
                return false;
        }
    }
    switch (event.value) {
        case kKeySpace:
            TogglePlay();
            return true;
        case kKeyLeft:
            Step(-1);
            return true;
        case kKeyRight:
            Step(1);
            return true;
        case kKeyUp:
            SeekTo(editorTime + 1);
            return true;
        case kKeyDown:
            SeekTo(editorTime - 1);
            return true;
        case kKeyF1:
            screen_->keySheet.Open();
            return true;
        default:
            return false;
    }
}

std::string UI_Engine::HintOfMoment() const {
    const UI_Object* widget = master.captured;
    if (widget == nullptr) widget = WidgetAt(master.topLevel, master.mouseX, master.mouseY);
    if (widget == nullptr) return {};
    return IsOfNodeCanvas(*widget) ? screen_->canvasStatus : HintFor(*widget);
}

void UI_Engine::SetStatus(std::string_view text) {
    if (screen_ != nullptr) screen_->status.Tell(text, UI_StatusLine::Tone::News);
}

std::string UI_Engine::StatusText() const {
    return screen_ == nullptr ? std::string() : screen_->status.message;
}

void UI_Engine::tellFault(const std::string& text) {
    DebugFault(text + "\n");
    if (screen_ != nullptr) screen_->status.Tell(text, UI_StatusLine::Tone::Fault);
}
