// The demo's scenes of models, built as the content tool builds them and run, up to what their
// renderers are given.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <memory>

#include "app/session.h"
#include "core/geometry_node.h"
#include "core/material_data.h"
#include "demo/tool/demo_scenes.h"
#include "models.h"
#include "pictures.h"
#include "platform/debug_output.h"
#include "support/gl_fixture.h"
#include "support/temp_folder.h"

namespace {

namespace fs = std::filesystem;

constexpr float kStart = 100, kStop = 112;

// A session in a folder with the demo's scripts and models, but without its pictures.
class ModelScenes : public GlTest {
  protected:
    void SetUp() override {
        GlTest::SetUp();
        std::string error;
        ASSERT_TRUE(BuildModels(folder_.path() / "data", error)) << error;
        fs::create_directory_symlink(VORN_SOURCE_DIR "/demo/Scripts", folder_.path() / "Scripts");
        if (const char* fonts = std::getenv("VORN_TEST_FONTS")) {
            fs::create_directory_symlink(fonts, folder_.path() / "fonts");
        }
        std::string reason;
        int exitCode = 0;
        session_ = Session::Start(WindowKind::Offscreen, reason, exitCode);
        ASSERT_NE(session_, nullptr) << reason;
        demo = std::make_unique<DemoBuilder>(*session_->engine);
    }

    Engine& engine() { return *session_->engine; }

    template <typename Work>
    void forNodes(const std::string& type, Work work) {
        int count = 0;
        while (Node* node = engine().findNode(type + std::to_string(count + 1))) {
            work(*node);
            ++count;
        }
        EXPECT_GT(count, 0) << "no " << type;
    }

    // The objects that a geometry node offers at a time.
    const std::vector<GeometryObject>& objectsAt(const std::string& id, float seconds) {
        engine().update(seconds);
        auto* node = dynamic_cast<GeometryNode*>(engine().findNode(id));
        EXPECT_NE(node, nullptr) << id;
        node->pull();
        return node->objects;
    }

    std::string textOf(const Node& node, const char* name) {
        const Value_Object* value = engine().findValue(&node, name);
        return *static_cast<const ValueString*>(value)->data;
    }

    std::unique_ptr<DemoBuilder> demo;

  private:
    TempFolder folder_;
    WorkingFolder working_{folder_.path()};
    DebugCapture quiet_;
    std::unique_ptr<Session> session_;
};

struct NamedScene {
    const char* name;
    demo_scenes::Scene build;
};

std::ostream& operator<<(std::ostream& stream, const NamedScene& scene) {
    return stream << scene.name;
}

class ModelScene : public ModelScenes, public testing::WithParamInterface<NamedScene> {};

}  // namespace

TEST_P(ModelScene, IsBuiltWithoutFaultsAndEndsInAPicture) {
    const std::string picture = GetParam().build(*demo, kStart, kStop);
    for (const std::string& fault : demo->faults()) ADD_FAILURE() << fault;
    const Node* node = engine().findNode(picture);
    ASSERT_NE(node, nullptr);
    EXPECT_EQ(node->getType(), kImageNode);
}

TEST_P(ModelScene, ReadsOnlyFilesThatAreMade) {
    GetParam().build(*demo, kStart, kStop);
    const std::vector<std::string> models = ModelNames(), pictures = PictureNames();
    const auto contains = [](const std::vector<std::string>& names, const std::string& path) {
        const std::string name = path.substr(path.rfind('\\') + 1);
        return std::find(names.begin(), names.end(), name) != names.end();
    };
    forNodes("ObjReader", [&](Node& node) {
        EXPECT_TRUE(contains(models, textOf(node, "Filename"))) << textOf(node, "Filename");
    });
    forNodes("Reader", [&](Node& node) {
        EXPECT_TRUE(contains(pictures, textOf(node, "Filename"))) << textOf(node, "Filename");
    });
}

TEST_P(ModelScene, KeepsItsKeysWithinItsTime) {
    GetParam().build(*demo, kStart, kStop);
    const auto tracks = engine().allTracks();
    EXPECT_FALSE(tracks.empty());
    for (const KeyframeTrack* track : tracks) {
        for (const Keyframe& key : track->keys()) {
            EXPECT_GE(key.time, kStart) << track->name;
            EXPECT_LE(key.time, kStop) << track->name;
        }
    }
}

TEST_P(ModelScene, GivesEveryObjectAMaterialThatIsDrawn) {
    GetParam().build(*demo, kStart, kStop);
    forNodes("3DRender_RAD", [&](Node& renderer) {
        const Node* geometry = renderer.getInput(0);
        ASSERT_NE(geometry, nullptr);
        for (const GeometryObject& object : objectsAt(geometry->id, (kStart + kStop) / 2)) {
            ASSERT_NE(object.material, nullptr) << object.name;
            EXPECT_EQ(object.material->blend, 0) << object.name;
            EXPECT_GT(object.vertexCount, 0) << object.name;
        }
    });
}

INSTANTIATE_TEST_SUITE_P(All, ModelScene,
                         testing::Values(NamedScene{"Interior", demo_scenes::Interior},
                                         NamedScene{"Rain", demo_scenes::Rain},
                                         NamedScene{"Blob", demo_scenes::Blob}),
                         [](const auto& scene) { return std::string(scene.param.name); });

TEST_F(ModelScenes, RainIsOfSomeHundredCopiesThatFallDown) {
    demo_scenes::Rain(*demo, kStart, kStop);
    std::size_t copies = 0;
    forNodes("FallingModel", [&](Node& node) {
        copies += objectsAt(node.id, kStart).size();
        for (const GeometryObject& copy : objectsAt(node.id, kStart)) {
            EXPECT_LE(copy.transform[13], 0.0f);
        }
    });
    EXPECT_GE(copies, 200u);
    EXPECT_LE(copies, 800u);
}
