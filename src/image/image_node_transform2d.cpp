#include "image/image_node_transform2d.h"

#include "core/engine.h"

ImageNode_Transform2D::ImageNode_Transform2D(Engine* owner, const std::string& nodeId)
    : ImageNode(owner, nodeId) {
    setInputCount(1);
    inputNames[0] = "Image";
    engine->declareVec2(this, "Position", position, {0.5f, 0.5f}, true);
    engine->declareFloat(this, "Scale", scale, 0.0001f, 10.0f, 4, 1.0f, true);
}

bool ImageNode_Transform2D::canConnect(int, const Node* source) const {
    return isImageSource(source);
}

bool ImageNode_Transform2D::process() {
    Mat4 input;
    if (const ImageNode* source = imageInput(0)) {
        input = source->textureMatrix;
        images = source->images;
    }
    Mat4 scaling;
    Mat4Scale(scaling, {scale, scale, 1.0f});
    Mat4 place;
    Mat4Translation(place, {0.5f - position[0], 0.5f - position[1], 0.0f});
    Mat4 scaled;
    Mat4Multiply(Mat4Multiply(input, scaled, scaling), textureMatrix, place);
    return true;
}
