// Two bones with a hinge between them: where knee and elbow go. Depends on the mathematics only;
// any thread.
#pragma once

#include "demo/tool/dance_math.h"

namespace dance {

struct TwoBones {
    Point hinge, end;
};

// From `root` to `target`, or as near to it as the bones reach; the hinge points to `pole`.
inline TwoBones SolveTwoBones(const Point& root, const Point& target, double first, double second,
                              const Point& pole) {
    const Point way = target - root;
    const double shortest = std::abs(first - second) * 1.02 + 0.02;
    const double reach = std::clamp(length(way), shortest, (first + second) * 0.9985);
    const Point along = unit(way);
    const double foot = (first * first - second * second + reach * reach) / (2 * reach);
    const double aside = std::sqrt(std::max(0.0, first * first - foot * foot));
    Point out = pole - along * dot(pole, along);
    if (length(out) < 1e-6) out = cross(along, {1, 0, 0});
    return {root + along * foot + unit(out) * aside, root + along * reach};
}

// A mass on a spring that is drawn to a wanted place.
class Spring {
  public:
    explicit Spring(const Point& place) : place_(place) {}

    // `quickness`: radians a second of the free swing.
    const Point& pull(const Point& target, double quickness, double seconds) {
        constexpr double kDamping = 0.72;  // lets it swing over a little
        constexpr int kSteps = 8;
        const double dt = seconds / kSteps;
        for (int i = 0; i < kSteps; ++i) {
            const Point force = (target - place_) * (quickness * quickness) -
                                velocity_ * (2 * kDamping * quickness);
            velocity_ = velocity_ + force * dt;
            place_ = place_ + velocity_ * dt;
        }
        return place_;
    }
    const Point& place() const { return place_; }

  private:
    Point place_, velocity_;
};

}  // namespace dance
