#include "core/value_object.h"

#include <gtest/gtest.h>

#include "support/core_nodes.h"

namespace {

class ValueObjectTest : public ::testing::Test {
  protected:
    template <typename V>
    const V& value(const char* name) const {
        return dynamic_cast<const V&>(*engine_.findValue(&node_, name));
    }

    TestEngine engine_;
    TestNode& node_ = engine_.makeNode("A1");
};

TEST_F(ValueObjectTest, StandsInTheOrderOfDeclaration) {
    std::vector<std::string> names;
    for (const Value_Object* object : engine_.valuesOf(&node_)) names.push_back(object->name);
    const std::vector<std::string> wanted = {
        "On",          "Mode",     "Size",     "Size2",       "Frozen",
        "Place",       "Tint",     "Text",     "Translate.X", "Translate.Y",
        "Translate.Z", "Center.X", "Center.Y", "Center.Z",    "Alpha.x"};
    EXPECT_EQ(names, wanted);
}

TEST_F(ValueObjectTest, WritesTheDefaultIntoTheMember) {
    EXPECT_TRUE(node_.on);
    EXPECT_EQ(node_.mode, 2);
    EXPECT_EQ(node_.size, 1.5f);
    EXPECT_EQ(node_.place[0], 0.125f);
    EXPECT_EQ(node_.place[1], 0.25f);
    EXPECT_EQ(node_.tint[3], 0.4f);
    EXPECT_EQ(node_.text, "none");
    EXPECT_EQ(node_.translate[2], 3.0f);
}

TEST_F(ValueObjectTest, KnowsItsMemberRangeAndDefault) {
    EXPECT_EQ(value<ValueBool>("On").data, &node_.on);
    EXPECT_TRUE(value<ValueBool>("On").defaultValue);
    EXPECT_EQ(value<ValueInt>("Mode").data, &node_.mode);
    EXPECT_EQ(value<ValueInt>("Mode").defaultValue, 2);
    EXPECT_EQ(value<ValueInt>("Mode").options, (std::vector<std::string>{"a", "b", "c"}));
    const auto& size = value<ValueFloat>("Size");
    EXPECT_EQ(size.data, &node_.size);
    EXPECT_EQ(size.min, -1.0f);
    EXPECT_EQ(size.max, 5.0f);
    EXPECT_EQ(size.decimals, 2);
    EXPECT_EQ(size.defaultValue, 1.5f);
    EXPECT_TRUE(size.animatable);
    EXPECT_FALSE(value<ValueFloat>("Frozen").animatable);
    EXPECT_EQ(value<ValueVec2>("Place").data, node_.place);
    EXPECT_EQ(value<ValueVec2>("Place").defaultValue[1], 0.25f);
    EXPECT_TRUE(value<ValueVec2>("Place").animatable);
    EXPECT_EQ(value<ValueVec4>("Tint").data, node_.tint);
    EXPECT_EQ(value<ValueVec4>("Tint").defaultValue[2], 0.3f);
    EXPECT_EQ(value<ValueString>("Text").data, &node_.text);
    EXPECT_EQ(value<ValueString>("Text").defaultValue, "none");
}

TEST_F(ValueObjectTest, HasTheEngineAsHandlerItsOwnersIdAndNoFlag) {
    for (const Value_Object* object : engine_.valuesOf(&node_)) {
        EXPECT_EQ(object->handler, &engine_);
        EXPECT_EQ(object->nodeId, "A1");
        EXPECT_FALSE(object->flag);
    }
}

TEST_F(ValueObjectTest, AnswersTheTypeCodesOfTheFile) {
    EXPECT_EQ(value<ValueBool>("On").getType(), 0);
    EXPECT_EQ(value<ValueInt>("Mode").getType(), 1);
    EXPECT_EQ(value<ValueFloat>("Size").getType(), 2);
    EXPECT_EQ(value<ValueVec2>("Place").getType(), 3);
    EXPECT_EQ(value<ValueVec4>("Tint").getType(), 4);
    EXPECT_EQ(value<ValueString>("Text").getType(), 5);
    EXPECT_EQ(ValueMultiInt("", "").getType(), 6);
}

TEST_F(ValueObjectTest, MakesAVec3OfThreeAnimatableFloatsWithTwoDecimals) {
    float member[3] = {};
    engine_.declareVec3(&node_, "Axis", member, -2, 3, 5, {0.5f, 1.5f, 2.5f});
    const char* names[] = {"Axis.X", "Axis.Y", "Axis.Z"};
    for (int i = 0; i < 3; ++i) {
        const auto& part = value<ValueFloat>(names[i]);
        EXPECT_EQ(part.data, member + i);
        EXPECT_EQ(member[i], 0.5f + static_cast<float>(i));
        EXPECT_EQ(part.defaultValue, member[i]);
        EXPECT_EQ(part.min, -2.0f);
        EXPECT_EQ(part.max, 3.0f);
        EXPECT_EQ(part.decimals, 2);
        EXPECT_TRUE(part.animatable);
    }
}

TEST_F(ValueObjectTest, ComesFirstOfTwoWithOneNameInEveryLookup) {
    float first = 0, second = 0;
    EXPECT_TRUE(engine_.declareFloat(&node_, "Twice", first, 0, 1, 2, 1, true));
    EXPECT_TRUE(engine_.declareFloat(&node_, "Twice", second, 0, 1, 2, 2, true));
    EXPECT_EQ(value<ValueFloat>("Twice").data, &first);
    engine_.addAnimation("A1", "Twice");
    EXPECT_EQ(engine_.track("A1").target, &first);
}

TEST_F(ValueObjectTest, NamesItsChannelsByItsClass) {
    const auto suffixes = [&](const char* name) {
        std::string joined;
        for (const ValueChannel& channel : ChannelsOf(*engine_.findValue(&node_, name))) {
            joined += std::string("[") + channel.suffix + "]";
        }
        return joined;
    };
    EXPECT_EQ(suffixes("Size"), "[]");
    EXPECT_EQ(suffixes("Translate.X"), "[]");
    EXPECT_EQ(suffixes("Place"), "[.x][.y]");
    EXPECT_EQ(suffixes("Tint"), "[.r][.g][.b][.a]");
    EXPECT_EQ(suffixes("On"), "");
    EXPECT_EQ(suffixes("Mode"), "");
    EXPECT_EQ(suffixes("Text"), "");
}

TEST_F(ValueObjectTest, IsNotFoundWhereThereIsNone) {
    EXPECT_EQ(engine_.findValue(&node_, "size"), nullptr);
    EXPECT_EQ(engine_.findValue(nullptr, "Size"), nullptr);
    TestEngine other;
    other.createNode("C", "Camera");
    EXPECT_EQ(other.findValue(other.findNode("C"), "Size"), nullptr);
    EXPECT_TRUE(other.values.empty()) << "looking up makes no list";
}

}  // namespace
