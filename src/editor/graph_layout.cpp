#include "editor/graph_layout.h"

#include <algorithm>
#include <cstdint>
#include <numeric>
#include <set>
#include <vector>

#include "core/engine.h"
#include "editor/graph_edit.h"

namespace {

constexpr float kColumnPitch = 184;  // pixels; a box is 160 wide
constexpr float kRowPitch = 64;      // a box is 20 high
constexpr float kStagger = 34;       // between the lines that a full row is broken into
constexpr std::size_t kMostAbreast = 13;
constexpr int kSweeps = 8;

// The graph as numbers, without the links that close cycles.
struct LayeredGraph {
    std::vector<const Node*> nodes;
    std::vector<std::vector<int>> sources, consumers;
    std::vector<std::vector<int>> rows;  // from the outputs up
    std::vector<float> order;            // place within the row

    explicit LayeredGraph(const Engine& engine) {
        std::unordered_map<const Node*, int> numbers;
        for (const auto& [id, node] : engine.nodes) {
            if (!node) continue;
            numbers[node.get()] = static_cast<int>(nodes.size());
            nodes.push_back(node.get());
        }
        sources.resize(nodes.size());
        consumers.resize(nodes.size());
        order.resize(nodes.size());
        const std::set<LinkEnd> feedback = FeedbackLinks(engine);
        for (std::size_t i = 0; i < nodes.size(); ++i) {
            for (int port = 0; port < nodes[i]->inputCount; ++port) {
                const auto source = numbers.find(nodes[i]->getInput(port));
                if (source == numbers.end() || feedback.contains({nodes[i], port})) continue;
                sources[i].push_back(source->second);
                consumers[static_cast<std::size_t>(source->second)].push_back(static_cast<int>(i));
            }
        }
        makeRows();
    }

    // A node's row is one above the highest of its consumers'.
    void makeRows() {
        std::vector<int> row(nodes.size(), 0), open(nodes.size());
        std::vector<int> ready;
        for (std::size_t i = 0; i < nodes.size(); ++i) {
            open[i] = static_cast<int>(consumers[i].size());
            if (open[i] == 0) ready.push_back(static_cast<int>(i));
        }
        for (std::size_t next = 0; next < ready.size(); ++next) {
            const auto consumer = static_cast<std::size_t>(ready[next]);
            for (const int source : sources[consumer]) {
                const auto s = static_cast<std::size_t>(source);
                row[s] = std::max(row[s], row[consumer] + 1);
                if (--open[s] == 0) ready.push_back(source);
            }
        }
        for (std::size_t i = 0; i < nodes.size(); ++i) {
            const auto r = static_cast<std::size_t>(row[i]);
            if (r >= rows.size()) rows.resize(r + 1);
            rows[r].push_back(static_cast<int>(i));
        }
    }

    void number(std::vector<int>& row) {
        // Centred, so that places in rows of different length compare.
        const float first = -static_cast<float>(row.size()) / 2;
        for (std::size_t i = 0; i < row.size(); ++i) {
            order[static_cast<std::size_t>(row[i])] = first + static_cast<float>(i);
        }
    }

    // Each node goes to the middle of what it is linked with on one side.
    void sortBy(std::vector<int>& row, const std::vector<std::vector<int>>& neighbours) {
        std::unordered_map<int, float> middle;
        for (const int node : row) {
            const auto& near = neighbours[static_cast<std::size_t>(node)];
            float sum = 0;
            for (const int other : near) sum += order[static_cast<std::size_t>(other)];
            middle[node] = near.empty() ? order[static_cast<std::size_t>(node)]
                                        : sum / static_cast<float>(near.size());
        }
        std::stable_sort(row.begin(), row.end(),
                         [&](int a, int b) { return middle[a] < middle[b]; });
        number(row);
    }

    void uncross() {
        for (auto& row : rows) number(row);
        for (int sweep = 0; sweep < kSweeps; ++sweep) {
            for (std::size_t r = 1; r < rows.size(); ++r) sortBy(rows[r], consumers);
            for (std::size_t r = rows.size(); r-- > 1;) sortBy(rows[r - 1], sources);
        }
        for (std::size_t r = 1; r < rows.size(); ++r) sortBy(rows[r], consumers);
    }
};

}  // namespace

std::unordered_map<std::string, Vec2> ArrangeGraph(const Engine& engine) {
    LayeredGraph graph(engine);
    graph.uncross();
    std::unordered_map<std::string, Vec2> places;
    float bottom = 0;
    for (const auto& row : graph.rows) {
        // A full row becomes several lines that take turns, so that neighbours stay near.
        const std::size_t lines = (row.size() + kMostAbreast - 1) / kMostAbreast;
        const float pitch = kColumnPitch / static_cast<float>(lines);
        const float left = -pitch * static_cast<float>(row.size() - 1) / 2;
        for (std::size_t i = 0; i < row.size(); ++i) {
            const float up = kStagger * static_cast<float>(i % lines);
            places[graph.nodes[static_cast<std::size_t>(row[i])]->id] = {
                left + pitch * static_cast<float>(i), bottom - up};
        }
        bottom -= kRowPitch + kStagger * static_cast<float>(lines - 1);
    }
    Vec2 least = {0, 0};
    for (const auto& [id, place] : places) {
        least = {std::min(least.x, place.x), std::min(least.y, place.y)};
    }
    for (auto& [id, place] : places) {
        place = {static_cast<float>(static_cast<int>(place.x - least.x)),
                 static_cast<float>(static_cast<int>(place.y - least.y))};
    }
    return places;
}
