#include "cli/complaints.h"

#include <cstdio>
#include <filesystem>

#include "cli/options.h"
#include "cli/printable.h"
#include "imaging/picture.h"

namespace fs = std::filesystem;

namespace {

fs::path PathOf(const std::string& utf8) {
    return std::u8string(utf8.begin(), utf8.end());
}

}  // namespace

void Complain(const std::string& path, const std::string& what) {
    fprintf(stderr, "zephyr: %s: %s\n", Printable(path).c_str(), Printable(what).c_str());
}

std::string NameOfInput(const std::string& path) {
    return path == kStandardStream ? "standard input" : path;
}

std::string NameOfOutput(const std::string& path) {
    return path == kStandardStream ? "standard output" : path;
}

std::string WhyNotOpened(const std::string& path, const std::string& reason) {
    std::error_code unknown;
    fs::file_status status = fs::status(PathOf(path), unknown);
    if (status.type() == fs::file_type::not_found) return "can't be opened: there is no such file";
    if (fs::is_directory(status)) return "can't be opened: it is a folder";
    return "can't be opened: " + reason;
}

std::string WhyNotRead(const std::string& reason) {
    return "can't be read: " + reason;
}

std::string WhyNotWritten(const std::string& path, const std::string& reason) {
    std::error_code unknown;
    fs::path target = PathOf(path);
    fs::path folder = target.parent_path();
    if (fs::is_directory(target, unknown)) return "can't be written: it is a folder";
    if (!folder.empty() && fs::status(folder, unknown).type() == fs::file_type::not_found)
        return "can't be written: there is no such folder";
    return "can't be written: " + reason;
}

std::string WhyNoPicture(const std::string& path, Failure why, const std::string& reason) {
    switch (why) {
        case Failure::kCantOpen: return WhyNotOpened(path, reason);
        case Failure::kCantRead: return WhyNotRead(reason);
        case Failure::kNoMemory: return "no picture: not enough memory";
        case Failure::kTooLarge:
            return "no picture: it is too large (at most " + std::to_string(kMostPictureSide) + " pixels a side and " +
                   std::to_string(kMostPicturePixels) + " in all)";
        case Failure::kNotSupported: return "no readable picture: a form of its kind that zephyr does not know";
        case Failure::kNoDecoder: return "no picture: this Windows lacks the imaging component that reads such files";
        case Failure::kDamaged: return "no readable picture: it is damaged or cut short";
        default: return "no readable picture: no GIF, PNG, JPEG or BMP file";
    }
}

bool IsFaultOfPicture(Failure why) {
    return why == Failure::kNotGif || why == Failure::kNotPicture || why == Failure::kDamaged ||
           why == Failure::kNotSupported;
}
