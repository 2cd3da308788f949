// What only a person at a terminal sees.
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utmp.h>

#include <cstdlib>
#include <map>
#include <stdexcept>

#include "ToolTest.h"

namespace zupm::test {
namespace {

class Terminal : public ToolTest {
protected:
    using Variables = std::map<std::string, std::string>;

    /// Everything that a run prints on a terminal, with LF line ends.
    [[nodiscard]] std::string Screen(const std::vector<std::string>& arguments,
                                     const Variables& variables = {{"TERM", "xterm"}}) const;
};

[[noreturn]] void Become(const std::string& folder, const std::vector<std::string>& arguments,
                         const std::map<std::string, std::string>& variables)
{
    unsetenv("NO_COLOR");
    unsetenv("TERM");
    for (const auto& [name, value] : variables) {
        setenv(name.c_str(), value.c_str(), 1);
    }
    std::vector<std::string> texts = arguments;
    texts.insert(texts.begin(), "zupolicy");
    std::vector<char*> pointers;
    for (std::string& text : texts) {
        pointers.push_back(text.data());
    }
    pointers.push_back(nullptr);
    if (chdir(folder.c_str()) == 0) {
        execv(ZUPM_TOOL, pointers.data());
    }
    _exit(127);
}

/// A terminal that stays open on both sides: what a program prints just before it ends would be lost otherwise.
class Pair {
public:
    Pair()
    {
        if (openpty(&m_screen, &m_line, nullptr, nullptr, nullptr) != 0) {
            throw std::runtime_error("there is no terminal");
        }
    }
    ~Pair()
    {
        close(m_screen);
        close(m_line);
    }
    Pair(const Pair&) = delete;
    Pair& operator=(const Pair&) = delete;

    [[nodiscard]] int Line() const { return m_line; }
    /// What was printed so far, which must fit into the terminal's own memory.
    [[nodiscard]] std::string Text() const
    {
        std::string text;
        if (write(m_line, "\f", 1) != 1) {
            throw std::runtime_error("the terminal takes nothing");
        }
        for (char character = 0; read(m_screen, &character, 1) == 1 && character != '\f';) {
            text += character;
        }
        return text;
    }

private:
    int m_screen = -1;
    int m_line = -1;
};

std::string Terminal::Screen(const std::vector<std::string>& arguments, const Variables& variables) const
{
    const Pair terminal;
    const pid_t child = fork();
    if (child < 0) {
        throw std::runtime_error("fork failed");
    }
    if (child == 0) {
        login_tty(terminal.Line());
        Become(Folder().Folder().string(), arguments, variables);
    }
    int status = 0;
    waitpid(child, &status, 0);
    std::string screen = terminal.Text();
    std::erase(screen, '\r');
    return screen;
}

TEST_F(Terminal, ShowsTheLineOfAnErrorAndItsColumn)
{
    Folder().Write(u"broken.xml", "<a>\r\n\t<b>日本&x;</b>\r\n</a>");
    const std::string excerpt = "  \\t<b>日本&x;</b>\n           ^\n";
    const std::string place = "broken.xml:2:7: undefined entity";
    EXPECT_EQ(Screen({"check", "broken.xml"}), place + "\n" + excerpt);
    EXPECT_EQ(Screen({"query", "broken.xml"}), place + " [SyntaxError, 0xFFFFFBAE]\n" + excerpt);
    EXPECT_THAT(Screen({"get", "broken.xml", "P", "S", "N"}), testing::EndsWith(excerpt));
    Folder().Write(u"edits.jsonl", "\n{\"edit\": 5}\n");
    EXPECT_THAT(Screen({"apply", "policy.xml", "--edits", "edits.jsonl"}),
                testing::ContainsRegex("edits.jsonl:2:[0-9]+: .*\n  \\{\"edit\": 5\\}\n +\\^\n$"));
}

TEST_F(Terminal, ShowsALineOfUtf16AndBytesThatAreNotValid)
{
    using namespace std::string_literals;
    Folder().Write(u"wide.xml", "\xFF\xFE<\0a\0>\0\n\0 \0\x00\xD8<\0"s);
    EXPECT_THAT(Screen({"check", "wide.xml"}), testing::EndsWith("\n   �<\n   ^\n"));
    Folder().Write(u"odd.xml", "\xFE\xFF\0<\0a\0>\0\n\0 \0"s);
    EXPECT_THAT(Screen({"check", "odd.xml"}), testing::EndsWith("\n   \n   ^\n"));
    Folder().Write(u"bytes.xml", "<a>\n ü\xFF</a>");
    EXPECT_THAT(Screen({"check", "bytes.xml"}), testing::EndsWith("\n   ü\\xff</a>\n    ^\n"));
}

TEST_F(Terminal, CutsALongLineAroundTheColumn)
{
    Folder().Write(u"long.xml", "<a>" + std::string(10'000, 'x') + "\x1B" + std::string(10'000, 'y') + "</a>");
    EXPECT_THAT(Screen({"check", "long.xml"}),
                testing::EndsWith("\n  ..." + std::string(50, 'x') + "\\u001b" + std::string(44, 'y') + "...\n" +
                                  std::string(55, ' ') + "^\n"));
}

TEST_F(Terminal, ShowsNoLineForAnErrorWithoutAPlace)
{
    EXPECT_EQ(Screen({"check", "none.xml"}), "none.xml: The file does not exist.\n");
}

TEST_F(Terminal, ColoursOnlyThePrefixAndOnlyWhereThatIsWanted)
{
    const std::vector<std::string> line = {"get", "none.xml", "P", "S", "N"};
    const std::string text = "none.xml: The file does not exist. [FileNotFound, 0x80070002]\n";
    EXPECT_EQ(Screen(line), "\x1B[31mzupolicy:\x1B[0m " + text);
    const std::string plain = "zupolicy: " + text;
    EXPECT_EQ(Screen(line, {{"TERM", "xterm"}, {"NO_COLOR", ""}}), "\x1B[31mzupolicy:\x1B[0m " + text);
    EXPECT_EQ(Screen(line, {{"TERM", "xterm"}, {"NO_COLOR", "0"}}), plain);
    EXPECT_EQ(Screen(line, {{"TERM", "dumb"}}), plain);
    EXPECT_EQ(Screen(line, {}), plain);
    EXPECT_EQ(Tool(line).messages, plain);
}

TEST_F(Terminal, NothingOfThisAppearsElsewhere)
{
    Folder().Write(u"broken.xml", "<a>\n<b></a>");
    EXPECT_EQ(Tool({"check", "broken.xml"}).messages, "broken.xml:2:6: mismatched tag\n");
    EXPECT_EQ(Tool({"get", "broken.xml", "P", "S", "N"}).messages,
              "zupolicy: broken.xml:2:6: mismatched tag [SyntaxError, 0xFFFFFBAE]\n");
}

}  // namespace
}  // namespace zupm::test
