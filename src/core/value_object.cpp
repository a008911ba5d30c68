#include "core/value_object.h"

std::vector<ValueChannel> ChannelsOf(const Value_Object& value) {
    switch (value.getType()) {
        case kValueFloat:
            return {{"", static_cast<const ValueFloat&>(value).data}};
        case kValueVec2: {
            float* data = static_cast<const ValueVec2&>(value).data;
            return {{".x", data}, {".y", data + 1}};
        }
        case kValueVec4: {
            float* data = static_cast<const ValueVec4&>(value).data;
            return {{".r", data}, {".g", data + 1}, {".b", data + 2}, {".a", data + 3}};
        }
        default:
            return {};
    }
}
