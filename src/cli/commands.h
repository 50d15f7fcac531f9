// The commands of the zephyr program.
#pragma once

#include <string>
#include <vector>

constexpr int kExitDone = 0;
constexpr int kExitFailed = 1;
constexpr int kExitUsage = 2;

// The answers of commands that look for something, diff and check, whose failures are trouble like wrong usage.
constexpr int kExitNothing = 0;
constexpr int kExitFound = 1;
constexpr int kExitTrouble = 2;

// The words behind a command's name.
using Words = std::vector<std::string>;

// Each runs one command and returns the program's exit status. Results go to standard output, messages to standard
// error.
int RunList(const Words& words);
int RunSave(const Words& words);
int RunExtract(const Words& words);
int RunRemap(const Words& words);
int RunInsert(const Words& words);
int RunDelete(const Words& words);
int RunSet(const Words& words);
int RunBuild(const Words& words);
int RunRepair(const Words& words);
int RunFrames(const Words& words);
int RunCheck(const Words& words);
int RunDiff(const Words& words);
int RunMove(const Words& words);
int RunCopy(const Words& words);
int RunTiming(const Words& words);
int RunReverse(const Words& words);
int RunThin(const Words& words);
int RunCut(const Words& words);
int RunOptimise(const Words& words);
int RunCost(const Words& words);
int RunAdvise(const Words& words);

// What --help prints for each.
extern const char kListHelp[];
extern const char kSaveHelp[];
extern const char kExtractHelp[];
extern const char kRemapHelp[];
extern const char kInsertHelp[];
extern const char kDeleteHelp[];
extern const char kSetHelp[];
extern const char kBuildHelp[];
extern const char kRepairHelp[];
extern const char kFramesHelp[];
extern const char kCheckHelp[];
extern const char kDiffHelp[];
extern const char kMoveHelp[];
extern const char kCopyHelp[];
extern const char kTimingHelp[];
extern const char kReverseHelp[];
extern const char kThinHelp[];
extern const char kCutHelp[];
extern const char kOptimiseHelp[];
extern const char kCostHelp[];
extern const char kAdviseHelp[];

// The whole program: `words` without the program's own name.
int RunZephyr(const Words& words);
