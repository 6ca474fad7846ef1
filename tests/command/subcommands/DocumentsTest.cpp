// The man pages and completions that the build has written, read by the programs that they are for.
#include <array>
#include <cstdio>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>

#include "subcommands/CommandLine.h"
#include "support/Process.h"

namespace OrvantaNS::command {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

const std::string kFolder = ORVANTA_DOCUMENTS "/";

struct ShellResult {
    int status = -1;
    std::string out; ///< Both streams.
};

ShellResult shell(const std::string& command) {
    ShellResult result;
    std::FILE* const pipe = popen((command + " 2>&1").c_str(), "r");
    std::array<char, 4096> chunk{};
    while (const std::size_t count = std::fread(chunk.data(), 1, chunk.size(), pipe)) {
        result.out.append(chunk.data(), count);
    }
    const int status = pclose(pipe);
    result.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return result;
}

/// What bash offers for the words of a command line, the last of which is unfinished.
std::string bashOffers(const std::string& words, int last) {
    return shell("bash -c 'source " + kFolder + "orvanta.bash; COMP_WORDS=(" + words +
                 "); COMP_CWORD=" + std::to_string(last) + "; _orvanta; echo ${COMPREPLY[*]}'")
        .out;
}

TEST(DocumentsTest, Bash_OffersSubcommandsOptionsAndValues) {
    EXPECT_EQ(bashOffers("orvanta k", 1), "keyframes\n");
    EXPECT_EQ(bashOffers("orvanta keyframes --fo", 2), "--format\n");
    EXPECT_EQ(bashOffers("orvanta keyframes --engine vo", 3), "voting\n");
    EXPECT_EQ(bashOffers("orvanta inspect --format \"\"", 3), "text json\n");
    EXPECT_EQ(bashOffers("orvanta help inf", 2), "info\n");
    EXPECT_EQ(bashOffers("orvanta info --out-", 2), "\n");
}

TEST(DocumentsTest, Fish_OffersSubcommandsOptionsAndValues) {
    const auto offers = [](const std::string& line) {
        return shell("fish --no-config -c 'source " + kFolder + "orvanta.fish; complete -C \"" + line + "\"'").out;
    };
    EXPECT_THAT(offers("orvanta k"), HasSubstr("keyframes\tPrint where the camera stands over the whole clip"));
    EXPECT_THAT(offers("orvanta keyframes --out-"), HasSubstr("--out-dir\t"));
    EXPECT_THAT(offers("orvanta keyframes --engine v"), HasSubstr("voting"));
    EXPECT_THAT(offers("orvanta info --out-"), Not(HasSubstr("--out-dir")));
}

TEST(DocumentsTest, Zsh_ReadsItsScript_WhichNamesEveryOption) {
    const ShellResult result = shell("zsh -n " + kFolder + "_orvanta");
    EXPECT_EQ(result.status, 0) << result.out;
    EXPECT_THAT(testing::readFile(kFolder + "_orvanta"), ::testing::StartsWith("#compdef orvanta\n"));
}

TEST(DocumentsTest, EveryOption_StandsInEveryDocument) {
    const CommandLine line;
    for (const CLI::App* app : line.app().get_subcommands({})) {
        const std::string page = testing::readFile(kFolder + "orvanta-" + app->get_name() + ".1");
        for (const CLI::Option* option : app->get_options()) {
            for (const std::string& name : option->get_lnames()) {
                std::string escaped = "--" + name;
                for (std::size_t at = 0; (at = escaped.find('-', at)) != std::string::npos; at += 2) {
                    escaped.insert(at, "\\");
                }
                EXPECT_THAT(page, HasSubstr(escaped));
                EXPECT_THAT(testing::readFile(kFolder + "orvanta.bash"), HasSubstr("--" + name));
                EXPECT_THAT(testing::readFile(kFolder + "_orvanta"), HasSubstr("--" + name));
                EXPECT_THAT(testing::readFile(kFolder + "orvanta.fish"), HasSubstr(" -l " + name));
            }
        }
    }
}

TEST(DocumentsTest, ValuesAreNamed_WithoutWhatTheirChecksSay) {
    EXPECT_THAT(testing::readFile(kFolder + "orvanta-keyframes.1"), HasSubstr("\\fB\\-\\-jobs\\fR \\fIN\\fR\n"));
    EXPECT_THAT(testing::readFile(kFolder + "orvanta-keyframes.1"), HasSubstr("\\fIENGINE\\fR\n"));
    EXPECT_THAT(testing::readFile(kFolder + "orvanta-keyframes.1"), HasSubstr("\\fISTART:STOP\\fR\n"));
}

TEST(DocumentsTest, ManPages_AreFormattedWithoutComplaint) {
    const CommandLine line;
    std::vector<std::string> pages{"orvanta"};
    for (const CLI::App* app : line.app().get_subcommands({})) {
        pages.push_back("orvanta-" + app->get_name());
    }
    for (const std::string& page : pages) {
        const ShellResult lint = shell("mandoc -T lint -W error " + kFolder + page + ".1");
        EXPECT_EQ(lint.status, 0) << lint.out;
        const ShellResult text = shell("mandoc -T ascii " + kFolder + page + ".1 | col -b");
        EXPECT_THAT(text.out, HasSubstr("SYNOPSIS"));
        EXPECT_THAT(text.out, HasSubstr("--help"));
    }
}

} // namespace
} // namespace OrvantaNS::command
