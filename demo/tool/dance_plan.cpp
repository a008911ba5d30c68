#include "demo/tool/dance_plan.h"

#include <algorithm>

#include "demo/tool/dance_sections.h"
#include "demo/tool/dance_steps.h"

namespace dance {

namespace {

template <typename T, typename Time>
void sortByTime(std::vector<T>& marks, Time T::*time) {
    std::stable_sort(marks.begin(), marks.end(),
                     [time](const T& a, const T& b) { return a.*time < b.*time; });
}

}  // namespace

DancePlan PlanDance() {
    DancePlan plan;
    DanceWriter writer(plan);
    WriteOpening(writer);
    WriteMiddle(writer);
    WriteClimax(writer);
    WriteDrawing(writer);
    WriteEnding(writer);

    sortByTime(plan.weight, &Mark::seconds);
    for (auto* marks : {&plan.crouch, &plan.bounce, &plan.sway, &plan.twist, &plan.lean, &plan.nod,
                        &plan.headLean, &plan.headTilt, &plan.calm}) {
        sortByTime(*marks, &Mark::seconds);
    }
    for (const Side side : {kLeft, kRight}) {
        sortByTime(plan.feet[side], &FootMark::landSeconds);
        sortByTime(plan.arms[side], &ArmMark::seconds);
    }
    return plan;
}

}  // namespace dance
