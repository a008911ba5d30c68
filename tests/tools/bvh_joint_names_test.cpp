#include "bvh_joint_names.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

BvhFile FileWith(const std::vector<std::string>& names) {
    BvhFile file;
    for (const std::string& name : names) {
        BvhJoint joint;
        joint.name = name;
        joint.parent = static_cast<int>(file.joints.size()) - 1;
        file.joints.push_back(joint);
    }
    return file;
}

// The file's name for each of base, neck, head, and per side shoulder, elbow, wrist, hip, knee,
// ankle, foot; an empty name is a joint that the file lacks.
struct Scheme {
    const char* program;
    std::string base, neck, head;
    std::vector<std::string> left, right;
    std::vector<std::string> others;
};

const std::vector<Scheme> kSchemes = {
    {"optical studios",
     "Hips",
     "Neck",
     "Head",
     {"LeftArm", "LeftForeArm", "LeftHand", "LeftUpLeg", "LeftLeg", "LeftFoot", "LeftToeBase"},
     {"RightArm", "RightForeArm", "RightHand", "RightUpLeg", "RightLeg", "RightFoot",
      "RightToeBase"},
     {"LHipJoint", "RHipJoint", "LowerBack", "Spine", "Spine1", "Neck1", "LeftShoulder",
      "RightShoulder", "LThumb", "LeftFingerBase", "LeftHandIndex1"}},
    {"with a prefix",
     "mixamorig:Hips",
     "mixamorig:Neck",
     "mixamorig:Head",
     {"mixamorig:LeftArm", "mixamorig:LeftForeArm", "mixamorig:LeftHand", "mixamorig:LeftUpLeg",
      "mixamorig:LeftLeg", "mixamorig:LeftFoot", "mixamorig:LeftToeBase"},
     {"mixamorig:RightArm", "mixamorig:RightForeArm", "mixamorig:RightHand", "mixamorig:RightUpLeg",
      "mixamorig:RightLeg", "mixamorig:RightFoot", "mixamorig:RightToeBase"},
     {"mixamorig:LeftShoulder", "mixamorig:Spine"}},
    {"the first files of the kind",
     "Hips",
     "Neck",
     "Head",
     {"LeftShoulder", "LeftElbow", "LeftWrist", "LeftHip", "LeftKnee", "LeftAnkle", ""},
     {"RightShoulder", "RightElbow", "RightWrist", "RightHip", "RightKnee", "RightAnkle", ""},
     {"Chest", "Chest2", "LeftCollar", "RightCollar"}},
    {"figure posing",
     "hip",
     "neck",
     "head",
     {"lShldr", "lForeArm", "lHand", "lThigh", "lShin", "lFoot", "lToe"},
     {"rShldr", "rForeArm", "rHand", "rThigh", "rShin", "rFoot", "rToe"},
     {"abdomen", "chest", "lCollar", "rCollar", "leftEye", "rightEye", "lButtock", "lThumb1"}},
    {"game engines",
     "pelvis",
     "neck_01",
     "head",
     {"upperarm_l", "lowerarm_l", "hand_l", "thigh_l", "calf_l", "foot_l", "ball_l"},
     {"upperarm_r", "lowerarm_r", "hand_r", "thigh_r", "calf_r", "foot_r", "ball_r"},
     {"spine_01", "clavicle_l", "clavicle_r", "thumb_01_l", "middle_01_l"}},
    {"bipeds",
     "Bip01 Pelvis",
     "Bip01 Neck",
     "Bip01 Head",
     {"Bip01 L UpperArm", "Bip01 L Forearm", "Bip01 L Hand", "Bip01 L Thigh", "Bip01 L Calf",
      "Bip01 L Foot", "Bip01 L Toe0"},
     {"Bip01 R UpperArm", "Bip01 R Forearm", "Bip01 R Hand", "Bip01 R Thigh", "Bip01 R Calf",
      "Bip01 R Foot", "Bip01 R Toe0"},
     {"Bip01", "Bip01 Spine", "Bip01 L Clavicle", "Bip01 L Finger0"}},
    {"rigs with a side behind a dot",
     "hips",
     "neck",
     "head",
     {"upper_arm.L", "forearm.L", "hand.L", "thigh.L", "shin.L", "foot.L", "toe.L"},
     {"upper_arm.R", "forearm.R", "hand.R", "thigh.R", "shin.R", "foot.R", "toe.R"},
     {"spine", "chest", "shoulder.L", "shoulder.R"}},
    {"bones by their learned names",
     "root",
     "lowerneck",
     "head",
     {"lhumerus", "lradius", "lwrist", "lfemur", "ltibia", "lfoot", "ltoes"},
     {"rhumerus", "rradius", "rwrist", "rfemur", "rtibia", "rfoot", "rtoes"},
     {"lowerback", "thorax", "upperneck", "lclavicle", "lhand", "lhipjoint", "lthumb"}},
    {"suits",
     "Hips",
     "Neck",
     "Head",
     {"LeftUpperArm", "LeftLowerArm", "LeftHand", "LeftUpperLeg", "LeftLowerLeg", "LeftFoot",
      "LeftToe"},
     {"RightUpperArm", "RightLowerArm", "RightHand", "RightUpperLeg", "RightLowerLeg", "RightFoot",
      "RightToe"},
     {"Spine1", "LeftShoulder", "RightShoulder"}},
};

// All names of a scheme, the misleading ones first.
std::vector<std::string> NamesOf(const Scheme& scheme) {
    std::vector<std::string> names = scheme.others;
    for (const std::string& name : {scheme.base, scheme.neck, scheme.head}) names.push_back(name);
    for (const auto* side : {&scheme.left, &scheme.right}) {
        for (const std::string& name : *side) {
            if (!name.empty()) names.push_back(name);
        }
    }
    return names;
}

std::string Found(const BvhFile& file, const BvhJointMap& map, JointType joint) {
    const int index = map[static_cast<std::size_t>(joint)];
    return index == BvhJoint::kNone ? "" : file.joints[static_cast<std::size_t>(index)].name;
}

TEST(BvhJointNames, AreFoundInTheCommonSchemes) {
    constexpr JointType kLeft[] = {kShoulderLeft, kElbowLeft, kWristLeft, kHipLeft,
                                   kKneeLeft,     kAnkleLeft, kFootLeft};
    constexpr JointType kRight[] = {kShoulderRight, kElbowRight, kWristRight, kHipRight,
                                    kKneeRight,     kAnkleRight, kFootRight};
    for (const Scheme& scheme : kSchemes) {
        SCOPED_TRACE(scheme.program);
        const BvhFile file = FileWith(NamesOf(scheme));
        BvhJointMap map;
        std::string fault;
        ASSERT_TRUE(MapBvhJoints(file, "", map, fault)) << fault;
        EXPECT_EQ(Found(file, map, kSpineBase), scheme.base);
        EXPECT_EQ(Found(file, map, kNeck), scheme.neck);
        EXPECT_EQ(Found(file, map, kHead), scheme.head);
        for (std::size_t i = 0; i < 7; ++i) {
            EXPECT_EQ(Found(file, map, kLeft[i]), scheme.left[i]);
            EXPECT_EQ(Found(file, map, kRight[i]), scheme.right[i]);
        }
    }
}

TEST(BvhJointNames, FindFingersAndThumbs) {
    const Scheme& scheme = kSchemes[4];
    const BvhFile file = FileWith(NamesOf(scheme));
    BvhJointMap map;
    std::string fault;
    ASSERT_TRUE(MapBvhJoints(file, "", map, fault));
    EXPECT_EQ(Found(file, map, kHandLeft), "middle_01_l");
    EXPECT_EQ(Found(file, map, kThumbLeft), "thumb_01_l");
    EXPECT_EQ(Found(file, map, kHandRight), "");
}

TEST(BvhJointNames, OfTheAuthorGoBeforeTheKnownOnes) {
    std::vector<std::string> names = NamesOf(kSchemes[0]);
    names.emplace_back("my knee");
    const BvhFile file = FileWith(names);
    BvhJointMap map;
    std::string fault;
    ASSERT_TRUE(MapBvhJoints(
        file, "# mine\r\n\n  KneeLeft =  my knee # the left one\r\nSpineMid=Spine1", map, fault))
        << fault;
    EXPECT_EQ(Found(file, map, kKneeLeft), "my knee");
    EXPECT_EQ(Found(file, map, kSpineMid), "Spine1");
    EXPECT_EQ(Found(file, map, kKneeRight), "RightLeg");
}

TEST(BvhJointNames, OfTheAuthorMustBeKnown) {
    const BvhFile file = FileWith(NamesOf(kSchemes[0]));
    BvhJointMap map;
    std::string fault;
    EXPECT_FALSE(MapBvhJoints(file, "Knee = LeftLeg", map, fault));
    EXPECT_THAT(fault, HasSubstr("unknown joint: Knee"));
    EXPECT_FALSE(MapBvhJoints(file, "KneeLeft = Nobody", map, fault));
    EXPECT_THAT(fault, HasSubstr("lacks: Nobody"));
    EXPECT_FALSE(MapBvhJoints(file, "KneeLeft LeftLeg", map, fault));
    EXPECT_THAT(fault, HasSubstr("without '='"));
}

TEST(BvhJointNames, TellWhichAreMissing) {
    std::vector<std::string> names = NamesOf(kSchemes[2]);
    std::erase(names, "LeftKnee");
    std::erase(names, "Head");
    BvhJointMap map;
    std::string fault;
    EXPECT_FALSE(MapBvhJoints(FileWith(names), "", map, fault));
    EXPECT_THAT(fault, AllOf(HasSubstr("no joint found for Head, KneeLeft;"), HasSubstr("Chest2")));
}

TEST(BvhJointNames, MayLackANeckAndFeet) {
    std::vector<std::string> names = NamesOf(kSchemes[2]);
    std::erase(names, "Neck");
    BvhJointMap map;
    std::string fault;
    EXPECT_TRUE(MapBvhJoints(FileWith(names), "", map, fault)) << fault;
}

TEST(BvhJointNames, OfTheSkeletonAreWhole) {
    EXPECT_EQ(JointTypeName(kSpineBase), "SpineBase");
    EXPECT_EQ(JointTypeName(kHandTipLeft), "HandTipLeft");
    EXPECT_EQ(JointTypeName(kThumbRight), "ThumbRight");
}

}  // namespace
