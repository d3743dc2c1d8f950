#pragma once

// Messages, translation, product identity, environment, memory and the choice of the report language: the one
// place that turns a message into a line on standard error and that ends the program.
//
// A message line reads "<product> <executable> - <KIND>: <text>"; its five prefix formats are translated like
// every other text that a user sees.

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>

#include <QString>

namespace veldacov {

enum class ExitStatus : int { Normal = 0, NoLocaleDirectory = 1, FatalError = 7, InternalError = 9 };

// The tool version that stands in the banner and in the head of every output.
constexpr std::string_view toolVersion = "7.0.0.1.031.001";

// Looks a text up in the installed translations under its three keys; the source text when none has it.
// The keys must stand as literals at the call (or in QT_TRANSLATE_NOOP or QT_TRANSLATE_NOOP3 of a table), where
// the translators' tools find them.
QString translate(const char* context, const char* source, const char* comment = nullptr);

// A text of a table, with the comment that is part of its key; QT_TRANSLATE_NOOP3 makes one.
struct TranslatableText {
    const char* source = nullptr;
    const char* comment = nullptr;
};
QString translate(const char* context, const TranslatableText& text);

// Fills the placeholders of a text one after the other, each value replacing the lowest-numbered placeholder
// that is left (so a value that holds "%2" takes part in the next filling). Values are in the local encoding.
QString filled(QString text, std::initializer_list<std::string_view> values);

// Between the toolkit's strings and bytes in the local 8-bit encoding.
QString fromLocal(std::string_view bytes);
std::string toLocal(const QString& text);

// The five message kinds. Each prints one line; the first two end the program (statuses 7 and 9).
[[noreturn]] void fatalError(const QString& message);
// `sourceFile` may be null; otherwise a line "[file:line]" follows instead of an empty one.
[[noreturn]] void internalError(const QString& message, const char* sourceFile = nullptr, unsigned line = 0);
void userError(const QString& message);
void warningMessage(const QString& message);
void infoMessage(const QString& message);

// How many warnings and errors have been printed.
std::size_t complaintsSoFar();

// From now on, control characters in messages are shown escaped (shown_text.h).
void escapeControlsInMessages();
// Names what makes room for a message on a terminal, and is called before each; null: nothing.
void setBeforeMessages(void (*makeRoom)());

// Writes a finished text to standard error, unchanged.
void writeStandardError(const QString& text);

// Ends the process as a normal exit does. Tests put another end in its place, which must not return (it
// throws); null restores the exit.
using ProgramEnd = void (*)(ExitStatus);
[[noreturn]] void endProgram(ExitStatus status);
void setProgramEnd(ProgramEnd end);

// Names what saves the buffers of open outputs when the program ends early. It also runs in a crash, so it
// may only write.
void setLastWrites(void (*save)());

// Names the product and the executable in all later messages, and makes a crash of the program an internal
// error.
void setProductIdentity(const QString& productName, const QString& executableName);
QString getProductName();

// Makes a request for memory that the system refuses the fatal error "No memory left". Requests that
// handle a refusal themselves hold a RefusalIsHandled meanwhile.
void installMemoryGuard();
// The same end for a refusal that arrives as an exception: the toolkit's strings throw past the guard.
[[noreturn]] void memoryExhausted();
class RefusalIsHandled {
public:
    RefusalIsHandled();
    ~RefusalIsHandled();
    RefusalIsHandled(const RefusalIsHandled&) = delete;
    RefusalIsHandled& operator=(const RefusalIsHandled&) = delete;

private:
    void (*before_)();
};

// Value of an environment variable, none when undefined. An undefined mandatory one is a fatal error.
enum class Presence { Optional, Mandatory };
std::optional<std::string> getEnvironment(const char* name, Presence presence = Presence::Optional);

// A copy with the letters a to z as capitals; all other bytes as they are.
std::string duplicateUpper(std::string_view text);
constexpr char upperCase(char character) {
    return character >= 'a' && character <= 'z' ? static_cast<char>(character - 'a' + 'A') : character;
}

// True when VELDACOV_LAN asks for the French report. A value other than GB, FR and FA is warned about,
// at every call, and means English.
bool reportInFrench();

} // namespace veldacov
