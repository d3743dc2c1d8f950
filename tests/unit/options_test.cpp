#include "driver/argscov.h"

#include <random>
#include <sstream>
#include <utility>
#include <vector>

#include <QDir>

#include "unit/test_support.h"

namespace veldacov::test {
namespace {

class Options : public FreshProgram {
protected:
    // Analyses words (blanks between them); what was said stands in `account`.
    CoverageOptions analysed(const std::string& words, bool accepted = true) {
        std::istringstream input("veldacov " + words);
        const std::vector<std::string> all{std::istream_iterator<std::string>(input), {}};
        CoverageOptions options;
        account = accountOf([&] { EXPECT_EQ(analyseCommandLine(all, options), accepted) << words; });
        return options;
    }

    // The names of the lists with their counts and marks.
    static std::string shown(const std::vector<NameCountList>& lists) {
        std::ostringstream text;
        for (const NameCountList& list : lists) {
            for (const NameCountList::Node& node : list.nodes) {
                text << node.name->text << " " << node.count << std::hex << " 0x" << node.name->flags << "; ";
            }
        }
        return text.str();
    }

    std::string account;
};

TEST_F(Options, CoverageTypes) {
    const std::vector<std::pair<std::uint16_t, std::vector<std::string>>> table = {
        {0x000, {"-NOPROC", "-NOCALL", "-NOBLOCK", "-NOCOND"}},
        {0x001, {"-PROC", "-PROC="}},
        {0x003, {"-PROC=RET", "-pr=ret", "-PROC=RETURN"}},
        {0x004, {"-CALL", "-ca"}},
        {0x018, {"-BLOCK"}},
        {0x038, {"-BLOCK=IMPLICIT", "-BLOCK=DECISION"}},
        {0x078, {"-BLOCK=LOGICAL"}},
        {0x0f8, {"-BLOCK=ATC"}},
        {0x100, {"-COND", "-CO"}},
        {0x300, {"-COND=MODIFIED", "-COND=MODIFIEDX"}},
        {0x700, {"-COND=COMPOUND"}}};
    for (const auto& [types, words] : table) {
        for (const std::string& word : words) {
            EXPECT_EQ(analysed("a " + word).coverageTypes, types) << word;
        }
    }
    EXPECT_EQ(analysed("a -PROC=RET -CALL -NOBLOCK -COND=COMPOUND").coverageTypes, 0x707);
}

TEST_F(Options, OutputsAndLevels) {
    CoverageOptions options = analysed("a");
    EXPECT_FALSE(options.outputFile || options.cleanFile || options.cioFile || options.flowFile ||
                 options.listingDirectory);
    EXPECT_FALSE(!options.global || options.mergeTests || options.branchCoverage || options.listingRequested);
    options = analysed("a -OUTPUT=o\\,p -CLEAN=c -MERGETESTS -CIO=i -FLOW=f -LISTING=l -NOGLOBAL -BRANCH=C");
    EXPECT_EQ(*options.outputFile + *options.cleanFile + *options.cioFile + *options.flowFile +
                  *options.listingDirectory,
              "o,pcifl");
    EXPECT_TRUE(!options.global && options.mergeTests && options.branchCoverage && options.listingRequested);
    options = analysed("a -LISTING= -BRANCH=NOCOV -SUMMARY=SERVICE");
    EXPECT_TRUE(options.listingRequested && !options.listingDirectory && !options.branchCoverage);
    EXPECT_EQ(options.summaryLevel, SummaryLevel::Service);
}

TEST_F(Options, InconsistentOnesAreIgnored) {
    CoverageOptions options =
        analysed("a -TEST=t -SERVICE=s -FILE=b/a.c -SUMMARY=CONCLUSION -BRANCH=COV -MERGETESTS");
    EXPECT_EQ(account, R"(WARNING: -MERGETESTS cannot be used without -CLEAN, -MERGETESTS is ignored
WARNING: Use of -SUMMARY and -BRANCH is inconsistent, -BRANCH is ignored
WARNING: Use of -SUMMARY=CONCLUSION and -FILE is inconsistent, -FILE is ignored
WARNING: Use of -SUMMARY=CONCLUSION|FILE and -SERVICE is inconsistent, -SERVICE is ignored
WARNING: Use of -GLOBAL and -TEST is inconsistent, -TEST is ignored
)");
    EXPECT_TRUE(!options.mergeTests && !options.branchCoverage && options.selectionMask == 7);
    EXPECT_EQ(shown({options.fileList, options.serviceList, options.testList}), "");
    analysed("a -EXTEST=t -EXSERVICE=s -EXFILE=f -SUMMARY=CONCLUSION");
    EXPECT_EQ(account, R"(WARNING: Use of -SUMMARY=CONCLUSION and -EXFILE is inconsistent, -EXFILE is ignored
WARNING: Use of -SUMMARY=CONCLUSION|FILE and -EXSERVICE is inconsistent, -EXSERVICE is ignored
WARNING: Use of -GLOBAL and -EXTEST is inconsistent, -EXTEST is ignored
)");
    EXPECT_EQ(analysed("a -FILE=f -SERVICE=s -SUMMARY=FILE -BRANCH=NOCOV").selectionMask, 6);
    EXPECT_EQ(account, R"(WARNING: Use of -SUMMARY and -BRANCH is inconsistent, -BRANCH is ignored
WARNING: Use of -SUMMARY=CONCLUSION|FILE and -SERVICE is inconsistent, -SERVICE is ignored
)");
    EXPECT_EQ(analysed("a -SERVICE=s -SUMMARY=SERVICE").selectionMask, 5);
    EXPECT_EQ(account, "");
}

TEST_F(Options, SelectionsMarkTheirNames) {
    CoverageOptions options =
        analysed("a -NOGLOBAL -FILE=src/a.c,A.C -SERVICE=f,F,c:f -TEST=t,t -SERVICE=f -FILE=b.c,d/");
    EXPECT_EQ(account, R"(WARNING: File src/a.c with path in -FILE list; path ignored
WARNING: The file A.C appears twice in -FILE list
WARNING: File d/ with path in -FILE list; path ignored
WARNING: The service f appears twice in -SERVICE list
WARNING: The test t appears twice in -TEST list
)");
    EXPECT_EQ(options.selectionMask, 0);
    EXPECT_EQ(shown({options.fileList, options.serviceList, options.testList}),
              "A.C 2 0x1000; B.C 1 0x1000; f 2 0x4000; F 1 0x4000; c:f 1 0x4000; t 2 0x10000; ");
    options = analysed("a -NOGLOBAL -EXFILE=x\\a.c,y:a.c -EXSERVICE=g,g -EXTEST=u,u,u");
    EXPECT_EQ(account, R"(WARNING: File x\a.c with path in -EXFILE list; path ignored
WARNING: File y:a.c with path in -EXFILE list; path ignored
WARNING: The file a.c appears twice in -EXFILE list
WARNING: The service g appears twice in -EXSERVICE list
WARNING: The test u appears twice in -EXTEST list
WARNING: The test u appears twice in -EXTEST list
)");
    EXPECT_EQ(options.selectionMask, 7);
    EXPECT_EQ(shown({options.exFileList, options.exServiceList, options.exTestList}),
              "A.C 2 0x3000; g 2 0x8000; u 3 0x20000; ");
}

TEST_F(Options, PatternsNameTheFilesOfTheirDirectory) {
    for (const char* name : {"b.fdc", "A.fdc", "c.fdx", "two.c", "Two.C", ".hidden"}) {
        write(name, "");
    }
    std::filesystem::create_directory(path("d.dir"));
    using Names = std::vector<std::string>;
    EXPECT_EQ(analysed(path("*.fdc") + "," + path("*.dir")).inputFiles,
              (Names{path("A.fdc"), path("b.fdc")}));
    EXPECT_EQ(analysed(path("c.fd?") + " " + path("no*")).inputFiles, (Names{path("c.fdx"), path("no*")}));
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(path(""));
    EXPECT_EQ(analysed("b.fdc,none.fdc").inputFiles, (Names{"./b.fdc", "none.fdc"}));
    EXPECT_EQ(analysed("a.FDC,.hidden,d.dir,x=y").inputFiles, (Names{"./A.fdc", ".hidden", "x=y"}));
    EXPECT_EQ(analysed("TWO.C").inputFiles.size(), 2U) << "names match without regard to case";
    std::filesystem::current_path(before);
}

// Whatever stands in a name, it finds what the toolkit's own search of the directory gives, in its order.
TEST_F(Options, NamesFindWhatTheToolkitFinds) {
    const std::vector<std::string> letters = {
        "a", "A", "b", "B", "s", "S", "\u017f", "k",  "\u212a", "\u00e9", "\u00c9",
        ":", ";", " ", "(", "+", ".", "]",      "\\", "\u03c2", "\u03a3", "\u00df"};
    std::mt19937 random(11);
    const auto below = [&random](std::size_t end) { return random() % end; };
    const auto word = [&](std::size_t mostLetters, std::size_t alphabet) {
        std::string text;
        for (std::size_t rest = 1 + below(mostLetters); rest > 0; --rest) {
            text += letters[below(alphabet)];
        }
        return text;
    };
    for (const std::size_t alphabet : {std::size_t{4}, letters.size()}) {
        const std::string folder = "d" + std::to_string(alphabet);
        std::filesystem::create_directory(path(folder));
        for (int file = 0; file < 150; ++file) {
            write(folder + "/" + word(3, alphabet), "");
        }
        for (int round = 0; round < 150; ++round) {
            std::string name = word(3, alphabet);
            for (std::size_t more = below(3) * below(15); more > 0; --more) {
                name += (round % 2 == 0 ? ";" : " ") + word(3, alphabet);
            }
            name += std::vector<std::string>{"", "", "", "*", "?", "[ab]"}[below(6)];
            const std::string value = path(folder + "/" + name);
            const QStringList entries =
                QDir(QString::fromStdString(path(folder)), QString::fromStdString(name)).entryList();
            std::vector<std::string> expected;
            for (const QString& entry : entries) {
                const std::string file = path(folder) + "/" + entry.toStdString();
                if (std::filesystem::is_regular_file(file)) {
                    expected.push_back(file);
                }
            }
            if (entries.isEmpty()) {
                expected.push_back(value);
            }
            CoverageOptions options;
            EXPECT_TRUE(analyseCommandLine({"veldacov", value}, options));
            EXPECT_EQ(options.inputFiles, expected) << name;
        }
    }
}

TEST_F(Options, AMalformedCommandLineSetsNothing) {
    const std::string missing = path("missing");
    EXPECT_FALSE(analysed("a -OUTPUT=o -ZZ", false).outputFile);
    EXPECT_EQ(account.substr(0, account.find('\n')), "Orbis(R) Norvik Command analysis : Unknown option, ZZ");
    EXPECT_FALSE(analysed("a -OUTPUT=o @" + missing, false).outputFile);
    EXPECT_EQ(account.substr(0, account.find('\n')),
              "Orbis(R) Norvik Command analysis : File not found " + missing);
}

} // namespace
} // namespace veldacov::test
