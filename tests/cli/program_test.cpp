// The command as a whole: words, outputs, exit statuses, endings.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "cli/program.h"

namespace {

using testing::ContainsRegex;
using testing::HasSubstr;
using testing::StartsWith;
using testing_support::Folder;
using testing_support::shell;
using testing_support::statpower;

void expect_refusal(const std::string& arguments, const std::string& message) {
    const auto run = statpower(arguments);
    EXPECT_EQ(run.status, 2) << arguments;
    EXPECT_EQ(run.text, "statpower: " + message + "\n") << arguments;
}

TEST(Program, AnswersInTextForPeople) {
    const auto run = statpower("t-one size --d 0.5");
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.text, StartsWith("One mean (t test): size\n\n  n      34 observations\n  power  0.8077"));
    EXPECT_THAT(statpower("t-one size --d 0.5 --digits 3").text, HasSubstr("power  0.808\n"));
}

TEST(Program, MakesATableOfSeveralValues) {
    const auto run = statpower("t-one size --d 0.5,0.6 --csv --digits 4");
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.text, testing::MatchesRegex("d,n,power\n0.5,34,0.8078\n0.6,24,0.8[0-9]*\n"));
    EXPECT_EQ(statpower("t-one power --d 0.5 --n 20:40:10 --ndjson").text, [&] {
        std::string lines;
        for (const int n : {20, 30, 40})
            lines += "{\"n\":" + std::to_string(n) + ",\"power\":" +
                     statpower("t-one power --d 0.5 --n " + std::to_string(n) + " --json")
                         .json()["answer"]["power"]
                         .dump() +
                     "}\n";
        return lines;
    }());
}

TEST(Program, EndsWithOneWhereARowOfATableIsRefused) {
    const auto run = statpower("t-one power --d 0.5 --n 1,10 --csv");
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.text, HasSubstr("\n1,,n: leaves a group of fewer than 2 observations\n"));
}

TEST(Program, PrintsASentence) {
    EXPECT_THAT(statpower("t-one size --d 0.5 --report").text,
                testing::MatchesRegex("With 34 observations, a two-sided .* has a power of 80.8 % .*\\.\n"));
}

TEST(Program, RefusesInTheWordsOfTheCommandLine) {
    expect_refusal("t-one size --alhpa 0.5", "--alhpa: no word of t-one size; did you mean --alpha?");
    expect_refusal("t-one size --jsno", "--jsno: no word of t-one size; did you mean --json?");
    expect_refusal("t-oen size", "there is no test 't-oen'; did you mean t-one?");
    expect_refusal("t-one siez --d 1",
                   "'siez' is no question; it is one of power, size, precision, effect or "
                   "solve; did you mean size?");
    expect_refusal("t-one size -d 0.5",
                   "'-d' stands alone: words are given as --word value; did you mean --d?");
    expect_refusal("t-one size --d", "--d: a value is needed");
    expect_refusal("t-one size --d --alpha 0.1", "--d: a value is needed");
    expect_refusal("t-one size --d 0.5 --d 0.6", "--d: is given twice");
    expect_refusal("t-one size --d half", "--d: 'half' is not a number");
    expect_refusal("t-one size --d nan", "--d: 'nan' is not a number");
    expect_refusal("t-one size --d 0.5 --power 5", "--power: 5 is not greater than 0 and less than 1");
    expect_refusal("t-one size --d 0.5 --csv=maybe", "--csv: takes no value");
    expect_refusal("t-one size --d 0.5 --csv --report", "--report: cannot stand beside --csv");
    expect_refusal("t-one size --d 0.5 --report --digits 3", "--digits: has no effect beside --report");
    expect_refusal("t-one size --d 0.5 --digits 0", "--digits: '0' is not a whole number from 1 to 17");
    expect_refusal("t-one size --d 0.5,0.6 --report", "--report: has no effect on a table");
    expect_refusal("t-one power --d 0.5 --n 20 --rule smallest",
                   "--rule: has no effect where no sizes are sought");
    EXPECT_EQ(statpower("").status, 2);
    EXPECT_EQ(statpower("t-one").status, 2);
}

TEST(Program, DoesNotHangOnEmptyArguments) {
    expect_refusal("t-one size '' --d 0.5", "'' stands alone: words are given as --word value");
    expect_refusal("''", "there is no test ''");
    expect_refusal("t-one size --d ''", "--d: is empty: a number");
    expect_refusal("t-one size --d=", "--d: is empty: a number");
}

TEST(Program, EscapesAndCutsWhatAUserGave) {
    const auto run = shell("$STATPOWER t-one size --d \"$(printf 'a\\033[31m\\377')\"");
    EXPECT_EQ(run.text, "statpower: --d: 'a\\x1b[31m\\xff' is not a number\n");
    for (const char* words :
         {"t-one size --d $x", "$x size", "t-one $x", "t-one size $x", "t-one size --$x 1",
          "t-one size --d 1 --digits $x", "run $x", "t-one size --d 1 --svg /$x --alpha 0.1,0.2"}) {
        const auto lengthy = shell(std::string("x=$(printf 'z%04000d' 7); $STATPOWER ") + words);
        EXPECT_NE(lengthy.status, 0) << words;
        EXPECT_LT(lengthy.text.size(), 300u) << words;
    }
}

TEST(Program, SaysWhyThereIsNoAnswer) {
    const auto none = statpower("t-one size --d 0");
    EXPECT_EQ(none.status, 1);
    EXPECT_THAT(none.text, HasSubstr("no effect"));
    const auto far = statpower("t-one size --d 1e-6");
    EXPECT_EQ(far.status, 1);
    EXPECT_THAT(far.text, HasSubstr("10000000 observations"));
}

TEST(Program, PrintsEveryRefusalAsJsonToPrograms) {
    const auto refusal = [](const std::string& words, int status) {
        const auto run = shell("$STATPOWER " + words + " 2>/dev/null");
        EXPECT_EQ(run.status, status) << words;
        return run.json()["refusal"];
    };
    for (const std::string form : {" --json", " --ndjson"}) {
        EXPECT_EQ(refusal("t-one size --d 0" + form, 1)["kind"], "no-answer");
        for (const auto& [words, argument] :
             {std::pair("t-one size --d half", "d"), std::pair("t-one size --d -1 --alpha 2", "alpha"),
              std::pair("t-one size --alhpa 0.5", "alhpa"), std::pair("t-one size --d 0.5 --d 1", "d"),
              std::pair("t-one size --d 0.5 --digits 0", "digits"),
              std::pair("t-one size --d 0.5 --csv", "csv"), std::pair("t-oen size", "test")}) {
            const auto why = refusal(words + form, 2);
            EXPECT_EQ(why["kind"], "refused") << words;
            const std::string named = why["argument"];
            EXPECT_TRUE(named == argument || " --" + named == form) << words << why;
            EXPECT_EQ(why["message"], named + ": " + why["reason"].get<std::string>());
        }
        EXPECT_EQ(refusal("t-one" + form, 2)["kind"], "refused");
        EXPECT_EQ(refusal("t-one siez --d 1" + form, 2)["kind"], "refused");
        EXPECT_EQ(refusal("t-one size d" + form, 2)["kind"], "refused");
        EXPECT_EQ(refusal("t-one power --d 1 --n 20 --chart" + form, 2)["kind"], "refused");
    }
}

TEST(Program, FailsWhereItsOutputIsLost) {
    for (const char* words :
         {"t-one size --d 0.5", "t-one size --d 0.5 --json", "help", "--catalogue", "man"}) {
        EXPECT_EQ(shell(std::string("$STATPOWER ") + words + " > /dev/full").status, 1) << words;
        EXPECT_EQ(shell(std::string("$STATPOWER ") + words + " >&-").status, 1) << words;
    }
}

TEST(Program, TakesNoFileForAStandardOneThatIsClosed) {
    const Folder folder;
    const std::string designs = folder.write("d.csv", "d,n\n0.5,20\n0.5,1\n"),
                      run = " --test t-one --question power ";
    // What is read twice is copied to a file, which would be opened as standard output.
    EXPECT_EQ(shell("cat " + designs + " | $STATPOWER run -" + run + ">&-").status, 1);
    EXPECT_EQ(shell("$STATPOWER run - <&-" + run).status, 1);
    EXPECT_EQ(shell("$STATPOWER run --ndjson - <&-" + run).status, 1);
    // The file of answers would be opened as standard error, and the message written into it.
    EXPECT_EQ(
        shell("$STATPOWER run " + designs + run + "-o " + folder.path("a.csv") + " <&- >&- 2>&-").status, 1);
    EXPECT_EQ(folder.read("a.csv"), shell("$STATPOWER run " + designs + run + "2>/dev/null").text);
}

TEST(Program, EndsAtOnceWhenInterrupted) {
    for (const char* words : {"t-one size --d 0.000001:0.9:0.000001",
                              "t-one size --d 1e-6 --max-n 1e12 --power "
                              "0.1:0.9:0.000001"}) {
        const auto run = shell(std::string("timeout --preserve-status --signal=INT 0.3 $STATPOWER ") + words);
        EXPECT_EQ(run.status, 130) << words;
        EXPECT_EQ(run.text, "statpower: interrupted\n") << words;
    }
}

TEST(Program, ExplainsItself) {
    EXPECT_THAT(statpower("help").text, HasSubstr("t-one"));
    EXPECT_EQ(statpower("--help").text, statpower("help").text);
    EXPECT_THAT(statpower("--version").text, ContainsRegex("^statpower [0-9]+\\.[0-9]+\\.[0-9]+\n"));
    EXPECT_EQ(statpower("t-one --help").text, statpower("help t-one").text);
    EXPECT_EQ(statpower("t-one size --help").text, statpower("help t-one size").text);
    EXPECT_THAT(statpower("help run").text, HasSubstr("--resume"));
    EXPECT_THAT(statpower("man").text, StartsWith(".TH STATPOWER 1"));
}

TEST(Program, OffersTheWordsThatMayStandNext) {
    EXPECT_THAT(statpower("complete").text, HasSubstr("t-one\tOne mean (t test)\n"));
    EXPECT_THAT(statpower("complete t-one").text, HasSubstr("size\t"));
    EXPECT_THAT(statpower("complete t-one size").text, HasSubstr("--alternative\t"));
    EXPECT_THAT(statpower("complete t-one size --alternative").text,
                StartsWith("two-sided\t\none-sided\t\n"));
    EXPECT_THAT(statpower("complete run").text, HasSubstr("--jobs\t"));
}

TEST(Program, SaysWhereThePageShouldBe) {
    const auto run = statpower("page");
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.text, HasSubstr("share/statpower/statpower.html"));
}

TEST(Charts, AreDrawnInTheTerminalAndInFiles) {
    const Folder folder;
    const auto run = statpower("t-one power --d 0.2,0.5 --n 20:200:20 --chart --svg " + folder.path("c.svg") +
                               " --png " + folder.path("c.png"));
    EXPECT_EQ(run.status, 0) << run.text;
    EXPECT_THAT(run.text, HasSubstr("Sample size (observations)"));
    EXPECT_THAT(run.text, HasSubstr("power 0.8 "));
    const std::string svg = folder.read("c.svg");
    for (const char* text :
         {"Sample size (observations)", "Power", "d 0.2", "d 0.5", "power 0.8", "One mean (t test)"})
        EXPECT_THAT(svg, HasSubstr(text));
    EXPECT_THAT(folder.read("c.png"), StartsWith("\x89PNG"));
}

TEST(Charts, AreRefusedWhereThereIsNothingToDraw) {
    EXPECT_EQ(statpower("t-one power --d 0.5 --n 20 --chart").status, 2);
    EXPECT_EQ(statpower("t-one power --d 0.1:2:0.1 --n 20:100:1 --chart").status, 2);  // 20 lines
    EXPECT_EQ(statpower("t-one power --d 0.5 --n 20:30 --svg /nowhere/c.svg").status, 1);
}

TEST(Charts, NameThePackageOfAMissingGnuplot) {
    const auto run = shell("PATH=/nowhere $STATPOWER t-one power --d 0.5 --n 20:30 --chart");
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.text, HasSubstr("install gnuplot-nox"));
}

}  // namespace
