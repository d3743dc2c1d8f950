#include "view/commands.h"

#include <new>
#include <stdexcept>

#include "description/model.h"
#include "description/name_pool.h"
#include "support/machine.h"
#include "support/platform.h"
#include "support/run_files.h"
#include "view/command_line.h"
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

int runCommand(const ViewRequest& request) {
    switch (request.command) {
    case ViewCommand::Check: return runCheck(request);
    case ViewCommand::Tests: break;
    }
    return runTests(request);
}

} // namespace

OutputFile openViewOutput(const std::string& name) {
    return name == "-" ? outputOnStandardOutput()
                       : createOutput(name, translate("Fatal Error", "Cannot create output file %1"));
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
