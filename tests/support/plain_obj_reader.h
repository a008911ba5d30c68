// The plain way to read an OBJ file: fscanf, word by word, as the rules of the format are written.
// Judge of the program's own reader, and what its speed is measured against. Users link
// vorn_geometry; any thread.
#pragma once

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "gpu/mesh_buffers.h"

struct PlainObj {
    std::vector<Vec3> positions, normals;
    std::vector<Vec2> uvs;
    std::map<std::string, std::vector<std::array<long, 9>>> triangles;  // by object
    std::vector<std::string> order;                                     // of the first triangles
};

class PlainObjReader {
  public:
    // The file stays open.
    explicit PlainObjReader(std::FILE* file) : file_(file) {}

    PlainObj read() {
        std::string name = "default";
        char* word = nullptr;
        while (std::fscanf(file_, "%ms", &word) == 1) {
            const std::string keyword = word;
            std::free(word);
            if (keyword == "#" || keyword == "mtllib" || keyword == "g") {
                int c = 0;
                while (c != '\n' && c != EOF) c = std::fgetc(file_);
            } else if (keyword == "o") {
                readCharacter();
                if (std::fscanf(file_, "%ms", &word) == 1) {
                    name = word;
                    std::free(word);
                }
            } else if (keyword == "v") {
                result_.positions.push_back(readVec3());
            } else if (keyword == "vn") {
                result_.normals.push_back(readVec3());
            } else if (keyword == "vt") {
                readCharacter();
                const float u = readFloat();
                result_.uvs.push_back({u, readFloat()});
            } else if (keyword == "f") {
                readTriangle(name);
            }
        }
        return std::move(result_);
    }

  private:
    void readCharacter() {
        char c = 0;
        while (std::fscanf(file_, "%c", &c) == 1 && c == '\r') {
        }
    }
    float readFloat() {
        float value = 0;
        if (std::fscanf(file_, "%f", &value) != 1) return 0;
        return value;
    }
    Vec3 readVec3() {
        readCharacter();
        const float x = readFloat(), y = readFloat(), z = readFloat();
        return {x, y, z};
    }
    void readTriangle(const std::string& name) {
        std::array<long, 9> triangle{};
        readCharacter();
        for (long& index : triangle) {
            if (std::fscanf(file_, "%ld", &index) != 1) index = 0;
            readCharacter();
        }
        if (!result_.triangles.contains(name)) result_.order.push_back(name);
        result_.triangles[name].push_back(triangle);
    }

    std::FILE* file_;
    PlainObj result_;
};

// The vertices of one object; triangles with an index out of range are left out.
inline std::vector<MeshVertex> PlainVertices(const PlainObj& obj, const std::string& name) {
    const auto fits = [](long index, std::size_t size) {
        return index >= 1 && static_cast<unsigned long>(index) <= size;
    };
    const auto at = [](const auto& list, long index) {
        return list[static_cast<std::size_t>(index - 1)];
    };
    std::vector<MeshVertex> vertices;
    for (const auto& t : obj.triangles.at(name)) {
        bool whole = true;
        for (std::size_t i = 0; i < 9; i += 3) {
            whole = whole && fits(t[i], obj.positions.size()) &&
                    (obj.uvs.empty() || fits(t[i + 1], obj.uvs.size())) &&
                    fits(t[i + 2], obj.normals.size());
        }
        for (std::size_t i = 0; whole && i < 9; i += 3) {
            vertices.push_back({at(obj.positions, t[i]), at(obj.normals, t[i + 2]),
                                obj.uvs.empty() ? Vec2{} : at(obj.uvs, t[i + 1])});
        }
    }
    return vertices;
}
