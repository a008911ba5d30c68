#include "demo/tool/puppet_limbs.h"

#include "demo/tool/dance_performance.h"

namespace puppet {

using namespace dance;
using namespace dance::bones;

namespace {

constexpr double kQuarter = std::numbers::pi / 2;

// Puppets lower these limbs by this much; it is taken back here.
constexpr double kPivotDrop = 0.115 * 0.082;

void lowered(Mesh& mesh) {
    mesh.setPlacement([](const Point& p) { return Point{p.x, p.y + kPivotDrop, p.z}; });
}

// --- profiles that body and lamps share

const Profile& skull() {
    static const Profile profile({{-0.050, 0.006, 0.010, 0, 0.060},
                                  {-0.048, 0.034, 0.036, 0, 0.052},
                                  {-0.020, 0.056, 0.068, 0, 0.028, 2.4},
                                  {0.030, 0.071, 0.086, 0, 0.014, 2.5},
                                  {0.090, 0.080, 0.099, 0, 0.002, 2.3},
                                  {0.145, 0.076, 0.097, 0, -0.006},
                                  {0.185, 0.060, 0.079, 0, -0.010},
                                  {0.207, 0.030, 0.042, 0, -0.010},
                                  {0.214, 0.000, 0.000, 0, -0.010}});
    return profile;
}

const Profile& chest() {
    static const Profile profile({{-0.130, 0.020, 0.020, 0, 0.000},
                                  {-0.128, 0.092, 0.068, 0, 0.000, 2.3},
                                  {-0.100, 0.104, 0.080, 0, 0.004, 2.4},
                                  {-0.030, 0.124, 0.096, 0, 0.010, 2.5},
                                  {0.070, 0.150, 0.112, 0, 0.014, 2.7},
                                  {0.140, 0.162, 0.110, 0, 0.008, 2.7},
                                  {0.200, 0.146, 0.088, 0, -0.004, 2.5},
                                  {0.240, 0.100, 0.064, 0, -0.010, 2.2},
                                  {0.262, 0.062, 0.054, 0, -0.006},
                                  {0.268, 0.050, 0.048, 0, -0.004},
                                  {0.290, 0.043, 0.043, 0, -0.002},
                                  {0.335, 0.040, 0.040},
                                  {0.338, 0.010, 0.010}});
    return profile;
}

const Profile& pelvis() {
    static const Profile profile({{-0.118, 0.004, 0.010, 0, 0.000},
                                  {-0.112, 0.034, 0.052, 0, 0.000},
                                  {-0.070, 0.082, 0.084, 0, -0.004, 2.4},
                                  {-0.010, 0.126, 0.100, 0, -0.010, 2.5},
                                  {0.045, 0.120, 0.092, 0, -0.004, 2.4},
                                  {0.085, 0.102, 0.076, 0, 0.000, 2.3},
                                  {0.092, 0.070, 0.050, 0, 0.000}});
    return profile;
}

const Profile& upperArm() {
    static const Profile profile({{-0.112, 0.012, 0.012},
                                  {-0.110, 0.030, 0.030},
                                  {-0.098, 0.037, 0.038},
                                  {-0.030, 0.042, 0.045, 0, 0.004},
                                  {0.050, 0.046, 0.050, 0, 0.002},
                                  {0.092, 0.049, 0.050},
                                  {0.104, 0.042, 0.042},
                                  {0.106, 0.016, 0.016}});
    return profile;
}

const Profile& forearm() {
    static const Profile profile({{-0.106, 0.010, 0.010},
                                  {-0.104, 0.022, 0.022},
                                  {-0.094, 0.027, 0.028},
                                  {-0.020, 0.033, 0.036},
                                  {0.050, 0.040, 0.043, 0, 0.002},
                                  {0.086, 0.038, 0.040},
                                  {0.098, 0.030, 0.032},
                                  {0.100, 0.012, 0.012}});
    return profile;
}

const Profile& thigh() {
    static const Profile profile({{-0.168, 0.016, 0.016},
                                  {-0.166, 0.046, 0.048},
                                  {-0.152, 0.056, 0.058},
                                  {-0.060, 0.066, 0.072, 0, 0.006},
                                  {0.060, 0.076, 0.086, 0, 0.006},
                                  {0.140, 0.078, 0.088},
                                  {0.172, 0.068, 0.076},
                                  {0.178, 0.030, 0.030}});
    return profile;
}

const Profile& shin() {
    static const Profile profile({{-0.172, 0.012, 0.012},
                                  {-0.170, 0.030, 0.032},
                                  {-0.158, 0.036, 0.038, 0, -0.002},
                                  {-0.060, 0.043, 0.048, 0, -0.008},
                                  {0.050, 0.055, 0.062, 0, -0.012},
                                  {0.120, 0.055, 0.060, 0, -0.006},
                                  {0.156, 0.048, 0.050},
                                  {0.160, 0.020, 0.020}});
    return profile;
}

// A limb's two ball joints, at its ends.
void joints(Mesh& mesh, double limbLength, double upperRadius, double lowerRadius) {
    if (upperRadius > 0) mesh.addBall({0, limbLength / 2, 0}, upperRadius);
    if (lowerRadius > 0) mesh.addBall({0, -limbLength / 2, 0}, lowerRadius);
}

// A finger or a thumb: three bones, each a little thinner, bent a little.
void finger(Mesh& mesh, const Point& root, const Point& direction, double fingerLength,
            double radius) {
    const Point along = unit(direction);
    const Point side = unit(cross(along, {0, 0, 1}));
    const Point across = cross(side, along);
    mesh.setPlacement(
        [=](const Point& p) { return root + along * p.y + side * p.x + across * p.z; });
    const double l = fingerLength;
    mesh.addProfile(Profile({{-0.004, radius * 0.3, radius * 0.3},
                             {0, radius, radius},
                             {l * 0.40, radius * 0.92, radius * 0.92},
                             {l * 0.43, radius * 0.78, radius * 0.78},
                             {l * 0.46, radius * 0.90, radius * 0.90},
                             {l * 0.72, radius * 0.80, radius * 0.80},
                             {l * 0.92, radius * 0.66, radius * 0.66},
                             {l, radius * 0.1, radius * 0.1}}),
                    9, 1);
    mesh.setPlacement(nullptr);
}

// The foot's own frame is tilted. Here profiles run ahead from the ankle, and their front is up.
void footPlacement(Mesh& mesh) {
    const double bone = std::hypot(kFootAhead, kFootDown);
    const double c = kFootAhead / bone, s = kFootDown / bone;
    mesh.setPlacement([=](const Point& p) {
        return Point{-p.x, p.y * c - p.z * s - bone / 2, -p.y * s - p.z * c};
    });
}

const Profile& shoe() {
    constexpr double kSole = -kAnkleHeight;
    const auto ring = [](double ahead, double halfWidth, double top, double squareness) {
        return Ring{ahead, halfWidth, (top - kSole) / 2, 0, (top + kSole) / 2, squareness};
    };
    static const Profile profile({ring(-0.082, 0.004, kSole + 0.040, 2),
                                  ring(-0.078, 0.020, kSole + 0.062, 2.5),
                                  ring(-0.060, 0.036, -0.008, 3), ring(-0.010, 0.041, 0.010, 3.2),
                                  ring(0.050, 0.042, -0.016, 3.2), ring(0.110, 0.047, -0.042, 3.2),
                                  ring(0.160, 0.045, -0.054, 3), ring(0.195, 0.033, -0.060, 2.6),
                                  ring(0.208, 0.014, -0.066, 2.2), ring(0.210, 0.003, -0.072, 2)});
    return profile;
}

void headBody(Mesh& mesh) {
    mesh.addBall({0, -kHeadLength / 2, 0}, 0.047);
    mesh.addProfile(Profile({{-0.080, 0.038, 0.040},
                             {-0.060, 0.041, 0.043},
                             {-0.052, 0.045, 0.047},
                             {-0.040, 0.045, 0.048},
                             {0.000, 0.046, 0.052}}),
                    18, 2);
    mesh.addProfile(skull(), 26, 3);
    // Cheek plates, and a crest from the brow to the neck.
    for (const double side : {-1.0, 1.0}) {
        mesh.addBall({side * 0.067, 0.070, -0.010}, 0.024, 14);
        mesh.addPatch(skull(), -0.030, 0.050, side * 0.8, 0.42, 0.005);
    }
    mesh.addPatch(skull(), 0.126, 0.176, 0, 0.30, 0.004);
    mesh.addPatch(skull(), 0.050, 0.176, 2 * kQuarter, 0.34, 0.004);
}

// The visor: one broad band of light across the face.
void headLamps(Mesh& mesh) {
    mesh.addPatch(skull(), 0.064, 0.112, 0, 1.15, 0.006, 24, 8);
    for (const double side : {-1.0, 1.0}) {
        mesh.addPatch(skull(), 0.02, 0.15, 2 * kQuarter + side * 0.55, 0.06, 0.004, 4, 10);
    }
}

void torsoBody(Mesh& mesh) {
    mesh.addProfile(chest(), 30, 3);
    // The waist's discs.
    for (int disc = 0; disc < 3; ++disc) {
        const double y = -0.140 - 0.024 * disc;
        mesh.addProfile(Profile({{y - 0.013, 0.05, 0.04},
                                 {y - 0.012, 0.078, 0.058},
                                 {y, 0.086, 0.064},
                                 {y + 0.012, 0.078, 0.058},
                                 {y + 0.013, 0.05, 0.04}}),
                        24, 1);
    }
    for (const double side : {-1.0, 1.0}) {
        mesh.addPatch(chest(), 0.045, 0.175, side * 0.58, 0.46, 0.012, 14, 12);
        mesh.addPatch(chest(), -0.095, 0.020, side * 0.34, 0.26, 0.006, 10, 10);
        mesh.addPatch(chest(), -0.095, 0.010, side * 1.15, 0.40, 0.006, 10, 10);
        mesh.addPatch(chest(), 0.020, 0.200, side * 2.55, 0.42, 0.010, 12, 12);
    }
    mesh.addPatch(chest(), -0.100, 0.210, 2 * kQuarter, 0.14, 0.012, 6, 16);
}

void torsoLamps(Mesh& mesh) {
    // The heart: a disc between the chest's plates, and the strips that lead down from it.
    mesh.addPatch(chest(), 0.075, 0.135, 0, 0.13, 0.016, 10, 10);
    mesh.addPatch(chest(), -0.100, 0.055, 0, 0.045, 0.008, 4, 12);
    for (const double side : {-1.0, 1.0}) {
        mesh.addPatch(chest(), -0.090, 0.150, side * 1.62, 0.05, 0.006, 4, 14);
        mesh.addPatch(chest(), 0.010, 0.190, 2 * kQuarter + side * 0.2, 0.028, 0.010, 4, 12);
    }
}

void pelvisBody(Mesh& mesh) {
    mesh.addProfile(pelvis(), 26, 3);
    for (const double side : {-1.0, 1.0}) {
        mesh.addPatch(pelvis(), -0.030, 0.072, side * 0.95, 0.60, 0.008, 12, 8);
        mesh.addPatch(pelvis(), -0.060, 0.050, side * 2.5, 0.46, 0.010, 10, 8);
    }
}

void pelvisLamps(Mesh& mesh) {
    mesh.addPatch(pelvis(), -0.035, 0.066, 0, 0.10, 0.009, 5, 8);
}

void upperArmBody(Mesh& mesh) {
    lowered(mesh);
    joints(mesh, kUpperArm, 0.058, 0.037);
    mesh.addProfile(upperArm());
    // The cap of the shoulder.
    mesh.addProfile(Profile({{0.084, 0.050, 0.052},
                             {0.088, 0.059, 0.061},
                             {0.130, 0.064, 0.066},
                             {0.170, 0.052, 0.054},
                             {0.195, 0.021, 0.022},
                             {0.199, 0.000, 0.000}}));
    mesh.addPatch(upperArm(), -0.085, 0.060, 0, 0.9, 0.005, 10, 10);
}

void upperArmLamps(Mesh& mesh) {
    lowered(mesh);
    mesh.addBelt(upperArm(), -0.094, 0.007);
    for (const double side : {-1.0, 1.0}) {
        mesh.addPatch(upperArm(), -0.070, 0.070, side * kQuarter, 0.09, 0.006, 4, 10);
    }
}

void forearmBody(Mesh& mesh) {
    joints(mesh, kForearm, 0, 0.027);
    mesh.addProfile(forearm());
    mesh.addPatch(forearm(), -0.070, 0.085, kQuarter, 0.8, 0.006, 10, 10);
    mesh.addPatch(forearm(), -0.070, 0.085, -kQuarter, 0.8, 0.006, 10, 10);
}

void forearmLamps(Mesh& mesh) {
    mesh.addBelt(forearm(), -0.090, 0.006);
    for (const double side : {-1.0, 1.0}) {
        mesh.addPatch(forearm(), -0.055, 0.070, side * kQuarter, 0.11, 0.010, 4, 10);
    }
}

// Palm inward, thumb ahead.
void handBody(Mesh& mesh) {
    mesh.addProfile(Profile({{0.020, 0.008, 0.026, 0, 0.000, 2.6},
                             {0.024, 0.013, 0.040, 0, 0.000, 2.8},
                             {0.060, 0.016, 0.041, 0, 0.002, 2.8},
                             {0.086, 0.017, 0.032, 0, 0.000, 2.6},
                             {0.108, 0.018, 0.022, 0, 0.000, 2.2},
                             {0.112, 0.010, 0.012, 0, 0.000}}),
                    18, 3);
    constexpr double kLengths[] = {0.068, 0.088, 0.094, 0.084};  // from the little finger on
    for (int i = 0; i < 4; ++i) {
        const double across = -0.0295 + 0.0197 * i;
        finger(mesh, {0, 0.026, across}, {0, -1, 0.35 * across}, kLengths[i], 0.0102);
    }
    finger(mesh, {0, 0.078, 0.030}, {0, -0.75, 0.62}, 0.066, 0.0115);
}

void handLamps(Mesh& mesh) {
    // Knuckles on both sides.
    for (int i = 0; i < 4; ++i) {
        for (const double side : {-1.0, 1.0}) {
            mesh.addBall({side * 0.010, 0.032, -0.0295 + 0.0197 * i}, 0.0062, 10);
        }
    }
}

void thighBody(Mesh& mesh) {
    joints(mesh, kThigh, 0.066, 0.052);
    mesh.addProfile(thigh(), 24, 3);
    mesh.addPatch(thigh(), -0.130, 0.120, 0, 0.85, 0.007, 12, 14);
    mesh.addPatch(thigh(), -0.110, 0.130, 2 * kQuarter, 0.75, 0.006, 12, 14);
}

void thighLamps(Mesh& mesh) {
    mesh.addBelt(thigh(), -0.150, 0.009, 28);
    for (const double side : {-1.0, 1.0}) {
        mesh.addPatch(thigh(), -0.110, 0.130, side * kQuarter, 0.07, 0.007, 4, 14);
    }
}

void shinBody(Mesh& mesh) {
    joints(mesh, kShin, 0, 0.037);
    mesh.addProfile(shin(), 24, 3);
    // The knee's cap.
    mesh.addProfile(Profile({{0.150, 0.006, 0.004, 0, 0.050},
                             {0.160, 0.030, 0.016, 0, 0.046, 2.6},
                             {0.200, 0.040, 0.022, 0, 0.044, 2.6},
                             {0.244, 0.032, 0.016, 0, 0.038, 2.6},
                             {0.258, 0.006, 0.004, 0, 0.034}}),
                    18, 3);
    mesh.addPatch(shin(), -0.140, 0.110, 0, 0.8, 0.006, 12, 14);
    mesh.addPatch(shin(), -0.060, 0.130, 2 * kQuarter, 0.8, 0.008, 12, 12);
}

void shinLamps(Mesh& mesh) {
    mesh.addBelt(shin(), -0.150, 0.008);
    for (const double side : {-1.0, 1.0}) {
        mesh.addPatch(shin(), -0.110, 0.110, side * kQuarter, 0.08, 0.007, 4, 14);
    }
}

void footBody(Mesh& mesh) {
    footPlacement(mesh);
    mesh.addProfile(shoe(), 24, 3);
}

// A line of light around the sole.
void footLamps(Mesh& mesh) {
    footPlacement(mesh);
    for (const double side : {-1.0, 1.0}) {
        mesh.addPatch(shoe(), -0.070, 0.190, side * 1.95, 0.10, 0.005, 4, 18);
    }
}

}  // namespace

std::span<const LimbShape> LimbShapes() {
    static constexpr LimbShape kShapes[] = {
        {"HEAD", headBody, headLamps},
        {"RIGHT_HAND", handBody, handLamps},
        {"LEFT_HAND", handBody, handLamps},
        {"RIGHT_LOWERARM", forearmBody, forearmLamps},
        {"LEFT_LOWERARM", forearmBody, forearmLamps},
        {"RIGHT_UPPERARM", upperArmBody, upperArmLamps},
        {"LEFT_UPPERARM", upperArmBody, upperArmLamps},
        {"TORSO", torsoBody, torsoLamps},
        {"TRICENTER", pelvisBody, pelvisLamps},
        {"RIGHT_UPPERLEG", thighBody, thighLamps},
        {"LEFT_UPPERLEG", thighBody, thighLamps},
        {"RIGHT_LOWERLEG", shinBody, shinLamps},
        {"LEFT_LOWERLEG", shinBody, shinLamps},
        {"RIGHT_FOOT", footBody, footLamps},
        {"LEFT_FOOT", footBody, footLamps},
    };
    return kShapes;
}

}  // namespace puppet
