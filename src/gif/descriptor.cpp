#include "gif/descriptor.h"

#include "platform/bytes.h"

HeaderFields GetHeaderFields(const Block& block) {
    const uint8_t* d = block.descriptor;
    return {GetWord(d + 6), GetWord(d + 8), d[10], d[11], d[12]};
}

void PutHeaderFields(Block* block, const HeaderFields& fields) {
    uint8_t* d = block->descriptor;
    PutWord(d + 6, fields.screenWidth);
    PutWord(d + 8, fields.screenHeight);
    d[10] = fields.packed;
    d[11] = fields.backgroundIndex;
    d[12] = fields.aspect;
}

ImageFields GetImageFields(const Block& block) {
    const uint8_t* d = block.descriptor;
    return {GetWord(d), GetWord(d + 2), GetWord(d + 4), GetWord(d + 6), d[8]};
}

void PutImageFields(Block* block, const ImageFields& fields) {
    uint8_t* d = block->descriptor;
    PutWord(d, fields.left);
    PutWord(d + 2, fields.top);
    PutWord(d + 4, fields.width);
    PutWord(d + 6, fields.height);
    d[8] = fields.packed;
}

ControlFields GetControlFields(const Block& block) {
    const uint8_t* d = block.descriptor;
    return {d[1], GetWord(d + 2), d[4]};
}

void PutControlFields(Block* block, const ControlFields& fields) {
    uint8_t* d = block->descriptor;
    d[1] = fields.packed;
    PutWord(d + 2, fields.delay);
    d[4] = fields.transparentIndex;
}

PlainTextFields GetPlainTextFields(const Block& block) {
    const uint8_t* d = block.descriptor;
    return {GetWord(d + 1), GetWord(d + 3), GetWord(d + 5), GetWord(d + 7), d[9], d[10], d[11], d[12]};
}

void PutPlainTextFields(Block* block, const PlainTextFields& fields) {
    uint8_t* d = block->descriptor;
    PutWord(d + 1, fields.left);
    PutWord(d + 3, fields.top);
    PutWord(d + 5, fields.gridWidth);
    PutWord(d + 7, fields.gridHeight);
    d[9] = fields.cellWidth;
    d[10] = fields.cellHeight;
    d[11] = fields.foregroundIndex;
    d[12] = fields.backgroundIndex;
}

void SetTransparency(Block* control, int index) {
    ControlFields fields = GetControlFields(*control);
    fields.packed |= kControlTransparent;
    fields.transparentIndex = static_cast<uint8_t>(index);
    PutControlFields(control, fields);
}

uint16_t GetLoopIterations(const Block& block) {
    return GetWord(block.descriptor + 14);
}

void PutLoopIterations(Block* block, uint16_t iterations) {
    PutWord(block->descriptor + 14, iterations);
}
