// The pass of the radiosity renderer over the meshes: what it writes, against rays in double
// precision, and which objects it draws with which material.
#include <gmock/gmock.h>

#include <algorithm>
#include <array>

#include "image/radiosity_fixture.h"

namespace {

using testing::Each;

constexpr double kPi = 3.14159265;

struct SurfaceTextures {
    ReferencePicture diffuse, illumination, environment;
};

// The five outputs of a surface, and by how much a renderer's samples may differ.
struct SurfaceOutputs {
    std::array<Double3, 5> rgb{};
    Double3 additive{};
    double sampleError = 0;
};

Double3 Scaled(const Sample& sample, double factor) {
    return {sample.rgba[0] * factor, sample.rgba[1] * factor, sample.rgba[2] * factor};
}

Double3 Times(const Double3& a, const Double3& b) {
    return {a[0] * b[0], a[1] * b[1], a[2] * b[2]};
}

SurfaceOutputs Shade(const TraceHit& hit, const MaterialData& material,
                     const SurfaceTextures& textures) {
    const auto wide = [](float number) { return static_cast<double>(number); };
    const Double3 viewDir = Normalised(Plus({0, 0, 0}, hit.eyePosition, -1));
    const Double3 normal = Normalised(hit.worldNormal);
    const Double3 r = Normalised(Plus(viewDir, normal, -2 * Dot(normal, viewDir)));
    const Sample environment =
        textures.environment.sample(0.5 + std::atan2(r[0], r[2]) / (2 * kPi),
                                    0.5 + std::atan2(r[1], std::hypot(r[0], r[2])) / kPi);
    const Sample diffuse = textures.diffuse.sample(hit.u, 1 - hit.v);
    const Sample illumination = textures.illumination.sample(hit.u, 1 - hit.v);
    const Double3 envColor = Scaled(environment, wide(material.reflection));
    const Double3 illumColor = Scaled(illumination, wide(material.illumination));
    const Double3 tint = {wide(material.illumColor[0]), wide(material.illumColor[1]),
                          wide(material.illumColor[2])};

    double illuma = Dot(illumColor, {0.299, 0.587, 0.114});
    const double incident = std::clamp(Dot(hit.eyeNormal, viewDir), 0.0, 1.0);
    double fresnel = std::pow(1 - incident, wide(material.refFresnel));
    illuma *= std::pow(incident, wide(material.refFresnel) * 2) * 0.2 + 0.8;
    fresnel *= 1 - std::clamp(illuma, 0.0, 1.0);
    const double own = 1 - fresnel * wide(material.reflection);
    const Double3 diffColor =
        Plus(Scaled(diffuse, wide(material.diffuse)), Times(illumColor, tint), own);

    SurfaceOutputs out;
    out.rgb[0] = Plus({0, 0, 0}, diffColor, own);
    out.rgb[1] = hit.eyeNormal;
    out.rgb[2] = hit.eyePosition;
    out.rgb[3] = Times(illumColor, tint);
    out.rgb[4] = Plus({0, 0, 0}, envColor, fresnel);
    out.additive = Plus(out.rgb[0], envColor, fresnel);
    out.sampleError = environment.error * wide(material.reflection) +
                      diffuse.error * wide(material.diffuse) +
                      3 * illumination.error * wide(material.illumination);
    return out;
}

double Apart(const Double3& a, const Double3& b) {
    double most = 0;
    for (std::size_t c = 0; c < 3; ++c) most = std::max(most, std::fabs(a[c] - b[c]));
    return most;
}

class RadiositySurfaceTest : public RadiosityTest {
  protected:
    RadiositySurfaceTest() {
        auto& environment = add<PictureNode>("environment", textures.environment.upload());
        link(environment, node, Renderer::kEnvironmentPort);
    }

    Material pictured(float diffuse, float illumination, float reflection, float fresnel,
                      int blend = MaterialData::kNormal) {
        const Material material = surface(diffuse, blend);
        material->diffuseImage = diffuseImage;
        material->illuminationImage = illuminationImage;
        material->illumination = illumination;
        material->reflection = reflection;
        material->refFresnel = fresnel;
        const float tint[4] = {0.5f, 1.25f, 0.75f, 0.3f};
        std::copy(tint, tint + 4, material->illumColor);
        return material;
    }

    void buildSurfaces() {
        addCamera({0.7f, 1.1f, 4}, {0, 0.1f, 0});
        geometry.transform = placed({0.1f, -0.1f, 0}, {0, 12, 0}, 1.1f);
        addObject(SquareMesh(), pictured(1.5f, 0, 0.4f, 1), placed({0, -0.7f, 0}, {-80, 0, 0}, 2));
        addObject(BoxMesh(), pictured(0.5f, 1.5f, 0, 2), placed({-1.2f, 0, 0}, {25, 30, 0}, 0.5f));
        addObject(BoxMesh(), pictured(0.25f, 0.5f, 2, 0.5f),
                  placed({1.3f, 0.2f, 0.4f}, {0, -20, 40}, 0.5f));
        addObject(SphereMesh(16, 8), pictured(0.3f, 0.1f, 1.5f, 3), placed({0.1f, 0.3f, 0}));
    }

    // Of a pixel and four places around it, in 64ths of a pixel.
    static constexpr double kOffsets[5][2] = {{0, 0}, {-1, -1}, {1, -1}, {-1, 1}, {1, 1}};

    // What additive surfaces before the nearest opaque one give to a pixel.
    struct AddedLight {
        Double3 sum{};
        std::size_t layers = 0;
        double moved = 0;  // the most by which rays around it differ
        double sampleError = 0;
        bool isBehind = false;  // an opaque surface is behind them
        std::array<std::size_t, 5> paths{};
        // Where a ray around it meets other objects.
        bool isAtEdge() const { return std::count(paths.begin(), paths.end(), paths[0]) != 5; }
    };
    AddedLight addedLightAt(const SceneTracer& rays, std::size_t opaqueObjects, int x,
                            int y) const {
        AddedLight added;
        for (std::size_t corner = 0; corner < 5; ++corner) {
            Double3 sum{};
            std::size_t layers = 0;
            for (const TraceHit& hit : rays.hits(acrossOf(x + kOffsets[corner][0] / 64),
                                                 upOf(y + kOffsets[corner][1] / 64), 0.1)) {
                if (hit.object < opaqueObjects) {
                    added.isBehind = true;
                    added.paths[corner] = 1000 * (hit.object + 1);
                    break;
                }
                const MaterialData& material = *geometry.objects[hit.object].material;
                const SurfaceOutputs shaded = Shade(hit, material, textures);
                sum = Plus(sum, shaded.additive);
                added.sampleError += shaded.sampleError;
                ++layers;
            }
            added.paths[corner] += layers;
            if (corner == 0) {
                added.sum = sum;
                added.layers = layers;
            }
            added.moved = std::max(added.moved, Apart(sum, added.sum));
        }
        return added;
    }

    // The nearest hit around a place where nothing else begins within a 64th of a pixel: vertices
    // may be moved by less than that to the grid of the rasteriser. Empty elsewhere.
    struct Around {
        std::vector<TraceHit> centreAndCorners;
    };
    static Around around(const SceneTracer& tracer, int x, int y) {
        Around result;
        for (const auto& offset : kOffsets) {
            const std::vector<TraceHit> hits =
                tracer.hits(acrossOf(x + offset[0] / 64), upOf(y + offset[1] / 64), 0.1);
            if (hits.empty()) return {};
            const TraceHit& first = hits[0];
            const auto& known = result.centreAndCorners;
            const bool same = known.empty() || (known[0].object == first.object &&
                                                known[0].triangle == first.triangle);
            if (!same) return {};
            result.centreAndCorners.push_back(first);
        }
        return result;
    }

    SurfaceTextures textures = {ReferencePicture::Waves(64, 32, 1),
                                ReferencePicture::Waves(32, 32, 2),
                                ReferencePicture::Waves(96, 48, 3)};
    std::shared_ptr<GL_Image> diffuseImage = textures.diffuse.upload();
    std::shared_ptr<GL_Image> illuminationImage = textures.illumination.upload();
};

}  // namespace

TEST_F(RadiositySurfaceTest, WritesColourNormalPositionLightAndReflection) {
    buildSurfaces();
    node.pull();
    const SceneTracer rays = tracer();
    std::array<ReferencePicture, 5> targets = {prepared(0), prepared(1), prepared(2), prepared(3),
                                               prepared(4)};
    std::array<int, 4> pointsOf{};
    std::array<int, 5> wrong{};
    std::array<double, 5> tolerances{};
    for (int y = 7; y < kFrameHeight; y += 19) {
        for (int x = 5; x < kFrameWidth; x += 23) {
            const auto [hits] = around(rays, x, y);
            if (hits.empty()) continue;
            ++pointsOf[hits[0].object];
            const MaterialData& material = *geometry.objects[hits[0].object].material;
            const SurfaceOutputs expected = Shade(hits[0], material, textures);
            for (std::size_t target = 0; target < 5; ++target) {
                double moved = 0;
                for (const TraceHit& hit : hits) {
                    const Double3 other = Shade(hit, material, textures).rgb[target];
                    moved = std::max(moved, Apart(other, expected.rgb[target]));
                }
                const Vec4 texel = targets[target].texelAt(x, y);
                const Double3 actual = {static_cast<double>(texel.r), static_cast<double>(texel.g),
                                        static_cast<double>(texel.b)};
                // The move within a 64th of a pixel, the samples' errors, and the rounding to half
                // floats of 11 bits, with as much again for single precision on the way.
                const double size = Apart(expected.rgb[target], {0, 0, 0});
                const double samples = target == 1 || target == 2 ? 0 : expected.sampleError;
                const double tolerance = moved + samples + size / 1024 + 1e-4;
                tolerances[target] = std::max(tolerances[target], tolerance - size / 1024);
                wrong[target] += !(Apart(actual, expected.rgb[target]) <= tolerance);
                if (target < 3) wrong[target] += texel.a != 1;
            }
        }
    }
    EXPECT_THAT(wrong, Each(0));
    EXPECT_THAT(pointsOf, Each(testing::Gt(60)));
    EXPECT_THAT(tolerances, Each(testing::Lt(0.1)));  // else the comparison would say little
}

TEST_F(RadiositySurfaceTest, LeavesTheBackgroundInAllFiveTargets) {
    set(node, "Background", {0.125f, 0.25f, 0.5f, 0.75f});
    node.pull();
    for (int target = 0; target < Renderer::kPrepareAttachments; ++target) {
        for (const auto& [x, y] : {std::pair{0, 0}, {960, 540}, {1919, 1079}}) {
            const Vec4 texel = preparedAt(x, y, target);
            EXPECT_THAT((std::array{texel.r, texel.g, texel.b, texel.a}),
                        testing::ElementsAre(0.125f, 0.25f, 0.5f, 0.75f));
        }
    }
}

TEST_F(RadiositySurfaceTest, AddsAdditiveSurfacesToTheColourBehindOpaqueDepth) {
    set(node, "Background", {0.125f, 0, 0, 0.5f});
    buildSurfaces();
    node.pull();
    std::array<std::vector<float>, 5> before;
    for (int i = 0; i < 5; ++i) {
        before[static_cast<std::size_t>(i)] = ReadTarget(*node.prepareBuffer, i);
    }
    const std::size_t opaqueObjects = geometry.objects.size();
    addObject(SphereMesh(16, 8), pictured(0.4f, 0.3f, 1.2f, 1, MaterialData::kAdd),
              placed({0.6f, 0.4f, 0.1f}, {0, 0, 0}, 1.1f));
    addObject(SquareMesh(), pictured(0.6f, 0, 0, 1, MaterialData::kAdd),
              placed({0, 0.5f, 1}, {0, 10, 20}, 0.8f));
    node.pull();
    for (int i = 1; i < 5; ++i) {
        EXPECT_EQ(ReadTarget(*node.prepareBuffer, i), before[static_cast<std::size_t>(i)]) << i;
    }

    const SceneTracer rays = tracer();
    const ReferencePicture colour = prepared(0);
    int wrong = 0, onAir = 0, onSurface = 0, hidden = 0;
    for (int y = 3; y < kFrameHeight; y += 17) {
        for (int x = 4; x < kFrameWidth; x += 21) {
            const AddedLight added = addedLightAt(rays, opaqueObjects, x, y);
            if (added.isAtEdge()) continue;
            (added.layers == 0 ? hidden : added.isBehind ? onSurface : onAir) += 1;
            const float* under = &before[0][static_cast<std::size_t>(y * kFrameWidth + x) * 4];
            const Double3 expected =
                Plus(added.sum, {static_cast<double>(under[0]), static_cast<double>(under[1]),
                                 static_cast<double>(under[2])});
            const Vec4 texel = colour.texelAt(x, y);
            const Double3 actual = {static_cast<double>(texel.r), static_cast<double>(texel.g),
                                    static_cast<double>(texel.b)};
            // As above; and each of up to six layers is rounded when it is added.
            const double tolerance =
                added.moved + added.sampleError + 6 * Apart(expected, {0, 0, 0}) / 2048 + 1e-4;
            wrong += !(Apart(actual, expected) <= tolerance);
            wrong += texel.a != under[3] + static_cast<float>(added.layers);  // alpha counts them
        }
    }
    EXPECT_EQ(wrong, 0);
    EXPECT_GT(onAir, 100);
    EXPECT_GT(onSurface, 100);
    EXPECT_GT(hidden, 100);
}

TEST_F(RadiositySurfaceTest, LooksThroughItsCameraOnlyAndWithItsOwnAngle) {
    addObject(SquareMesh(), pictured(1, 0, 0, 1), placed({0, 0, -2}));
    node.pull();
    // From z = 1.5 the square at z = -2 is 3.5 away; it reaches from -1 to 1.
    const double halfHeight = 1 / (3.5 * std::tan(30 * kPi / 180)) * kFrameHeight / 2;
    const auto opaqueRows = [&] {
        int rows = 0;
        const ReferencePicture normals = prepared(Renderer::kEyeNormal);
        for (int y = 0; y < kFrameHeight; ++y) rows += normals.texelAt(960, y).b == 1;
        return rows;
    };
    EXPECT_NEAR(opaqueRows(), 2 * halfHeight, 1);  // whole rows

    auto& camera = addCamera({0, 0, 5}, {0, 0, 0});
    node.pull();
    EXPECT_NEAR(opaqueRows(), 2 * halfHeight / 2, 1);  // 7 away
    const auto depth = [&] { return -preparedAt(960, 540, Renderer::kEyePosition).b; };
    EXPECT_NEAR(depth(), 7, 7.0 / 1024);  // half floats of 11 bits, cut or rounded
    set(node, "FOV", {90});
    node.pull();
    EXPECT_NEAR(opaqueRows(), 1.0 / 7 * kFrameHeight, 1);
    camera.matrix = placed({0, 0, -8});
    node.pull();
    EXPECT_NEAR(depth(), 10, 10.0 / 1024);
}

TEST_F(RadiositySurfaceTest, SurvivesAnglesWithoutAPicture) {
    buildSurfaces();
    for (const float degrees : {0.0f, 180.0f, -60.0f, 1e30f}) {
        set(node, "FOV", {degrees});
        EXPECT_TRUE(node.process());
    }
    set(node, "FOV", {60});
    node.pull();
    EXPECT_NE(preparedAt(960, 300, Renderer::kEyePosition).b, 0);
}

namespace {

// Squares side by side, each seen whole, to tell which were drawn and with what.
class RadiositySweepTest : public RadiosityTest {
  protected:
    static constexpr int kPlaces = 6;

    // A square at the next place, further away each time by a step when `behind` is not 0.
    GeometryObject& addTile(const Material& material, float z = 0) {
        const float x = 0.4f * (static_cast<float>(meshes.size() % kPlaces) - 2.5f);
        return addObject(SquareMesh(), material, placed({x, 0, z}, {0, 0, 0}, 0.15f));
    }
    // The colour target at the middle of a tile.
    Vec4 tile(int place) const {
        const double perUnit =
            kFrameHeight / 2 / (1.5 * std::tan(30 * kPi / 180)) * 16 / 9 / 1.77777;
        return preparedAt(kFrameWidth / 2 + static_cast<int>(0.4 * (place - 2.5) * perUnit),
                          kFrameHeight / 2);
    }
    static Material coloured(const Vec4& colour, float diffuse = 1, int blend = 0) {
        const Material material = surface(diffuse, blend);
        material->diffuseImage = plain(colour);
        return material;
    }
    // Triangles that a frame draws beside those of the screen-space passes.
    int trianglesDrawn() {
        const auto count = [&] {
            GLuint query = 0, triangles = 0;
            glGenQueries(1, &query);
            glBeginQuery(GL_PRIMITIVES_GENERATED, query);
            node.pull();
            glEndQuery(GL_PRIMITIVES_GENERATED);
            glGetQueryObjectuiv(query, GL_QUERY_RESULT, &triangles);
            glDeleteQueries(1, &query);
            return static_cast<int>(triangles);
        };
        const int all = count();
        std::vector<GeometryObject> objects;
        objects.swap(geometry.objects);
        const int screenPasses = count();
        objects.swap(geometry.objects);
        return all - screenPasses;
    }
    static constexpr int kTile = 2;  // triangles

    const Vec4 kRed = {1, 0, 0, 1}, kGreen = {0, 1, 0, 1};
};

}  // namespace

// The planes of the view lie at 0.1 and 10000.
TEST_F(RadiositySurfaceTest, ShowsWhatIsNearAndWhatIsFar) {
    addCamera({0, 0, 0}, {0, 0, -1});
    const Material material = surface(1);
    material->diffuseImage = plain({1, 1, 1, 1});
    GeometryObject& square = addObject(SquareMesh(), material, Mat4{});
    const auto middle = [&](float distance, float scale) {
        square.transform = placed({0, 0, -distance}, {0, 0, 0}, scale);
        node.pull();
        return texelOf(*node.prepareBuffer, kFrameWidth / 2, kFrameHeight / 2).r;
    };
    EXPECT_EQ(middle(0.09f, 1), 0);
    EXPECT_EQ(middle(0.11f, 1), 1);
    EXPECT_EQ(middle(9900, 5000), 1);
    EXPECT_EQ(middle(10100, 5000), 0);
}

TEST_F(RadiositySurfaceTest, ReflectsNothingOfAStrangersPictureWithoutAnEnvironment) {
    addCamera({0, 0, 0}, {0, 0, -1});
    const Material mirror = surface(0);
    mirror->reflection = 1;
    mirror->refFresnel = 0.1f;
    addObject(SquareMesh(), mirror, placed({0.3f, 0.2f, -1}, {20, 30, 0}, 1));
    const std::shared_ptr<GL_Image> stranger = plain({1, 1, 1, 1});
    stranger->BindTexture(0, GL_TEXTURE2);
    const RegionPixels pixels = draw(node, {900, 500, 100, 20});
    for (int y = 500; y < 520; ++y) {
        for (int x = 900; x < 1000; ++x) EXPECT_EQ(pixels.at(x, y)[0], 0) << x << ", " << y;
    }
}

TEST_F(RadiositySweepTest, ALinkWithoutAPictureKeepsThePictureOfTheMaterialBefore) {
    addTile(surface(1));  // nothing bound yet: black
    addTile(coloured(kRed));
    addTile(surface(0.5f));
    addTile(coloured(kGreen));
    addTile(surface(0.25f));
    node.pull();
    node.pull();  // nothing comes over from the frame before
    EXPECT_EQ(tile(0).r + tile(0).g, 0);
    EXPECT_EQ(tile(1).r, 1);
    EXPECT_EQ(tile(2).r, 0.5f);
    EXPECT_EQ(tile(3).g, 1);
    EXPECT_EQ(tile(4).g, 0.25f);
    EXPECT_EQ(tile(4).r, 0);
}

TEST_F(RadiositySweepTest, TheObjectsMaterialGoesBeforeTheNodes) {
    geometry.material = coloured(kGreen, 0.5f);
    addTile(nullptr);
    addTile(coloured(kRed));
    addTile(nullptr);
    node.pull();
    EXPECT_EQ(tile(0).g, 0.5f);
    EXPECT_EQ(tile(1).r, 1);
    EXPECT_EQ(tile(2).g, 0.5f);
}

TEST_F(RadiositySweepTest, AnObjectWithoutMaterialTakesTheStateAsItStands) {
    addTile(coloured(kRed, 0.75f));
    addTile(nullptr);
    addTile(coloured(kGreen, 0.25f));
    addTile(nullptr);
    node.pull();
    EXPECT_EQ(tile(1).r, 0.75f);
    EXPECT_EQ(tile(3).g, 0.25f);
}

TEST_F(RadiositySweepTest, AnObjectWithoutMaterialIsDrawnInBothSweeps) {
    addTile(nullptr);
    EXPECT_EQ(trianglesDrawn(), 2 * kTile);
}

TEST_F(RadiositySweepTest, ABlendModeOtherThanTheTwoIsNeverDrawn) {
    addTile(coloured(kRed, 1, 2));
    addTile(coloured(kRed, 1, -1));
    addTile(coloured(kRed, 1, 0));
    EXPECT_EQ(trianglesDrawn(), 2 * kTile);  // the third, which the second sweep finds applied
    node.pull();
    EXPECT_EQ(tile(0).r, 0);
    EXPECT_EQ(tile(1).r, 0);
    EXPECT_EQ(tile(2).r, 1);
}

TEST_F(RadiositySweepTest, TheSecondOfTwoEqualMaterialsIsDrawnOnTheAppliedState) {
    const Material material = coloured(kRed);
    addTile(material);
    addTile(material);
    node.pull();
    EXPECT_EQ(tile(0).r, 1);
    EXPECT_EQ(tile(1).r, 1);
    // The second takes the note of the applied material away: none is left for the second sweep.
    EXPECT_EQ(trianglesDrawn(), 2 * kTile);
}

TEST_F(RadiositySweepTest, TheThirdOfThreeEqualMaterialsIsAppliedAnew) {
    const Material material = coloured(kRed);
    for (int i = 0; i < 3; ++i) addTile(material);
    // The third leaves its note, and the second sweep draws the first object with it, once; where
    // it lies already, so that nobody sees it.
    EXPECT_EQ(trianglesDrawn(), 4 * kTile);
    node.pull();
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(tile(i).r, 1);
        EXPECT_EQ(tile(i).a, 1);
    }
}

TEST_F(RadiositySweepTest, TheNodesMaterialCountsAsAppliedToo) {
    geometry.material = coloured(kGreen);
    addTile(nullptr);
    addTile(nullptr);
    EXPECT_EQ(trianglesDrawn(), 2 * kTile);
    addTile(geometry.material);
    EXPECT_EQ(trianglesDrawn(), 4 * kTile);
}

TEST_F(RadiositySweepTest, AdditiveObjectsAreDrawnInTheSecondSweepOnly) {
    const Material material = coloured(kGreen, 0.5f, MaterialData::kAdd);
    addTile(material);
    addTile(coloured(kRed));
    addTile(material);
    addTile(material);
    // The red one once more, which the first sweep left applied only until a green one came.
    EXPECT_EQ(trianglesDrawn(), 4 * kTile);
    node.pull();
    EXPECT_EQ(tile(0).g, 0.5f);
    EXPECT_EQ(tile(0).a, 2);  // the background's 1 and its own
    EXPECT_EQ(tile(1).a, 1);
    EXPECT_EQ(tile(3).g, 0.5f);
}

TEST_F(RadiositySweepTest, DrawsNothingForObjectsWithoutBuffersOrVertices) {
    geometry.AppendObject(GeometryObject{});
    GeometryObject empty;
    CreateMeshBuffers(empty, {});
    geometry.AppendObject(empty);
    EXPECT_EQ(trianglesDrawn(), 0);
}

TEST_F(RadiositySweepTest, MovesObjectsByTheNodesTransform) {
    geometry.transform = placed({0.4f, 0, 0});
    addTile(coloured(kRed));
    node.pull();
    EXPECT_EQ(tile(0).r, 0);
    EXPECT_EQ(tile(1).r, 1);
}
