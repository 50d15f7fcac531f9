// The file that a command works on.
#pragma once

#include <string>

#include "cli/options.h"
#include "gif/gif_reader.h"

struct LoadedFile {
    // Reads the file, or standard input for "-", in the manner that the options ask for; what was read before a failure
    // stays in `list`. A failure is reported on standard error, as is damage or, in the classic manner, a load that
    // ended before the trailer; with the option "--strict" these are failures too, harmless damage not. Returns whether
    // the command may go on.
    bool Open(const std::string& path, const Options& options);

    // The block number `index`, which must be there, as an image with pixels; null, with the reason on standard error,
    // when it is none.
    Block* ImageAt(uint32_t index);

    // Where the load ended, in a few words: "trailer" when all of it was read.
    std::string WhereLoadEnded() const;

    BlockList list;
    ReadResult result = kReadFailed;
    ReadReport report = {};
    bool tellsDamages = true;  // false: whoever opens the file tells of them in its own way

private:
    void Read(const std::string& path);
    bool ReadStandardInput();  // false when that fails, which is told
    void RefuseBlankImage();
    bool IsComplete() const;
    void TellWhatIsMissing(bool strict) const;

    std::string path_;
    Manner manner_ = Manner::kWhole;
};
