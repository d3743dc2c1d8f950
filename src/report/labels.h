#pragma once

// The fixed texts of the report, in both of its languages, and of the CIO file: one row each (labels.cpp). Those of the
// report are part of its form, with their dots and blanks, and chosen by VELDACOV_LAN; those of the CIO file are
// translated like messages.

#include <cstdint>
#include <string>
#include <string_view>

#include "description/model.h"

namespace veldacov {

enum class Language : std::uint8_t { English = 0, French = 1 };

enum class ReportLabel : std::uint8_t {
    Functions,
    Hit,
    Yes,
    No,
    FunctionsAndExits,
    Calls,
    StatementBlocks,
    ImplicitBlocks,
    Decisions,
    Loops,
    AsynchronousTransferBlocks,
    BasicConditions,
    ModifiedConditions,
    MultipleConditions,
    ForcedModifiedConditions,
    ForcedMultipleConditions,
    Incoming,
    RegularLeaving,
    Return,
    Termination,
    Line,
    Conclusion,
    ConclusionTest,
    Times,
    None,
    NotApplicable,
    Title,
    ReferencesHit,
    ReferencesNotHit,
    MaximumReached,
    NoVectorPair,
    PreviousTests,
    PreviousTestsAndServices,
    PreviousServices,
    NothingHit,
    File,
    Count
};

// The fixed text of the report in its language, spaces included. Not translated.
std::string_view labelText(ReportLabel label, Language language);
// The label of a reference to an exit.
ReportLabel exitLabel(ExitKind kind);

// The text for the CIO file, without columns, translated, in the local encoding.
std::string cioLabelText(ReportLabel label);

} // namespace veldacov
