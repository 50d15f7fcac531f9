#include "cli/answers.h"

Answers answers;
