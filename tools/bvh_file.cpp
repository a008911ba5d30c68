#include "bvh_file.h"

#include <charconv>
#include <cmath>
#include <optional>
#include <utility>

namespace {

constexpr std::size_t kMostJoints = 4096;
constexpr double kPi = 3.14159265358979323846;

bool IsSpace(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == '\f' || c == '\v';
}

std::string_view Trimmed(std::string_view text) {
    while (!text.empty() && IsSpace(text.front())) text.remove_prefix(1);
    while (!text.empty() && IsSpace(text.back())) text.remove_suffix(1);
    return text;
}

std::string Lower(std::string_view text) {
    std::string result(text);
    for (char& c : result) {
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    }
    return result;
}

// Words of a text, with the line that it has come to.
class WordReader {
  public:
    explicit WordReader(std::string_view text) : text_(text) {}

    // An empty word is the end of the text. Braces are words of their own.
    std::string_view next() {
        skipSpace();
        std::size_t end = place_;
        while (end < text_.size() && !IsSpace(text_[end]) && !isBrace(text_[end])) ++end;
        if (end == place_ && end < text_.size()) ++end;
        return take(end);
    }
    // What is left of the line, up to a brace.
    std::string_view restOfLine() {
        std::size_t end = place_;
        while (end < text_.size() && text_[end] != '\n' && !isBrace(text_[end])) ++end;
        return Trimmed(take(end));
    }
    std::optional<double> nextNumber() {
        std::string_view word = next();
        if (word.starts_with('+')) word.remove_prefix(1);
        double value = 0;
        const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), value);
        const bool whole = error == std::errc() && end == word.data() + word.size();
        if (!whole || !std::isfinite(value)) return std::nullopt;
        return value;
    }
    // True, and past the word, when it comes next.
    bool accept(std::string_view lowerWord) {
        const WordReader before = *this;
        if (Lower(next()) == lowerWord) return true;
        *this = before;
        return false;
    }
    bool atEnd() {
        skipSpace();
        return place_ == text_.size();
    }
    std::size_t line() const { return line_; }

  private:
    static bool isBrace(char c) { return c == '{' || c == '}'; }

    void skipSpace() {
        while (place_ < text_.size() && IsSpace(text_[place_])) {
            if (text_[place_] == '\n') ++line_;
            ++place_;
        }
    }
    std::string_view take(std::size_t end) {
        const std::string_view result = text_.substr(place_, end - place_);
        place_ = end;
        return result;
    }

    std::string_view text_;
    std::size_t place_ = 0;
    std::size_t line_ = 1;
};

std::optional<BvhChannel> ChannelNamed(std::string_view word) {
    const std::string name = Lower(word);
    if (name == "xposition") return BvhChannel::kPositionX;
    if (name == "yposition") return BvhChannel::kPositionY;
    if (name == "zposition") return BvhChannel::kPositionZ;
    if (name == "xrotation") return BvhChannel::kRotationX;
    if (name == "yrotation") return BvhChannel::kRotationY;
    if (name == "zrotation") return BvhChannel::kRotationZ;
    return std::nullopt;
}

class BvhParser {
  public:
    BvhParser(std::string_view text, BvhFile& file, std::string& fault)
        : words_(text), file_(file), fault_(fault) {}

    bool parse() {
        if (!words_.accept("hierarchy")) return fail("does not begin with HIERARCHY");
        if (!words_.accept("root")) return fail("has no ROOT after HIERARCHY");
        if (!openJoint(BvhJoint::kNone)) return false;
        while (current_ != BvhJoint::kNone) {
            if (!readStatement()) return false;
        }
        return readMotion();
    }

  private:
    bool fail(const std::string& what) {
        fault_ = "line " + std::to_string(words_.line()) + ": " + what;
        return false;
    }

    // A joint's name may hold spaces; its block begins here and ends with a brace.
    bool openJoint(int parent) {
        const std::string_view name = words_.restOfLine();
        if (name.empty()) return fail("a joint has no name");
        return openBlock(parent, std::string(name));
    }
    bool openBlock(int parent, std::string name) {
        if (file_.joints.size() == kMostJoints) return fail("too many joints");
        if (!words_.accept("{")) return fail("'{' expected");
        BvhJoint joint;
        joint.name = std::move(name);
        joint.parent = parent;
        file_.joints.push_back(std::move(joint));
        current_ = static_cast<int>(file_.joints.size()) - 1;
        return true;
    }

    bool readStatement() {
        const std::string word = Lower(words_.next());
        if (word == "}") {
            current_ = joint().parent;
            return true;
        }
        if (word == "offset") return readOffset();
        if (word == "channels") return readChannels();
        if (joint().isEnd()) return fail("'" + word + "' within an End Site");
        if (word == "joint") return openJoint(current_);
        if (word == "end") {
            words_.restOfLine();
            return openBlock(current_, "");
        }
        return fail(word.empty() ? "the hierarchy does not end" : "'" + word + "' is not known");
    }

    BvhJoint& joint() { return file_.joints[static_cast<std::size_t>(current_)]; }

    bool readOffset() {
        for (double* const axis : {&joint().offset.x, &joint().offset.y, &joint().offset.z}) {
            const auto number = words_.nextNumber();
            if (!number) return fail("an OFFSET needs three numbers");
            *axis = *number;
        }
        return true;
    }

    bool readChannels() {
        if (!joint().channels.empty()) return fail("a joint has two lists of channels");
        const auto count = words_.nextNumber();
        if (!count || *count < 0 || *count > 6 || *count != std::floor(*count)) {
            return fail("a joint has 0 to 6 channels");
        }
        joint().firstValue = file_.valuesPerFrame;
        for (int i = 0; i < static_cast<int>(*count); ++i) {
            const std::string_view word = words_.next();
            const auto channel = ChannelNamed(word);
            if (!channel) return fail("'" + std::string(word) + "' is no channel");
            joint().channels.push_back(*channel);
        }
        file_.valuesPerFrame += joint().channels.size();
        return true;
    }

    bool readMotion() {
        if (!words_.accept("motion")) return fail("MOTION expected");
        if (!words_.accept("frames:")) return fail("'Frames:' expected");
        const auto count = words_.nextNumber();
        if (!count || *count < 1) return fail("the number of frames is missing or below 1");
        if (!words_.accept("frame") || !words_.accept("time:")) {
            return fail("'Frame Time:' expected");
        }
        const auto seconds = words_.nextNumber();
        if (!seconds || *seconds <= 0) return fail("the frame time is missing or not above 0");
        file_.frameSeconds = *seconds;
        if (file_.valuesPerFrame == 0) return fail("no joint has a channel");
        return readFrames(*count);
    }

    bool readFrames(double count) {
        std::vector<double> frame(file_.valuesPerFrame);
        while (static_cast<double>(file_.frameCount) < count && !words_.atEnd()) {
            for (double& value : frame) {
                if (words_.atEnd()) return file_.frameCount > 0 || fail("the first frame is cut");
                const auto number = words_.nextNumber();
                if (!number) return fail("a channel's value is no number");
                value = *number;
            }
            file_.values.insert(file_.values.end(), frame.begin(), frame.end());
            ++file_.frameCount;
        }
        return file_.frameCount > 0 || fail("there is no frame");
    }

    WordReader words_;
    BvhFile& file_;
    std::string& fault_;
    int current_ = BvhJoint::kNone;  // the joint whose block is open
};

// Row by row.
using Rotation = std::array<std::array<double, 3>, 3>;

constexpr Rotation kNoRotation = {{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};

Rotation RotationAbout(std::size_t axis, double degrees) {
    const double c = std::cos(degrees * kPi / 180), s = std::sin(degrees * kPi / 180);
    const std::size_t u = (axis + 1) % 3, v = (axis + 2) % 3;
    Rotation result = kNoRotation;
    result[u][u] = c;
    result[u][v] = -s;
    result[v][u] = s;
    result[v][v] = c;
    return result;
}

Rotation operator*(const Rotation& a, const Rotation& b) {
    Rotation result{};
    for (std::size_t row = 0; row < 3; ++row) {
        for (std::size_t column = 0; column < 3; ++column) {
            for (std::size_t k = 0; k < 3; ++k) result[row][column] += a[row][k] * b[k][column];
        }
    }
    return result;
}

BvhVector operator*(const Rotation& m, const BvhVector& v) {
    return {m[0][0] * v.x + m[0][1] * v.y + m[0][2] * v.z,
            m[1][0] * v.x + m[1][1] * v.y + m[1][2] * v.z,
            m[2][0] * v.x + m[2][1] * v.y + m[2][2] * v.z};
}

// What a joint's channels say in one frame: turns are done in the order of the channels, from the
// outermost; a place takes the stead of the offset.
struct LocalPose {
    BvhVector place;
    Rotation rotation = kNoRotation;
};

LocalPose LocalPoseOf(const BvhJoint& joint, const double* values) {
    LocalPose pose{joint.offset};
    for (std::size_t i = 0; i < joint.channels.size(); ++i) {
        const double value = values[joint.firstValue + i];
        switch (joint.channels[i]) {
            case BvhChannel::kPositionX:
                pose.place.x = value;
                break;
            case BvhChannel::kPositionY:
                pose.place.y = value;
                break;
            case BvhChannel::kPositionZ:
                pose.place.z = value;
                break;
            case BvhChannel::kRotationX:
                pose.rotation = pose.rotation * RotationAbout(0, value);
                break;
            case BvhChannel::kRotationY:
                pose.rotation = pose.rotation * RotationAbout(1, value);
                break;
            case BvhChannel::kRotationZ:
                pose.rotation = pose.rotation * RotationAbout(2, value);
                break;
        }
    }
    return pose;
}

}  // namespace

std::vector<BvhVector> BvhFile::pose(std::size_t frame) const {
    const double* const frameValues = values.data() + frame * valuesPerFrame;
    std::vector<BvhVector> places;
    std::vector<Rotation> rotations;
    places.reserve(joints.size());
    rotations.reserve(joints.size());
    for (const BvhJoint& joint : joints) {
        const LocalPose local = LocalPoseOf(joint, frameValues);
        if (joint.parent == BvhJoint::kNone) {
            places.push_back(local.place);
            rotations.push_back(local.rotation);
            continue;
        }
        const auto parent = static_cast<std::size_t>(joint.parent);
        const BvhVector turned = rotations[parent] * local.place;
        const BvhVector& from = places[parent];
        places.push_back({from.x + turned.x, from.y + turned.y, from.z + turned.z});
        rotations.push_back(rotations[parent] * local.rotation);
    }
    return places;
}

bool ParseBvh(std::string_view text, BvhFile& file, std::string& fault) {
    file = {};
    fault.clear();
    return BvhParser(text, file, fault).parse();
}
