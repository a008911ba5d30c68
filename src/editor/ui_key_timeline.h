// The keyframe tracks of the scene: a list of them, and the chosen one as a curve over time with
// its keys, which are added, moved, eased and deleted here. Keys change through the track's own
// operations, so that they play at once. Main thread; drawing needs the OpenGL context.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "core/value_object.h"
#include "editor/key_edit.h"
#include "editor/key_timeline_view.h"
#include "editor/ui_object.h"

class Engine;
class KeyframeTrack;
class UI_Button;
class UI_Selection;
class UI_ValueControl;

class UI_KeyTimeline : public UI_Object, public UI_Evt_ValueChanged {
  public:
    // `owner` must outlive the timeline. Pixels of the screen.
    UI_KeyTimeline(Engine& owner, int timelineX, int timelineY, int timelineWidth,
                   int timelineHeight);
    ~UI_KeyTimeline() override;

    // --- tracks
    // The engine's tracks in its order. Follow it with RebuildTrackList.
    void SetTracks(std::vector<KeyframeTrack*> list) { tracks = std::move(list); }
    // Has the engine the very tracks that the list was made of? A new track may lie where an old
    // one was, so names count too.
    bool IsUpToDate() const;
    // Makes the list's texts and the choice anew, and closes the choice's list. What was chosen
    // stays chosen as long as it is there, unless a value has just been animated: then it is its
    // first track.
    void RebuildTrackList();
    // Null when none is chosen, also when the engine has the chosen one no more.
    KeyframeTrack* ChosenTrack() const;
    void ChooseTrack(int index);
    // Chooses the first track of a node's value; nothing happens when it has none.
    void ChooseTrackOf(std::string_view nodeId, std::string_view valueName);

    // --- keys of the chosen track
    // As the keys are now: what is picked goes along when keys before it come or go.
    const std::set<std::size_t>& PickedIndices();
    void PickKeys(std::set<std::size_t> indices);
    void DeletePicked();
    void SetModeOfPicked(std::int32_t mode);
    // Shows the whole chosen track, also when keys come from elsewhere later: until the view is
    // moved or keys are edited here.
    void FrameTrack();

    void Draw() override;
    bool HandleEvent(UI_Event* event) override;
    void SetMaster(UI_Master* newMaster) override;
    void OnValueEdited(UI_Object* sender) override;
    void OnCommand(UI_Object* sender, int argument) override;

    std::vector<KeyframeTrack*> tracks;  // as the engine had them at the last refresh
    ValueMultiInt trackChoice{"Track", ""};
    std::unique_ptr<UI_Selection> trackSelection;
    std::unique_ptr<UI_ValueControl> tempoControl;
    std::unique_ptr<UI_Button> modeButtons[4];
    std::unique_ptr<UI_Button> frameButton, deleteButton, snapButton;
    bool hidden = false;  // neither drawn nor edited
    KeyTimelineView view;
    BeatGrid grid;

    // What the screen around it does. May be empty.
    std::function<void(float seconds)> seek;
    std::function<float()> now;
    std::function<void(std::string_view)> tell;

  private:
    enum class Drag { None, Seek, Keys, Frame, Pan };

    // Within which the keys of a track lie.
    struct KeyRange {
        float firstSeconds = 0, lastSeconds = 0;
        float least = 0, most = 0;
        bool operator==(const KeyRange&) const = default;
    };

    std::vector<UI_Object*> controls() const;
    void placeControls();
    static KeyRange rangeOf(const KeyframeTrack& track);  // of a track with keys
    void followKeys();
    int freshTrack() const;
    void followPicks();
    void notePicks();
    bool handle(UI_Event* event);
    std::string optionText(const KeyframeTrack& track) const;

    // --- ui_key_timeline_draw.cpp
    void drawControls();
    void drawTrackList();
    void drawRuler();
    void drawGrid();
    void drawValueAxis();
    void drawCurve(const KeyframeTrack& track, const Vec4& color, float lineWidth);
    void drawSiblings(const KeyframeTrack& track);
    void drawKeys(const KeyframeTrack& track);
    void drawPlayhead();
    void drawPickFrame();
    void drawEmpty();

    // --- ui_key_timeline_input.cpp
    bool handleControls(UI_Event* event);
    bool handleDrag(const UI_Event& event);
    bool handleWheel(const UI_Event& event);
    bool handleKeyPress(const UI_Event& event);
    bool handleList(const UI_Event& event);
    void pressGraph(const UI_Event& event);
    void addKeyAt(const UI_Event& event);
    void dragKeys(const UI_Event& event);
    void endPickFrame(const UI_Event& event);
    void cycleMode(std::size_t index);
    void startDrag(Drag kind, const UI_Event& event);
    void endDrag();
    void seekTo(int pixelX, const UI_Event& event);
    int keyAt(int pixelX, int pixelY) const;  // -1: none
    float snapped(float timeSeconds, const UI_Event& event) const;
    float snapStep() const;

    bool inGraph(int pixelX, int pixelY) const;
    bool inRuler(int pixelX, int pixelY) const;
    bool inList(int pixelX, int pixelY) const;

    Engine& engine_;
    std::vector<std::string> names_;  // of the tracks, at the last rebuild of the list
    std::string chosenName_;
    std::set<std::size_t> picked_;
    std::vector<float> pickedAmong_;  // times of the keys when they were picked
    bool snaps_ = true;
    bool followsKeys_ = true;  // nobody has moved the view since it was framed
    KeyRange framed_;
    int listScroll_ = 0;  // rows
    Drag drag_ = Drag::None;
    PickedKeys dragKeys_;  // of the chosen track when the drag began
    std::size_t grabbed_ = 0;
    int pressX_ = 0, pressY_ = 0, lastX_ = 0, lastY_ = 0;
    bool moved_ = false;
    bool adds_ = false;  // to what is picked
};
