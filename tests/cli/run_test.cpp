// Files of designs.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "cli/program.h"

namespace {

using testing::HasSubstr;
using testing_support::Folder;
using testing_support::shell;
using testing_support::statpower;

std::string power_of(const std::string& words) {
    return statpower("t-one power " + words + " --json").json()["answer"]["power"].dump();
}

TEST(Run, AnswersEveryRowInItsOrder) {
    const Folder folder;
    std::string designs = "d,n\n", expected = "d,n,power,refusal\n";
    for (const char* d : {"0.2", "0.5", "0.8"})
        for (int n = 10; n < 1010; n += 100) {
            const std::string row = std::string(d) + "," + std::to_string(n);
            designs += row + "\n";
            expected += row + "," + power_of("--d " + std::string(d) + " --n " + std::to_string(n)) + ",\n";
        }
    const auto run = statpower("run " + folder.write("designs.csv", designs) +
                               " --test t-one --question power --jobs 3 -o " + folder.path("answers.csv"));
    EXPECT_EQ(run.status, 0) << run.text;
    EXPECT_EQ(folder.read("answers.csv"), expected);
    for (const char* words : {"run - < %", "run /dev/stdin < %", "run /dev/stdin < <(cat %)"}) {
        std::string command = words;
        command.replace(command.find('%'), 1, folder.path("designs.csv"));
        command = "export STATPOWER; bash -c '$STATPOWER " + command + " --test t-one --question power'";
        EXPECT_EQ(shell(command).text, expected) << words;
    }
}

TEST(Run, TakesTestsAndQuestionsFromColumnsAndSaysWhyARowIsRefused) {
    const Folder folder;
    const auto run = shell("$STATPOWER run --digits 4 --keep id " +
                           folder.write("designs.csv",
                                        "\xEF\xBB\xBFid,test,question,d,n,power\r\n"
                                        "1,t-one,size,0.5,,\r\n"
                                        "\"2, again\", t-one ,power,0.5,34,\r\n"
                                        "3,t-one,size,half,,0.9\r\n"
                                        "\r\n"
                                        "4,t-none,size,0.5,,0.9\r\n"
                                        "5,t-one\r\n"
                                        "6,t-one,solve,,34,0.8\r\n") +
                           " 2>/dev/null");
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.text,
                testing::MatchesRegex(
                    "id,test,question,d,n,power,found-n,found-power,found-d,refusal\n"
                    "1,t-one,size,0.5,,,34,0.8078,,\n"
                    "\"2, again\", t-one ,power,0.5,34,,,0.8078,,\n"
                    "3,t-one,size,half,,0.9,,,,d: 'half' is not a number\n"
                    "4,t-none,size,0.5,,0.9,,,,test: there is no test 't-none'; did you mean t-one[?]\n"
                    "5,t-one,,,,,,,,\"the row has 2 cells, the header 6\"\n"
                    "6,t-one,solve,,34,0.8,,0.8,0.49[0-9]*,\n"));
}

TEST(Run, FillsWordsOfTheCommandLineIntoBlankCells) {
    const Folder folder;
    const std::string file = folder.write("designs.csv", "d,n,alpha\n0.5,20,\n0.5,20,0.1\n");
    const std::string at_01 = power_of("--d 0.5 --n 20 --alpha 0.01"),
                      at_1 = power_of("--d 0.5 --n 20 --alpha 0.1");
    EXPECT_EQ(statpower("run " + file + " --test t-one --question power --alpha 0.01").text,
              "d,n,alpha,power,refusal\n0.5,20,," + at_01 + ",\n0.5,20,0.1," + at_1 + ",\n");
}

TEST(Run, RefusesColumnsThatAreNoWords) {
    const Folder folder;
    const auto run =
        statpower("run " + folder.write("designs.csv", "d,n,alhpa\n0.5,20,0.1\n") + " --test t-one");
    EXPECT_EQ(run.status, 2);
    EXPECT_THAT(run.text, HasSubstr("'alhpa' is no word of any test; did you mean alpha?"));
    EXPECT_EQ(statpower("run " + folder.write("twice.csv", "d,d\n1,2\n")).status, 2);
    EXPECT_EQ(statpower("run " + folder.write("empty.csv", "")).status, 2);
    EXPECT_EQ(statpower("run " + folder.path("designs.csv") + " -o " + folder.path("designs.csv")).status, 2);
    EXPECT_EQ(statpower("run /nowhere/designs.csv").status, 1);
    EXPECT_EQ(statpower("run").status, 2);
    EXPECT_EQ(statpower("run " + folder.path("designs.csv") + " --alpha 0.1 --alpha 0.2").status, 2);
    EXPECT_EQ(statpower("run " + std::filesystem::temp_directory_path().string()).status, 1);
    for (const char* name : {"long.csv", "long.ndjson"}) {
        const auto lengthy =
            statpower("run " + folder.write(name, "d,n\n" + std::string(3000000, '1') + ",2\n"));
        EXPECT_EQ(lengthy.status, 2);
        EXPECT_THAT(lengthy.text, HasSubstr("a row is longer than a million bytes"));
    }
}

TEST(Run, AnswersRequestsInJson) {
    const Folder folder;
    const std::string file = folder.write("designs.ndjson",
                                          "{\"question\":\"size\",\"d\":0.5}\n"
                                          "{\"d\":0.5,\"n\":34}\n"
                                          "not json\n");
    const auto run = shell("$STATPOWER run " + file + " --test t-one --question power 2>/dev/null");
    EXPECT_EQ(run.status, 1);
    std::istringstream lines(run.text);
    std::string line;
    std::getline(lines, line);
    EXPECT_EQ(nlohmann::json::parse(line)["answer"]["n"], 34);
    std::getline(lines, line);
    EXPECT_NEAR(nlohmann::json::parse(line)["answer"]["power"].get<double>(), 0.8077775, 1e-7);
    std::getline(lines, line);
    EXPECT_EQ(nlohmann::json::parse(line)["refusal"]["kind"], "refused");
}

TEST(Run, ContinuesBehindWholeRows) {
    const Folder folder;
    std::string designs = "d,n\n";
    for (int n = 2; n < 3000; ++n) designs += "0.1," + std::to_string(n) + "\n";
    const std::string command = "run " + folder.write("designs.csv", designs) +
                                " --test t-one --question power -o " + folder.path("a.csv");
    ASSERT_EQ(statpower(command).status, 0);
    const std::string whole = folder.read("a.csv");
    for (const std::size_t size :
         {std::size_t{0}, std::size_t{5}, whole.size() / 2, whole.size() - 1, whole.size()}) {
        folder.write("a.csv", whole.substr(0, size));
        const auto run = statpower(command + " --resume");
        EXPECT_EQ(run.status, 0) << run.text;
        EXPECT_TRUE(folder.read("a.csv") == whole) << size;
    }
    folder.write("a.csv", "d,n,other,refusal\n");
    EXPECT_EQ(statpower(command + " --resume").status, 2);
}

TEST(Run, LeavesWholeRowsWhenInterrupted) {
    const Folder folder;
    std::string designs = "d,n\n";
    for (int i = 0; i < 300000; ++i) designs += "0.1," + std::to_string(i % 1000 + 2) + "\n";
    const std::string command = "run " + folder.write("designs.csv", designs) +
                                " --test t-one --question power --jobs 1 -o " + folder.path("a.csv");
    const auto run = shell("timeout --preserve-status --signal=INT 0.4 $STATPOWER " + command);
    ASSERT_EQ(run.status, 130) << run.text;
    EXPECT_EQ(run.text, "statpower: interrupted\n");
    const std::string part = folder.read("a.csv");
    EXPECT_TRUE(part.empty() || part.ends_with("\n")) << part.substr(part.size() - 20);
    EXPECT_EQ(statpower(command + " --resume").status, 0);
    const std::string resumed = folder.read("a.csv");
    EXPECT_TRUE(resumed.starts_with(part));
    EXPECT_EQ(std::ranges::count(resumed, '\n'), 300001);
}

TEST(Run, FailsWhereItsOutputIsLost) {
    const Folder folder;
    const std::string file = folder.write("designs.csv", "d,n\n0.5,20\n");
    EXPECT_EQ(statpower("run " + file + " --test t-one --question power > /dev/full").status, 1);
    EXPECT_EQ(statpower("run " + file + " --test t-one --question power -o /dev/full").status, 1);
    EXPECT_EQ(statpower("run " + file + " --test t-one --question power >&-").status, 1);
}

TEST(Run, TakesARowOfAnyBytes) {
    const Folder folder;
    const auto run = shell("$STATPOWER run " +
                           folder.write("designs.csv", std::string("d,n\n\xff\0,20\n\"0.5,20\n1,2\n", 22)) +
                           " --test t-one --question power 2>/dev/null");
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.text, HasSubstr("\\xff"));
}

}  // namespace
