/// Asks the tool what can be typed next, as the completion scripts of the shells do.
#pragma once

#include <sstream>
#include <string>
#include <vector>

#include "ToolTest.h"

namespace zupm::test {

/// The line that asks the shell for names of files.
inline constexpr const char* kFiles = "\tfiles";

class CompletionTest : public ToolTest {
protected:
    /// The lines of the answer.
    [[nodiscard]] std::vector<std::string> Answer(std::vector<std::string> question) const
    {
        question.insert(question.begin(), "__complete");
        std::istringstream lines(Out(question));
        std::vector<std::string> answer;
        for (std::string line; std::getline(lines, line);) {
            answer.push_back(line);
        }
        return answer;
    }

    /// The candidates for the last of these words, without their descriptions.
    [[nodiscard]] std::vector<std::string> Next(std::vector<std::string> words) const
    {
        words.insert(words.begin(), {"words", std::to_string(words.size() - 1)});
        std::vector<std::string> candidates = Answer(words);
        for (std::string& line : candidates) {
            line.resize(line == kFiles ? line.size() : line.find('\t'));
        }
        return candidates;
    }
};

}  // namespace zupm::test
