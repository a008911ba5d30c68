#include "editor/ui_key_timeline.h"

#include <algorithm>
#include <unordered_set>

#include "core/engine.h"
#include "editor/ui_button.h"
#include "editor/ui_key_timeline_layout.h"
#include "editor/ui_master.h"
#include "editor/ui_selection.h"
#include "editor/ui_value_control.h"

namespace {

constexpr float kLeastTempo = 20, kMostTempo = 400;

std::unique_ptr<UI_Button> MakeButton(const char* text, int width, const char* tooltip) {
    auto button = std::make_unique<UI_Button>(text, 0, 0, width, kControlHeight);
    button->tooltip = tooltip;
    return button;
}

}  // namespace

UI_KeyTimeline::UI_KeyTimeline(Engine& owner, int timelineX, int timelineY, int timelineWidth,
                               int timelineHeight)
    : engine_(owner) {
    SetPosition(timelineX, timelineY);
    SetSize(timelineWidth, timelineHeight);
    ValueInt choice("Track", "");
    choice.data = &trackChoice.value;
    trackSelection = std::make_unique<UI_Selection>(choice, 0, kSelectionWidth);
    for (std::int32_t mode = kKeyCosine; mode <= kKeyEaseOut; ++mode) {
        modeButtons[mode] = MakeButton(KeyModeName(mode), kModeButtonWidth,
                                       "How the value goes to the selected keys");
    }
    frameButton = MakeButton("Fit", 50, "Show the whole track (Home)");
    deleteButton = MakeButton("Delete", 64, "Delete the selected keys (Delete)");
    snapButton = MakeButton("Snap", 56, "Keys that are added or moved go to the beats");
    tempoControl = std::make_unique<UI_ValueControl>("Beats a minute", 0, 0, kTempoWidth, false);
    tempoControl->value.data = &grid.beatsPerMinute;
    tempoControl->value.min = kLeastTempo;
    tempoControl->value.max = kMostTempo;
    tempoControl->value.defaultValue = grid.beatsPerMinute;
    tempoControl->value.decimals = 1;
    snapButton->keyed = snaps_;
    for (UI_Object* control : controls()) control->listener = this;
    placeControls();
    view.frameTimes(0, 60);
    view.frameValues(0, 1);
}

UI_KeyTimeline::~UI_KeyTimeline() = default;

std::vector<UI_Object*> UI_KeyTimeline::controls() const {
    return {trackSelection.get(), modeButtons[0].get(), modeButtons[1].get(),
            modeButtons[2].get(), modeButtons[3].get(), deleteButton.get(),
            frameButton.get(),    snapButton.get(),     tempoControl.get()};
}

// From the left to the right along the upper edge.
void UI_KeyTimeline::placeControls() {
    int left = x + kControlGap;
    for (UI_Object* control : controls()) {
        control->SetPosition(left, y + (kHeaderHeight - control->height) / 2);
        left += control->width + kControlGap;
    }
    view.left = x + kListWidth;
    view.top = y + kHeaderHeight + kRulerHeight;
    view.width = width - kListWidth;
    view.height = height - kHeaderHeight - kRulerHeight;
}

void UI_KeyTimeline::SetMaster(UI_Master* newMaster) {
    UI_Object::SetMaster(newMaster);
    for (UI_Object* control : controls()) control->SetMaster(newMaster);
}

// "ID.PARAMETER" with the id's display name.
std::string UI_KeyTimeline::optionText(const KeyframeTrack& track) const {
    const std::size_t dot = track.name.find('.');
    const std::string node = track.name.substr(0, dot);
    const std::string rest = dot == std::string::npos ? "" : track.name.substr(dot + 1);
    return (master == nullptr ? node : master->DisplayNameOf(node)) + "." + rest;
}

bool UI_KeyTimeline::IsUpToDate() const {
    std::size_t index = 0;
    for (const auto& [id, list] : engine_.tracks) {
        for (const auto& track : list) {
            if (index >= names_.size() || index >= tracks.size()) return false;
            if (track.get() != tracks[index] || track->name != names_[index]) return false;
            ++index;
        }
    }
    return index == tracks.size();
}

// The index of the first track of a value that has just been animated; -1 when more has changed
// than that, or less.
int UI_KeyTimeline::freshTrack() const {
    constexpr std::size_t kMostChannels = 4;
    const std::size_t before = names_.size();
    if (tracks.size() <= before || tracks.size() > before + kMostChannels) return -1;
    const std::unordered_set<std::string_view> known(names_.begin(), names_.end());
    int fresh = -1;
    std::size_t added = 0;
    for (std::size_t i = 0; i < tracks.size(); ++i) {
        if (known.contains(tracks[i]->name)) continue;
        if (added++ == 0) fresh = static_cast<int>(i);
    }
    return added == tracks.size() - before ? fresh : -1;
}

void UI_KeyTimeline::RebuildTrackList() {
    const int fresh = freshTrack();
    names_.clear();
    trackChoice.options.clear();
    trackChoice.value = -1;
    for (const KeyframeTrack* track : tracks) {
        if (track->name == chosenName_ && trackChoice.value < 0) {
            trackChoice.value = static_cast<std::int32_t>(trackChoice.options.size());
        }
        names_.push_back(track->name);
        trackChoice.options.push_back(optionText(*track));
    }
    trackSelection->TakeOptions(trackChoice);
    if (fresh >= 0) {
        ChooseTrack(fresh);
    } else if (trackChoice.value < 0 && !tracks.empty()) {
        ChooseTrack(0);
    }
    if (tracks.empty()) {
        chosenName_.clear();
        picked_.clear();
    }
}

// The list may be older than the engine's tracks: only a pointer that the engine has is followed.
KeyframeTrack* UI_KeyTimeline::ChosenTrack() const {
    const auto index = static_cast<std::size_t>(trackChoice.value);
    if (trackChoice.value < 0 || index >= tracks.size() || index >= names_.size()) return nullptr;
    for (const auto& [id, list] : engine_.tracks) {
        for (const auto& track : list) {
            if (track.get() != tracks[index]) continue;
            return track->name == names_[index] ? track.get() : nullptr;
        }
    }
    return nullptr;
}

void UI_KeyTimeline::ChooseTrack(int index) {
    if (index < 0 || index >= static_cast<int>(tracks.size())) return;
    endDrag();
    trackChoice.value = index;
    picked_.clear();
    notePicks();
    const KeyframeTrack* track = ChosenTrack();
    chosenName_ = track == nullptr ? std::string() : track->name;
    const int rows = (height - kHeaderHeight) / kListRow;
    if (index < listScroll_ || index >= listScroll_ + rows) listScroll_ = index - rows / 2;
    FrameTrack();
}

void UI_KeyTimeline::ChooseTrackOf(std::string_view nodeId, std::string_view valueName) {
    const std::string wanted = std::string(nodeId) + "." + std::string(valueName);
    for (std::size_t i = 0; i < tracks.size(); ++i) {
        const std::string& name = tracks[i]->name;
        if (!name.starts_with(wanted)) continue;
        if (name.size() > wanted.size() && name[wanted.size()] != '.') continue;
        ChooseTrack(static_cast<int>(i));
        return;
    }
}

void UI_KeyTimeline::PickKeys(std::set<std::size_t> indices) {
    picked_ = std::move(indices);
    notePicks();
}

const std::set<std::size_t>& UI_KeyTimeline::PickedIndices() {
    followPicks();
    return picked_;
}

void UI_KeyTimeline::notePicks() {
    pickedAmong_.clear();
    const KeyframeTrack* track = ChosenTrack();
    if (track == nullptr) return;
    for (const Keyframe& key : track->keys()) pickedAmong_.push_back(key.time);
}

// Keys come and go elsewhere too, while a value is edited or with another file. A picked key is the
// one of its time: of several the one that has as many before it; a key that has gone is dropped.
void UI_KeyTimeline::followPicks() {
    const KeyframeTrack* track = ChosenTrack();
    const auto sameTime = [](const Keyframe& key, float time) { return key.time == time; };
    if (track != nullptr && std::equal(track->keys().begin(), track->keys().end(),
                                       pickedAmong_.begin(), pickedAmong_.end(), sameTime)) {
        return;
    }
    std::set<std::size_t> followed;
    for (const std::size_t index : picked_) {
        if (track == nullptr || index >= pickedAmong_.size()) continue;
        const float time = pickedAmong_[index];
        const auto at = pickedAmong_.begin() + static_cast<std::ptrdiff_t>(index);
        auto before = std::count(pickedAmong_.begin(), at, time);
        for (std::size_t i = 0; i < track->keys().size(); ++i) {
            if (track->keys()[i].time == time && before-- == 0) followed.insert(i);
        }
    }
    picked_ = std::move(followed);
    notePicks();
}

void UI_KeyTimeline::DeletePicked() {
    followPicks();
    KeyframeTrack* track = ChosenTrack();
    if (track == nullptr || picked_.empty()) return;
    endDrag();
    for (auto index = picked_.rbegin(); index != picked_.rend(); ++index) track->eraseKey(*index);
    picked_.clear();
    notePicks();
}

void UI_KeyTimeline::SetModeOfPicked(std::int32_t mode) {
    followPicks();
    KeyframeTrack* track = ChosenTrack();
    if (track == nullptr) return;
    for (const std::size_t index : picked_) track->setKeyMode(index, mode);
}

UI_KeyTimeline::KeyRange UI_KeyTimeline::rangeOf(const KeyframeTrack& track) {
    const auto& keys = track.keys();
    const auto [first, last] =
        std::minmax_element(keys.begin(), keys.end(),
                            [](const Keyframe& a, const Keyframe& b) { return a.time < b.time; });
    const auto [least, most] =
        std::minmax_element(keys.begin(), keys.end(),
                            [](const Keyframe& a, const Keyframe& b) { return a.value < b.value; });
    return {first->time, last->time, least->value, most->value};
}

void UI_KeyTimeline::FrameTrack() {
    const KeyframeTrack* track = ChosenTrack();
    if (track == nullptr || track->keys().empty()) return;
    framed_ = rangeOf(*track);
    view.frameTimes(framed_.firstSeconds, framed_.lastSeconds);
    view.frameValues(framed_.least, framed_.most);
    followsKeys_ = true;
}

// A value that is animated elsewhere gets its keys one by one.
void UI_KeyTimeline::followKeys() {
    const KeyframeTrack* track = ChosenTrack();
    if (!followsKeys_ || drag_ != Drag::None || track == nullptr || track->keys().empty()) return;
    if (rangeOf(*track) != framed_) FrameTrack();
}

void UI_KeyTimeline::OnValueEdited(UI_Object* sender) {
    if (sender == trackSelection.get()) ChooseTrack(trackChoice.value);
}

void UI_KeyTimeline::OnCommand(UI_Object* sender, int /*argument*/) {
    for (std::int32_t mode = kKeyCosine; mode <= kKeyEaseOut; ++mode) {
        if (sender == modeButtons[mode].get()) SetModeOfPicked(mode);
    }
    if (sender == frameButton.get()) FrameTrack();
    if (sender == deleteButton.get()) DeletePicked();
    if (sender == snapButton.get()) snapButton->keyed = snaps_ = !snaps_;
}
