#include "report/labels.h"

#include <array>
#include <cstddef>

#include <QtGlobal>

#include "support/machine.h"

namespace veldacov {

namespace {

// The rate labels are 29 characters long and the yes and no texts 6, so that the values stand in columns.
struct LabelRow {
    ReportLabel label;
    std::string_view english;
    std::string_view french;
    const char* cio; // translated in the context "Cio message"
};

constexpr std::array<LabelRow, static_cast<std::size_t>(ReportLabel::Count)> labels = {{
    {ReportLabel::Functions, "Functions ...................", "Fonctions ...................", ""},
    {ReportLabel::Hit, "Hit .........................", "Executee ....................",
     QT_TRANSLATE_NOOP("Cio message", "Hit")},
    {ReportLabel::Yes, "   yes", "   oui", QT_TRANSLATE_NOOP("Cio message", "yes")},
    {ReportLabel::No, "    no", "   non", QT_TRANSLATE_NOOP("Cio message", "no")},
    {ReportLabel::FunctionsAndExits, "Functions and exits .........", "Fonctions et sorties ........",
     QT_TRANSLATE_NOOP("Cio message", "Functions and exits")},
    {ReportLabel::Calls, "Calls .......................", "Appels ......................",
     QT_TRANSLATE_NOOP("Cio message", "Calls")},
    {ReportLabel::StatementBlocks, "Statement blocks ............", "Blocs d'instructions ........",
     QT_TRANSLATE_NOOP("Cio message", "Statement blocks")},
    {ReportLabel::ImplicitBlocks, "Implicit blocks .............", "Blocs implicites ............",
     QT_TRANSLATE_NOOP("Cio message", "Implicit blocks")},
    {ReportLabel::Decisions, "Decisions ...................", "Decisions ...................",
     QT_TRANSLATE_NOOP("Cio message", "Decisions")},
    {ReportLabel::Loops, "Loops .......................", "Boucles .....................",
     QT_TRANSLATE_NOOP("Cio message", "Loops")},
    {ReportLabel::AsynchronousTransferBlocks, "Asynchronous transfer block .",
     "Blocs asynchrones ...........", QT_TRANSLATE_NOOP("Cio message", "Asynchronous transfer block")},
    {ReportLabel::BasicConditions, "Basic conditions ............", "Conditions elementaires .....",
     QT_TRANSLATE_NOOP("Cio message", "Basic conditions")},
    {ReportLabel::ModifiedConditions, "Modified conditions .........", "Conditions modifiees ........",
     QT_TRANSLATE_NOOP("Cio message", "Modified conditions")},
    {ReportLabel::MultipleConditions, "Multiple conditions .........", "Conditions composees ........",
     QT_TRANSLATE_NOOP("Cio message", "Multiple conditions")},
    {ReportLabel::ForcedModifiedConditions, "Forced modified conditions ..", "Conditions modifiees forcees ",
     QT_TRANSLATE_NOOP("Cio message", "Forced modified conditions")},
    {ReportLabel::ForcedMultipleConditions, "Forced multiple conditions ..", "Conditions composees forcees ",
     QT_TRANSLATE_NOOP("Cio message", "Forced multiple conditions")},
    {ReportLabel::Incoming, "incoming", "entree", ""},
    {ReportLabel::RegularLeaving, "regular leaving", "sortie normale", ""},
    {ReportLabel::Return, "return", "return", ""},
    {ReportLabel::Termination, "termination", "terminaison", ""},
    {ReportLabel::Line, "line", "ligne", ""},
    {ReportLabel::Conclusion, "Conclusion", "Conclusion", ""},
    {ReportLabel::ConclusionTest, "Conclusion Test ", "Conclusion Test ", ""},
    {ReportLabel::Times, "time(s)", "fois", ""},
    {ReportLabel::None, "  none", " aucun(e)", QT_TRANSLATE_NOOP("Cio message", "none")},
    {ReportLabel::NotApplicable, "   n/a", " n/a", QT_TRANSLATE_NOOP("Cio message", "n/a")},
    {ReportLabel::Title, "Orbis(R) Norvik Suite Coverage - Report",
     "Orbis(R) Norvik Suite Coverage - Rapport", ""},
    {ReportLabel::ReferencesHit, "Following source references were hit",
     "Les references source qui suivent ont ete executees", ""},
    {ReportLabel::ReferencesNotHit, "Following source references were not hit",
     "Les references source qui suivent n'ont pas ete executees", ""},
    {ReportLabel::MaximumReached, " (maximum reached)", " (maximum atteint)", ""},
    {ReportLabel::NoVectorPair, "no vectors pair found", "aucun couple de vecteurs", ""},
    {ReportLabel::PreviousTests, "For modified conditions, previous tests are taken into account",
     "Pour les conditions modifiees, les tests precedents sont pris en compte",
     QT_TRANSLATE_NOOP("Cio message", "For modified conditions, previous tests are taken into account")},
    {ReportLabel::PreviousTestsAndServices,
     "For modified conditions, previous tests and services are taken into account",
     "Pour les conditions modifiees, les tests et services precedents sont pris en compte",
     QT_TRANSLATE_NOOP("Cio message",
                       "For modified conditions, previous tests and services are taken into account")},
    {ReportLabel::PreviousServices, "For modified conditions, previous services are taken into account",
     "Pour les conditions modifiees, les services precedents sont pris en compte",
     QT_TRANSLATE_NOOP("Cio message", "For modified conditions, previous services are taken into account")},
    {ReportLabel::NothingHit, "Coverage analysis : nothing was hit",
     "Analyse de couverture : aucune branche n'a ete executee",
     QT_TRANSLATE_NOOP("Cio message", "Coverage analysis : nothing was hit")},
    {ReportLabel::File, "File", "Fichier", QT_TRANSLATE_NOOP("Cio message", "File")},
}};

constexpr bool rowsFollowTheEnumeration() {
    for (std::size_t place = 0; place < labels.size(); ++place) {
        if (static_cast<std::size_t>(labels[place].label) != place) {
            return false;
        }
    }
    return true;
}
static_assert(rowsFollowTheEnumeration());

const LabelRow& rowOf(ReportLabel label) {
    return labels[static_cast<std::size_t>(label)];
}

} // namespace

std::string_view labelText(ReportLabel label, Language language) {
    return language == Language::French ? rowOf(label).french : rowOf(label).english;
}

ReportLabel exitLabel(ExitKind kind) {
    switch (kind) {
    case ExitKind::EndProc: return ReportLabel::RegularLeaving;
    case ExitKind::Return: return ReportLabel::Return;
    case ExitKind::Term: break;
    }
    return ReportLabel::Termination;
}

std::string cioLabelText(ReportLabel label) {
    return toLocal(translate("Cio message", rowOf(label).cio));
}

} // namespace veldacov
