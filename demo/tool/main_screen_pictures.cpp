// Draws the authoring screen with a project on it, as it is shown to who works with it, and writes
// pictures of its states.
//   vorn_screen_pictures PROJECT.vorn FOLDER
#include <GL/glew.h>

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "app/session.h"
#include "editor/ui_key_timeline.h"
#include "editor/ui_log_view.h"
#include "editor/ui_node_canvas.h"
#include "editor/ui_properties_column.h"
#include "platform/picture_decoder.h"
#include "platform/user_dialogs.h"
#include "platform/window.h"

namespace fs = std::filesystem;

namespace {

constexpr float kSeconds = 62;  // of the demo, in all pictures
constexpr int kBesideAnimated = 3;

class ScreenPictures {
  public:
    ScreenPictures(Session& session, fs::path folder)
        : session_(session), folder_(std::move(folder)) {}

    void send(std::uint32_t message, int value, int x, int y) {
        session_.ui->master.Dispatch({message, value, x, y});
    }

    bool write(const std::string& name) {
        UI_Engine& ui = *session_.ui;
        const GL_FrameBuffer screen(kFrameWidth, kFrameHeight, 1, 8, GL_RGBA, TargetDepth::None,
                                    TargetWrap::Border);
        // A widget may follow in the second frame what the first one found out.
        for (int frame = 0; frame < 2; ++frame) {
            ui.BeginFrameUpdate();
            session_.runGraph(ui.editorTime);
            screen.Bind();
            screen.SelectDrawBuffers();
            screen.SetViewport();
            glClearColor(0, 0, 0, 1);
            glClear(GL_COLOR_BUFFER_BIT);
            ui.DrawFrame();
        }
        std::vector<std::uint8_t> bottomUp(std::size_t{kFrameWidth} * kFrameHeight * 3);
        glPixelStorei(GL_PACK_ALIGNMENT, 1);
        glFinish();
        glReadPixels(0, 0, kFrameWidth, kFrameHeight, GL_RGB, GL_UNSIGNED_BYTE, bottomUp.data());
        GL_FrameBuffer::Unbind();
        constexpr std::size_t kRow = std::size_t{kFrameWidth} * 3;
        std::vector<std::uint8_t> topDown;
        for (std::size_t row = kFrameHeight; row-- > 0;) {
            topDown.insert(topDown.end(), &bottomUp[row * kRow], &bottomUp[row * kRow] + kRow);
        }
        return WritePng((folder_ / (name + ".png")).string(), kFrameWidth, kFrameHeight, 3,
                        topDown.data());
    }

  private:
    Session& session_;
    fs::path folder_;
};

// The nodes with the most tracks: the ones that are worth a look.
std::vector<std::string> AnimatedNodes(const Engine& engine) {
    std::vector<std::string> ids;
    for (const auto& [id, list] : engine.tracks) {
        if (!list.empty() && engine.findNode(id) != nullptr) ids.push_back(id);
    }
    if (ids.size() > kBesideAnimated) ids.resize(kBesideAnimated);
    return ids;
}

// The track with the most keys of those that the moment lies in.
int BusyTrack(const UI_KeyTimeline& timeline) {
    int busiest = 0;
    std::size_t most = 0;
    for (std::size_t i = 0; i < timeline.tracks.size(); ++i) {
        const std::vector<Keyframe>& keys = timeline.tracks[i]->keys();
        if (keys.size() <= most || keys.front().time > kSeconds || keys.back().time < kSeconds) {
            continue;
        }
        most = keys.size();
        busiest = static_cast<int>(i);
    }
    return busiest;
}

bool WriteAll(Session& session, const fs::path& folder) {
    UI_Engine& ui = *session.ui;
    ScreenPictures pictures(session, folder);
    session.showScreen(ScreenKind::Authoring);
    ui.SeekTo(kSeconds);
    for (const std::string& id : AnimatedNodes(*session.engine)) ui.OpenPanel(id);
    pictures.send(kMessageMouseMove, 0, 700, 800);
    bool written = pictures.write("authoring-nodes");
    ui.SetLayoutMode(kLayoutKeyTimeline);
    pictures.send(kMessageMouseMove, 0, 900, 820);
    ui.keyTimeline->ChooseTrack(BusyTrack(*ui.keyTimeline));
    ui.keyTimeline->view.frameTimes(kSeconds - 4, kSeconds + 5);
    written = pictures.write("authoring-keys") && written;
    ui.SetLayoutMode(kLayoutNeither);
    pictures.send(kMessageMouseMove, 0, 900, 400);
    written = pictures.write("authoring-picture") && written;
    ui.SetLayoutMode(kLayoutNodeCanvas);
    pictures.send(kMessageKeyDown, kKeyF1, 900, 400);
    written = pictures.write("authoring-help") && written;
    pictures.send(kMessageKeyDown, kKeyEscape, 900, 400);
    pictures.send(kMessageMouseMove, 0, 760, 960);
    for (int i = 0; i < 10; ++i) pictures.send(kMessageWheel, kWheelNotch, 760, 960);
    pictures.send(kMessageMouseMove, 0, 1080, 700);
    pictures.send(kMessageKeyDown, kKeyTab, 1080, 700);
    for (const char letter : {'g', 'l', 'o'}) pictures.send(kMessageCharacter, letter, 1080, 700);
    written = pictures.write("authoring-palette") && written;
    pictures.send(kMessageKeyDown, kKeyEscape, 1080, 700);
    pictures.send(kMessageLeftDown, 0, 100, 560);  // the messages
    pictures.send(kMessageLeftUp, 0, 100, 560);
    return pictures.write("authoring-messages") && written;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fprintf(stderr, "usage: vorn_screen_pictures PROJECT.vorn FOLDER\n");
        return 2;
    }
    const fs::path project = fs::absolute(argv[1]), folder = fs::absolute(argv[2]);
    std::error_code error;
    fs::create_directories(folder, error);
    fs::current_path(project.parent_path(), error);
    SetMessageBoxHandler(
        [](std::string_view, std::string_view, MessageButtons) { return MessageAnswer::Ok; });
    std::string reason;
    int exitCode = 0;
    const auto session = Session::Start(WindowKind::Offscreen, reason, exitCode);
    if (session == nullptr || !session->engine->load(project.filename().string(), true, "")) {
        std::fprintf(stderr, "vorn_screen_pictures: %s: cannot be shown\n", argv[1]);
        return 1;
    }
    session->ui->ProjectLoaded(project.filename().string());
    return WriteAll(*session, folder) ? 0 : 1;
}
