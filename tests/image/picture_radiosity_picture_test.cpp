// What the radiosity renderer makes of its targets, composition and depth of field, against the
// same formulas in double precision; and the node as the graph and the editor see it.
#include <gmock/gmock.h>

#include <algorithm>
#include <array>

#include "core/frame_profiler.h"
#include "gpu/shader_program.h"
#include "image/radiosity_fixture.h"
#include "support/parameter_table.h"

namespace {

using testing::ElementsAre;

class RadiosityPictureTest : public RadiosityTest {
  protected:
    // A room in the air, with a veil of additive surfaces in front of one part of it.
    void buildVeiledRoom() {
        buildRoom();
        geometry.objects[3].material->reflection = 0.75f;
        link(add<PictureNode>("environment", ReferencePicture::Waves(64, 32, 4).upload()), node,
             Renderer::kEnvironmentPort);
        const Material veil = surface(0.5f, MaterialData::kAdd);
        veil->diffuseImage = plain({0.5f, 1, 0.25f, 1});
        addObject(SquareMesh(), veil, placed({0.8f, 0.6f, 1}, {0, 0, 0}, 0.6f));
    }

    static std::array<double, 4> texel(const ReferencePicture& picture, int x, int y) {
        const Vec4 t = picture.texelAt(x, y);
        return {static_cast<double>(t.r), static_cast<double>(t.g), static_cast<double>(t.b),
                static_cast<double>(t.a)};
    }
};

}  // namespace

TEST_F(RadiosityPictureTest, JoinsColourOcclusionLightAndReflection) {
    buildVeiledRoom();
    set(node, "Background", {0.1f, 0.05f, 0.2f, 0});  // alpha 0: not divided by
    set(node, "GI:Ambiance", {0.7f});
    set(node, "GI:Radius", {3});
    set(node, "GI:Intensity", {15});
    node.giSamples = "8";
    node.aoEnable = node.giEnable = true;
    node.pull();
    EXPECT_EQ(node.images[0], node.composeBuffer);
    const ReferencePicture colour = prepared(Renderer::kColour), ao = picture(*node.aoBuffer),
                           gi = picture(*node.giBuffer), light = prepared(Renderer::kIllumination),
                           reflection = prepared(Renderer::kReflection),
                           result = picture(*node.composeBuffer);
    const double ambiance = static_cast<double>(node.giAmbiance);
    int wrong = 0, points = 0;
    std::array<int, 3> layersSeen{};
    for (int y = 1; y < kFrameHeight; y += 7) {
        for (int x = 2; x < kFrameWidth; x += 11) {
            const int row = kFrameHeight - 1 - y;  // of the geometry targets
            const auto c = texel(colour, x, row), g = texel(gi, x, y), l = texel(light, x, row),
                       r = texel(reflection, x, row), actual = texel(result, x, y);
            ++points;
            layersSeen[static_cast<std::size_t>(std::min(c[3], 2.0))] += 1;
            for (std::size_t i = 0; i < 3; ++i) {
                const double shade = c[i] * texel(ao, x, y)[0] / (c[3] > 0 ? c[3] : 1);
                const double lit = shade + (shade * g[i] - shade) * ambiance;
                const double expected = r[i] + lit + l[i];
                // Half floats of 11 bits, cut or rounded; and a place between two texels that
                // single precision moves by a 1000th, where neighbours may lie 2 apart.
                const double tolerance = std::fabs(expected) / 1024 + 0.004;
                wrong += !(std::fabs(actual[i] - expected) <= tolerance);
            }
            wrong += actual[3] != c[3];
        }
    }
    EXPECT_EQ(wrong, 0) << "of " << points;
    EXPECT_THAT(layersSeen, testing::Each(testing::Gt(500)));  // air, surfaces, and the veil
}

TEST_F(RadiosityPictureTest, HasTheTopOfThePictureInItsFirstRow) {
    addObject(SquareMesh(), surface(1), placed({0, 0.6f, 0}, {0, 0, 0}, 0.2f))
        .material->diffuseImage = plain({1, 1, 1, 1});
    set(node, "GI:Ambiance", {0});
    node.pull();
    const auto brightRows = [&](int from, int to) {
        int rows = 0;
        for (int y = from; y < to; y += 10) rows += texelOf(*node.composeBuffer, 960, y).r > 0.5f;
        return rows;
    };
    EXPECT_GT(brightRows(0, 540), 10);
    EXPECT_EQ(brightRows(540, 1080), 0);
}

TEST_F(RadiosityPictureTest, BlackensAllButLightAndReflectionWithoutGatheredLight) {
    buildVeiledRoom();
    node.pull();  // occlusion and gather off, ambiance at its default of 1
    const ReferencePicture light = prepared(Renderer::kIllumination),
                           reflection = prepared(Renderer::kReflection),
                           result = picture(*node.composeBuffer);
    int wrong = 0;
    for (int y = 0; y < kFrameHeight; y += 9) {
        for (int x = 0; x < kFrameWidth; x += 13) {
            const int row = kFrameHeight - 1 - y;
            const auto l = texel(light, x, row), r = texel(reflection, x, row);
            for (std::size_t i = 0; i < 3; ++i) {
                const double apart = std::fabs(texel(result, x, y)[i] - l[i] - r[i]);
                wrong += !(apart <= (l[i] + r[i]) / 1024 + 1e-5);  // as above
            }
        }
    }
    EXPECT_EQ(wrong, 0);
}

TEST_F(RadiosityPictureTest, IsTheColourItselfWithAllEffectsOff) {
    buildRoom();
    set(node, "GI:Ambiance", {0});
    node.pull();
    const ReferencePicture colour = prepared(Renderer::kColour),
                           light = prepared(Renderer::kIllumination),
                           result = picture(*node.composeBuffer);
    for (const auto& [x, y] : {std::pair{960, 700}, {700, 500}, {300, 800}, {1000, 480}}) {
        const int row = kFrameHeight - 1 - y;
        EXPECT_NEAR(texel(result, x, y)[0], texel(colour, x, row)[0] + texel(light, x, row)[0],
                    0.002);  // half floats
    }
}

TEST_F(RadiosityPictureTest, IsItsBackgroundWithoutGeometry) {
    EXPECT_TRUE(engine.disconnect(node.id, Renderer::kGeometryPort));
    set(node, "Background", {0.5f, 0.25f, 0.125f, 0.5f});
    set(node, "GI:Ambiance", {0.5f});
    node.pull();
    const Vec4 result = texelOf(*node.composeBuffer, 500, 500);
    // The background as reflection and light, and between its colour over its alpha and black.
    EXPECT_FLOAT_EQ(result.r, 0.5f + 0.5f * (0.5f / 0.5f) + 0.5f);
    EXPECT_FLOAT_EQ(result.g, 0.25f + 0.5f * (0.25f / 0.5f) + 0.25f);
    EXPECT_FLOAT_EQ(result.a, 0.5f);
}

namespace {

struct FocusSettings {
    double radius, coc;
};

// The formula of the depth of field, sample by sample, at a place of the frame.
struct FocusResult {
    std::array<double, 4> rgba{};
    double error = 0, ff = 0;
};

FocusResult FocusAt(const ReferencePicture& image, double z, const FocusSettings& settings,
                    double u, double v) {
    const double accuracy = 1 + 6.0 / 20;
    const double stepX = accuracy / 1980, stepY = accuracy / 1080;
    const double d = std::min(1.0, 6 * -(z + settings.coc) / 20);
    const double intensity = settings.radius * d;
    FocusResult result;
    result.ff = std::max(1.0, 15 * intensity);
    const double fa = std::floor(result.ff), fb = std::ceil(result.ff);
    double weight = 0;
    Sample sum;
    const auto sweep = [&](double size, double stretch, bool ring) {
        for (double x = -size; x < size; ++x) {
            for (double row = -size; row < size; ++row) {
                const double y = row * stretch;
                const double l = std::hypot(x, y);
                if (l > size || (ring && l <= fa)) continue;
                const Sample sample = image.sample(u + x * stepX, v + y * stepY);
                const double avg = (sample.rgba[0] + sample.rgba[1] + sample.rgba[2]) * 0.3333;
                double p = 0;
                if (avg > 0.1) p = (avg - 0.1) * 8 * std::clamp(intensity * 3, 0.0, 1.0);
                double w = 1 + p * (1 + l / (ring ? size : fa));
                if (ring) w *= (result.ff - fa) / (fb - fa);
                weight += w;
                sum.addWeighted(sample, w);
            }
        }
    };
    sweep(fa, 1.777777, false);
    if (fb > fa) sweep(fb, 1.77777, true);
    const Sample mean = sum.over(weight);
    std::copy(mean.rgba, mean.rgba + 4, result.rgba.begin());
    result.error = mean.error;
    return result;
}

class RadiosityFocusTest : public RadiosityPictureTest {
  protected:
    void drawWithoutFocus() {
        buildVeiledRoom();
        set(node, "GI:Ambiance", {0});
        node.aoEnable = true;
        node.pull();
        composed = std::make_unique<ReferencePicture>(picture(*node.composeBuffer));
        positions = std::make_unique<ReferencePicture>(prepared(Renderer::kEyePosition));
    }

    struct Comparison {
        int points = 0, wrong = 0, blurred = 0;
        double error = 0;
        double largest = 0;
    };
    Comparison compare(const Region& region, const FocusSettings& settings) {
        draw(node, region);
        EXPECT_EQ(node.images[0], node.dofBuffer);
        const RegionPixels pixels = read(*node.dofBuffer, region);
        Comparison result;
        for (int y = region.y; y < region.y + region.height; ++y) {
            for (int x = region.x + y % 5; x < region.x + region.width; x += 7) {
                // The first row of the result is the top, that of the positions the bottom.
                const double z = texel(*positions, x, kFrameHeight - 1 - y)[2];
                const FocusResult expected = FocusAt(
                    *composed, z, settings, (x + 0.5) / kFrameWidth, (y + 0.5) / kFrameHeight);
                // At whole sizes single precision may take either disc for the first.
                const double part = expected.ff - std::floor(expected.ff);
                if (expected.ff > 1 && (part < 1e-3 || part > 1 - 1e-3)) continue;
                ++result.points;
                result.blurred += expected.ff > 2;
                result.largest = std::max(result.largest, expected.ff);
                result.error += expected.error;
                for (std::size_t c = 0; c < 4; ++c) {
                    // The samples' errors, which count twice as they also make the weights; half
                    // floats of 11 bits, cut or rounded; and the same for the depth, which
                    // decides the share of the ring.
                    const double tolerance =
                        2 * expected.error + std::fabs(expected.rgba[c]) / 1024 + 0.003;
                    const auto actual = static_cast<double>(pixels.at(x, y)[c]);
                    result.wrong += !(std::fabs(actual - expected.rgba[c]) <= tolerance);
                }
            }
        }
        return result;
    }

    std::unique_ptr<ReferencePicture> composed, positions;
};

}  // namespace

TEST_F(RadiosityFocusTest, BlursByDepth) {
    drawWithoutFocus();
    set(node, "DOF", {0.35f});
    set(node, "DOF CoC", {2});
    const FocusSettings settings = {static_cast<double>(node.dofRadius), 2};
    for (const Region& region :
         {Region{0, 640, kFrameWidth, 3}, Region{1150, 0, 3, kFrameHeight}}) {
        const Comparison result = compare(region, settings);
        EXPECT_EQ(result.wrong, 0) << "of " << result.points;
        EXPECT_GT(result.blurred, 100);
        EXPECT_GT(result.points, 400);
        EXPECT_LT(result.error / result.points, 0.01);  // else the comparison would say little
    }
}

TEST_F(RadiosityFocusTest, BlursNoWiderThanItsLargestDisc) {
    drawWithoutFocus();
    set(node, "DOF", {0.97f});
    set(node, "DOF CoC", {-20});
    const Comparison result =
        compare({400, 600, 1200, 2}, {static_cast<double>(node.dofRadius), -20});
    EXPECT_EQ(result.wrong, 0);
    EXPECT_NEAR(result.largest, 0.97 * 15, 1e-5);  // single precision
}

TEST_F(RadiosityFocusTest, MeansTwoSamplesWhereNothingIsOutOfFocus) {
    drawWithoutFocus();
    set(node, "DOF", {0.5f});
    set(node, "DOF CoC", {20});
    const Comparison result = compare({200, 700, 1500, 3}, {0.5, 20});
    EXPECT_EQ(result.wrong, 0);
    EXPECT_EQ(result.largest, 1);
}

TEST_F(RadiosityFocusTest, LeavesOutOnlyWhatHoldsNoSample) {
    drawWithoutFocus();
    const Region region = {700, 480, 500, 60};
    for (const float radius : {0.1f, 0.4f, 0.6f, 1.0f}) {
        set(node, "DOF", {radius});
        set(node, "DOF CoC", {radius * 3});
        node.skipNeutralWork = false;
        const std::vector<float> plain = draw(node, region).rgba;
        node.skipNeutralWork = true;
        EXPECT_EQ(draw(node, region).rgba, plain) << radius;
    }
}

TEST_F(RadiosityFocusTest, IsOffAtZeroAndOnAboveIt) {
    node.pull();
    EXPECT_EQ(node.images[0], node.composeBuffer);
    set(node, "DOF", {1e-6f});
    node.pull();
    EXPECT_EQ(node.images[0], node.dofBuffer);
    set(node, "DOF", {-1});
    node.pull();
    EXPECT_EQ(node.images[0], node.composeBuffer);
    set(node, "DOF", {std::nanf("")});
    node.pull();
    EXPECT_EQ(node.images[0], node.composeBuffer);
}

TEST_F(RadiosityFocusTest, StaysBoundedWhateverItsRadius) {
    set(node, "DOF", {1e30f});
    set(node, "DOF CoC", {-20});
    draw(node, {900, 500, 8, 8});
    EXPECT_TRUE(std::isfinite(texelOf(*node.dofBuffer, 904, 504).r));
}

namespace {

class RadiosityNodeTest : public RadiosityTest {};

}  // namespace

TEST_F(RadiosityNodeTest, TakesGeometryACameraAndAnEnvironment) {
    EXPECT_EQ(node.inputCount, 3);
    EXPECT_THAT(node.inputNames, ElementsAre("Geometry", "Camera", "Environment"));
    CameraNode& camera = add<CameraNode>("camera");
    PictureNode& image = add<PictureNode>("image");
    const std::array<const Node*, 3> sources = {&geometry, &camera, &image};
    for (int port = 0; port < 3; ++port) {
        for (int source = 0; source < 3; ++source) {
            EXPECT_EQ(node.canConnect(port, sources[static_cast<std::size_t>(source)]),
                      port == source);
        }
        EXPECT_FALSE(node.canConnect(port, nullptr));
        EXPECT_FALSE(node.canConnect(3, sources[static_cast<std::size_t>(port)]));
        EXPECT_FALSE(node.canConnect(-1, sources[static_cast<std::size_t>(port)]));
    }
}

TEST_F(RadiosityNodeTest, DeclaresItsParametersInOrder) {
    struct Row {
        const char* name;
        float min, max;
        int decimals;
        float defaultValue;
    };
    constexpr Row kFloats[] = {
        {"FOV", 0, 180, 2, 60},       {"DOF", 0, 1, 2, 0},
        {"DOF CoC", -20, 20, 2, 0},   {"AO:Intensity", 0, 20, 2, 5},
        {"AO:Radius", 0, 10, 2, 1},   {"AO:Bias", 0.00001f, 0.01f, 4, 0.001f},
        {"AO:Scale", 0, 10, 2, 2.5f}, {"AO:Max Dist", 0.001f, 40, 2, 10},
        {"GI:Ambiance", 0, 1, 2, 1},  {"GI:Intensity", 0, 60, 2, 5},
        {"GI:Radius", 0, 10, 2, 1},   {"GI:Bias", 0.00001f, 0.01f, 4, 0.001f},
        {"GI:Scale", 0, 10, 2, 2.5f}, {"GI:Max Dist", 0.001f, 40, 2, 10},
    };
    for (const Row& row : kFloats) {
        SCOPED_TRACE(row.name);
        const auto* value = dynamic_cast<ValueFloat*>(engine.findValue(&node, row.name));
        ASSERT_NE(value, nullptr);
        EXPECT_EQ(value->min, row.min);
        EXPECT_EQ(value->max, row.max);
        EXPECT_EQ(value->decimals, row.decimals);
        EXPECT_EQ(value->defaultValue, row.defaultValue);
        EXPECT_EQ(*value->data, row.defaultValue);
        EXPECT_TRUE(value->animatable);
    }
    std::vector<std::string> names;
    for (const Value_Object* value : engine.valuesOf(&node)) names.push_back(value->name);
    EXPECT_THAT(names,
                ElementsAre("Background", "FOV", "DOF", "DOF CoC", "AO:Enable", "AO:Intensity",
                            "AO:Radius", "AO:Bias", "AO:Scale", "AO:Max Dist", "GI:Enable",
                            "GI:Ambiance", "GI:Intensity", "GI:Radius", "GI:Bias", "GI:Scale",
                            "GI:Max Dist", "GI:Samples"));
    for (const char* name : {"AO:Enable", "GI:Enable"}) {
        const auto* value = dynamic_cast<ValueBool*>(engine.findValue(&node, name));
        ASSERT_NE(value, nullptr);
        EXPECT_FALSE(value->defaultValue);
        EXPECT_FALSE(*value->data);
    }
    const auto* colour = dynamic_cast<ValueVec4*>(engine.findValue(&node, "Background"));
    ASSERT_NE(colour, nullptr);
    EXPECT_THAT(colour->defaultValue, ElementsAre(0, 0, 0, 1));
    const auto* samples = dynamic_cast<ValueString*>(engine.findValue(&node, "GI:Samples"));
    ASSERT_NE(samples, nullptr);
    EXPECT_EQ(samples->defaultValue, "32");
}

TEST_F(RadiosityNodeTest, BindsEachParameterToItsMember) {
    const auto member = [&](const char* name) { return FloatMember(engine, node, name); };
    EXPECT_EQ(member("FOV"), &node.fovDegrees);
    EXPECT_EQ(member("DOF"), &node.dofRadius);
    EXPECT_EQ(member("DOF CoC"), &node.dofCoC);
    EXPECT_EQ(member("AO:Intensity"), &node.aoIntensity);
    EXPECT_EQ(member("AO:Radius"), &node.aoRadius);
    EXPECT_EQ(member("AO:Bias"), &node.aoBias);
    EXPECT_EQ(member("AO:Scale"), &node.aoScale);
    EXPECT_EQ(member("AO:Max Dist"), &node.aoMaxDistance);
    EXPECT_EQ(member("GI:Ambiance"), &node.giAmbiance);
    EXPECT_EQ(member("GI:Intensity"), &node.giIntensity);
    EXPECT_EQ(member("GI:Radius"), &node.giRadius);
    EXPECT_EQ(member("GI:Bias"), &node.giBias);
    EXPECT_EQ(member("GI:Scale"), &node.giScale);
    EXPECT_EQ(member("GI:Max Dist"), &node.giMaxDistance);
    const auto flag = [&](const char* name) {
        return dynamic_cast<const ValueBool&>(*engine.findValue(&node, name)).data;
    };
    EXPECT_EQ(flag("AO:Enable"), &node.aoEnable);
    EXPECT_EQ(flag("GI:Enable"), &node.giEnable);
}

TEST_F(RadiosityNodeTest, OwnsTargetsOfTheFrameWithDepth) {
    EXPECT_EQ(node.prepareBuffer->textureCount, 5);
    for (const auto* target : {node.prepareBuffer.get(), node.composeBuffer.get(),
                               node.dofBuffer.get(), node.aoBuffer.get(), node.giBuffer.get()}) {
        EXPECT_EQ(target->width, 1920);
        EXPECT_EQ(target->height, 1080);
        EXPECT_EQ(target->bitsPerChannel, 16u);
        EXPECT_TRUE(target->hasDepth);
        EXPECT_TRUE(target->complete);
    }
    EXPECT_EQ(node.images[0], nullptr);  // until the first frame
}

TEST_F(RadiosityNodeTest, LeavesItsPictureWhileNothingIsRendered) {
    engine.renderEnabled = 0;
    EXPECT_TRUE(node.process());
    EXPECT_EQ(node.images[0], nullptr);
    engine.renderEnabled = 1;
    set(node, "DOF", {0.5f});
    draw(node, {0, 0, 4, 4});
    engine.renderEnabled = 0;
    set(node, "DOF", {0});
    EXPECT_TRUE(node.process());
    EXPECT_EQ(node.images[0], node.dofBuffer);
}

TEST_F(RadiosityNodeTest, HasAnErrorWhenAProgramFailsUnlessItIsTheAdditiveOne) {
    EXPECT_FALSE(node.hasError);
    EXPECT_TRUE(node.programsLinked());
    const auto broken = [] {
        return std::make_unique<ShaderProgram>("broken", "#version 330 core\nnonsense", nullptr,
                                               nullptr, QuadAttributes(), 1);
    };
    node.prepareAdditiveShader = broken();
    EXPECT_TRUE(node.programsLinked());
    for (auto Renderer::*const program :
         {&Renderer::prepareShader, &Renderer::composeShader, &Renderer::aoShader,
          &Renderer::giShader, &Renderer::dofShader}) {
        auto kept = std::exchange(node.*program, broken());
        EXPECT_FALSE(node.programsLinked());
        node.*program = std::move(kept);
        EXPECT_TRUE(node.programsLinked());
    }
}

TEST_F(RadiosityNodeTest, LeavesNoStateBehind) {
    buildRoom();
    set(node, "DOF", {0.2f});
    node.aoEnable = node.giEnable = true;
    draw(node, {0, 0, 64, 64});
    EXPECT_FALSE(glIsEnabled(GL_BLEND));
    EXPECT_FALSE(glIsEnabled(GL_DEPTH_TEST));
    GLboolean depthMask = GL_FALSE;
    glGetBooleanv(GL_DEPTH_WRITEMASK, &depthMask);
    EXPECT_TRUE(depthMask);
    float clear[4] = {1, 1, 1, 1};
    glGetFloatv(GL_COLOR_CLEAR_VALUE, clear);
    EXPECT_THAT(clear, ElementsAre(0, 0, 0, 0));
    GLint program = 1, target = 1;
    glGetIntegerv(GL_CURRENT_PROGRAM, &program);
    glGetIntegerv(GL_FRAMEBUFFER_BINDING, &target);
    EXPECT_EQ(program, 0);
    EXPECT_EQ(target, 0);
}

TEST_F(RadiosityNodeTest, TellsTheProfilerWhatItsPassesCost) {
    FrameProfiler profiler;
    engine.profiler = &profiler;
    set(node, "DOF", {0.2f});
    profiler.beginFrame();
    draw(node, {0, 0, 64, 64});
    glFinish();
    profiler.endFrame();
    engine.profiler = nullptr;
    std::vector<std::string> names;
    double passesMs = 0;
    for (const auto& [name, samples] : profiler.passes()) {
        names.push_back(name);
        ASSERT_EQ(samples.cpuMs.size(), 1u);
        passesMs += samples.cpuMs[0];
    }
    EXPECT_THAT(names, ElementsAre("render: compose", "render: depth of field",
                                   "render: light gather", "render: occlusion", "render: prepare"));
    // The node's own figure holds its passes.
    ASSERT_EQ(profiler.nodes().at("render").cpuMs.size(), 1u);
    EXPECT_LE(passesMs, profiler.nodes().at("render").cpuMs[0] + 1e-6);  // sums in other orders
    EXPECT_GT(passesMs, 0);
}

TEST_F(RadiosityNodeTest, ShowsItsOwnPictureOfTheFrameBeforeOnItsSurfaces) {
    const Material mirror = surface(0.5f);
    addObject(SquareMesh(), mirror, placed({0, 0, 0}, {0, 0, 0}, 2));
    mirror->diffuseImage = plain({1, 1, 1, 1});
    set(node, "GI:Ambiance", {0});
    node.pull();
    mirror->diffuseImage = node.images[0];
    node.pull();
    EXPECT_NEAR(texelOf(*node.composeBuffer, 960, 540).r, 0.25f, 0.001);  // half floats
    node.pull();
    EXPECT_NEAR(texelOf(*node.composeBuffer, 960, 540).r, 0.125f, 0.001);
}

TEST_F(RadiosityNodeTest, KeepsAPictureAliveThatIsStillShown) {
    node.pull();
    auto& other = add<Renderer>("other");
    other.pull();
    const std::shared_ptr<GL_Image> shown = other.images[0];
    EXPECT_TRUE(engine.deleteNode("other"));
    EXPECT_EQ(shown.use_count(), 1);
    EXPECT_TRUE(glIsTexture(shown->textures[0]));
}
