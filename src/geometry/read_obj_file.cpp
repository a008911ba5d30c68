#include "geometry/read_obj_file.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

#include "geometry/obj_text.h"
#include "platform/debug_output.h"
#include "platform/files.h"

namespace {

// Nine indices from 1 as they stand in the file: v, vt and vn of three corners.
using Triangle = std::array<std::int32_t, 9>;

// A list that grows without moving what it holds. A vector would touch twice the fresh memory, and
// that is much of the time that a large file takes.
class TriangleList {
  public:
    Triangle& append() {
        if (size_ % kBlockSize == 0) blocks_.emplace_back().reserve(kBlockSize);
        ++size_;
        return blocks_.back().emplace_back();
    }
    const Triangle& operator[](std::size_t index) const {
        return blocks_[index / kBlockSize][index % kBlockSize];
    }
    std::size_t size() const { return size_; }

  private:
    static constexpr std::size_t kBlockSize = 4096;
    std::vector<std::vector<Triangle>> blocks_;
    std::size_t size_ = 0;
};

// Triangles that follow each other, all of one object.
struct TriangleSpan {
    std::size_t first, last;
};

struct ObjContent {
    std::vector<Vec3> positions, normals;
    std::vector<Vec2> uvs;
    TriangleList triangles;
    OrderedMap<std::string, std::vector<TriangleSpan>> objects;
};

Vec3 ReadVec3(ObjText& text) {
    text.readCharacter();
    Vec3 v;
    v.x = text.readFloat();
    v.y = text.readFloat();
    v.z = text.readFloat();
    return v;
}

Vec2 ReadVec2(ObjText& text) {
    text.readCharacter();
    Vec2 v;
    v.x = text.readFloat();
    v.y = text.readFloat();
    return v;
}

class ObjParser {
  public:
    explicit ObjParser(std::string_view text) : text_(text) {}

    void parse() {
        std::string_view word;
        while (text_.readWord(word)) readStatement(BeforeNul(word));
    }

    ObjContent content;

  private:
    // A word ends for comparison where a C string ends.
    static std::string_view BeforeNul(std::string_view word) {
        std::size_t length = 0;
        while (length < word.size() && word[length] != '\0') ++length;
        return word.substr(0, length);
    }

    void readStatement(std::string_view word) {
        if (word == "#" || word == "mtllib" || word == "g") {
            text_.skipLine();
        } else if (word == "o") {
            readObjectName();
        } else if (word == "v") {
            content.positions.push_back(ReadVec3(text_));
        } else if (word == "vn") {
            content.normals.push_back(ReadVec3(text_));
        } else if (word == "vt") {
            content.uvs.push_back(ReadVec2(text_));
        } else if (word == "f") {
            readTriangle();
        }
    }

    void readObjectName() {
        text_.readCharacter();
        std::string_view name;
        if (!text_.readWord(name)) return;
        name_ = BeforeNul(name);
        span_ = nullptr;
    }

    void readTriangle() {
        auto& triangles = content.triangles;
        if (span_ == nullptr) {
            span_ = &content.objects[name_].emplace_back(
                TriangleSpan{triangles.size(), triangles.size()});
        }
        Triangle& triangle = triangles.append();
        text_.readCharacter();
        for (std::int32_t& index : triangle) {
            index = text_.readInteger();
            text_.readCharacter();
        }
        ++span_->last;
    }

    ObjText text_;
    std::string name_ = "default";
    TriangleSpan* span_ = nullptr;  // of the present object, once it has a triangle since its "o"
};

struct Box {
    Vec3 min{999999.0f, 999999.0f, 999999.0f};
    Vec3 max{-999999.0f, -999999.0f, -999999.0f};

    void add(const Vec3& p) {
        min = {std::min(min.x, p.x), std::min(min.y, p.y), std::min(min.z, p.z)};
        max = {std::max(max.x, p.x), std::max(max.y, p.y), std::max(max.z, p.z)};
    }
    Vec3 centre() const {
        return {(min.x + max.x) * 0.5f, (min.y + max.y) * 0.5f, (min.z + max.z) * 0.5f};
    }
    float largestExtent() const { return std::max({max.x - min.x, max.y - min.y, max.z - min.z}); }
};

Box BoxOf(const std::vector<MeshVertex>& vertices) {
    Box box;
    for (const MeshVertex& vertex : vertices) box.add(vertex.position);
    return box;
}

void Subtract(Vec3& p, const Vec3& offset) {
    p = {p.x - offset.x, p.y - offset.y, p.z - offset.z};
}

// Centres and normalises the positions of the whole file, as the flags say.
void FitPositions(std::vector<Vec3>& positions, std::uint32_t flags) {
    if ((flags & (kObjCentre | kObjNormalise)) == 0) return;
    Box box;
    for (const Vec3& p : positions) box.add(p);
    Vec3 centre = box.centre();
    if ((flags & kObjCentre) != 0) {
        for (Vec3& p : positions) Subtract(p, centre);
        centre = {};
    }
    if ((flags & kObjNormalise) == 0) return;
    const float extent = box.largestExtent();
    for (Vec3& p : positions) {
        p = {(p.x - centre.x) / extent + centre.x, (p.y - centre.y) / extent + centre.y,
             (p.z - centre.z) / extent + centre.z};
    }
}

// `index` counts from 1.
bool IsInside(std::int32_t index, std::size_t size) {
    return index >= 1 && static_cast<std::size_t>(index) <= size;
}

bool IndicesAreInside(const ObjContent& content, const Triangle& triangle) {
    for (std::size_t i = 0; i < triangle.size(); i += 3) {
        if (!IsInside(triangle[i], content.positions.size())) return false;
        if (!content.uvs.empty() && !IsInside(triangle[i + 1], content.uvs.size())) return false;
        if (!IsInside(triangle[i + 2], content.normals.size())) return false;
    }
    return true;
}

template <typename T>
const T& At(const std::vector<T>& list, std::int32_t index) {
    return list[static_cast<std::size_t>(index) - 1];
}

void AppendTriangle(const ObjContent& content, const Triangle& triangle,
                    std::vector<MeshVertex>& vertices) {
    for (std::size_t i = 0; i < triangle.size(); i += 3) {
        vertices.push_back({At(content.positions, triangle[i]),
                            At(content.normals, triangle[i + 2]),
                            content.uvs.empty() ? Vec2{} : At(content.uvs, triangle[i + 1])});
    }
}

// Returns the number of triangles that had to be left out.
std::size_t AppendObjects(const ObjContent& content, ObjObjects& objects) {
    std::size_t kept = 0;
    for (const auto& [name, spans] : content.objects) {
        std::vector<MeshVertex> vertices;
        std::size_t triangles = 0;
        for (const TriangleSpan& span : spans) triangles += span.last - span.first;
        vertices.reserve(triangles * 3);
        for (const TriangleSpan& span : spans) {
            for (std::size_t i = span.first; i < span.last; ++i) {
                const Triangle& triangle = content.triangles[i];
                if (IndicesAreInside(content, triangle))
                    AppendTriangle(content, triangle, vertices);
            }
        }
        if (vertices.empty()) continue;
        kept += vertices.size() / 3;
        objects[name] = std::move(vertices);
    }
    return content.triangles.size() - kept;
}

// The torso of the puppet model is fitted by hand: its own box would move it off its joints.
constexpr const char* kTorso = "TORSO_Group1";

void PrintPoint(const Vec3& p) {
    char text[512];
    std::snprintf(text, sizeof text, "%f, %f, %f\n", static_cast<double>(p.x),
                  static_cast<double>(p.y), static_cast<double>(p.z));
    DebugOutput(text);
}

void RecentreObject(const std::string& name, std::vector<MeshVertex>& vertices) {
    Box box = BoxOf(vertices);
    if (name == kTorso) {
        PrintPoint(box.min);
        PrintPoint(box.max);
        box.min = {-2.109777f, 11.589649f, -1.795015f};
        box.max = {2.1097519f, 18.196655f, 1.133334f};
    }
    const Vec3 centre = box.centre();
    for (MeshVertex& vertex : vertices) Subtract(vertex.position, centre);
}

// Cylindrical projection around y. The angle has no sign, a quirk that is kept: both halves of the
// cylinder show the same half of a picture, and models are textured for that.
void UnwrapObject(const std::string& name, std::vector<MeshVertex>& vertices) {
    constexpr float kPi = 3.1415927f, kTurn = 6.2831855f;
    Box box = BoxOf(vertices);
    if (name == kTorso) {
        box.min = {-2.1097646f, -3.303503f, -1.4641745f};
        box.max = {2.1097646f, 3.303503f, 1.4641745f};
    }
    for (MeshVertex& vertex : vertices) {
        const Vec3& n = vertex.normal;
        const float angle = std::acos(n.x / std::sqrt(n.x * n.x + n.z * n.z));
        vertex.uv.x = (angle + kPi) / kTurn;
        vertex.uv.y = (vertex.position.y - box.min.y) / (box.max.y - box.min.y);
    }
}

}  // namespace

std::string ReadObjText(std::string_view text, ObjObjects& objects, std::uint32_t flags) {
    ObjParser parser(text);
    parser.parse();
    FitPositions(parser.content.positions, flags);
    const std::size_t leftOut = AppendObjects(parser.content, objects);
    for (auto& [name, vertices] : objects) {
        if ((flags & kObjRecentreObjects) != 0) RecentreObject(name, vertices);
        if ((flags & kObjUnwrap) != 0) UnwrapObject(name, vertices);
    }
    if (leftOut == 0) return {};
    return std::to_string(leftOut) + " of its " + std::to_string(parser.content.triangles.size()) +
           " triangles are left out: an index is out of range";
}

bool ReadObjFile(std::string_view path, ObjObjects& objects, std::uint32_t flags,
                 std::string* fault) {
    std::string reason;
    if (path.empty()) {
        // No file is asked for.
    } else if (const auto bytes = ReadWholeFile(path)) {
        const auto* const text = reinterpret_cast<const char*>(bytes->data());
        reason = ReadObjText(std::string_view(text, bytes->size()), objects, flags);
    } else {
        reason = "the file cannot be read";
    }
    if (fault != nullptr) {
        *fault = std::move(reason);
    } else if (!reason.empty()) {
        ReportBadFile(path, reason);
    }
    return !objects.empty();
}
