#include "view/commands.h"

#include <filesystem>
#include <new>
#include <stdexcept>
#include <string>
#include <vector>

#include "description/model.h"
#include "description/name_pool.h"
#include "support/machine.h"
#include "support/platform.h"
#include "support/run_files.h"
#include "view/command_line.h"
#include "view/pages.h"
#include "view/ranking.h"

namespace veldacov {

namespace {

Campaign load(const ViewRequest& request, CampaignDetail detail) {
    CampaignRequest campaign = request.campaign;
    campaign.detail = detail;
    return loadCampaign(campaign);
}

bool isSet(const char* variable) {
    return !getEnvironment(variable).value_or("").empty();
}

Colours coloursOf(const ViewRequest& request) {
    const bool forPeople = request.output == "-" && platform::isTerminal(platform::standardOutput) &&
                           !isSet("NO_COLOR") && getEnvironment("TERM") != "dumb";
    return forPeople ? Colours::Terminal : Colours::None;
}

int runCheck(const ViewRequest& request) {
    const Campaign campaign = load(request, CampaignDetail::Rates);
    const Verdict verdict = checkCampaign(campaign, request.check);
    OutputFile out = openViewOutput(request.output);
    writeVerdict(out, campaign, request.check, verdict, coloursOf(request));
    out.finish();
    if (!request.markdown.empty()) {
        OutputFile markdown = openViewOutput(request.markdown);
        writeVerdictMarkdown(markdown, campaign, request.check, verdict);
        markdown.finish();
    }
    return verdict.status;
}

// The name of one of several outputs: "cov.xml" is "cov-2.xml".
std::string partName(const std::string& name, std::size_t part) {
    const std::filesystem::path path(name);
    std::filesystem::path file = path.stem();
    file += "-" + std::to_string(part) + path.extension().string();
    return path.has_parent_path() ? (path.parent_path() / file).string() : file.string();
}

void exportParts(const Campaign& campaign, const ViewRequest& request) {
    const std::vector<Source> sources = sourcesOf(campaign);
    const auto parts = splitSources(campaign, sources, request.exports.split);
    for (std::size_t part = 0; part < parts.size(); ++part) {
        OutputFile out =
            openViewOutput(request.exports.split > 1 ? partName(request.output, part + 1) : request.output);
        exportCobertura(out, campaign, parts[part], request.campaign.root);
        out.finish();
    }
}

int runExport(const ViewRequest& request) {
    const ExportOptions& exports = request.exports;
    const Campaign campaign =
        load(request, exports.perTest ? CampaignDetail::TestCounts : CampaignDetail::Tests);
    if (exports.format == ExportFormat::Cobertura) {
        exportParts(campaign, request);
        return 0;
    }
    OutputFile out = openViewOutput(request.output);
    if (exports.format == ExportFormat::Json) {
        exportJson(out, campaign);
    } else {
        exportLcov(out, campaign, exports);
    }
    out.finish();
    return 0;
}

int runTests(const ViewRequest& request) {
    const Campaign campaign = load(request, CampaignDetail::Tests);
    const std::vector<RankedTest> ranking = rankTests(campaign);
    OutputFile out = openViewOutput(request.output);
    if (request.testsFormat == TestsFormat::Json) {
        writeRankingJson(out, campaign, ranking);
    } else {
        writeRanking(out, campaign, ranking);
    }
    out.finish();
    return 0;
}

int runHtml(const ViewRequest& request) {
    PageFolder folder(request.output); // refused before all the reading
    writePages(load(request, CampaignDetail::Tests), folder);
    return 0;
}

int runCommand(const ViewRequest& request) {
    switch (request.command) {
    case ViewCommand::Check: return runCheck(request);
    case ViewCommand::Export: return runExport(request);
    case ViewCommand::Html: return runHtml(request);
    case ViewCommand::Tests: break;
    }
    return runTests(request);
}

} // namespace

OutputFile openViewOutput(const std::string& name) {
    const QString failure = translate("Fatal Error", "Cannot create output file %1");
    if (name != "-") {
        return createOutput(name, failure);
    }
    if (standardOutputIsGiven()) {
        fatalError(filled(failure, {"standard output"}));
    }
    return outputOnStandardOutput();
}

int runView(const std::vector<std::string>& words) {
    try {
        initNamePool();
        const int status = runCommand(readViewCommandLine(words));
        forgetRunFiles();
        freeAllDescriptions();
        freeNamePool();
        return status;
    } catch (const std::bad_alloc&) {
        memoryExhausted();
    } catch (const std::length_error&) { // more than a container could ever hold
        memoryExhausted();
    }
}

} // namespace veldacov
