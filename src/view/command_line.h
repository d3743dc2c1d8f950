#pragma once

// The command line of `veldaview`:
//
//   veldaview check  FILES [--min decisions=80]... [--per file] [--strict] [--markdown FILE] ...
//   veldaview export --format lcov FILES ...
//   veldaview tests  FILES [--format json] ...
//   veldaview html   -o DIR FILES ...
//
// Words of the form @file are replaced by those of a response file, up to the word "--". Names of inputs may have
// wildcards.

#include <cstdint>
#include <string>
#include <vector>

#include "view/campaign.h"
#include "view/check.h"
#include "view/export.h"

namespace veldacov {

enum class ViewCommand : std::uint8_t { Check, Export, Tests, Html };
enum class TestsFormat : std::uint8_t { Text, Json };

struct ViewRequest {
    ViewCommand command = ViewCommand::Check;
    CampaignRequest campaign;
    std::string output = "-"; // "-": standard output; a folder for Html
    CheckOptions check;
    std::string markdown; // empty: none
    ExportOptions exports;
    TestsFormat testsFormat = TestsFormat::Text;
};

// Reads the command line, the program's name first. Requests for help and for the version end the program with status 0,
// a bad command line is a fatal error.
ViewRequest readViewCommandLine(const std::vector<std::string>& words);

} // namespace veldacov
