#include "geometry/puppet_pose.h"

#include <array>
#include <cmath>

namespace {

Vec3 operator+(const Vec3& a, const Vec3& b) {
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}
Vec3 operator-(const Vec3& a, const Vec3& b) {
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}
Vec3 operator-(const Vec3& v) {
    return {-v.x, -v.y, -v.z};
}
Vec3 operator*(const Vec3& v, float factor) {
    return {v.x * factor, v.y * factor, v.z * factor};
}
float Dot(const Vec3& a, const Vec3& b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}
float Length(const Vec3& v) {
    return std::sqrt(Dot(v, v));
}

constexpr float kNoLength = 1e-5f;

// `fallback`, a unit vector, where there is no direction to take.
Vec3 Direction(const Vec3& v, const Vec3& fallback) {
    const float length = Length(v);
    return length > kNoLength ? v * (1 / length) : fallback;
}

// The part of a vector that is square to a unit vector.
Vec3 SquareTo(const Vec3& axis, const Vec3& v) {
    return v - axis * Dot(axis, v);
}

// How a limb lies: unit vectors, square to each other.
struct LimbAxes {
    Vec3 along;  // from joint A to joint B
    Vec3 front;  // where the body's front is when the limb hangs
};

// The axes after the smallest turn that takes them along `along`.
LimbAxes Carry(const LimbAxes& axes, const Vec3& along) {
    const float cosine = Dot(axes.along, along);
    // Folded back on itself there is no smallest turn; a hinge turns about the side axis.
    constexpr float kFoldedBack = -0.99999f;
    if (cosine < kFoldedBack) return {along, -axes.front};
    const Vec3 turned = axes.front - (axes.along + along) * (Dot(along, axes.front) / (1 + cosine));
    return {along, Direction(SquareTo(along, turned), axes.front)};
}

// The axes of a part of the trunk: down it, and to its front. `across`: to the dancer's right.
LimbAxes TrunkAxes(const Vec3& across, const Vec3& down, const Vec3& spareDown) {
    constexpr float kTooShort = 1e-3f;
    constexpr Vec3 kSomeDirection = {0.6f, 0.8f, 0};
    Vec3 along = SquareTo(across, down);
    if (Length(along) < kTooShort) along = SquareTo(across, spareDown);
    if (Length(along) < kTooShort) along = SquareTo(across, kSomeDirection);
    along = Direction(along, {0, -1, 0});
    return {along, Direction(Vec3Cross(across, along), {0, 0, -1})};
}

struct LimbPlace {
    LimbAxes axes;
    Vec3 a, b;  // where the joints A and B lie
};

// All limbs of one pose.
class Body {
  public:
    explicit Body(const Skeleton& skeleton) : joints_(skeleton) {
        placeTrunk();
        placeArm(LimbKind::kRightUpperArm, LimbKind::kRightLowerArm, LimbKind::kRightHand,
                 kShoulderLeft, kHandTipLeft, -across_);
        placeArm(LimbKind::kLeftUpperArm, LimbKind::kLeftLowerArm, LimbKind::kLeftHand,
                 kShoulderRight, kHandTipRight, across_);
        placeLeg(LimbKind::kRightUpperLeg, LimbKind::kRightLowerLeg, LimbKind::kRightFoot,
                 kHipLeft);
        placeLeg(LimbKind::kLeftUpperLeg, LimbKind::kLeftLowerLeg, LimbKind::kLeftFoot, kHipRight);
    }

    const LimbPlace& at(LimbKind kind) const { return places_[static_cast<std::size_t>(kind)]; }

  private:
    const Vec3& joint(int type) const { return joints_[static_cast<std::size_t>(type)]; }

    LimbAxes place(LimbKind kind, const LimbAxes& axes, const Vec3& a, const Vec3& b) {
        places_[static_cast<std::size_t>(kind)] = {axes, a, b};
        return axes;
    }
    // A limb whose axes are those of `parent`, carried along it.
    LimbAxes hang(LimbKind kind, const LimbAxes& parent, const Vec3& a, const Vec3& b) {
        return place(kind, Carry(parent, Direction(b - a, parent.along)), a, b);
    }

    void placeTrunk() {
        const Vec3 hipLine = joint(kHipRight) - joint(kHipLeft);
        const Vec3 hipAcross = Direction(hipLine, {1, 0, 0});
        across_ = Direction(joint(kShoulderRight) - joint(kShoulderLeft), hipAcross);
        const Vec3 shoulders = (joint(kShoulderLeft) + joint(kShoulderRight)) * 0.5f;
        const Vec3 hips = (joint(kHipLeft) + joint(kHipRight)) * 0.5f;
        const Vec3 spine = joint(kSpineBase) - joint(kNeck);
        chest_ = TrunkAxes(across_, hips - shoulders, spine);
        hang(LimbKind::kTorso, chest_, shoulders, hips);
        hang(LimbKind::kHead, chest_, joint(kHead), joint(kNeck));

        const Vec3 legs = towardsKnees();
        pelvis_ = TrunkAxes(Direction(hipLine, across_), legs, spine);
        const Vec3 centre =
            (joint(kSpineBase) + joint(kHipLeft) + joint(kHipRight)) * (1.0f / 3.0f);
        place(LimbKind::kTricenter, Carry(pelvis_, legs), centre, centre);
    }

    // The mean direction from the spine's base to the knees. Where they lead apart, as in a split,
    // the chest's own direction takes over.
    Vec3 towardsKnees() const {
        const Vec3& base = joint(kSpineBase);
        const Vec3 sum = Direction(joint(kKneeLeft) - base, chest_.along) +
                         Direction(joint(kKneeRight) - base, chest_.along);
        const float spread = 1 - 2 * Length(sum);
        return Direction(spread > 0 ? sum + chest_.along * spread : sum, chest_.along);
    }

    void placeArm(LimbKind upper, LimbKind lower, LimbKind hand, int shoulder, int tip,
                  const Vec3& outward) {
        const Vec3& elbow = joint(shoulder + 1);
        const Vec3& wrist = joint(shoulder + 2);
        // By way of a direction whose opposite, through the chest, no arm can take.
        const Vec3 out = outward + (chest_.front + chest_.along) * 0.5f;
        const LimbAxes raised = Carry(chest_, Direction(out, chest_.along));
        const Vec3 direction = Direction(elbow - joint(shoulder), chest_.along);
        const LimbAxes axes = place(upper, Carry(raised, direction), joint(shoulder), elbow);
        const LimbAxes forearm = hang(lower, axes, elbow, wrist);
        hang(hand, forearm, joint(shoulder + 3), joint(tip));
    }

    void placeLeg(LimbKind upper, LimbKind lower, LimbKind foot, int hip) {
        const Vec3& knee = joint(hip + 1);
        const Vec3& ankle = joint(hip + 2);
        const Vec3& toes = joint(hip + 3);
        const LimbAxes thigh = hang(upper, pelvis_, joint(hip), knee);
        const LimbAxes shin = hang(lower, thigh, knee, ankle);
        // A foot's joint A is its far end: its axes point back.
        const LimbAxes forward = Carry(shin, Direction(toes - ankle, shin.front));
        place(foot, {-forward.along, -forward.front}, toes, ankle);
    }

    const Skeleton& joints_;
    Vec3 across_;      // along the shoulders, to the dancer's right
    LimbAxes chest_;   // of the shoulders
    LimbAxes pelvis_;  // of the hips
    std::array<LimbPlace, 16> places_;
};

struct LimbName {
    const char* name;
    LimbKind kind;
    JointType jointA, jointB;
};

// The model's right is the sensor's left.
constexpr LimbName kLimbNames[] = {
    {"HEAD", LimbKind::kHead, kHead, kNeck},
    {"RIGHT_HAND", LimbKind::kRightHand, kHandLeft, kHandTipLeft},
    {"LEFT_HAND", LimbKind::kLeftHand, kHandRight, kHandTipRight},
    {"RIGHT_LOWERARM", LimbKind::kRightLowerArm, kElbowLeft, kWristLeft},
    {"LEFT_LOWERARM", LimbKind::kLeftLowerArm, kElbowRight, kWristRight},
    {"RIGHT_UPPERARM", LimbKind::kRightUpperArm, kShoulderLeft, kElbowLeft},
    {"LEFT_UPPERARM", LimbKind::kLeftUpperArm, kShoulderRight, kElbowRight},
    {"TORSO", LimbKind::kTorso, kSpineBase, kSpineBase},
    {"TRICENTER", LimbKind::kTricenter, kSpineBase, kSpineBase},
    {"RIGHT_UPPERLEG", LimbKind::kRightUpperLeg, kHipLeft, kKneeLeft},
    {"LEFT_UPPERLEG", LimbKind::kLeftUpperLeg, kHipRight, kKneeRight},
    {"RIGHT_LOWERLEG", LimbKind::kRightLowerLeg, kKneeLeft, kAnkleLeft},
    {"LEFT_LOWERLEG", LimbKind::kLeftLowerLeg, kKneeRight, kAnkleRight},
    {"RIGHT_FOOT", LimbKind::kRightFoot, kFootLeft, kAnkleLeft},
    {"LEFT_FOOT", LimbKind::kLeftFoot, kFootRight, kAnkleRight},
};

float OffsetOf(const PuppetShape& shape, LimbKind kind) {
    switch (kind) {
        case LimbKind::kHead:
            return shape.headOffset;
        case LimbKind::kTorso:
            return shape.torsoOffset;
        case LimbKind::kRightUpperArm:
        case LimbKind::kLeftUpperArm:
            return shape.shoulderOffset;
        case LimbKind::kRightHand:
        case LimbKind::kLeftHand:
            return shape.handOffset;
        case LimbKind::kRightUpperLeg:
        case LimbKind::kLeftUpperLeg:
            return shape.thighOffset;
        case LimbKind::kRightLowerLeg:
        case LimbKind::kLeftLowerLeg:
            return shape.kneeOffset;
        case LimbKind::kRightLowerArm:
        case LimbKind::kLeftLowerArm:
        case LimbKind::kTricenter:
        case LimbKind::kRightFoot:
        case LimbKind::kLeftFoot:
            return 0;
    }
    return 0;
}

// Limbs that are moved down the model, by so much in the model's own units.
constexpr float kPivotDrop = 0.115f;
bool HasLoweredPivot(LimbKind kind) {
    return kind == LimbKind::kTorso || kind == LimbKind::kRightUpperArm ||
           kind == LimbKind::kLeftUpperArm;
}

// What is done to the model before it is laid along a limb: its pivot, then a quarter turn back
// about x that takes its y axis to -z, then its size.
Mat4 ModelMatrix(float scale, float pivotDrop) {
    constexpr float kQuarterBack = -1.5707964f;
    const float c = std::cos(kQuarterBack);
    const float s = std::sin(kQuarterBack);
    const Mat4 turn = {{1, 0, 0, 0, 0, c, s, 0, 0, -s, c, 0, 0, 0, 0, 1}};
    Mat4 drop, size, turned, result;
    Mat4Translation(drop, {0, -pivotDrop, 0});
    Mat4Scale(size, {scale, scale, scale});
    return Mat4Multiply(Mat4Multiply(size, turned, turn), result, drop);
}

}  // namespace

void BindLimbs(std::string_view objectName, std::size_t object, std::vector<PuppetLimb>& limbs) {
    for (const LimbName& limb : kLimbNames) {
        if (objectName.find(limb.name) == std::string_view::npos) continue;
        limbs.push_back({limb.kind, limb.jointA, limb.jointB, object, Mat4{}});
    }
}

float LimbScale(float jointScale) {
    return jointScale * 0.01f * 0.56f * 1.465f;
}

void PoseLimbs(const Skeleton& skeleton, const PuppetShape& shape, std::span<PuppetLimb> limbs) {
    const Body body(skeleton);
    const float scale = LimbScale(shape.jointScale);
    const Mat4 model = ModelMatrix(scale, 0);
    const Mat4 droppedModel = ModelMatrix(scale, kPivotDrop);
    for (PuppetLimb& limb : limbs) {
        const LimbPlace& place = body.at(limb.kind);
        const Vec3 y = place.a - place.b;
        const Vec3 pivot = place.b + (y * 0.5f + y * OffsetOf(shape, limb.kind));
        Mat4 lay;
        Mat4FromDirection(lay, place.axes.along, place.axes.front);
        lay[12] = pivot.x;
        lay[13] = pivot.y;
        lay[14] = pivot.z;
        Mat4Multiply(lay, limb.transform, HasLoweredPivot(limb.kind) ? droppedModel : model);
    }
}
