#include "cli/size_table.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <iterator>

#include "cli/block_text.h"
#include "cli/printable.h"

namespace {

constexpr size_t kColumns = 7;

struct Row {
    std::array<std::string, kColumns> cells;
    std::string line;
};

std::string Cell(uint64_t bytes) {
    return bytes ? WithThousands(bytes) : "-";
}

std::string ShareOf(uint64_t bytes, uint64_t total) {
    char share[16];
    const double percent = total ? 100.0 * static_cast<double>(bytes) / static_cast<double>(total) : 0;
    snprintf(share, sizeof share, "%.1f%%", percent);
    return share;
}

// What belongs to no block, in the order of the file.
struct Remainder {
    const char* name;  // in the table
    const char* member;
    uint64_t bytes;
};

std::array<Remainder, 4> RemaindersOf(const LoadedFile& file, const DocumentSizes& sizes) {
    const bool hasTrailer = file.report.reachedTrailer;
    return {{{"before the signature", "before", sizes.before},
             {"between blocks", "stray", sizes.Sum().stray},
             {"trailer", "trailer", hasTrailer ? 1u : 0u},
             {hasTrailer ? "around the trailer" : "behind the last block", "after", sizes.after - hasTrailer}}};
}

Row RowOf(const std::string& name, const BlockSizes& block, uint64_t bytes, uint64_t total, const std::string& line) {
    return {{name, WithThousands(bytes), ShareOf(bytes, total), Cell(block.palette), Cell(block.pixels),
             Cell(block.data), Cell(block.overhead)},
            line};
}

std::vector<Row> RowsOf(const LoadedFile& file, const DocumentSizes& sizes) {
    const uint64_t total = sizes.Total();
    std::vector<Row> rows = {{{"block", "bytes", "share", "palette", "pixels", "data", "overhead"}, ""}};
    for (uint32_t index = 0; index < file.list.count; ++index) {
        const BlockSizes& block = sizes.blocks[index];
        const std::string line = Printable(LineOf(file.list.blocks[index]));
        rows.push_back(RowOf(std::to_string(index), block, block.Own(), total, line));
    }
    for (const Remainder& rest : RemaindersOf(file, sizes))
        if (rest.bytes) rows.push_back(RowOf("", {}, rest.bytes, total, rest.name));
    rows.push_back(RowOf("all", sizes.Sum(), total, total, ""));
    return rows;
}

}  // namespace

std::string WithThousands(uint64_t number) {
    std::string digits = std::to_string(number);
    for (size_t at = digits.size(); at > 3;) digits.insert(at -= 3, 1, ',');
    return digits;
}

void PrintSizeTable(const LoadedFile& file, const DocumentSizes& sizes) {
    const std::vector<Row> rows = RowsOf(file, sizes);
    std::array<size_t, kColumns> widths = {};
    for (const Row& row : rows)
        for (size_t i = 0; i < kColumns; ++i) widths[i] = std::max(widths[i], row.cells[i].size());
    for (const Row& row : rows) {
        std::string text;
        for (size_t i = 0; i < kColumns; ++i)
            text.append(widths[i] - row.cells[i].size() + (i ? 2 : 0), ' ').append(row.cells[i]);
        if (!row.line.empty()) text.append("  ").append(row.line);
        puts(text.c_str());
    }
}

std::string JsonSizes(const BlockSizes& block) {
    return ", \"sizes\": {\"bytes\": " + std::to_string(block.Own()) +
           ", \"palette\": " + std::to_string(block.palette) + ", \"pixels\": " + std::to_string(block.pixels) +
           ", \"data\": " + std::to_string(block.data) + ", \"overhead\": " + std::to_string(block.overhead) + "}";
}

std::string JsonSizes(const LoadedFile& file, const DocumentSizes& sizes) {
    std::string json = ", \"sizes\": {\"bytes\": " + std::to_string(sizes.Total());
    for (const Remainder& rest : RemaindersOf(file, sizes))
        json += std::string(", \"") + rest.member + "\": " + std::to_string(rest.bytes);
    return json + "}";
}
