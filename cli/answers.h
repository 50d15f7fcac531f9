// What the command line answers to the core's questions.
#pragma once

#include <optional>

// Answers that options give beforehand. A question without one is printed and answered with no.
struct Answers {
    std::optional<int> yesNo;  // AskYesNo: kAnswerYes or kAnswerNo, without a word
};
extern Answers answers;

// Answers yes-or-no questions for the length of a scope.
class AnswerYesNo {
public:
    explicit AnswerYesNo(int answer) : previous_(answers) { answers.yesNo = answer; }
    ~AnswerYesNo() { answers = previous_; }
    AnswerYesNo(const AnswerYesNo&) = delete;
    AnswerYesNo& operator=(const AnswerYesNo&) = delete;

private:
    Answers previous_;
};
